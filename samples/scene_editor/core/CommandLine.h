#pragma once

#include <string>
#include <string_view>

namespace editor {

/// The first word of a program's command line, which does not hold the program's own name: up to a
/// blank, or between quotation marks. Empty when there is none.
[[nodiscard]] std::string first_word(std::string_view command_line);
/// The files that a command line names: a library and a scene, each empty when there is none. What
/// ends in ".scene" is one; of several the first counts.
struct NamedFiles {
    std::string library;
    std::string scene;
};
[[nodiscard]] NamedFiles named_files(std::string_view command_line);
/// Whether a file is a scene, by its name: it ends in ".scene", in letters of either case.
[[nodiscard]] bool is_scene_file(std::string_view file);
/// The last part of a file's name, behind the last slash of either kind.
[[nodiscard]] std::string_view file_part(std::string_view file);

}  // namespace editor
