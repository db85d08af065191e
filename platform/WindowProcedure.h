#pragma once

#include "platform/CWnd.h"

namespace zmr {

/// What the window procedure and the creation hook do to a window's object.
class WindowAccess {
public:
    static void set_former_procedure(CWnd& window, WNDPROC procedure)
    {
        window.former_procedure_ = procedure;
    }
    static void before_subclass(CWnd& window) { window.PreSubclassWindow(); }
    static LRESULT deliver(CWnd& window, const MSG& message)
    {
        return window.WindowProc(message.message, message.wParam, message.lParam);
    }
};

/// The name of the class of windows that are given none. Registered on its first use.
[[nodiscard]] LPCTSTR default_window_class();

}  // namespace zmr
