#include "platform/CScrollBar.h"

#include <algorithm>

IMPLEMENT_DYNAMIC(CScrollBar, CWnd)

BOOL CScrollBar::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id)
{
    return CWnd::Create(WC_SCROLLBAR, nullptr, style, rect, parent, id);
}

int CScrollBar::GetScrollLimit() const
{
    SCROLLINFO info{};
    if (!GetScrollInfo(&info, SIF_RANGE | SIF_PAGE))
        return 0;
    const int page = static_cast<int>(info.nPage);
    return info.nMax - std::max(page - 1, 0);
}
