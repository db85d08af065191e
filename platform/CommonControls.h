#pragma once

#include "platform/CWnd.h"

#include <commctrl.h>

namespace zmr {

/// Makes the window classes of the common controls known. The first call does it; later ones cost
/// a look-up.
ZMR_GV_API void load_common_controls();

/// What a pointer is as a message's second parameter.
[[nodiscard]] inline LPARAM lparam_of(const void* pointer)
{
    return reinterpret_cast<LPARAM>(pointer);
}

/// Sends the control a message whose answer is a number, and throws on what a handler threw.
inline int ask(const CWnd& control, UINT message, WPARAM wparam = 0, LPARAM lparam = 0)
{
    return static_cast<int>(control.SendMessage(message, wparam, lparam));
}
/// As ask, for a message whose answer is a handle.
template <class Handle>
[[nodiscard]] Handle ask_for(const CWnd& control, UINT message, WPARAM wparam = 0,
                             LPARAM lparam = 0)
{
    return reinterpret_cast<Handle>(control.SendMessage(message, wparam, lparam));
}
/// The window as a control of the class; null for null. Classes of controls add calls and nothing
/// else, so that a temporary object of another one serves as well.
template <class Control>
[[nodiscard]] Control* control_of(HWND window)
{
    return static_cast<Control*>(CWnd::FromHandle(window));
}
/// A number as a message's first parameter; negative ones keep their meaning as 32-bit numbers.
[[nodiscard]] inline WPARAM wparam_of(int number)
{
    return static_cast<WPARAM>(static_cast<INT_PTR>(number));
}

}  // namespace zmr
