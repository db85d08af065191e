#include "platform/CCmdUI.h"
#include "platform/CControlBar.h"
#include "platform/CFrameWnd.h"
#include "platform/CMenu.h"
#include "platform/HelpMode.h"
#include "platform/PopupWalk.h"
#include "platform/PromptText.h"
#include "platform/ThreadState.h"

#include <algorithm>

// What a frame does about commands: menus that open, texts in the message bar, tips.

namespace {

constexpr UINT kFirstSystemId = 0xF000;  // from here on the system enables items itself
constexpr UINT kNoItem = 0xFFFFFFFF;     // the id of an item that opens a popup

/// The menu that has `popup` as one of its own popups; null when neither `menu` nor its popups do.
HMENU parent_of_popup(HMENU menu, HMENU popup)
{
    const int count = menu != nullptr ? ::GetMenuItemCount(menu) : 0;
    for (int i = 0; i < count; ++i) {
        const HMENU below = ::GetSubMenu(menu, i);
        if (below == popup)
            return menu;
        if (below != nullptr)
            if (const HMENU found = parent_of_popup(below, popup))
                return found;
    }
    return nullptr;
}

}  // namespace

BOOL CFrameWnd::OnCommand(WPARAM wparam, LPARAM lparam)
{
    // In help mode a choice asks about itself.
    if (m_bHelpMode && lparam == 0 && LOWORD(wparam) != ID_HELP &&
        LOWORD(wparam) != ID_DEFAULT_HELP && LOWORD(wparam) != ID_CONTEXT_HELP) {
        if (SendMessage(WM_COMMANDHELP, 0,
                        static_cast<LPARAM>(HID_BASE_COMMAND + LOWORD(wparam))) == 0)
            SendMessage(WM_COMMAND, ID_DEFAULT_HELP);
        return TRUE;
    }
    return CWnd::OnCommand(wparam, lparam);
}

void CFrameWnd::OnSysCommand(UINT command, LPARAM lparam)
{
    if (m_bHelpMode && zmr::asks_in_help_mode(command)) {
        const UINT text = zmr::prompt_id_of_choice(command, 0);
        SendMessage(WM_COMMANDHELP, 0, static_cast<LPARAM>(HID_BASE_COMMAND + text));
        return;
    }
    CWnd::OnSysCommand(command, lparam);
}

void CFrameWnd::OnInitMenuPopup(CMenu* menu, UINT index, BOOL system_menu)
{
    CWnd::OnInitMenuPopup(menu, index, system_menu);
    AfxCancelModes(m_hWnd);
    if (!system_menu)
        update_popup(menu);
}

void CFrameWnd::update_popup(CMenu* menu)
{
    CCmdUI state;
    state.m_pMenu = menu;
    const HMENU tracked = zmr::ThreadState::current().tracked_menu;
    if (tracked == menu->m_hMenu) {
        state.m_pParentMenu = menu;  // a popup by itself has no other
    } else {
        const CFrameWnd* const top = GetTopLevelFrame();
        HMENU parent = parent_of_popup(tracked, menu->m_hMenu);
        if (parent == nullptr && top != nullptr)
            parent = parent_of_popup(::GetMenu(top->m_hWnd), menu->m_hMenu);
        state.m_pParentMenu = CMenu::FromHandle(parent);
    }

    const auto id_at = [menu](UINT item) { return menu->GetMenuItemID(static_cast<int>(item)); };
    const auto count = [menu] { return static_cast<UINT>(std::max(menu->GetMenuItemCount(), 0)); };
    zmr::PopupWalk walk{0, count()};
    while (walk.index < walk.count) {
        state.m_nIndex = walk.index;
        state.m_nIndexMax = walk.count;
        state.m_nID = id_at(walk.index);
        state.m_pSubMenu = nullptr;
        state.m_bEnableChanged = FALSE;
        BOOL disable = m_bAutoMenuEnable && state.m_nID < kFirstSystemId;
        if (state.m_nID == kNoItem) {
            // A popup is brought up to date as its first command is, and never disabled for want
            // of a handler.
            state.m_pSubMenu = menu->GetSubMenu(static_cast<int>(walk.index));
            state.m_nID = state.m_pSubMenu != nullptr ? state.m_pSubMenu->GetMenuItemID(0) : 0;
            if (state.m_nID == kNoItem)
                state.m_nID = 0;
            disable = FALSE;
        }
        if (state.m_nID != 0)
            state.DoUpdate(this, disable);
        walk = zmr::next_item(walk, state.m_nID, count(), id_at);
    }
}

