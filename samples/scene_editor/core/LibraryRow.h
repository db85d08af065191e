#pragma once

#include "scene_editor/core/PaneLayout.h"

namespace editor {

/// The row above the list: the line that filters, and the choice of classes and filters at its
/// right, which has at most two fifths of it.
struct FilterRow {
    PaneRect line;
    PaneRect choice;
};
[[nodiscard]] FilterRow split_filter_row(const PaneRect& row, int dpi);

/// The list, and while something is done that takes long, a row below it that tells how far it has
/// come: a text, a bar, a button. What is not shown is empty.
struct WorkRow {
    PaneRect list;
    PaneRect text;
    PaneRect bar;
    PaneRect button;
};
[[nodiscard]] WorkRow split_work_row(const PaneRect& list, bool is_shown, int height_px, int dpi);

inline constexpr int kChoiceAt96 = 170;  ///< Width of the choice, of the text and the button.
inline constexpr int kWorkTextAt96 = 80;
inline constexpr int kWorkButtonAt96 = 60;

}  // namespace editor
