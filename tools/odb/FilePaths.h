#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace odb {

/// The file path of a name, UTF-8 in the win lane and bytes as they are natively; none when the
/// system can't have such a name.
[[nodiscard]] std::optional<std::filesystem::path> to_path(const std::string& name);
/// The name of a path, for the library's functions and for messages.
[[nodiscard]] std::string to_name(const std::filesystem::path& path);

}  // namespace odb
