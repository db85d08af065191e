#include "platform/CStatic.h"

IMPLEMENT_DYNAMIC(CStatic, CWnd)

BOOL CStatic::Create(LPCTSTR text, DWORD style, const RECT& rect, CWnd* parent, UINT id)
{
    return CWnd::Create(WC_STATIC, text, style, rect, parent, id);
}

void CStatic::DrawItem(LPDRAWITEMSTRUCT) {}

BOOL CStatic::OnChildNotify(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result)
{
    if (message != WM_DRAWITEM)
        return CWnd::OnChildNotify(message, wparam, lparam, result);
    DrawItem(reinterpret_cast<LPDRAWITEMSTRUCT>(lparam));
    return TRUE;
}
