#include "platform/WindowProcedure.h"

#include "platform/AfxState.h"
#include "platform/PlatformMessages.h"
#include "platform/ThreadState.h"

#include <cassert>
#include <utility>

// The windows of ours have this one procedure, by their class or by the creation hook. Nothing that
// a handler throws passes it: between it and the next frame of ours lie frames of the system, which
// do not survive an exception.

namespace {

/// The current message for a scope. A message that is sent meanwhile has its own.
class MessageScope {
public:
    explicit MessageScope(const MSG& message)
        : state_(zmr::ThreadState::current()), former_(std::exchange(state_.last_message, message))
    {
    }
    ~MessageScope() { state_.last_message = former_; }
    MessageScope(const MessageScope&) = delete;
    MessageScope& operator=(const MessageScope&) = delete;

private:
    zmr::ThreadState& state_;
    const MSG former_;
};

/// What the system is told after a handler threw: a window that could not be made does not come to
/// be, and a paint request ends, or it would come again and again.
LRESULT answer_for_failure(HWND window, UINT message)
{
    if (message == WM_CREATE)
        return -1;
    if (message == WM_PAINT)
        ::ValidateRect(window, nullptr);
    return 0;
}

/// The system may make a window for an input method together with the first one of a thread.
bool is_of_input_method(HWND window)
{
    return (::GetClassLongPtr(window, GCL_STYLE) & CS_IME) != 0;
}

/// Makes `window` that of `object`.
void take_over(CWnd& object, HWND window)
{
    object.Attach(window);
    zmr::WindowAccess::before_subclass(object);
    const auto former = reinterpret_cast<WNDPROC>(
        ::SetWindowLongPtr(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&AfxWndProc)));
    assert(former != nullptr);
    if (former != &AfxWndProc)
        zmr::WindowAccess::set_former_procedure(object, former);
}

LRESULT CALLBACK creation_hook(int code, WPARAM wparam, LPARAM lparam)
{
    zmr::ThreadState& state = zmr::ThreadState::current();
    const HHOOK hook = state.creation_hook;
    const HWND window = reinterpret_cast<HWND>(wparam);
    if (code == HCBT_CREATEWND && state.window_in_creation != nullptr &&
        !is_of_input_method(window)) {
        // The object takes one window only; what is made inside of its handlers is others'.
        CWnd* const object = std::exchange(state.window_in_creation, nullptr);
        try {
            zmr::guarded([&] { take_over(*object, window); });
        } catch (...) {
            zmr::keep_exception();
            object->Detach();
            state.window_in_creation = object;
            return 1;  // the window is not made
        }
    }
    return ::CallNextHookEx(hook, code, wparam, lparam);
}

}  // namespace

void AfxHookWindowCreate(CWnd* window)
{
    zmr::ThreadState& state = zmr::ThreadState::current();
    if (state.creation_hook == nullptr)
        state.creation_hook =
            ::SetWindowsHookEx(WH_CBT, &creation_hook, nullptr, ::GetCurrentThreadId());
    state.window_in_creation = window;
}

BOOL AfxUnhookWindowCreate()
{
    zmr::ThreadState& state = zmr::ThreadState::current();
    if (state.creation_hook != nullptr)
        ::UnhookWindowsHookEx(std::exchange(state.creation_hook, nullptr));
    return std::exchange(state.window_in_creation, nullptr) == nullptr;
}

LRESULT AfxCallWndProc(CWnd* object, HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    const MSG packed{window, message, wparam, lparam, 0, {}};
    const MessageScope scope(packed);
    try {
        return zmr::guarded([&] { return zmr::WindowAccess::deliver(*object, packed); });
    } catch (...) {
        zmr::keep_exception();
        return answer_for_failure(window, message);
    }
}

LRESULT CALLBACK AfxWndProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    if (message == WM_QUERYAFXWNDPROC)
        return 1;
    CWnd* const object = CWnd::FromHandlePermanent(window);
    if (object == nullptr)
        return ::DefWindowProc(window, message, wparam, lparam);
    return AfxCallWndProc(object, window, message, wparam, lparam);
}
