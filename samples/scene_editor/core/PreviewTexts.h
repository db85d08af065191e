#pragma once

#include "scene_editor/core/LibraryResults.h"

#include <string>

namespace editor {

/// The lines below a preview; each may be empty.
struct PreviewTexts {
    std::string title;    ///< The entry's name.
    std::string caption;  ///< Class and size, or why nothing can be seen.
    std::string more;     ///< Where the object is, which picture this is, whether it has a movie.
    std::string description;  ///< As it was written, with line breaks of its own.
};
[[nodiscard]] PreviewTexts preview_texts(const PreviewLoaded& preview);

/// The picture that comes after the one that is shown, in the circle of the object itself (an empty
/// name) and the named ones; `by` is 1, or -1 for the one before.
[[nodiscard]] std::string picture_after(const PreviewLoaded& preview, int by);

/// A text with the line breaks of the system's controls, and back.
[[nodiscard]] std::string with_control_breaks(const std::string& text);
[[nodiscard]] std::string without_control_breaks(const std::string& text);
/// The text in one line, for a table.
[[nodiscard]] std::string in_one_line(std::string_view text);

}  // namespace editor
