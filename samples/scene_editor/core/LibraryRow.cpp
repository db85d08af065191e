#include "scene_editor/core/LibraryRow.h"

#include <algorithm>

namespace editor {

FilterRow split_filter_row(const PaneRect& row, int dpi)
{
    const int width = std::max(0, row.width());
    const int choice = std::min(scaled(kChoiceAt96, dpi), width * 2 / 5);
    const int margin = std::min(scaled(kPaneMarginAt96, dpi), width - choice);
    FilterRow parts;
    parts.choice = {row.left + width - choice, row.top, row.left + width, row.bottom};
    parts.line = {row.left, row.top, parts.choice.left - margin, row.bottom};
    return parts;
}

WorkRow split_work_row(const PaneRect& list, bool is_shown, int height_px, int dpi)
{
    WorkRow parts;
    parts.list = list;
    if (!is_shown)
        return parts;
    const int margin = scaled(kPaneMarginAt96, dpi);
    const int width = std::max(0, list.width());
    const int top = std::max(list.top, list.bottom - height_px);
    parts.list.bottom = std::max(list.top, top - margin);
    const int text = std::min(scaled(kWorkTextAt96, dpi), width / 3);
    const int button = std::min(scaled(kWorkButtonAt96, dpi), width / 3);
    parts.text = {list.left, top, list.left + text, list.bottom};
    parts.button = {list.left + width - button, top, list.left + width, list.bottom};
    parts.bar = {std::min(parts.text.right + margin, parts.button.left), top, 0, list.bottom};
    parts.bar.right = std::max(parts.bar.left, parts.button.left - margin);
    return parts;
}

}  // namespace editor
