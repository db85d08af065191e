#pragma once

#include "platform/Windows.h"

#include <functional>
#include <string>
#include <thread>
#include <vector>

/// What a person sees of a message box.
struct ShownBox {
    std::string caption;
    std::string text;
    std::vector<int> buttons;  ///< Their ids, from left to right.
    int default_button = 0;    ///< The id of the one that has the focus.
    HICON icon = nullptr;
};

/// Waits on a thread of its own for this process to show a message box, reads it, and answers it.
/// Made before the call that shows the box.
class BoxReader {
public:
    /// `answer` is called with the box on the reader's thread once it is in front.
    explicit BoxReader(std::function<void(HWND box)> answer);
    /// What was shown, when the box has been answered. No buttons when none came in ten seconds.
    [[nodiscard]] ShownBox shown();

private:
    void run();

    std::function<void(HWND)> answer_;
    ShownBox shown_;
    std::jthread thread_;
};

/// Answers with a button, by its command.
[[nodiscard]] std::function<void(HWND)> press(int id);
/// Answers with a key of the keyboard.
[[nodiscard]] std::function<void(HWND)> strike(WORD key);
/// Answers with a click of the mouse on a button.
[[nodiscard]] std::function<void(HWND)> click(int id);
