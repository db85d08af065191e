#include "platform/CWnd.h"

#include <cstring>
#include <string>

// What is done to a control only when it makes a difference.

namespace {

bool is_combo_box(HWND window)
{
    char name[sizeof "ComboBox"] = "";
    return window != nullptr && ::GetClassName(window, name, sizeof name) > 0 &&
           ::lstrcmpi(name, "ComboBox") == 0;
}

}  // namespace

void AfxSetWindowText(HWND control, LPCTSTR text)
{
    const std::size_t length = std::strlen(text);
    if (static_cast<std::size_t>(::GetWindowTextLength(control)) == length) {
        std::string shown(length + 1, '\0');
        shown.resize(static_cast<std::size_t>(
            ::GetWindowText(control, shown.data(), static_cast<int>(shown.size()))));
        if (shown == text)
            return;
    }
    ::SetWindowText(control, text);
}

void AfxCancelModes(HWND window)
{
    // The focus is in the box itself or, where that can be typed into, in its edit control.
    HWND focus = ::GetFocus();
    if (focus == nullptr || focus == window)
        return;
    if (!is_combo_box(focus))
        focus = ::GetParent(focus);
    if (is_combo_box(focus) && focus != window)
        ::SendMessage(focus, CB_SHOWDROPDOWN, FALSE, 0);
}
