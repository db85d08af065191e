#include "platform/AfxState.h"
#include "platform/CCmdUI.h"
#include "platform/CDC.h"
#include "platform/CMenu.h"
#include "platform/CWinApp.h"
#include "platform/CWnd.h"
#include "platform/ThreadState.h"

// How a message finds its handler: docs/platform.md.

BEGIN_MESSAGE_MAP(CWnd, CCmdTarget)
    ON_WM_NCDESTROY()
    ON_WM_CTLCOLOR()
    ON_WM_DRAWITEM()
    ON_WM_MEASUREITEM()
    ON_WM_COMPAREITEM()
    ON_WM_DELETEITEM()
    ON_WM_HSCROLL()
    ON_WM_VSCROLL()
    ON_WM_PARENTNOTIFY()
    ON_MESSAGE(WM_NOTIFYFORMAT, &CWnd::OnNotifyFormat)
END_MESSAGE_MAP()

namespace zmr::crack {

CWnd* window_of(HWND window)
{
    return CWnd::FromHandle(window);
}

CDC* dc_of(HDC dc)
{
    return CDC::FromHandle(dc);
}

CMenu* menu_of(HMENU menu)
{
    return CMenu::FromHandle(menu);
}

}  // namespace zmr::crack

namespace {

bool is_control_color(UINT message)
{
    return WM_CTLCOLORMSGBOX <= message && message <= WM_CTLCOLORSTATIC;
}

/// Whether a command may run, asked of its update handler.
class CommandTest : public CCmdUI {
public:
    void Enable(BOOL on) override
    {
        enabled_ = on != FALSE;
        m_bEnableChanged = TRUE;
    }
    void SetCheck(int) override {}
    void SetRadio(BOOL) override {}
    void SetText(LPCTSTR) override {}
    [[nodiscard]] bool enabled() const { return enabled_; }

private:
    bool enabled_ = true;
};

}  // namespace

const MSG* CWnd::GetCurrentMessage()
{
    const MSG& message = zmr::ThreadState::current().last_message;
    return message.hwnd != nullptr ? &message : nullptr;
}

LRESULT CWnd::WindowProc(UINT message, WPARAM wparam, LPARAM lparam)
{
    LRESULT result = 0;
    if (!OnWndMsg(message, wparam, lparam, &result))
        result = DefWindowProc(message, wparam, lparam);
    return result;
}

BOOL CWnd::OnWndMsg(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result)
{
    if (message == WM_COMMAND) {
        if (!OnCommand(wparam, lparam))
            return FALSE;
        *result = 0;
        return TRUE;
    }
    if (message == WM_NOTIFY) {
        LRESULT answer = 0;
        if (reinterpret_cast<const NMHDR*>(lparam)->hwndFrom == nullptr ||
            !OnNotify(wparam, lparam, &answer))
            return FALSE;
        *result = answer;
        return TRUE;
    }

    AFX_MESSAGE_CALL call;
    call.wparam = wparam;
    call.lparam = lparam;
    zmr::MessageKey key{message, 0, 0};
    if (is_control_color(message)) {
        key.message = WM_CTLCOLOR;
        call.id = message - WM_CTLCOLORMSGBOX;
    }
    const AFX_MSGMAP_ENTRY* const row = zmr::find_entry(GetMessageMap(), key);
    if (row == nullptr || !row->call(this, call))
        return FALSE;
    // A colour handler without a brush leaves the message to the system.
    if (is_control_color(message) && call.result == 0)
        return FALSE;
    *result = call.result;
    return TRUE;
}

LRESULT CWnd::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam)
{
    if (former_procedure_ != nullptr)
        return ::CallWindowProc(former_procedure_, m_hWnd, message, wparam, lparam);
    return ::DefWindowProc(m_hWnd, message, wparam, lparam);
}

LRESULT CWnd::Default()
{
    const MSG& message = zmr::ThreadState::current().last_message;
    return DefWindowProc(message.message, message.wParam, message.lParam);
}

BOOL CWnd::OnCommand(WPARAM wparam, LPARAM lparam)
{
    const UINT id = LOWORD(wparam);
    const auto control = reinterpret_cast<HWND>(lparam);
    if (control == nullptr) {  // from a menu or a key
        if (id == 0)
            return FALSE;
        // A key reaches commands that no menu shows: what is disabled must not run by it.
        CommandTest state;
        state.m_nID = id;
        OnCmdMsg(id, static_cast<int>(CN_UPDATE_COMMAND_UI), &state, nullptr);
        if (!state.enabled())
            return TRUE;
        return OnCmdMsg(id, static_cast<int>(CN_COMMAND), nullptr, nullptr);
    }
    if (ReflectLastMsg(control))
        return TRUE;
    if (id == 0)
        return FALSE;
    return OnCmdMsg(id, HIWORD(wparam), nullptr, nullptr);
}

