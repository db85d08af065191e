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
constexpr ULONGLONG kMenuMs = 1'500;
constexpr UINT kAnswerMs = 200;
constexpr DWORD kTurnMs = 5;                   // between two questions whether a condition holds
constexpr int kLooks = 3;                      // that must find the same, one behind the other
constexpr const char* kMenuWindow = "#32768";  // the system's class of popups

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

void send_key(WORD code, DWORD flags)
{
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = code;
    input.ki.wScan = static_cast<WORD>(::MapVirtualKey(code, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = flags;
    ::SendInput(1, &input, sizeof input);
}

/// Where input goes now.
struct InputPlace {
    HWND front = nullptr;
    HWND active = nullptr;
    HWND focus = nullptr;
    HWND capture = nullptr;
    HWND menu_owner = nullptr;
    DWORD loops = 0;  ///< Of the system, as a menu's.

    bool operator==(const InputPlace&) const = default;
};

InputPlace input_place()
{
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    if (!::GetGUIThreadInfo(0, &info))
        return {::GetForegroundWindow()};
    // A caret that blinks is none of them.
    const DWORD loops = info.flags & ~static_cast<DWORD>(GUI_CARETBLINKING);
    return {::GetForegroundWindow(), info.hwndActive,    info.hwndFocus,
            info.hwndCapture,        info.hwndMenuOwner, loops};
}

/// Has the thread of the window in front, if it is this program's, take what the system has for
/// it. False when it gives no answer soon.
bool front_answers()
{
    const HWND front = ::GetForegroundWindow();
    DWORD process = 0;
    if (front == nullptr || ::GetWindowThreadProcessId(front, &process) == 0 ||
        process != ::GetCurrentProcessId())
        return true;
    DWORD_PTR answer = 0;
    return ::SendMessageTimeout(front, WM_NULL, 0, 0, SMTO_NORMAL, kAnswerMs, &answer) != 0;
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

// The system below tells a program late that a window of its has come or gone. Until it has, keys
// that are held count as let go, a menu is taken away, and the mouse goes back to where it was.
void WindowInput::settle(const Player& player)
{
    const ULONGLONG last = ::GetTickCount64() + kSettleMs;
    InputPlace former = input_place();
    for (int looks = 0; looks < kLooks && !player.over && ::GetTickCount64() < last;) {
        ::Sleep(kTurnMs);
        const bool answered = front_answers();
        const InputPlace place = input_place();
        looks = answered && place == former ? looks + 1 : 0;
        former = place;
    }
}

void WindowInput::bring_mouse_to(CPoint place, const Player& player)
{
    const ULONGLONG last = ::GetTickCount64() + kSettleMs;
    send_move(place);
    for (int looks = 0; looks < kLooks && !player.over && ::GetTickCount64() < last;) {
        ::Sleep(kTurnMs);
        const bool answered = front_answers();
        POINT mouse{};
        if (!::GetCursorPos(&mouse) || CPoint(mouse) != place) {
            send_move(place);
            looks = 0;
        } else if (answered) {
            ++looks;
        }
    }
}

void WindowInput::press(WORD code, Player& player)
{
    if (player.held.empty())
        settle(player);
    for (const WORD held : player.held)
        if ((::GetAsyncKeyState(held) & 0x8000) == 0)
            send_key(held, 0);  // the system has let it go
    send_key(code, 0);
    player.held.push_back(code);
}

void WindowInput::release(WORD code, Player& player)
{
    send_key(code, KEYEVENTF_KEYUP);
    std::erase(player.held, code);
}

WindowInput& WindowInput::mouse(DWORD flags)
{
    steps_.emplace_back([flags](Player&) { send_mouse(flags); });
    return *this;
}

WindowInput& WindowInput::move_to(CPoint place)
{
    steps_.emplace_back([place](Player& player) { bring_mouse_to(place, player); });
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
    return move_to(place).press_left().release_left();
}

WindowInput& WindowInput::double_click(CPoint place)
{
    return click(place).press_left().release_left();
}

WindowInput& WindowInput::right_click(CPoint place)
{
    return move_to(place).press_right().release_right();
}

WindowInput& WindowInput::press_key(WORD code)
{
    steps_.emplace_back([code](Player& player) { press(code, player); });
    return *this;
}

WindowInput& WindowInput::release_key(WORD code)
{
    steps_.emplace_back([code](Player& player) { release(code, player); });
    return *this;
}

WindowInput& WindowInput::key(WORD code)
{
    return press_key(code).release_key(code);
}

WindowInput& WindowInput::open_menu(char letter)
{
    constexpr int kTries = 6;
    const WORD code = LOBYTE(::VkKeyScan(letter));
    steps_.emplace_back([code](Player& player) {
        const auto is_open = [] { return visible_window(kMenuWindow) != nullptr; };
        for (int tries = 0; tries < kTries && !player.over; ++tries) {
            press(VK_MENU, player);
            press(code, player);
            release(code, player);
            release(VK_MENU, player);
            const ULONGLONG last = ::GetTickCount64() + kMenuMs;
            while (!is_open() && !player.over && ::GetTickCount64() < last)
                ::Sleep(kTurnMs);
            if (is_open())
                return;
            settle(player);
            if ((input_place().loops & GUI_INMENUMODE) != 0) {  // Alt came through alone
                press(VK_ESCAPE, player);
                release(VK_ESCAPE, player);
            }
        }
    });
    return *this;
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
    steps_.emplace_back([condition = std::move(condition)](Player& player) {
        const ULONGLONG last = ::GetTickCount64() + kLimitMs;
        while (!condition() && !player.over && ::GetTickCount64() < last)
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
        Player at_play{over, {}};
        for (const Step& step : steps)
            step(at_play);
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
