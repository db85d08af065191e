#pragma once

#include "scene_editor/core/LibraryResults.h"
#include "store/GResourceFullName.h"

#include <string>
#include <string_view>

namespace editor {

// Names in a library, between the program's form and the library's.

[[nodiscard]] GString text_of(std::string_view text);
[[nodiscard]] GResourcePath resource_path(const DirectoryPath& path);
[[nodiscard]] DirectoryPath directory_path(const GResourcePath& path);
/// The mediator of an entry.
[[nodiscard]] GResourceFullName mediator_name(const DirectoryPath& path, std::string_view name);
/// The name in quotation marks.
[[nodiscard]] std::string in_quotes(std::string_view name);
/// Directories and name with slashes between them, for people.
[[nodiscard]] std::string path_text(const GResourcePath& path, std::string_view name);
/// "ring.obj" with the number 2 is "ring 2.obj": the number stands in front of what looks like an
/// extension.
[[nodiscard]] std::string numbered_name(std::string_view name, unsigned number);

}  // namespace editor
