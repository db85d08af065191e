#pragma once

#include "platform/Windows.h"
#include "tests/support/ChildProcess.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

/// The running program, driven from another process as a person drives it: by keys and mouse of the
/// system. What it shows is read from its windows. Every wait ends after 20 seconds.
class EditorDriver {
public:
    /// Starts it with these words behind its name, and waits for its main window.
    explicit EditorDriver(const std::vector<std::string>& words);
    /// Ends it if it still runs.
    ~EditorDriver();
    EditorDriver(const EditorDriver&) = delete;
    EditorDriver& operator=(const EditorDriver&) = delete;

    [[nodiscard]] bool has_window() const { return frame_ != nullptr; }
    [[nodiscard]] std::string title() const;
    /// True when the window answers: nothing holds it.
    [[nodiscard]] bool is_alive() const;
    /// Of the main window, or of its pane of properties.
    [[nodiscard]] HWND control(int id) const;
    [[nodiscard]] std::string text_of(int id) const;
    /// Rows of the list.
    [[nodiscard]] int rows() const;
    /// Items of the tree.
    [[nodiscard]] int directories() const;
    /// What the preview names.
    [[nodiscard]] std::string previewed() const;
    /// The colour in the middle of the preview.
    [[nodiscard]] COLORREF preview_color() const;
    /// The part of the screen that a window's client area has.
    struct Picture {
        int width = 0;
        int height = 0;
        std::vector<std::uint32_t> pixels;  ///< 0xRRGGBB, the top row first.

        [[nodiscard]] std::uint32_t at(int x, int y) const
        {
            return pixels[static_cast<std::size_t>(y * width + x)];
        }
    };
    [[nodiscard]] static Picture picture_of(HWND window);
    /// The text of the message box that is open; empty when there is none.
    [[nodiscard]] std::string message() const;
    /// A dialog of the program that has that control; null when there is none.
    [[nodiscard]] HWND dialog_with(int control) const;
    [[nodiscard]] bool has_focus(int id) const;

    static constexpr DWORD kLimitMs = 20'000;
    /// Waits until it holds. False when it does not in time.
    static bool wait_for(const std::function<bool()>& condition, DWORD limit_ms = kLimitMs);

    /// Presses and lets go, with the keys that are held meanwhile.
    void key(WORD code, const std::vector<WORD>& held = {});
    /// Chooses from the menus by letters, the first one that of the bar, until `done` holds: tried
    /// again where the system took a menu away. False when it never held.
    [[nodiscard]] bool choose(const std::string& letters, const std::function<bool()>& done);
    /// ASCII text.
    void type(const std::string& text);
    void click(HWND window, int x, int y);
    /// Drags from the middle of a window sidewards.
    void drag(HWND window, int dx);
    /// Drags from a point of a client area by so many pixels.
    void drag_from(HWND window, POINT from, int dx, int dy);
    /// Turns the wheel above a point, by so many steps away from the hand.
    void turn_wheel(HWND window, POINT at, int steps);

    /// Closes the main window by its key, again where that was lost, and waits for the end of the
    /// program, which asks for nothing before; its exit code, -1 when it does not end.
    int close();
    /// Waits for its end; its exit code, -1 when it does not end.
    int wait_for_end();
    /// Whether keys go to the main window: no box and no other program is in front of it.
    [[nodiscard]] bool takes_input() const;

private:
    void settle();
    void move_mouse(LONG x, LONG y);
    void press(WORD code, const std::vector<WORD>& held = {});
    void leave_menus();

    std::unique_ptr<ChildProcess> process_;
    HWND frame_ = nullptr;
};
