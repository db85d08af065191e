#pragma once

#include "platform/CPoint.h"
#include "platform/CWnd.h"

#include <cstdint>

/// What a splitter sends its parent while it is dragged: wParam is its id, lParam the x of its left
/// edge, or the y of its top, in the parent's client area.
inline constexpr UINT WM_SPLITTER_DRAGGED = WM_APP + 2;

/// The strip between two panes, dragged by the mouse. Where the mouse is lost, it stays.
class PaneSplitter : public CWnd {
public:
    enum class Between : std::uint8_t { LeftAndRight, AboveAndBelow };

    BOOL create(CWnd& parent, UINT id, Between between = Between::LeftAndRight);

protected:
    DECLARE_MESSAGE_MAP()
    void OnLButtonDown(UINT keys, CPoint point);
    void OnLButtonUp(UINT keys, CPoint point);
    void OnMouseMove(UINT keys, CPoint point);

private:
    Between between_ = Between::LeftAndRight;
    CPoint grip_;  ///< Where in the strip the mouse holds it.
};
