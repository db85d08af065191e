#include "platform/CFrameWnd.h"

#include "platform/AfxResources.h"
#include "platform/AfxState.h"
#include "platform/CControlBar.h"
#include "platform/CWinApp.h"
#include "platform/HandlesUser.h"

#include <utility>

IMPLEMENT_DYNCREATE(CFrameWnd, CWnd)

BEGIN_MESSAGE_MAP(CFrameWnd, CWnd)
    ON_WM_DESTROY()
    ON_WM_CLOSE()
    ON_WM_QUERYENDSESSION()
    ON_WM_SIZE()
    ON_WM_ENABLE()
    ON_WM_ACTIVATE()
    ON_WM_SETFOCUS()
    ON_WM_SYSCOMMAND()
    ON_WM_INITMENUPOPUP()
    ON_WM_MENUSELECT()
    ON_WM_HELPINFO()
    ON_WM_CANCELMODE()
    ON_MESSAGE(WM_IDLEUPDATECMDUI, &CFrameWnd::OnIdleUpdateCmdUI)
    ON_MESSAGE(WM_SETMESSAGESTRING, &CFrameWnd::OnSetMessageString)
    ON_MESSAGE(WM_POPMESSAGESTRING, &CFrameWnd::OnPopMessageString)
    ON_MESSAGE(WM_HELPHITTEST, &CFrameWnd::OnHelpHitTest)
    ON_MESSAGE(WM_COMMANDHELP, &CFrameWnd::OnCommandHelp)
    ON_MESSAGE(WM_EXITHELPMODE, &CFrameWnd::OnExitHelpMode)
    ON_NOTIFY_EX_RANGE(TTN_NEEDTEXTA, 0, 0xFFFFFFFF, &CFrameWnd::OnToolTipText)
    ON_COMMAND_EX(ID_VIEW_TOOLBAR, &CFrameWnd::OnBarCheck)
    ON_COMMAND_EX(ID_VIEW_STATUS_BAR, &CFrameWnd::OnBarCheck)
    ON_UPDATE_COMMAND_UI(ID_VIEW_TOOLBAR, &CFrameWnd::OnUpdateControlBarMenu)
    ON_UPDATE_COMMAND_UI(ID_VIEW_STATUS_BAR, &CFrameWnd::OnUpdateControlBarMenu)
    ON_UPDATE_COMMAND_UI(ID_INDICATOR_CAPS, &CFrameWnd::OnUpdateKeyIndicator)
    ON_UPDATE_COMMAND_UI(ID_INDICATOR_NUM, &CFrameWnd::OnUpdateKeyIndicator)
    ON_UPDATE_COMMAND_UI(ID_INDICATOR_SCRL, &CFrameWnd::OnUpdateKeyIndicator)
END_MESSAGE_MAP()

const RECT CFrameWnd::rectDefault = {CW_USEDEFAULT, CW_USEDEFAULT, 0, 0};

namespace {

constexpr UINT kLastChildId = 0xFFFF;
const auto kWindowBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);

/// True when `window` is owned by `owner`, directly or through others.
bool is_owned_by(HWND window, HWND owner)
{
    for (HWND above = ::GetWindow(window, GW_OWNER); above != nullptr;
         above = ::GetWindow(above, GW_OWNER))
        if (above == owner)
            return true;
    return false;
}

struct OwnedWindows {
    HWND owner;
    std::vector<HWND> found;
};

BOOL CALLBACK collect_owned(HWND window, LPARAM parameter)
{
    auto& wanted = *reinterpret_cast<OwnedWindows*>(parameter);
    return zmr::behind_barrier(
        [&] {
            if (::IsWindowEnabled(window) && is_owned_by(window, wanted.owner))
                wanted.found.push_back(window);
            return TRUE;
        },
        FALSE);
}

}  // namespace

