#pragma once

#include "platform/CRect.h"
#include "platform/Export.h"

#include <span>
#include <vector>

namespace zmr {

// How bars share a frame's client area, and panes a bar. All lengths are in pixels.

/// What is left of a frame's client area while its bars take their parts from it, one after the
/// other.
struct RoomForBars {
    CRect rest;           ///< Never of negative width or height.
    CSize total;          ///< All bars so far: their thickness added up, the greatest length.
    bool stretch = true;  ///< A bar lies along the whole edge, not only as far as it needs.
};

enum class BarEdge { left, top, right, bottom };

/// Takes a bar that wants `wanted` off the edge of what is left, and says where it lies: no thicker
/// and no longer than what is left. Lengths below 0 count as 0.
[[nodiscard]] ZMR_GV_API CRect take_edge(RoomForBars& room, BarEdge edge, const CSize& wanted);

/// A pane of a status bar.
struct PaneWidth {
    int text = 0;          ///< The width meant for its text.
    bool stretch = false;  ///< It shares in what the others leave.
};

/// The right edges of the panes, as the control is told them: each pane is its text with `padding`
/// on both sides, and `gap` lies between two panes. What is left of `width` is divided evenly among
/// the panes that stretch, the first of them taking the odd pixels; when nothing is left they keep
/// their own width. The last edge of a row whose last pane stretches is -1: the end of the bar.
[[nodiscard]] ZMR_GV_API std::vector<int> pane_edges(std::span<const PaneWidth> panes, int width,
                                                     int padding, int gap);

/// The height of a status bar with lines of `text` height between borders of `border` each above
/// and below, and at least `least`.
[[nodiscard]] ZMR_GV_API int status_bar_height(int text, int border, int least);

/// A length that is meant for 96 dots per inch, at `dpi` of them; rounded to the nearest.
[[nodiscard]] ZMR_GV_API int scaled_to_dpi(int length, int dpi);

}  // namespace zmr
