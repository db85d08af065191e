#include "platform/AfxState.h"
#include "platform/CDC.h"
#include "platform/CFont.h"
#include "platform/CFrameWnd.h"
#include "platform/CMenu.h"
#include "platform/CWinApp.h"
#include "platform/CWnd.h"

CWnd* CWnd::SetParent(CWnd* parent)
{
    return FromHandle(::SetParent(m_hWnd, parent != nullptr ? parent->m_hWnd : nullptr));
}

CWnd* CWnd::GetOwner() const
{
    return owner_ != nullptr ? FromHandle(owner_) : GetParent();
}

void CWnd::SetOwner(CWnd* owner)
{
    owner_ = owner != nullptr ? owner->m_hWnd : nullptr;
}

CWnd* CWnd::GetDescendantWindow(int id, BOOL only_permanent) const
{
    if (const HWND child = ::GetDlgItem(m_hWnd, id)) {
        if (::GetTopWindow(child) != nullptr) {  // a window of that id may be deeper still
            CWnd* const below = FromHandle(child)->GetDescendantWindow(id, only_permanent);
            if (below != nullptr)
                return below;
        }
        if (!only_permanent)
            return FromHandle(child);
        if (CWnd* const known = FromHandlePermanent(child))
            return known;
    }
    for (HWND child = ::GetTopWindow(m_hWnd); child != nullptr;
         child = ::GetWindow(child, GW_HWNDNEXT))
        if (CWnd* const below = FromHandle(child)->GetDescendantWindow(id, only_permanent))
            return below;
    return nullptr;
}

CFrameWnd* CWnd::GetParentFrame() const
{
    if (m_hWnd == nullptr)
        return nullptr;
    for (CWnd* parent = GetParent(); parent != nullptr; parent = parent->GetParent())
        if (parent->IsFrameWnd())
            return static_cast<CFrameWnd*>(parent);
    return nullptr;
}

namespace {

/// The parent of a child, the owner of a popup; null at the top.
HWND parent_or_owner(HWND window)
{
    if ((::GetWindowLongPtr(window, GWL_STYLE) & WS_CHILD) != 0)
        return ::GetParent(window);
    return ::GetWindow(window, GW_OWNER);
}

}  // namespace

CWnd* CWnd::GetTopLevelParent() const
{
    if (m_hWnd == nullptr)
        return nullptr;
    HWND top = m_hWnd;
    while (const HWND next = parent_or_owner(top))
        top = next;
    return FromHandle(top);
}

CFrameWnd* CWnd::GetTopLevelFrame() const
{
    CFrameWnd* top = nullptr;
    for (HWND window = m_hWnd; window != nullptr; window = parent_or_owner(window)) {
        CWnd* const object = FromHandlePermanent(window);
        if (object != nullptr && object->IsFrameWnd())
            top = static_cast<CFrameWnd*>(object);
    }
    return top;
}

CScrollBar* CWnd::GetScrollBarCtrl(int) const
{
    return nullptr;  // the window's own bars, where it has any
}

CMenu* CWnd::GetMenu() const
{
    return CMenu::FromHandle(::GetMenu(m_hWnd));
}

BOOL CWnd::SetMenu(CMenu* menu)
{
    return ::SetMenu(m_hWnd, menu != nullptr ? menu->m_hMenu : nullptr);
}

CMenu* CWnd::GetSystemMenu(BOOL revert) const
{
    return CMenu::FromHandle(::GetSystemMenu(m_hWnd, revert));
}

CFont* CWnd::GetFont() const
{
    return CFont::FromHandle(reinterpret_cast<HFONT>(SendMessage(WM_GETFONT)));
}

void CWnd::SetFont(CFont* font, BOOL redraw)
{
    const HGDIOBJ handle = font != nullptr ? font->m_hObject : nullptr;
    SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(handle), redraw);
}

CDC* CWnd::GetDC() const
{
    return CDC::FromHandle(::GetDC(m_hWnd));
}

CDC* CWnd::GetWindowDC() const
{
    return CDC::FromHandle(::GetWindowDC(m_hWnd));
}

int CWnd::ReleaseDC(CDC* dc) const
{
    return ::ReleaseDC(m_hWnd, dc->m_hDC);
}

void CWnd::SendMessageToDescendants(HWND window, UINT message, WPARAM wparam, LPARAM lparam,
                                    BOOL deep, BOOL only_permanent)
{
    // A handler may destroy the child: the next one is taken before.
    for (HWND child = ::GetTopWindow(window); child != nullptr;) {
        const HWND next = ::GetWindow(child, GW_HWNDNEXT);
        if (!only_permanent) {
            ::SendMessage(child, message, wparam, lparam);
        } else if (CWnd* const object = FromHandlePermanent(child)) {
            AfxCallWndProc(object, child, message, wparam, lparam);
        }
        if (deep && ::IsWindow(child) && ::GetTopWindow(child) != nullptr)
            SendMessageToDescendants(child, message, wparam, lparam, deep, only_permanent);
        child = ::IsWindow(next) ? next : nullptr;
    }
}

BOOL CWnd::PreTranslateMessage(MSG* message)
{
    if ((m_nFlags & WF_TOOLTIPS) != 0)
        FilterToolTipMessage(message);
    return FALSE;
}

BOOL CWnd::WalkPreTranslateTree(HWND stop, MSG* message)
{
    for (HWND window = message->hwnd; window != nullptr; window = ::GetParent(window)) {
        CWnd* const object = FromHandlePermanent(window);
        if (object != nullptr && object->PreTranslateMessage(message))
            return TRUE;
        if (window == stop)
            break;
    }
    return FALSE;
}

BOOL CWnd::PreTranslateInput(MSG* message)
{
    const bool is_key = WM_KEYFIRST <= message->message && message->message <= WM_KEYLAST;
    const bool is_mouse = WM_MOUSEFIRST <= message->message && message->message <= WM_MOUSELAST;
    return (is_key || is_mouse) && ::IsDialogMessage(m_hWnd, message);
}

void CWnd::WinHelp(DWORD_PTR data, UINT command)
{
    if (CWinApp* const application = AfxGetApp())
        application->WinHelp(data, command);
}

void CWnd::CalcWindowRect(LPRECT client, UINT adjust)
{
    DWORD ex_style = GetExStyle();
    if (adjust == adjustBorder)
        ex_style &= ~static_cast<DWORD>(WS_EX_CLIENTEDGE);
    ::AdjustWindowRectEx(client, GetStyle(), FALSE, ex_style);
}
