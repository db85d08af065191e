#pragma once

#include <cstdint>

namespace editor {

/// A rectangle in pixels of a client area; right and bottom lie outside it.
struct PaneRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    [[nodiscard]] int width() const { return right - left; }
    [[nodiscard]] int height() const { return bottom - top; }
    bool operator==(const PaneRect&) const = default;
};

/// A length drawn for 96 dots per inch, at `dpi`; rounded to the nearest pixel.
[[nodiscard]] int scaled(int length_at_96, int dpi);

/// How wide the outer panes are to be, in pixels. The list has the rest.
struct PaneWidths {
    int tree_px = 0;
    int preview_px = 0;
};

/// Where the panes lie: the tree at the left, the preview at the right, and between them the filter
/// line above the list. The splitters are the strips between the panes.
struct PaneLayout {
    PaneRect tree;
    PaneRect tree_splitter;
    PaneRect filter;
    PaneRect list;
    PaneRect preview_splitter;
    PaneRect preview;
};

/// The panes in `area`. The widths give way, the preview first and then the tree, where the list
/// would be narrower than its least width; nothing is ever negative. `filter_height_px` is the
/// height of the filter line.
[[nodiscard]] PaneLayout lay_out(const PaneRect& area, const PaneWidths& widths,
                                 int filter_height_px, int dpi);

enum class Splitter : std::uint8_t { Tree, Preview };
/// The widths after a splitter was dragged so that its left edge is at `x`: as near as the least
/// widths of the panes allow.
[[nodiscard]] PaneWidths drag_splitter(const PaneRect& area, const PaneWidths& widths,
                                       Splitter splitter, int x, int dpi);
/// The widths that a new window begins with.
[[nodiscard]] PaneWidths first_widths(const PaneRect& area, int dpi);

inline constexpr int kSplitterAt96 = 5;     ///< Width of a splitter.
inline constexpr int kLeastPaneAt96 = 90;   ///< Least width of tree and preview.
inline constexpr int kLeastListAt96 = 160;  ///< Least width of the list.
inline constexpr int kPaneMarginAt96 = 4;   ///< Between the filter line and the list.

}  // namespace editor
