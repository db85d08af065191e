#include "platform/AfxState.h"
#include "platform/CFrameWnd.h"
#include "platform/CWinApp.h"
#include "platform/HelpMode.h"

#include <windowsx.h>

// How a frame is asked for help: by the help key, and by pointing at things in help mode.

namespace {

CFrameWnd* frame_of(HWND window)
{
    return DYNAMIC_DOWNCAST(CFrameWnd, CWnd::FromHandlePermanent(window));
}

void show_help_cursor()
{
    ::SetCursor(::LoadCursor(nullptr, IDC_HELP));
}

/// Has the window below the mouse choose the cursor, as a move of the mouse would.
void show_usual_cursor()
{
    POINT place{};
    ::GetCursorPos(&place);
    const HWND window = ::WindowFromPoint(place);
    if (window == nullptr || ::GetWindowThreadProcessId(window, nullptr) != ::GetCurrentThreadId())
        return;
    const LRESULT hit = ::SendMessage(window, WM_NCHITTEST, 0, MAKELPARAM(place.x, place.y));
    ::SendMessage(window, WM_SETCURSOR, reinterpret_cast<WPARAM>(window),
                  MAKELPARAM(hit, WM_MOUSEMOVE));
}

/// The innermost window of this thread at a place of the screen, disabled ones too; null when
/// another program's lies there.
HWND window_at(POINT place)
{
    HWND window = ::WindowFromPoint(place);
    if (window == nullptr || ::GetWindowThreadProcessId(window, nullptr) != ::GetCurrentThreadId())
        return nullptr;
    for (;;) {
        POINT inside = place;
        ::ScreenToClient(window, &inside);
        const HWND child = ::ChildWindowFromPointEx(window, inside, CWP_SKIPINVISIBLE);
        if (child == nullptr || child == window)
            return window;
        window = child;
    }
}

/// The topic of what lies at a place of the screen: the window's own answer, else that of the
/// nearest above it that has one. 0 when none has.
LPARAM topic_at(HWND window, POINT place)
{
    for (; window != nullptr; window = ::GetParent(window)) {
        POINT inside = place;
        ::ScreenToClient(window, &inside);
        const LRESULT topic =
            ::SendMessage(window, WM_HELPHITTEST, 0, MAKELPARAM(inside.x, inside.y));
        zmr::rethrow_pending();
        if (topic != 0)
            return topic;
    }
    return 0;
}

/// Offers WM_COMMANDHELP to a window and those above it. True when one answered.
bool ask_upwards(HWND window, LPARAM topic)
{
    for (; window != nullptr; window = ::GetParent(window)) {
        const LRESULT answered = ::SendMessage(window, WM_COMMANDHELP, 0, topic);
        zmr::rethrow_pending();
        if (answered != 0)
            return true;
    }
    return false;
}

/// Idle turns while there is nothing to do, then sleep until there is.
void wait_for_message(CWinThread& thread)
{
    const auto queue_is_empty = [] {
        MSG message;
        return ::PeekMessage(&message, nullptr, 0, 0, PM_NOREMOVE) == FALSE;
    };
    for (LONG count = 0; queue_is_empty() && thread.OnIdle(count); ++count) {
    }
    if (queue_is_empty())
        ::MsgWaitForMultipleObjectsEx(0, nullptr, INFINITE, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
}

/// Ends help mode however its loop is left, if only because the window has gone.
class HelpModeEnd {
public:
    explicit HelpModeEnd(HWND frame) : frame_(frame) {}
    ~HelpModeEnd()
    {
        if (CFrameWnd* const frame = frame_of(frame_))
            frame->ExitHelpMode();
        if (CWinApp* const application = AfxGetApp())
            application->m_bHelpMode = FALSE;
        show_usual_cursor();
    }
    HelpModeEnd(const HelpModeEnd&) = delete;
    HelpModeEnd& operator=(const HelpModeEnd&) = delete;

private:
    HWND frame_;
};

}  // namespace

LRESULT CFrameWnd::OnHelpHitTest(WPARAM, LPARAM)
{
    return m_nIDHelp != 0 ? static_cast<LRESULT>(HID_BASE_RESOURCE + m_nIDHelp) : 0;
}

BOOL CFrameWnd::OnHelpInfo(HELPINFO* help)
{
    AFX_CMDHANDLERINFO info;
    // The system tells of the key whatever is held with it, behind the key's own message: with
    // Shift it has turned help mode on or off already.
    const bool in_menu = help != nullptr && help->iContextType == HELPINFO_MENUITEM;
    const bool of_help_mode =
        m_bHelpMode || (::GetKeyState(VK_SHIFT) < 0 &&
                        OnCmdMsg(ID_CONTEXT_HELP, static_cast<int>(CN_COMMAND), nullptr, &info));
    if (of_help_mode && !in_menu)
        return TRUE;
    if (OnCmdMsg(ID_HELP, static_cast<int>(CN_COMMAND), nullptr, &info))
        SendMessage(WM_COMMAND, ID_HELP);
    else
        OnHelp();
    return TRUE;
}

bool CFrameWnd::is_on_choice() const
{
    return m_nIDTracking != AFX_IDS_IDLEMESSAGE && m_nIDTracking != AFX_IDS_HELPMODEMESSAGE &&
           m_nIDTracking != 0;
}

void CFrameWnd::OnHelp()
{
    const CWinApp* const application = AfxGetApp();
    if (application != nullptr && application->m_dwPromptContext != 0) {
        // That of the box which says that there is no help would only open it again.
        if (application->m_dwPromptContext != HID_BASE_PROMPT + AFX_IDP_FAILED_TO_LAUNCH_HELP)
            WinHelp(application->m_dwPromptContext, HELP_CONTEXT);
        return;
    }
    HWND window = is_on_choice() ? m_hWnd : ::GetFocus();
    if (window == nullptr)
        window = ::GetLastActivePopup(m_hWnd);
    if (!ask_upwards(window, 0))
        SendMessage(WM_COMMAND, ID_DEFAULT_HELP);
}

void CFrameWnd::OnHelpIndex()
{
    WinHelp(0, HELP_INDEX);
}

void CFrameWnd::OnHelpFinder()
{
    WinHelp(0, HELP_FINDER);
}

void CFrameWnd::OnHelpUsing()
{
    WinHelp(0, HELP_HELPONHELP);
}

LRESULT CFrameWnd::OnCommandHelp(WPARAM, LPARAM context)
{
    if (context == 0) {
        // Of the choice that the menu stands on, else of the frame.
        if (is_on_choice())
            context = static_cast<LPARAM>(HID_BASE_COMMAND + m_nIDTracking);
        else if (m_nIDHelp != 0)
            context = static_cast<LPARAM>(HID_BASE_RESOURCE + m_nIDHelp);
    }
    if (context == 0)
        return FALSE;
    ExitHelpMode();
    WinHelp(static_cast<DWORD_PTR>(context), HELP_CONTEXT);
    return TRUE;
}

LRESULT CFrameWnd::OnExitHelpMode(WPARAM, LPARAM)
{
    ExitHelpMode();
    return 0;
}

BOOL CFrameWnd::CanEnterHelpMode() const
{
    const CWinApp* const application = AfxGetApp();
    return application != nullptr && AfxGetThread() != nullptr && !application->m_bHelpMode &&
           !m_bHelpMode && m_hWnd != nullptr && IsWindowEnabled();
}

void CFrameWnd::OnContextHelp()
{
    if (!CanEnterHelpMode())
        return;
    const HelpModeEnd ending(m_hWnd);
    m_bHelpMode = TRUE;
    AfxGetApp()->m_bHelpMode = TRUE;
    SendMessage(WM_SETMESSAGESTRING, AFX_IDS_HELPMODEMESSAGE);
    run_help_mode();
}

void CFrameWnd::run_help_mode()
{
    CWinThread& thread = *AfxGetThread();
    const HWND window = m_hWnd;
    show_help_cursor();
    // What a message does may be the end of the window, and of this object.
    while (frame_of(window) == this && m_bHelpMode) {
        // Menus and others take the capture and do not give it back.
        if (::GetCapture() != window)
            SetCapture();
        MSG message;
        if (!::PeekMessage(&message, nullptr, 0, 0, PM_REMOVE)) {
            wait_for_message(thread);
            continue;
        }
        if (message.message == WM_QUIT) {
            ::PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        const bool shift = ::GetKeyState(VK_SHIFT) < 0;
        switch (zmr::help_mode_step(message.message, message.wParam, shift)) {
            case zmr::HelpModeStep::Pass:
                // The system translates no key into a command while the mouse is captured.
                if (message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST)
                    ::ReleaseCapture();
                if (!thread.PreTranslateMessage(&message)) {
                    ::TranslateMessage(&message);
                    ::DispatchMessage(&message);
                }
                zmr::rethrow_pending();
                break;
            case zmr::HelpModeStep::Drop:
                break;
            case zmr::HelpModeStep::Point:
                show_help_cursor();
                break;
            case zmr::HelpModeStep::Ask:
                ask_about(message.pt);
                break;
            case zmr::HelpModeStep::Leave:
                return;
        }
    }
}

void CFrameWnd::ask_about(CPoint place)
{
    const HWND window = window_at(place);
    if (window == nullptr) {  // another program's
        ExitHelpMode();
        return;
    }
    const LPARAM where = MAKELPARAM(place.x, place.y);
    const LRESULT hit = ::SendMessage(window, WM_NCHITTEST, 0, where);
    const zmr::HelpArea area = zmr::help_area(static_cast<int>(hit));
    if (area.opens_menu) {
        ::ReleaseCapture();
        ::SendMessage(window, WM_NCLBUTTONDOWN, static_cast<WPARAM>(hit), where);
        zmr::rethrow_pending();
        return;
    }
    const LPARAM topic =
        area.context != 0 ? static_cast<LPARAM>(area.context) : topic_at(window, place);
    if (topic == 0) {
        ::MessageBeep(MB_OK);  // and the mode goes on
        return;
    }
    ExitHelpMode();
    if (!ask_upwards(window, topic))
        SendMessage(WM_COMMAND, ID_DEFAULT_HELP);
}

void CFrameWnd::ExitHelpMode()
{
    if (!m_bHelpMode)
        return;
    m_bHelpMode = FALSE;
    if (CWinApp* const application = AfxGetApp())
        application->m_bHelpMode = FALSE;
    if (::GetCapture() == m_hWnd)
        ::ReleaseCapture();
    PostMessage(WM_POPMESSAGESTRING, AFX_IDS_IDLEMESSAGE);
}

void CFrameWnd::OnCancelMode()
{
    ExitHelpMode();
    CWnd::OnCancelMode();
}
