#include "platform/AfxState.h"
#include "platform/CCmdUI.h"
#include "platform/CWnd.h"
#include "platform/PlatformMessages.h"
#include "platform/SizeParent.h"

// How bars and controls among a window's children are placed and brought up to date.

namespace {

constexpr UINT kNoId = 0xFFFF;

/// Whether a child's own look says that it runs a command, so that it is disabled when nobody
/// does: push buttons, but neither check boxes nor frames around groups.
bool is_push_button(HWND window)
{
    const LRESULT code = ::SendMessage(window, WM_GETDLGCODE, 0, 0);
    return (code & (DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON)) != 0;
}

}  // namespace

void AfxRepositionWindow(AFX_SIZEPARENTPARAMS* layout, HWND child, const RECT& rect)
{
    if (layout != nullptr && layout->hDWP == nullptr)
        return;
    CRect before;
    ::GetWindowRect(child, &before);
    ::MapWindowPoints(nullptr, ::GetParent(child), reinterpret_cast<LPPOINT>(&before), 2);
    if (before == CRect(rect))
        return;
    const CRect wanted(rect);
    constexpr UINT kFlags = SWP_NOZORDER | SWP_NOACTIVATE;
    if (layout != nullptr)
        layout->hDWP =
            ::DeferWindowPos(layout->hDWP, child, nullptr, static_cast<int>(rect.left),
                             static_cast<int>(rect.top), wanted.Width(), wanted.Height(), kFlags);
    else
        ::SetWindowPos(child, nullptr, static_cast<int>(rect.left), static_cast<int>(rect.top),
                       wanted.Width(), wanted.Height(), kFlags);
}

void CWnd::RepositionBars(UINT first, UINT last, UINT left_over, UINT flags, LPRECT rest,
                          LPCRECT client, BOOL stretch)
{
    constexpr int kUsualBars = 8;
    AFX_SIZEPARENTPARAMS layout;
    layout.bStretch = stretch;
    if (client != nullptr)
        layout.rect = *client;
    else
        GetClientRect(&layout.rect);
    if (flags != reposQuery)
        layout.hDWP = ::BeginDeferWindowPos(kUsualBars);

    HWND pane = nullptr;
    for (HWND child = ::GetTopWindow(m_hWnd); child != nullptr;
         child = ::GetWindow(child, GW_HWNDNEXT)) {
        const UINT id = LOWORD(::GetDlgCtrlID(child));
        if (id == left_over)
            pane = child;
        else if (id >= first && id <= last && FromHandlePermanent(child) != nullptr)
            ::SendMessage(child, WM_SIZEPARENT, 0, reinterpret_cast<LPARAM>(&layout));
    }

    if (flags == reposQuery) {
        if (stretch)
            *rest = layout.rect;
        else
            *rest = {0, 0, layout.sizeTotal.cx, layout.sizeTotal.cy};
        zmr::rethrow_pending();
        return;
    }
    if (pane != nullptr) {
        if (flags == reposExtra) {
            layout.rect.left += rest->left;
            layout.rect.top += rest->top;
            layout.rect.right -= rest->right;
            layout.rect.bottom -= rest->bottom;
        }
        AfxRepositionWindow(&layout, pane, layout.rect);
    }
    if (layout.hDWP != nullptr)
        ::EndDeferWindowPos(layout.hDWP);
    zmr::rethrow_pending();
}

void CWnd::UpdateDialogControls(CCmdTarget* target, BOOL disable_if_no_handler)
{
    CCmdUI state;
    for (HWND child = ::GetTopWindow(m_hWnd); child != nullptr;
         child = ::GetWindow(child, GW_HWNDNEXT)) {
        state.m_nID = LOWORD(::GetDlgCtrlID(child));
        if (state.m_nID == 0 || state.m_nID == kNoId)
            continue;
        state.m_pOther = FromHandle(child);
        state.m_bEnableChanged = FALSE;
        // The window's own handlers come before the target's.
        if (target != this &&
            CWnd::OnCmdMsg(state.m_nID, static_cast<int>(CN_UPDATE_COMMAND_UI), &state, nullptr))
            continue;
        state.DoUpdate(target, disable_if_no_handler && is_push_button(child));
    }
}
