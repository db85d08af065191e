#include "scene_editor/PropertyEdit.h"

BEGIN_MESSAGE_MAP(PropertyEdit, CEdit)
    ON_WM_KEYDOWN()
    ON_WM_CHAR()
    ON_WM_SETFOCUS()
    ON_WM_KILLFOCUS()
END_MESSAGE_MAP()

BOOL PropertyEdit::create(CWnd& parent, UINT id)
{
    const DWORD style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS | ES_AUTOHSCROLL;
    return CreateEx(WS_EX_CLIENTEDGE, "EDIT", "", style, RECT{}, &parent, id);
}

void PropertyEdit::leave(Left how)
{
    ::SendMessage(::GetParent(m_hWnd), WM_PROPERTY_LEFT, static_cast<WPARAM>(GetDlgCtrlID()),
                  static_cast<LPARAM>(how));
}

void PropertyEdit::OnKeyDown(UINT key, UINT repeats, UINT flags)
{
    if (key == VK_RETURN)
        leave(Left::ByEnter);
    else if (key == VK_ESCAPE)
        leave(Left::ByEscape);
    else
        CEdit::OnKeyDown(key, repeats, flags);
}

void PropertyEdit::OnChar(UINT letter, UINT repeats, UINT flags)
{
    if (letter == VK_ESCAPE || letter == VK_RETURN || letter == VK_TAB)
        return;  // a line of one row would only beep
    CEdit::OnChar(letter, repeats, flags);
}

void PropertyEdit::OnSetFocus(CWnd* former)
{
    CEdit::OnSetFocus(former);
    SetSel(0, -1);
}

void PropertyEdit::OnKillFocus(CWnd* next)
{
    CEdit::OnKillFocus(next);
    leave(Left::ByFocus);
}