BOOL CFrameWnd::Create(LPCTSTR class_name, LPCTSTR title, DWORD style, const RECT& rect,
                       CWnd* parent, LPCTSTR menu_name, DWORD ex_style)
{
    zmr::OwnedMenu menu;
    if (menu_name != nullptr) {
        menu.reset(::LoadMenu(AfxFindResourceHandle(menu_name, RT_MENU), menu_name));
        if (!menu)
            return FALSE;
    }
    m_strTitle = title;
    const bool default_size = rect.left == CW_USEDEFAULT;
    const int width = default_size ? CW_USEDEFAULT : static_cast<int>(rect.right - rect.left);
    const int height = default_size ? CW_USEDEFAULT : static_cast<int>(rect.bottom - rect.top);
    if (!CreateEx(ex_style, class_name, title, style, static_cast<int>(rect.left),
                  static_cast<int>(rect.top), width, height, GetSafeHandle(parent), menu.get()))
        return FALSE;
    m_hMenuDefault = menu.release();  // the window's now
    return TRUE;
}

BOOL CFrameWnd::LoadFrame(UINT id, DWORD style, CWnd* parent)
{
    const LPCTSTR name = MAKEINTRESOURCE(id);
    CString text;
    CString title;
    if (text.LoadString(id))
        AfxExtractSubString(title, text, 0);
    const bool has_menu =
        ::FindResource(AfxFindResourceHandle(name, RT_MENU), name, RT_MENU) != nullptr;
    m_nIDHelp = id;
    if (!Create(GetIconWndClass(style, id), title, style, rectDefault, parent,
                has_menu ? name : nullptr))
        return FALSE;
    LoadAccelTable(name);
    return TRUE;
}

BOOL CFrameWnd::LoadAccelTable(LPCTSTR name)
{
    if (m_hAccelTable != nullptr)
        return FALSE;
    // Tables of resources stay until their module goes; nobody frees them.
    m_hAccelTable = ::LoadAccelerators(AfxFindResourceHandle(name, RT_ACCELERATOR), name);
    return m_hAccelTable != nullptr;
}

LPCTSTR CFrameWnd::GetIconWndClass(DWORD, UINT id)
{
    const LPCTSTR name = MAKEINTRESOURCE(id);
    const HICON icon = ::LoadIcon(AfxFindResourceHandle(name, RT_GROUP_ICON), name);
    if (icon == nullptr)
        return nullptr;
    return AfxRegisterWndClass(CS_DBLCLKS, ::LoadCursor(nullptr, IDC_ARROW), kWindowBackground,
                               icon);
}

BOOL CFrameWnd::PreCreateWindow(CREATESTRUCT& creation)
{
    if (creation.lpszClass == nullptr)
        creation.lpszClass =
            AfxRegisterWndClass(CS_DBLCLKS, ::LoadCursor(nullptr, IDC_ARROW), kWindowBackground);
    return CWnd::PreCreateWindow(creation);
}

void CFrameWnd::PostNcDestroy()
{
    delete this;
}

void CFrameWnd::OnDestroy()
{
    // The menu that the window has now goes with it; one that was put in its place does not.
    if (m_hMenuDefault != nullptr && ::GetMenu(m_hWnd) != m_hMenuDefault)
        ::SetMenu(m_hWnd, m_hMenuDefault);
    m_hMenuDefault = nullptr;
    CWnd::OnDestroy();
}

void CFrameWnd::OnClose()
{
    DestroyWindow();
}

BOOL CFrameWnd::OnQueryEndSession()
{
    return TRUE;
}

void CFrameWnd::ActivateFrame(int how)
{
    if (how == -1) {
        if (IsIconic())
            how = SW_RESTORE;
        else if (!IsWindowVisible())
            how = SW_SHOWNORMAL;
    }
    if (how != -1)
        ShowWindow(how);
    BringWindowToTop();
}

BOOL CFrameWnd::PreTranslateMessage(MSG* message)
{
    if (CWnd::PreTranslateMessage(message))
        return TRUE;
    if (message->message < WM_KEYFIRST || message->message > WM_KEYLAST)
        return FALSE;
    const HACCEL keys = GetDefaultAccelerator();
    if (keys == nullptr)
        return FALSE;
    const BOOL taken = ::TranslateAccelerator(m_hWnd, keys, message);
    zmr::rethrow_pending();
    return taken;
}

BOOL CFrameWnd::OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* info)
{
    if (CWnd::OnCmdMsg(id, code, extra, info))
        return TRUE;
    CWinApp* const application = AfxGetApp();
    return application != nullptr && application->OnCmdMsg(id, code, extra, info);
}

