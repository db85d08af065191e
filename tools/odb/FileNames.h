#pragma once

#include <string>
#include <string_view>

namespace odb {

/// A name of one level, for a file or a directory, made from `name`, which may hold anything: no
/// separator, no control character, none of the names and characters that some system forbids or
/// treats as special, not empty, no "." or "..", at most kMaxFileNameBytes long.
[[nodiscard]] std::string safe_file_name(std::string_view name);
inline constexpr std::size_t kMaxFileNameBytes = 200;

/// True when `name` ends in "." and `extension`, whatever the case of its ASCII letters.
[[nodiscard]] bool has_extension(std::string_view name, std::string_view extension);

}  // namespace odb
