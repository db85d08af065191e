#include "foundation/DirectoryAccess.h"

#include "platform/Handles.h"
#include "platform/WideText.h"

#include <string_view>

namespace zmr {
namespace {

PathKind kind_of(DWORD attributes)
{
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        return PathKind::Directory;
    return (attributes & FILE_ATTRIBUTE_DEVICE) != 0 ? PathKind::Other : PathKind::File;
}

}  // namespace

PathKind path_kind(const std::string& path)
{
    std::wstring wide;
    if (!to_wide_path(path, wide))
        return PathKind::Missing;
    const DWORD attributes = ::GetFileAttributesW(wide.c_str());
    return attributes == INVALID_FILE_ATTRIBUTES ? PathKind::Missing : kind_of(attributes);
}

std::vector<DirectoryEntry> read_directory(const std::string& directory)
{
    std::vector<DirectoryEntry> entries;
    // A drive alone is its current directory, with a separator its root.
    const bool separated = directory.find_last_of("/\\:") + 1 == directory.size();
    std::wstring mask;
    if (path_kind(directory) != PathKind::Directory ||
        !to_wide_path(directory + (separated ? "*" : "\\*"), mask))
        return entries;
    WIN32_FIND_DATAW found = {};
    const HANDLE first = ::FindFirstFileW(mask.c_str(), &found);
    if (first == INVALID_HANDLE_VALUE)
        return entries;
    const OwnedFind search(first);
    bool parent_found = false;
    do {
        const std::wstring_view name = found.cFileName;
        if (name == L".")
            continue;
        parent_found = parent_found || name == L"..";
        const PathKind kind = kind_of(found.dwFileAttributes);
        if (kind != PathKind::Other)
            entries.push_back({to_utf8(name), kind});
    } while (::FindNextFileW(search.get(), &found));
    if (!parent_found)  // roots have none
        entries.push_back({"..", PathKind::Directory});
    return entries;
}

bool path_identity(const std::string& path, FileIdentity& identity)
{
    std::wstring wide;
    if (!to_wide_path(path, wide))
        return false;
    constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    // Directories are opened with backup semantics only.
    const HANDLE opened = ::CreateFileW(wide.c_str(), FILE_READ_ATTRIBUTES, kShareAll, nullptr,
                                        OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (opened == INVALID_HANDLE_VALUE)
        return false;
    const OwnedKernelHandle handle(opened);
    BY_HANDLE_FILE_INFORMATION information = {};
    if (!::GetFileInformationByHandle(handle.get(), &information))
        return false;
    identity.volume = information.dwVolumeSerialNumber;
    identity.file =
        (static_cast<std::uint64_t>(information.nFileIndexHigh) << 32) | information.nFileIndexLow;
    return true;
}

bool make_directory(const std::string& path)
{
    std::wstring wide;
    return to_wide_path(path, wide) && ::CreateDirectoryW(wide.c_str(), nullptr);
}

}  // namespace zmr
