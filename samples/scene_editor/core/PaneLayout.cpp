#include "scene_editor/core/PaneLayout.h"

#include <algorithm>

namespace editor {

int scaled(int length_at_96, int dpi)
{
    return (length_at_96 * dpi + 48) / 96;
}

namespace {

// The widths that there is room for: the list keeps its least width as long as it can.
PaneWidths fitting(int room, PaneWidths widths, int dpi)
{
    const int least = scaled(kLeastPaneAt96, dpi);
    const int for_panes = std::max(0, room - scaled(kLeastListAt96, dpi));
    widths.tree_px = std::max(widths.tree_px, least);
    widths.preview_px = std::max(widths.preview_px, least);
    if (widths.tree_px + widths.preview_px > for_panes)
        widths.preview_px = std::max(least, for_panes - widths.tree_px);
    if (widths.tree_px + widths.preview_px > for_panes)
        widths.tree_px = std::max(least, for_panes - widths.preview_px);
    // Too narrow for all the least widths: shares of what there is.
    if (widths.tree_px + widths.preview_px > for_panes) {
        widths.tree_px = std::min(least, room / 4);
        widths.preview_px = std::min(least, room / 4);
    }
    return widths;
}

int room_for_panes(const PaneRect& area, int dpi)
{
    return std::max(0, area.width() - 2 * scaled(kSplitterAt96, dpi));
}

}  // namespace

PaneLayout lay_out(const PaneRect& area, const PaneWidths& widths, int filter_height_px, int dpi)
{
    const int room = room_for_panes(area, dpi);
    const int splitter = std::min(scaled(kSplitterAt96, dpi), std::max(0, area.width()) / 2);
    const PaneWidths fitted = fitting(room, widths, dpi);
    const int bottom = std::max(area.top, area.bottom);

    PaneLayout panes;
    panes.tree = {area.left, area.top, area.left + fitted.tree_px, bottom};
    panes.tree_splitter = {panes.tree.right, area.top, panes.tree.right + splitter, bottom};
    const int right = std::max(area.left, area.right);
    panes.preview = {right - fitted.preview_px, area.top, right, bottom};
    panes.preview_splitter = {panes.preview.left - splitter, area.top, panes.preview.left, bottom};

    const int left = panes.tree_splitter.right;
    const int list_right = std::max(left, panes.preview_splitter.left);
    const int filter_bottom = std::min(bottom, area.top + filter_height_px);
    panes.filter = {left, area.top, list_right, filter_bottom};
    panes.list = {left, std::min(bottom, filter_bottom + scaled(kPaneMarginAt96, dpi)), list_right,
                  bottom};
    return panes;
}

PaneWidths drag_splitter(const PaneRect& area, const PaneWidths& widths, Splitter splitter, int x,
                         int dpi)
{
    const int room = room_for_panes(area, dpi);
    const int least = scaled(kLeastPaneAt96, dpi);
    PaneWidths dragged = fitting(room, widths, dpi);
    const int for_panes = std::max(0, room - scaled(kLeastListAt96, dpi));
    if (splitter == Splitter::Tree) {
        const int most = std::max(least, for_panes - dragged.preview_px);
        dragged.tree_px = std::clamp(x - area.left, least, most);
    } else {
        const int most = std::max(least, for_panes - dragged.tree_px);
        const int wanted = area.right - x - scaled(kSplitterAt96, dpi);
        dragged.preview_px = std::clamp(wanted, least, most);
    }
    return dragged;
}

PaneWidths first_widths(const PaneRect& area, int dpi)
{
    const int least = scaled(kLeastPaneAt96, dpi);
    return {std::max(least, area.width() * 22 / 100), std::max(least, area.width() * 34 / 100)};
}

}  // namespace editor
