#pragma once

#include "platform/CWnd.h"

/// What a splitter sends its parent while it is dragged: wParam is its id, lParam the x of its left
/// edge in the parent's client area.
inline constexpr UINT WM_SPLITTER_DRAGGED = WM_APP + 2;

/// The strip between two panes, dragged by the mouse. Where the mouse is lost, it stays.
class PaneSplitter : public CWnd {
public:
    BOOL create(CWnd& parent, UINT id);

protected:
    DECLARE_MESSAGE_MAP()
    void OnLButtonDown(UINT keys, CPoint point);
    void OnLButtonUp(UINT keys, CPoint point);
    void OnMouseMove(UINT keys, CPoint point);

private:
    int grip_x_ = 0;  ///< Where in the strip the mouse holds it.
};
