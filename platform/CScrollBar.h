#pragma once

#include "platform/CommonControls.h"

/// A scroll bar that is a control of its own. User-interface thread.
class ZMR_GV_API CScrollBar : public CWnd {
    DECLARE_DYNAMIC(CScrollBar)

public:
    CScrollBar() = default;
    virtual BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);

    [[nodiscard]] int GetScrollPos() const { return ::GetScrollPos(m_hWnd, SB_CTL); }
    /// The former position.
    int SetScrollPos(int position, BOOL redraw = TRUE)
    {
        return ::SetScrollPos(m_hWnd, SB_CTL, position, redraw);
    }
    void GetScrollRange(int* first, int* last) const
    {
        ::GetScrollRange(m_hWnd, SB_CTL, first, last);
    }
    void SetScrollRange(int first, int last, BOOL redraw = TRUE)
    {
        ::SetScrollRange(m_hWnd, SB_CTL, first, last, redraw);
    }
    void ShowScrollBar(BOOL show = TRUE) { ::ShowScrollBar(m_hWnd, SB_CTL, show); }
    /// One of ESB_...
    BOOL EnableScrollBar(UINT arrows = ESB_ENABLE_BOTH)
    {
        return ::EnableScrollBar(m_hWnd, SB_CTL, arrows);
    }
    /// `info->cbSize` is set here. `mask` is what of it is wanted.
    BOOL GetScrollInfo(LPSCROLLINFO info, UINT mask = SIF_ALL) const
    {
        return CWnd::GetScrollInfo(SB_CTL, info, mask);
    }
    int SetScrollInfo(LPSCROLLINFO info, BOOL redraw = TRUE)
    {
        return CWnd::SetScrollInfo(SB_CTL, info, redraw);
    }
    /// The last position that the bar can be dragged to.
    [[nodiscard]] int GetScrollLimit() const;
};
