#pragma once

#include "platform/FileDevice.h"

#include <string>
#include <vector>

namespace zmr {

/// What a path names. Links count as what they lead to.
enum class PathKind {
    Missing,
    File,
    Directory,
    Other  ///< A device, a pipe, a socket.
};

struct DirectoryEntry {
    std::string name;
    PathKind kind;
};

/// What stands at `path`, Missing when the system can't tell. Missing also for a path with a zero
/// byte in it.
[[nodiscard]] PathKind path_kind(const std::string& path);
/// The files and directories in `directory`, ".." with them and "." not, in no order. Empty when it
/// is missing or may not be read.
[[nodiscard]] std::vector<DirectoryEntry> read_directory(const std::string& directory);
/// Which file or directory stands at `path`, links followed. False when the system can't tell.
[[nodiscard]] bool path_identity(const std::string& path, FileIdentity& identity);
/// Makes a directory. False when there is something of its name, or on failure.
[[nodiscard]] bool make_directory(const std::string& path);

}  // namespace zmr
