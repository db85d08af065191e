#include "platform/CButton.h"

IMPLEMENT_DYNAMIC(CButton, CWnd)

BOOL CButton::Create(LPCTSTR caption, DWORD style, const RECT& rect, CWnd* parent, UINT id)
{
    return CWnd::Create(WC_BUTTON, caption, style, rect, parent, id);
}

void CButton::DrawItem(LPDRAWITEMSTRUCT) {}

BOOL CButton::OnChildNotify(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result)
{
    if (message != WM_DRAWITEM)
        return CWnd::OnChildNotify(message, wparam, lparam, result);
    DrawItem(reinterpret_cast<LPDRAWITEMSTRUCT>(lparam));
    return TRUE;
}
