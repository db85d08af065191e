#include "tests/app/windows/BoxAnswers.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr int kTextId = 0xFFFF;

thread_local BoxAnswers* current = nullptr;

}  // namespace

BoxAnswers::BoxAnswers(int button)
    : button_(button), hook_(::SetWindowsHookExA(WH_CBT, &hook, nullptr, ::GetCurrentThreadId()))
{
    current = this;
}

BoxAnswers::~BoxAnswers()
{
    current = nullptr;
}

LRESULT CALLBACK BoxAnswers::hook(int code, WPARAM wparam, LPARAM lparam)
{
    const HWND window = reinterpret_cast<HWND>(wparam);
    char name[16] = "";
    // Behind a box the window below it comes to the front, which may be another thread's box.
    if (code == HCBT_ACTIVATE && current != nullptr &&
        ::GetWindowThreadProcessId(window, nullptr) == ::GetCurrentThreadId() &&
        std::ranges::find(current->met_, window) == current->met_.end() &&
        ::GetClassNameA(window, name, sizeof name) > 0 && std::strcmp(name, "#32770") == 0) {
        current->met_.push_back(window);
        current->meet(window);
    }
    if (code == HCBT_DESTROYWND && current != nullptr)
        std::erase(current->met_, window);
    return ::CallNextHookEx(nullptr, code, wparam, lparam);
}

void BoxAnswers::meet(HWND box)
{
    char text[1024] = "";
    ::GetDlgItemTextA(box, kTextId, text, sizeof text);
    texts.emplace_back(text);
    if (in_front)
        in_front(box);
    if (press)
        press_button(box, button_);
}

void press_button(HWND box, int button)
{
    ::PostMessageA(box, WM_COMMAND, static_cast<WPARAM>(button), 0);
}
