#include "platform/CComboBox.h"

#include <string>

IMPLEMENT_DYNAMIC(CComboBox, CWnd)

BOOL CComboBox::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id)
{
    return CWnd::Create(WC_COMBOBOX, nullptr, style, rect, parent, id);
}

void CComboBox::GetLBText(int at, CString& text) const
{
    text.Empty();
    const int length = GetLBTextLen(at);
    if (length < 0)
        return;
    std::string found(static_cast<std::size_t>(length) + 1, '\0');
    if (GetLBText(at, found.data()) >= 0)
        text = found.c_str();
}

void CComboBox::DrawItem(LPDRAWITEMSTRUCT) {}

void CComboBox::MeasureItem(LPMEASUREITEMSTRUCT) {}

int CComboBox::CompareItem(LPCOMPAREITEMSTRUCT)
{
    return 0;
}

void CComboBox::DeleteItem(LPDELETEITEMSTRUCT) {}

BOOL CComboBox::OnChildNotify(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result)
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
