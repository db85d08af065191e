#pragma once

#include "platform/HandlesUser.h"

#include <functional>
#include <string>
#include <vector>

/// Presses a button of each message box that the calling thread shows, as soon as it is in front.
/// One at a time for a thread.
class BoxAnswers {
public:
    explicit BoxAnswers(int button = IDOK);
    ~BoxAnswers();
    BoxAnswers(const BoxAnswers&) = delete;
    BoxAnswers& operator=(const BoxAnswers&) = delete;

    std::vector<std::string> texts;          ///< Of the boxes until now.
    std::function<void(HWND box)> in_front;  ///< Called before the button is pressed, if any.
    /// False: `in_front` sees to the end of the box.
    bool press = true;

private:
    static LRESULT CALLBACK hook(int code, WPARAM wparam, LPARAM lparam);
    void meet(HWND box);

    int button_;
    std::vector<HWND> met_;  ///< One comes to the front again behind another.
    zmr::OwnedHook hook_;
};

/// Presses a button of a box, from any thread.
void press_button(HWND box, int button);
