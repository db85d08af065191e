#pragma once

#include "platform/CPoint.h"
#include "platform/Windows.h"

#include <atomic>
#include <functional>
#include <string_view>
#include <vector>

/// What a person does with mouse and keyboard: a list of steps that a thread of its own hands to
/// the system as input, while the calling thread dispatches its messages. Windows programs only.
/// As a person does, it waits until windows that come and go have done so: a key or a button comes
/// when the window in front has answered several times and nothing has changed meanwhile, a second
/// at most; the mouse is moved until it stays where it should.
///     EXPECT_TRUE(WindowInput().click(place).key('A').play_until([&] { return edit.GetModify();
///     }));
class WindowInput {
public:
    /// In pixels of the screen.
    WindowInput& move_to(CPoint place);
    WindowInput& press_left();
    WindowInput& release_left();
    WindowInput& press_right();
    WindowInput& release_right();
    WindowInput& click(CPoint place);
    WindowInput& double_click(CPoint place);
    WindowInput& right_click(CPoint place);
    /// Presses and releases a key, given by its virtual code;
    WindowInput& key(WORD code);
    /// these do one of both.
    WindowInput& press_key(WORD code);
    WindowInput& release_key(WORD code);
    /// Alt with the letter of a menu in the bar, again where it was lost, until the menu is open.
    WindowInput& open_menu(char letter);
    /// Letters, digits and spaces, as the keys that have them.
    WindowInput& type(std::string_view text);
    /// Goes on when the condition holds, which is asked on the thread of the steps.
    WindowInput& wait_until(std::function<bool()> condition);

    /// Plays the steps, and dispatches messages until they are through and `done` holds, or ten
    /// seconds have passed: then a menu or another loop of the system that still runs is cancelled.
    /// True when `done` held. Throws on what a handler threw.
    [[nodiscard]] bool play_until(const std::function<bool()>& done);

private:
    struct Player {
        const std::atomic<bool>& over;  ///< Nobody waits for the rest.
        std::vector<WORD> held;         ///< Keys, in the order in which they were pressed.
    };
    using Step = std::function<void(Player&)>;
    WindowInput& mouse(DWORD flags);
    static void settle(const Player& player);
    static void bring_mouse_to(CPoint place, const Player& player);
    static void press(WORD code, Player& player);
    static void release(WORD code, Player& player);

    std::vector<Step> steps_;
};

/// The middle of a window, in pixels of the screen.
[[nodiscard]] CPoint middle_of(HWND window);
/// The first visible window of the class in this process; null when there is none.
[[nodiscard]] HWND visible_window(const char* class_name);