void CFrameWnd::OnActivate(UINT state, CWnd* other, BOOL minimised)
{
    if (state == WA_INACTIVE) {
        ExitHelpMode();
        const HWND focus = ::GetFocus();
        if (focus != nullptr && ::IsChild(m_hWnd, focus))
            last_focus_ = focus;
    }
    CWnd::OnActivate(state, other, minimised);
}

void CFrameWnd::OnSetFocus(CWnd* former)
{
    // Back to where it was, or to the pane, so that keys go where the user works.
    const HWND pane = ::GetDlgItem(m_hWnd, static_cast<int>(AFX_IDW_PANE_FIRST));
    const HWND wanted =
        last_focus_ != nullptr && ::IsChild(m_hWnd, last_focus_) ? last_focus_ : pane;
    if (wanted != nullptr && ::IsWindowVisible(wanted) && ::IsWindowEnabled(wanted)) {
        ::SetFocus(wanted);
        return;
    }
    CWnd::OnSetFocus(former);
}

void CFrameWnd::OnEnable(BOOL on)
{
    if (on && (m_nFlags & WF_STAYDISABLED) != 0) {
        EnableWindow(FALSE);
        return;
    }
    if (on)
        EndModalState();
    else
        BeginModalState();
    CWnd::OnEnable(on);
}

void CFrameWnd::BeginModalState()
{
    if (++m_cModalStack > 1)
        return;
    OwnedWindows windows{m_hWnd, {}};
    ::EnumThreadWindows(::GetCurrentThreadId(), &collect_owned, reinterpret_cast<LPARAM>(&windows));
    for (const HWND window : windows.found) {
        if (!::IsWindow(window) || ::SendMessage(window, WM_DISABLEMODAL, 0, 0) != 0)
            continue;
        ::EnableWindow(window, FALSE);
        disabled_.push_back(window);
    }
    zmr::rethrow_pending();
}

void CFrameWnd::EndModalState()
{
    if (m_cModalStack == 0 || --m_cModalStack > 0)
        return;
    const std::vector<HWND> windows = std::move(disabled_);
    disabled_.clear();
    for (const HWND window : windows)
        if (::IsWindow(window))
            ::EnableWindow(window, TRUE);
    zmr::rethrow_pending();
}

void CFrameWnd::OnSize(UINT kind, int width, int height)
{
    CWnd::OnSize(kind, width, height);
    if (kind != SIZE_MINIMIZED)
        RecalcLayout();
}

void CFrameWnd::RecalcLayout(BOOL)
{
    if (in_layout_ || m_hWnd == nullptr)
        return;
    in_layout_ = TRUE;
    m_nIdleFlags &= ~static_cast<UINT>(idleLayout | idleNotify);
    RepositionBars(0, kLastChildId, AFX_IDW_PANE_FIRST, reposExtra, m_rectBorder);
    in_layout_ = FALSE;
}

void CFrameWnd::DelayRecalcLayout(BOOL notify)
{
    m_nIdleFlags |= idleLayout;
    if (notify)
        m_nIdleFlags |= idleNotify;
}

CControlBar* CFrameWnd::GetControlBar(UINT id) const
{
    if (id == 0)
        return nullptr;
    for (HWND child = ::GetTopWindow(m_hWnd); child != nullptr;
         child = ::GetWindow(child, GW_HWNDNEXT)) {
        if (static_cast<UINT>(::GetDlgCtrlID(child)) != id)
            continue;
        if (CControlBar* const bar = DYNAMIC_DOWNCAST(CControlBar, FromHandlePermanent(child)))
            return bar;
    }
    return nullptr;
}

void CFrameWnd::ShowControlBar(CControlBar* bar, BOOL show, BOOL delay)
{
    bar->DelayShow(show);
    if (delay)
        DelayRecalcLayout();
    else
        RecalcLayout();
}

LRESULT CFrameWnd::OnIdleUpdateCmdUI(WPARAM, LPARAM)
{
    const UINT flags = std::exchange(m_nIdleFlags, 0);
    if ((flags & idleMenu) != 0)
        OnUpdateFrameMenu(delayed_menu_);
    if ((flags & idleLayout) != 0) {
        RecalcLayout((flags & idleNotify) != 0);
        UpdateWindow();
    }
    return 0;
}
