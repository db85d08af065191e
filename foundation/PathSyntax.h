#pragma once

#include "foundation/NameMask.h"

#include <cstddef>
#include <string>
#include <string_view>

// Paths as text. What differs between the lanes stands in the part that says so.

namespace zmr {

[[nodiscard]] constexpr bool is_separator(char byte)
{
    return byte == '/' || byte == '\\';
}

/// Where the last name of `path` begins: behind its root and its last separator.
[[nodiscard]] std::size_t name_start(std::string_view path);
/// The length of `path` without its last name and the separators before it, but with its root.
[[nodiscard]] std::size_t directory_length(std::string_view path);
/// Where the extension of the file name `name` begins, at its dot; its length when there is none.
/// A dot in front begins no extension.
[[nodiscard]] std::size_t extension_start(std::string_view name);
/// The names of `path`, behind `root`, with "." and ".." resolved and one separator of the lane
/// between them. ".." at the root stays there.
[[nodiscard]] std::string resolve_dots(std::string_view root, std::string_view path);

// Per lane:

extern const char kSeparator;       ///< What is put between names.
extern const LetterCase kPathCase;  ///< Whether names that differ in case are different.

/// The length of the root in front of `path`, with its separator; 0 when the path is relative.
[[nodiscard]] std::size_t root_length(std::string_view path);
/// The full path that `root`, the root of a path or nothing, stands for: itself, or the current
/// directory of the process or of a drive. Empty when the system can't tell.
[[nodiscard]] std::string full_base(std::string_view root);
/// True when a file can have this path, masks included.
[[nodiscard]] bool is_valid_path(std::string_view path);
/// `path` as the system's functions take it. Both slashes are separators in both lanes.
[[nodiscard]] std::string system_path(std::string_view path);

}  // namespace zmr
