#include "tests/settings/ShownBox.h"

#include "tests/support/WindowInput.h"

#include <algorithm>
#include <utility>

namespace {

constexpr ULONGLONG kLimitMs = 10'000;
constexpr DWORD kTurnMs = 5;

std::string text_of(HWND window)
{
    std::string text(4096, '\0');
    text.resize(static_cast<std::size_t>(
        ::GetWindowTextA(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

/// The box's text and icon: which ids these controls have differs between systems.
void read_statics(HWND box, ShownBox& shown)
{
    for (HWND child = ::GetWindow(box, GW_CHILD); child != nullptr;
         child = ::GetWindow(child, GW_HWNDNEXT)) {
        char name[32] = "";
        ::GetClassNameA(child, name, sizeof name);
        if (::lstrcmpiA(name, "Static") != 0)
            continue;
        if ((::GetWindowLongPtr(child, GWL_STYLE) & SS_TYPEMASK) == SS_ICON)
            shown.icon = reinterpret_cast<HICON>(::SendMessageA(child, STM_GETICON, 0, 0));
        else
            shown.text = text_of(child);
    }
}

int id_of_focus(HWND box)
{
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    if (!::GetGUIThreadInfo(::GetWindowThreadProcessId(box, nullptr), &info))
        return 0;
    return ::GetDlgCtrlID(info.hwndFocus);
}

ShownBox read(HWND box)
{
    ShownBox shown;
    shown.caption = text_of(box);
    read_statics(box, shown);
    std::vector<std::pair<LONG, int>> places;
    for (int id = IDOK; id <= IDCONTINUE; ++id) {
        const HWND button = ::GetDlgItem(box, id);
        RECT rect{};
        if (button != nullptr && ::IsWindowVisible(button) && ::GetWindowRect(button, &rect))
            places.emplace_back(rect.left, id);
    }
    std::ranges::sort(places);
    for (const auto& [left, id] : places)
        shown.buttons.push_back(id);
    shown.default_button = id_of_focus(box);
    return shown;
}

}  // namespace

BoxReader::BoxReader(std::function<void(HWND)> answer)
    : answer_(std::move(answer)), thread_([this] { run(); })
{
}

ShownBox BoxReader::shown()
{
    thread_.join();
    return std::move(shown_);
}

void BoxReader::run()
{
    const ULONGLONG last = ::GetTickCount64() + kLimitMs;
    HWND box = nullptr;
    while (box == nullptr || ::GetForegroundWindow() != box) {
        if (::GetTickCount64() >= last)
            return;
        ::Sleep(kTurnMs);
        box = visible_window("#32770");
    }
    shown_ = read(box);
    answer_(box);
    // What did not answer must not leave the test with an open box.
    while (::IsWindow(box) && ::GetTickCount64() < last)
        ::Sleep(kTurnMs);
    if (::IsWindow(box)) {
        shown_.buttons.clear();
        ::PostMessageA(box, WM_CLOSE, 0, 0);
        ::PostMessageA(box, WM_COMMAND, IDOK, 0);
    }
}

std::function<void(HWND)> press(int id)
{
    return [id](HWND box) { ::PostMessageA(box, WM_COMMAND, static_cast<WPARAM>(id), 0); };
}

std::function<void(HWND)> strike(WORD key)
{
    return [key](HWND box) {
        static_cast<void>(WindowInput().key(key).play_until([box] { return !::IsWindow(box); }));
    };
}

std::function<void(HWND)> click(int id)
{
    return [id](HWND box) {
        const HWND button = ::GetDlgItem(box, id);
        const CPoint place = middle_of(button);
        // The box has just come up under the mouse, which may be told of where it was until then.
        const auto mouse_is_there = [place] {
            POINT mouse{};
            return ::GetCursorPos(&mouse) != FALSE && CPoint(mouse) == place;
        };
        static_cast<void>(WindowInput()
                              .move_to(place)
                              .wait_until(mouse_is_there)
                              .wait_until([=] { return ::WindowFromPoint(place) == button; })
                              .click(place)
                              .play_until([box] { return !::IsWindow(box); }));
    };
}
