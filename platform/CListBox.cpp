#include "platform/CListBox.h"

#include <string>

IMPLEMENT_DYNAMIC(CListBox, CWnd)

BOOL CListBox::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id)
{
    return CWnd::Create(WC_LISTBOX, nullptr, style, rect, parent, id);
}

void CListBox::GetText(int at, CString& text) const
{
    text.Empty();
    const int length = GetTextLen(at);
    if (length < 0)
        return;
    std::string found(static_cast<std::size_t>(length) + 1, '\0');
    if (GetText(at, found.data()) >= 0)
        text = found.c_str();
}

UINT CListBox::ItemFromPoint(CPoint point, BOOL& outside) const
{
    const auto both =
        static_cast<DWORD>(zmr::ask(*this, LB_ITEMFROMPOINT, 0, MAKELPARAM(point.x, point.y)));
    outside = HIWORD(both);
    return LOWORD(both);
}

void CListBox::DrawItem(LPDRAWITEMSTRUCT) {}

void CListBox::MeasureItem(LPMEASUREITEMSTRUCT) {}

int CListBox::CompareItem(LPCOMPAREITEMSTRUCT)
{
    return 0;
}

void CListBox::DeleteItem(LPDELETEITEMSTRUCT) {}

BOOL CListBox::OnChildNotify(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result)
{
    switch (message) {
        case WM_DRAWITEM:
            DrawItem(reinterpret_cast<LPDRAWITEMSTRUCT>(lparam));
            return TRUE;
        case WM_MEASUREITEM:
            MeasureItem(reinterpret_cast<LPMEASUREITEMSTRUCT>(lparam));
            return TRUE;
        case WM_DELETEITEM:
            DeleteItem(reinterpret_cast<LPDELETEITEMSTRUCT>(lparam));
            return TRUE;
        case WM_COMPAREITEM: {
            const LRESULT answer = CompareItem(reinterpret_cast<LPCOMPAREITEMSTRUCT>(lparam));
            if (result != nullptr)
                *result = answer;
            return TRUE;
        }
        default:
            return CWnd::OnChildNotify(message, wparam, lparam, result);
    }
}
