#include "app/GWinApp.h"

#include "app/BoxRequest.h"
#include "dialogs/modality/TrueModalMaker.h"
#include "platform/AfxState.h"
#include "platform/CWnd.h"
#include "platform/HandlesUser.h"

#include <utility>

// Message boxes from any thread, and what goes on while the system runs a loop of its own: the main
// window's procedure is ours as long as the window lives.

namespace {

/// While a box shows, its loop is the system's, which tells nobody when it has nothing to do, as
/// that of a dialog or a menu does. So a mark goes into the queue, at its begin and behind each
/// message that it gets, and when it comes out with nothing behind it, the application has its idle
/// turn.
class IdleTurnsOfABox {
public:
    IdleTurnsOfABox()
    {
        if (AfxGetApp() == nullptr || AfxGetThread() != AfxGetApp())
            return;  // a worker's box
        hook_.reset(::SetWindowsHookExA(WH_MSGFILTER, &filter, nullptr, ::GetCurrentThreadId()));
        post_mark();
    }
    IdleTurnsOfABox(const IdleTurnsOfABox&) = delete;
    IdleTurnsOfABox& operator=(const IdleTurnsOfABox&) = delete;

private:
    static constexpr WPARAM kMark = 1002;  ///< Of a WM_NULL for no window.

    static void post_mark() { ::PostThreadMessageA(::GetCurrentThreadId(), WM_NULL, kMark, 0); }

    static LRESULT CALLBACK filter(int code, WPARAM wparam, LPARAM lparam)
    {
        const auto message = reinterpret_cast<MSG*>(lparam);
        if (code == MSGF_DIALOGBOX &&
            zmr::behind_barrier([message] { return take_mark(*message); }, false))
            return TRUE;
        return ::CallNextHookEx(nullptr, code, wparam, lparam);
    }

    /// Whether the message was the mark.
    static bool take_mark(MSG& message)
    {
        static bool owed = false;  // an idle turn, since a mark had messages behind it
        CWinApp& application = *AfxGetApp();
        if (message.hwnd != nullptr || message.message != WM_NULL || message.wParam != kMark) {
            if (application.IsIdleMessage(&message) || owed)
                post_mark();
            owed = false;
            return false;
        }
        // Paint requests and timers come out behind all marks and are not waited for.
        owed = HIWORD(::GetQueueStatus(QS_INPUT | QS_POSTMESSAGE)) != 0;
        if (!owed)
            application.OnIdle(0);
        return true;
    }

    zmr::OwnedHook hook_;
};

}  // namespace

LRESULT CALLBACK GWinApp::MsgBoxHook(int code, WPARAM wparam, LPARAM lparam)
{
    auto* const application = DYNAMIC_DOWNCAST(GWinApp, AfxGetApp());
    if (application != nullptr)
        application->watch_main_window();
    const LRESULT result = ::CallNextHookEx(nullptr, code, wparam, lparam);
    if (application != nullptr && application->watched_window_ != nullptr)
        ::UnhookWindowsHookEx(std::exchange(application->message_hook_, nullptr));
    return result;
}

LRESULT CALLBACK GWinApp::MsgBoxProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    auto* const application = DYNAMIC_DOWNCAST(GWinApp, AfxGetApp());
    if (application == nullptr)
        return ::DefWindowProcA(window, message, wparam, lparam);
    if (message == WM_NULL && wparam == zmr::kBoxRequest && lparam != 0) {
        auto& request = *reinterpret_cast<zmr::BoxRequest*>(lparam);
        request.result = zmr::behind_barrier(
            [&] { return application->DoMessageBox(request.text, request.type, request.help); },
            IDCANCEL);
        return 0;
    }
    if (message == WM_ENTERIDLE)
        zmr::behind_barrier([&] { return application->OnIdle(0); }, FALSE);
    const WNDPROC procedure = application->main_window_procedure_;
    if (message != WM_NCDESTROY)
        return ::CallWindowProcA(procedure, window, message, wparam, lparam);
    // The object of the window may go in here: as long as the handle is kept, no other thread looks
    // at m_pMainWnd.
    application->give_procedure_back();
    const LRESULT result = ::CallWindowProcA(procedure, window, message, wparam, lparam);
    HWND ended = window;
    application->watched_window_.compare_exchange_strong(ended, nullptr);
    return result;
}

int GWinApp::DoMessageBox(LPCTSTR text, UINT type, UINT help)
{
    if (const HWND window = main_window_of_another_thread()) {
        zmr::BoxRequest request{text, type, help};
        ::SendMessageA(window, WM_NULL, zmr::kBoxRequest, reinterpret_cast<LPARAM>(&request));
        return request.result;
    }
    const TrueModalMaker modal;
    const IdleTurnsOfABox idle_turns;
    return CWinApp::DoMessageBox(text, type, help);
}

/// Puts MsgBoxProc in front of the main window's procedure, when there is a main window that does
/// not have it yet.
void GWinApp::watch_main_window()
{
    const HWND window = CWnd::GetSafeHandle(m_pMainWnd);
    if (window == nullptr || window == watched_window_)
        return;
    leave_main_window();
    if (watched_window_ != nullptr)
        return;
    const LONG_PTR former =
        ::SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&MsgBoxProc));
    if (former == 0)
        return;
    main_window_procedure_ = reinterpret_cast<WNDPROC>(former);
    watched_window_ = window;
}

/// Gives the watched window its own procedure back. False when somebody has put one more in front.
bool GWinApp::give_procedure_back()
{
    const HWND window = watched_window_;
    if (!::IsWindow(window))
        return true;
    const LONG_PTR present = ::GetWindowLongPtrA(window, GWLP_WNDPROC);
    if (present != reinterpret_cast<LONG_PTR>(&MsgBoxProc))
        return false;
    ::SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(main_window_procedure_));
    return true;
}

/// Watches the window no more, unless somebody has put one more procedure in front.
void GWinApp::leave_main_window()
{
    if (watched_window_ != nullptr && give_procedure_back())
        watched_window_ = nullptr;
}

/// The main window, when it belongs to another thread than the calling one.
HWND GWinApp::main_window_of_another_thread() const
{
    HWND window = watched_window_;
    if (window == nullptr)
        window = CWnd::GetSafeHandle(m_pMainWnd);
    const DWORD thread = window != nullptr ? ::GetWindowThreadProcessId(window, nullptr) : 0;
    return thread != 0 && thread != ::GetCurrentThreadId() ? window : nullptr;
}