void CFrameWnd::OnMenuSelect(UINT item, UINT flags, HMENU menu)
{
    CWnd::OnMenuSelect(item, flags, menu);
    if (zmr::menu_was_closed(flags, menu != nullptr))
        m_nIDTracking = m_bHelpMode ? AFX_IDS_HELPMODEMESSAGE : AFX_IDS_IDLEMESSAGE;
    else
        m_nIDTracking = zmr::prompt_id_of_choice(item, flags);
    show_prompt_of_tracking();
}

void CFrameWnd::show_prompt_of_tracking()
{
    if (m_nIDTracking != m_nIDLastMessage)
        SendMessage(WM_SETMESSAGESTRING, m_nIDTracking);
}

CWnd* CFrameWnd::GetMessageBar()
{
    return GetDescendantWindow(static_cast<int>(AFX_IDW_STATUS_BAR), TRUE);
}

void CFrameWnd::GetMessageString(UINT id, CString& text) const
{
    CString whole;
    whole.LoadString(id);
    text = CString(zmr::prompt_of(whole.view()));
}

void CFrameWnd::SetMessageText(LPCTSTR text)
{
    SendMessage(WM_SETMESSAGESTRING, 0, reinterpret_cast<LPARAM>(text));
}

void CFrameWnd::SetMessageText(UINT id)
{
    SendMessage(WM_SETMESSAGESTRING, id);
}

LRESULT CFrameWnd::OnSetMessageString(WPARAM id, LPARAM text)
{
    const UINT former = m_nIDLastMessage;
    if (CWnd* const bar = GetMessageBar()) {
        CString shown;
        if (text != 0)
            shown = reinterpret_cast<LPCTSTR>(text);
        else if (id != 0)
            GetMessageString(static_cast<UINT>(id), shown);
        bar->SetWindowText(shown);
        // The bar belongs to the frame that has it, which may be above this one.
        CFrameWnd* const frame = bar->GetParentFrame();
        if (frame != nullptr && frame != this) {
            frame->m_nIDLastMessage = static_cast<UINT>(id);
            frame->m_nIDTracking = static_cast<UINT>(id);
        }
    }
    m_nIDLastMessage = static_cast<UINT>(id);
    m_nIDTracking = static_cast<UINT>(id);
    return static_cast<LRESULT>(former);
}

LRESULT CFrameWnd::OnPopMessageString(WPARAM id, LPARAM text)
{
    return SendMessage(WM_SETMESSAGESTRING, id, text);
}

void CFrameWnd::OnUpdateFrameMenu(HMENU menu)
{
    const HMENU wanted = menu != nullptr ? menu : m_hMenuDefault;
    if (::GetMenu(m_hWnd) != wanted)
        ::SetMenu(m_hWnd, wanted);
}

void CFrameWnd::DelayUpdateFrameMenu(HMENU menu)
{
    delayed_menu_ = menu;
    m_nIdleFlags |= idleMenu;
}

BOOL CFrameWnd::OnToolTipText(UINT, NMHDR* header, LRESULT* result)
{
    auto* const wanted = reinterpret_cast<NMTTDISPINFOA*>(header);
    UINT_PTR id = header->idFrom;
    if ((wanted->uFlags & TTF_IDISHWND) != 0)
        id = static_cast<UINT_PTR>(LOWORD(::GetDlgCtrlID(reinterpret_cast<HWND>(id))));
    if (id == 0)
        return FALSE;
    CString text;
    text.LoadString(static_cast<UINT>(id));
    tip_text_ = CString(zmr::tip_of(text.view()));
    wanted->lpszText = const_cast<LPSTR>(tip_text_.GetString());
    *result = 0;
    return TRUE;
}

BOOL CFrameWnd::OnBarCheck(UINT id)
{
    CControlBar* const bar = GetControlBar(id);
    if (bar == nullptr)
        return FALSE;
    ShowControlBar(bar, !bar->IsVisible(), FALSE);
    return TRUE;
}

void CFrameWnd::OnUpdateControlBarMenu(CCmdUI* state)
{
    const CControlBar* const bar = GetControlBar(state->m_nID);
    if (bar == nullptr) {
        state->ContinueRouting();
        return;
    }
    state->SetCheck(bar->IsVisible());
}

void CFrameWnd::OnUpdateKeyIndicator(CCmdUI* state)
{
    int key = VK_SCROLL;
    if (state->m_nID == ID_INDICATOR_CAPS)
        key = VK_CAPITAL;
    else if (state->m_nID == ID_INDICATOR_NUM)
        key = VK_NUMLOCK;
    state->Enable(::GetKeyState(key) & 1);
}
