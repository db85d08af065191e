#include "platform/CStatusBarCtrl.h"

#include <string>

IMPLEMENT_DYNAMIC(CStatusBarCtrl, CWnd)

BOOL CStatusBarCtrl::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id)
{
    zmr::load_common_controls();
    return CWnd::Create(STATUSCLASSNAME, nullptr, style, rect, parent, id);
}

int CStatusBarCtrl::GetTextLength(int part, int* kind) const
{
    const auto both = static_cast<DWORD>(zmr::ask(*this, SB_GETTEXTLENGTH, zmr::wparam_of(part)));
    if (kind != nullptr)
        *kind = HIWORD(both);
    return LOWORD(both);
}

CString CStatusBarCtrl::GetText(int part, int* kind) const
{
    std::string text(static_cast<std::size_t>(GetTextLength(part, kind)) + 1, '\0');
    zmr::ask(*this, SB_GETTEXT, zmr::wparam_of(part), zmr::lparam_of(text.data()));
    return CString(text.c_str());
}

BOOL CStatusBarCtrl::GetBorders(int& horizontal, int& vertical, int& gap) const
{
    int borders[3] = {};
    const BOOL known = zmr::ask(*this, SB_GETBORDERS, 0, zmr::lparam_of(borders));
    horizontal = borders[0];
    vertical = borders[1];
    gap = borders[2];
    return known;
}
