#include "platform/CCmdUI.h"

#include "platform/CMenu.h"
#include "platform/CWnd.h"

namespace {

constexpr UINT kNoCommand = 0xFFFF;  // the id of controls that nobody tells apart

/// Changes one property of a menu item.
void set_item(const CCmdUI& state, MENUITEMINFO& info)
{
    info.cbSize = sizeof info;
    ::SetMenuItemInfo(state.m_pMenu->m_hMenu, state.m_nIndex, TRUE, &info);
}

bool is_button(HWND window)
{
    return (::SendMessage(window, WM_GETDLGCODE, 0, 0) & DLGC_BUTTON) != 0;
}

}  // namespace

void CCmdUI::Enable(BOOL on)
{
    m_bEnableChanged = TRUE;
    if (m_pMenu != nullptr) {
        if (m_pSubMenu != nullptr)
            return;  // the state of its first command is not the popup's
        const UINT how = on ? MF_ENABLED : MF_DISABLED | MF_GRAYED;
        ::EnableMenuItem(m_pMenu->m_hMenu, m_nIndex, MF_BYPOSITION | how);
        return;
    }
    if (m_pOther == nullptr)
        return;
    // A disabled window would keep the focus, and the keyboard would be dead.
    if (!on && ::GetFocus() == m_pOther->m_hWnd)
        ::SendMessage(::GetParent(m_pOther->m_hWnd), WM_NEXTDLGCTL, 0, 0);
    if ((m_pOther->IsWindowEnabled() != FALSE) != (on != FALSE))
        m_pOther->EnableWindow(on);
}

void CCmdUI::SetCheck(int check)
{
    if (m_pMenu != nullptr) {
        if (m_pSubMenu == nullptr)
            ::CheckMenuItem(m_pMenu->m_hMenu, m_nIndex,
                            MF_BYPOSITION | (check != 0 ? MF_CHECKED : MF_UNCHECKED));
        return;
    }
    if (m_pOther != nullptr && is_button(m_pOther->m_hWnd))
        m_pOther->SendMessage(BM_SETCHECK, static_cast<WPARAM>(check));
}

void CCmdUI::SetRadio(BOOL on)
{
    SetCheck(on ? 1 : 0);
    if (m_pMenu == nullptr || m_pSubMenu != nullptr)
        return;
    MENUITEMINFO info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_FTYPE;
    if (!::GetMenuItemInfo(m_pMenu->m_hMenu, m_nIndex, TRUE, &info) ||
        (info.fType & MFT_RADIOCHECK) != 0)
        return;
    info.fType |= MFT_RADIOCHECK;
    set_item(*this, info);
}

void CCmdUI::SetText(LPCTSTR text)
{
    if (m_pMenu != nullptr) {
        if (m_pSubMenu != nullptr)
            return;
        MENUITEMINFO info{};
        info.fMask = MIIM_STRING;
        info.dwTypeData = const_cast<LPSTR>(text);
        set_item(*this, info);
        return;
    }
    if (m_pOther != nullptr)
        AfxSetWindowText(m_pOther->m_hWnd, text);
}

BOOL CCmdUI::DoUpdate(CCmdTarget* target, BOOL disable_if_no_handler)
{
    if (m_nID == 0 || LOWORD(m_nID) == kNoCommand)
        return TRUE;
    m_bEnableChanged = FALSE;
    const BOOL updated =
        target->OnCmdMsg(m_nID, static_cast<int>(CN_UPDATE_COMMAND_UI), this, nullptr);
    if (disable_if_no_handler && !m_bEnableChanged) {
        AFX_CMDHANDLERINFO info;
        Enable(target->OnCmdMsg(m_nID, static_cast<int>(CN_COMMAND), this, &info));
    }
    return updated;
}
