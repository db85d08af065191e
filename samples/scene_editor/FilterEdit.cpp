#include "scene_editor/FilterEdit.h"

BEGIN_MESSAGE_MAP(FilterEdit, CEdit)
    ON_WM_KEYDOWN()
    ON_WM_CHAR()
END_MESSAGE_MAP()

BOOL FilterEdit::create(CWnd& parent, UINT id)
{
    const DWORD style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS | ES_AUTOHSCROLL;
    if (!CreateEx(WS_EX_CLIENTEDGE, "EDIT", "", style, RECT{}, &parent, id))
        return FALSE;
    ::SendMessageW(m_hWnd, EM_SETCUEBANNER, TRUE,
                   reinterpret_cast<LPARAM>(L"Filter by name or class"));
    return TRUE;
}

void FilterEdit::OnKeyDown(UINT key, UINT repeats, UINT flags)
{
    if (key == VK_ESCAPE) {
        SetWindowText("");
        return;
    }
    if (key == VK_RETURN || key == VK_DOWN || key == VK_UP) {
        ::SendMessage(::GetParent(m_hWnd), WM_FILTER_LEFT, 0, 0);
        return;
    }
    CEdit::OnKeyDown(key, repeats, flags);
}

void FilterEdit::OnChar(UINT letter, UINT repeats, UINT flags)
{
    if (letter == VK_ESCAPE || letter == VK_RETURN)
        return;  // a line of one row would only beep
    CEdit::OnChar(letter, repeats, flags);
}