BOOL CWnd::OnNotify(WPARAM, LPARAM lparam, LRESULT* result)
{
    const auto header = reinterpret_cast<NMHDR*>(lparam);
    if (ReflectLastMsg(header->hwndFrom, result))
        return TRUE;
    AFX_NOTIFY notify{result, header};
    // By the sender's own id: a tip's is 0, whatever tool it asks about.
    return OnCmdMsg(static_cast<UINT>(::GetDlgCtrlID(header->hwndFrom)),
                    static_cast<int>(MAKELONG(header->code, WM_NOTIFY)), &notify, nullptr);
}

BOOL CWnd::OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* info)
{
    return CCmdTarget::OnCmdMsg(id, code, extra, info);
}

BOOL CWnd::ReflectLastMsg(HWND window, LRESULT* result)
{
    CWnd* const child = FromHandlePermanent(window);
    return child != nullptr && child->SendChildNotifyLastMsg(result);
}

BOOL CWnd::SendChildNotifyLastMsg(LRESULT* result)
{
    const MSG message = zmr::ThreadState::current().last_message;
    return OnChildNotify(message.message, message.wParam, message.lParam, result);
}

BOOL CWnd::OnChildNotify(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result)
{
    return ReflectChildNotify(message, wparam, lparam, result);
}

BOOL CWnd::ReflectChildNotify(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result)
{
    zmr::MessageKey key{message + WM_REFLECT_BASE, 0, 0};
    AFX_MESSAGE_CALL call;
    call.wparam = wparam;
    call.lparam = lparam;
    if (message == WM_COMMAND) {
        key.code = HIWORD(wparam);
    } else if (message == WM_NOTIFY) {
        call.header = reinterpret_cast<NMHDR*>(lparam);
        // Codes are 32 bits wide in the header, and 16 on a command's route.
        key.code =
            static_cast<UINT>(static_cast<int>(static_cast<short>(LOWORD(call.header->code))));
    } else if (is_control_color(message)) {
        key.message = WM_CTLCOLOR + WM_REFLECT_BASE;
        call.id = message - WM_CTLCOLORMSGBOX;
    }
    const AFX_MSGMAP_ENTRY* const row = zmr::find_entry(GetMessageMap(), key);
    if (row == nullptr || !row->call(this, call))
        return FALSE;
    if (is_control_color(message) && call.result == 0)
        return FALSE;
    if (result != nullptr)
        *result = call.result;
    return TRUE;
}

HBRUSH CWnd::OnCtlColor(CDC*, CWnd* control, UINT)
{
    LRESULT brush = 0;
    if (control != nullptr && ReflectLastMsg(control->m_hWnd, &brush))
        return reinterpret_cast<HBRUSH>(brush);
    return reinterpret_cast<HBRUSH>(Default());
}

void CWnd::OnDrawItem(int, LPDRAWITEMSTRUCT item)
{
    if (item->CtlType == ODT_MENU) {
        if (CMenu* const menu = CMenu::FromHandlePermanent(reinterpret_cast<HMENU>(item->hwndItem)))
            menu->DrawItem(item);
        return;
    }
    if (!ReflectLastMsg(item->hwndItem))
        Default();
}

void CWnd::OnMeasureItem(int, LPMEASUREITEMSTRUCT item)
{
    if (item->CtlType == ODT_MENU) {
        // The record does not name the menu.
        if (CMenu* const menu = CMenu::FromOwnerDrawnItem(item->itemID))
            menu->MeasureItem(item);
        return;
    }
    CWnd* const child = GetDescendantWindow(static_cast<int>(item->CtlID), TRUE);
    if (child == nullptr || !child->SendChildNotifyLastMsg())
        Default();
}

int CWnd::OnCompareItem(int, LPCOMPAREITEMSTRUCT items)
{
    LRESULT result = 0;
    if (ReflectLastMsg(items->hwndItem, &result))
        return static_cast<int>(result);
    return static_cast<int>(Default());
}

void CWnd::OnDeleteItem(int, LPDELETEITEMSTRUCT item)
{
    if (!ReflectLastMsg(item->hwndItem))
        Default();
}

void CWnd::OnHScroll(UINT, UINT, CWnd* bar)
{
    if (bar == nullptr || !bar->SendChildNotifyLastMsg())
        Default();
}

void CWnd::OnVScroll(UINT, UINT, CWnd* bar)
{
    if (bar == nullptr || !bar->SendChildNotifyLastMsg())
        Default();
}

void CWnd::OnParentNotify(UINT message, LPARAM lparam)
{
    if ((LOWORD(message) == WM_CREATE || LOWORD(message) == WM_DESTROY) &&
        ReflectLastMsg(reinterpret_cast<HWND>(lparam)))
        return;
    Default();
}

LRESULT CWnd::OnNotifyFormat(WPARAM, LPARAM)
{
    return NFR_ANSI;  // every window of ours is made by the narrow functions
}
