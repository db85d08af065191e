#include "foundation/DirectoryAccess.h"

#include "foundation/PathSyntax.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <memory>
#include <string_view>

namespace zmr {
namespace {

PathKind kind_of(mode_t mode)
{
    if (S_ISDIR(mode))
        return PathKind::Directory;
    return S_ISREG(mode) ? PathKind::File : PathKind::Other;
}

PathKind entry_kind(int directory, const dirent& entry)
{
    if (entry.d_type == DT_DIR)
        return PathKind::Directory;
    if (entry.d_type == DT_REG)
        return PathKind::File;
    struct stat status = {};
    if (::fstatat(directory, entry.d_name, &status, 0) != 0)
        return PathKind::Missing;
    return kind_of(status.st_mode);
}

}  // namespace

PathKind path_kind(const std::string& path)
{
    if (path.find('\0') != std::string::npos)
        return PathKind::Missing;
    struct stat status = {};
    if (::stat(system_path(path).c_str(), &status) != 0)
        return PathKind::Missing;
    return kind_of(status.st_mode);
}

std::vector<DirectoryEntry> read_directory(const std::string& directory)
{
    struct Close {
        void operator()(DIR* opened) const { ::closedir(opened); }
    };
    std::vector<DirectoryEntry> entries;
    if (directory.find('\0') != std::string::npos)
        return entries;
    const std::unique_ptr<DIR, Close> opened(::opendir(system_path(directory).c_str()));
    if (!opened)
        return entries;
    while (const dirent* entry = ::readdir(opened.get())) {
        const std::string_view name = entry->d_name;
        if (name == ".")
            continue;
        const PathKind kind = entry_kind(::dirfd(opened.get()), *entry);
        if (kind == PathKind::File || kind == PathKind::Directory)
            entries.push_back({std::string(name), kind});
    }
    return entries;
}

bool path_identity(const std::string& path, FileIdentity& identity)
{
    struct stat status = {};
    if (path.find('\0') != std::string::npos || ::stat(system_path(path).c_str(), &status) != 0)
        return false;
    identity.volume = static_cast<std::uint64_t>(status.st_dev);
    identity.file = static_cast<std::uint64_t>(status.st_ino);
    return true;
}

bool make_directory(const std::string& path)
{
    return path.find('\0') == std::string::npos && ::mkdir(system_path(path).c_str(), 0777) == 0;
}

}  // namespace zmr
