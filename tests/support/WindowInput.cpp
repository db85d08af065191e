#include "tests/support/WindowInput.h"

#include "platform/AfxState.h"
#include "platform/CRect.h"
#include "platform/CWinThread.h"

#include <atomic>
#include <thread>
#include <utility>

namespace {

constexpr ULONGLONG kLimitMs = 10'000;
constexpr ULONGLONG kSettleMs = 1'000;
constexpr DWORD kTurnMs = 5;  // between two questions whether a condition holds

void send_mouse(DWORD flags, LONG x = 0, LONG y = 0)
{
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags;
    input.mi.dx = x;
    input.mi.dy = y;
    ::SendInput(1, &input, sizeof input);
}

/// A coordinate of the screen as SendInput has it: the whole screen is 65,536 wide.
LONG absolute(LONG pixel, int metric)
{
    return (pixel * 65536 + 32768) / ::GetSystemMetrics(metric);
}

void send_move(CPoint place)
{
    send_mouse(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE, absolute(place.x, SM_CXSCREEN),
               absolute(place.y, SM_CYSCREEN));
}

/// Moves the mouse until it stays there: a window that has just come up under it makes the system
/// tell of where it was before, once more.
void bring_mouse_to(CPoint place)
{
    const ULONGLONG last = ::GetTickCount64() + kSettleMs;
    for (int looks = 0; looks < 2 && ::GetTickCount64() < last;) {
        POINT mouse{};
        if (::GetCursorPos(&mouse) && CPoint(mouse) == place) {
            ++looks;
        } else {
            send_move(place);
            looks = 0;
        }
        ::Sleep(kTurnMs);
    }
}

/// One turn of the thread's message loop, with what is in the queue.
void dispatch_messages()
{
    CWinThread* const thread = AfxGetThread();
    MSG message;
    while (::PeekMessage(&message, nullptr, 0, 0, PM_NOREMOVE)) {
        if (thread != nullptr) {
            if (!thread->PumpMessage())
                return;
        } else if (::PeekMessage(&message, nullptr, 0, 0, PM_REMOVE)) {
            ::TranslateMessage(&message);
            ::DispatchMessage(&message);
        }
    }
}

/// Ends the loops that the system runs inside of the thread: menus, moves and drags.
void cancel_loops(DWORD thread)
{
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    if (!::GetGUIThreadInfo(thread, &info))
        return;
    for (const HWND window : {info.hwndMenuOwner, info.hwndCapture, info.hwndMoveSize})
        if (window != nullptr)
            ::PostMessage(window, WM_CANCELMODE, 0, 0);
}

class SetAtEnd {
public:
    explicit SetAtEnd(std::atomic<bool>& flag) : flag_(flag) {}
    ~SetAtEnd() { flag_ = true; }
    SetAtEnd(const SetAtEnd&) = delete;
    SetAtEnd& operator=(const SetAtEnd&) = delete;

private:
    std::atomic<bool>& flag_;
};

struct Search {
    const char* class_name;
    HWND found;
};

BOOL CALLBACK take_if_visible(HWND window, LPARAM parameter)
{
    auto& search = *reinterpret_cast<Search*>(parameter);
    char name[64] = "";
    DWORD process = 0;
    ::GetWindowThreadProcessId(window, &process);
    if (process == ::GetCurrentProcessId() && ::IsWindowVisible(window) &&
        ::GetClassName(window, name, sizeof name) > 0 && ::lstrcmpi(name, search.class_name) == 0)
        search.found = window;
    return search.found == nullptr;
}

}  // namespace

WindowInput& WindowInput::mouse(DWORD flags)
{
    steps_.emplace_back([flags] { send_mouse(flags); });
    return *this;
}

WindowInput& WindowInput::move_to(CPoint place)
{
    steps_.emplace_back([place] { send_move(place); });
    return *this;
}

WindowInput& WindowInput::press_left()
{
    return mouse(MOUSEEVENTF_LEFTDOWN);
}

WindowInput& WindowInput::release_left()
{
    return mouse(MOUSEEVENTF_LEFTUP);
}

WindowInput& WindowInput::press_right()
{
    return mouse(MOUSEEVENTF_RIGHTDOWN);
}

WindowInput& WindowInput::release_right()
{
    return mouse(MOUSEEVENTF_RIGHTUP);
}

WindowInput& WindowInput::click(CPoint place)
{
    steps_.emplace_back([place] { bring_mouse_to(place); });
    return press_left().release_left();
}

WindowInput& WindowInput::double_click(CPoint place)
{
    return click(place).press_left().release_left();
}

WindowInput& WindowInput::right_click(CPoint place)
{
    steps_.emplace_back([place] { bring_mouse_to(place); });
    return press_right().release_right();
}

WindowInput& WindowInput::keyboard(WORD code, DWORD flags)
{
    steps_.emplace_back([code, flags] {
        INPUT input{};
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = code;
        input.ki.wScan = static_cast<WORD>(::MapVirtualKey(code, MAPVK_VK_TO_VSC));
        input.ki.dwFlags = flags;
        ::SendInput(1, &input, sizeof input);
    });
    return *this;
}

WindowInput& WindowInput::press_key(WORD code)
{
    return keyboard(code, 0);
}

WindowInput& WindowInput::release_key(WORD code)
{
    return keyboard(code, KEYEVENTF_KEYUP);
}

WindowInput& WindowInput::key(WORD code)
{
    return press_key(code).release_key(code);
}

WindowInput& WindowInput::type(std::string_view text)
{
    for (const char letter : text) {
        const SHORT code = ::VkKeyScan(letter);
        const bool shifted = (HIBYTE(code) & 1) != 0;
        if (shifted)
            press_key(VK_SHIFT);
        key(LOBYTE(code));
        if (shifted)
            release_key(VK_SHIFT);
    }
    return *this;
}

WindowInput& WindowInput::wait_until(std::function<bool()> condition)
{
    steps_.emplace_back([condition = std::move(condition)] {
        const ULONGLONG last = ::GetTickCount64() + kLimitMs;
        while (!condition() && ::GetTickCount64() < last)
            ::Sleep(kTurnMs);
    });
    return *this;
}

bool WindowInput::play_until(const std::function<bool()>& done)
{
    const std::vector<Step> steps = std::exchange(steps_, {});
    std::atomic<bool> played = false;
    std::atomic<bool> over = false;
    const DWORD window_thread = ::GetCurrentThreadId();
    const ULONGLONG last = ::GetTickCount64() + kLimitMs;
    std::jthread player([&] {
        for (const Step& step : steps)
            step();
        played = true;
        while (!over && ::GetTickCount64() < last)
            ::Sleep(kTurnMs);
        if (!over)
            cancel_loops(window_thread);
    });
    const SetAtEnd ending(over);  // also when a handler throws; the player is joined behind it
    while (::GetTickCount64() < last) {
        dispatch_messages();
        if (played && done())
            return true;
        ::MsgWaitForMultipleObjectsEx(0, nullptr, kTurnMs, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    }
    return false;
}

CPoint middle_of(HWND window)
{
    CRect rect;
    ::GetWindowRect(window, &rect);
    return rect.CenterPoint();
}

HWND visible_window(const char* class_name)
{
    Search search{class_name, nullptr};
    ::EnumWindows(&take_if_visible, reinterpret_cast<LPARAM>(&search));
    return search.found;
}
