#include "platform/FileDevice.h"

#include "platform/Handles.h"
#include "platform/WideText.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <mutex>
#include <new>
#include <vector>

namespace zmr {
namespace {

constexpr std::uint64_t kLastPosition = std::numeric_limits<std::int64_t>::max();
constexpr std::size_t kPieceBytes = std::size_t{1} << 26;  // network redirectors refuse larger ones

FileErrorKind kind_of(DWORD code)
{
    switch (code) {
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
        case ERROR_INVALID_DRIVE:
        case ERROR_BAD_NETPATH:
        case ERROR_BAD_NET_NAME:
        case ERROR_NOT_READY:
            return FileErrorKind::NotFound;
        case ERROR_ACCESS_DENIED:
        case ERROR_WRITE_PROTECT:
        case ERROR_CURRENT_DIRECTORY:
            return FileErrorKind::AccessDenied;
        case ERROR_FILE_EXISTS:
        case ERROR_ALREADY_EXISTS:
            return FileErrorKind::AlreadyExists;
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
        case ERROR_USER_MAPPED_FILE:
            return FileErrorKind::InUse;
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
        case ERROR_FILE_TOO_LARGE:
            return FileErrorKind::DiskFull;
        case ERROR_TOO_MANY_OPEN_FILES:
            return FileErrorKind::TooManyOpen;
        case ERROR_INVALID_NAME:
        case ERROR_BAD_PATHNAME:
        case ERROR_FILENAME_EXCED_RANGE:
            return FileErrorKind::BadName;
        case ERROR_NOT_ENOUGH_MEMORY:
        case ERROR_OUTOFMEMORY:
        case ERROR_NO_SYSTEM_RESOURCES:
            return FileErrorKind::OutOfMemory;
        default:
            return FileErrorKind::Other;
    }
}

FileError error_of(DWORD code)
{
    return {kind_of(code), static_cast<int>(code)};
}

FileError last_error()
{
    return error_of(::GetLastError());
}

OVERLAPPED at_position(std::uint64_t position)
{
    OVERLAPPED place = {};
    place.Offset = static_cast<DWORD>(position);
    place.OffsetHigh = static_cast<DWORD>(position >> 32);
    return place;
}

DWORD low_half(std::uint64_t number)
{
    return static_cast<DWORD>(number);
}

DWORD high_half(std::uint64_t number)
{
    return static_cast<DWORD>(number >> 32);
}

class WindowsFile final : public FileDevice {
public:
    WindowsFile(OwnedKernelHandle file, FileAccess access) : file_(std::move(file)), access_(access)
    {
    }

    FileError read_at(std::uint64_t position, void* data, std::size_t size,
                      std::size_t& done) const override
    {
        done = 0;
        auto* bytes = static_cast<char*>(data);
        while (done < size && position < kLastPosition && position + done < kLastPosition) {
            OVERLAPPED place = at_position(position + done);
            const auto piece = static_cast<DWORD>(std::min(size - done, kPieceBytes));
            DWORD count = 0;
            if (!::ReadFile(file_.get(), bytes + done, piece, &count, &place)) {
                if (::GetLastError() == ERROR_HANDLE_EOF)
                    break;
                return last_error();
            }
            if (count == 0)
                break;
            done += count;
        }
        return {};
    }

    FileError write_at(std::uint64_t position, const void* data, std::size_t size) override
    {
        if (position > kLastPosition || size > kLastPosition - position)
            return error_of(ERROR_FILE_TOO_LARGE);
        const auto* bytes = static_cast<const char*>(data);
        std::size_t done = 0;
        while (done < size) {
            OVERLAPPED place = at_position(position + done);
            const auto piece = static_cast<DWORD>(std::min(size - done, kPieceBytes));
            DWORD count = 0;
            if (!::WriteFile(file_.get(), bytes + done, piece, &count, &place))
                return last_error();
            if (count == 0)
                return error_of(ERROR_DISK_FULL);
            done += count;
        }
        return {};
    }

    FileError length(std::uint64_t& bytes) const override
    {
        LARGE_INTEGER size = {};
        if (!::GetFileSizeEx(file_.get(), &size))
            return last_error();
        bytes = static_cast<std::uint64_t>(size.QuadPart);
        return {};
    }

    FileError set_length(std::uint64_t bytes) override
    {
        if (bytes > kLastPosition)
            return error_of(ERROR_FILE_TOO_LARGE);
        if (access_ == FileAccess::Read)
            return error_of(ERROR_ACCESS_DENIED);  // Wine's code would be "invalid parameter"
        FILE_END_OF_FILE_INFO end = {};
        end.EndOfFile.QuadPart = static_cast<LONGLONG>(bytes);
        if (!::SetFileInformationByHandle(file_.get(), FileEndOfFileInfo, &end, sizeof end))
            return last_error();
        return {};
    }

    FileError sync() override
    {
        if (access_ == FileAccess::Read)
            return {};  // nothing of this device can be outstanding, and the system would refuse
        if (!::FlushFileBuffers(file_.get()))
            return last_error();
        return {};
    }

    FileError lock(std::uint64_t position, std::uint64_t size, FileLockKind kind) override
    {
        if (position > kLastPosition || size > kLastPosition - position)
            return error_of(ERROR_INVALID_PARAMETER);
        if (size == 0)
            return {};
        const std::lock_guard<std::mutex> guard(ranges_mutex_);
        const auto held = find_range(position, size);
        if (held == ranges_.end()) {
            const FileError error = take(position, size, kind);
            if (!error)
                ranges_.push_back({position, size, kind});
            return error;
        }
        if (held->kind == kind)
            return {};
        // The system counts locks of one handle against each other: let go, take, or take back.
        drop(position, size);
        const FileError error = take(position, size, kind);
        if (!error)
            held->kind = kind;
        else if (take(position, size, held->kind))
            ranges_.erase(held);
        return error;
    }

    void unlock(std::uint64_t position, std::uint64_t size) override
    {
        const std::lock_guard<std::mutex> guard(ranges_mutex_);
        const auto held = find_range(position, size);
        if (held == ranges_.end())
            return;
        drop(position, size);
        ranges_.erase(held);
    }

    bool is_locked_by_other(std::uint64_t position, std::uint64_t size) const override
    {
        if (size == 0 || position > kLastPosition || size > kLastPosition - position)
            return false;
        const std::lock_guard<std::mutex> guard(ranges_mutex_);
        // There is no query: the exclusive lock is tried, with this device's own out of its way.
        std::vector<Range> own;
        for (const Range& range : ranges_) {
            if (range.position >= position + size || position >= range.position + range.size)
                continue;
            own.push_back(range);
            drop(range.position, range.size);
        }
        const bool conflict = static_cast<bool>(take(position, size, FileLockKind::Exclusive));
        if (!conflict)
            drop(position, size);
        for (const Range& range : own) {
            if (!take(range.position, range.size, range.kind))
                continue;
            const auto lost = find_range(range.position, range.size);
            if (lost != ranges_.end())
                ranges_.erase(lost);
        }
        return conflict;
    }

    FileError identity(FileIdentity& identity) const override
    {
        BY_HANDLE_FILE_INFORMATION information = {};
        if (!::GetFileInformationByHandle(file_.get(), &information))
            return last_error();
        identity.volume = information.dwVolumeSerialNumber;
        identity.file = (static_cast<std::uint64_t>(information.nFileIndexHigh) << 32) |
                        information.nFileIndexLow;
        return {};
    }

    void advise_random() override {}  // can be said at opening only, for all reads to come

private:
    struct Range {
        std::uint64_t position;
        std::uint64_t size;
        FileLockKind kind;
    };

    std::vector<Range>::iterator find_range(std::uint64_t position, std::uint64_t size) const
    {
        return std::find_if(ranges_.begin(), ranges_.end(), [&](const Range& range) {
            return range.position == position && range.size == size;
        });
    }

    FileError take(std::uint64_t position, std::uint64_t size, FileLockKind kind) const
    {
        OVERLAPPED place = at_position(position);
        const DWORD flags = LOCKFILE_FAIL_IMMEDIATELY |
                            (kind == FileLockKind::Exclusive ? LOCKFILE_EXCLUSIVE_LOCK : 0U);
        if (::LockFileEx(file_.get(), flags, 0, low_half(size), high_half(size), &place))
            return {};
        const DWORD code = ::GetLastError();
        return error_of(code == ERROR_IO_PENDING ? ERROR_LOCK_VIOLATION : code);
    }

    void drop(std::uint64_t position, std::uint64_t size) const
    {
        OVERLAPPED place = at_position(position);
        // Fails only for a range that is not held.
        static_cast<void>(::UnlockFileEx(file_.get(), 0, low_half(size), high_half(size), &place));
    }

    OwnedKernelHandle file_;
    FileAccess access_;
    mutable std::mutex ranges_mutex_;
    mutable std::vector<Range> ranges_;  ///< What this device holds now.
};

DWORD share_mode(FileShare share)
{
    switch (share) {
        case FileShare::None:
            return 0;
        case FileShare::Read:
            return FILE_SHARE_READ;
        case FileShare::ReadWrite:
            break;
    }
    return FILE_SHARE_READ | FILE_SHARE_WRITE;
}

DWORD disposition(FileCreate create)
{
    switch (create) {
        case FileCreate::OpenExisting:
            return OPEN_EXISTING;
        case FileCreate::OpenOrCreate:
            return OPEN_ALWAYS;
        case FileCreate::CreateNew:
            return CREATE_NEW;
        case FileCreate::CreateOrTruncate:
            break;
    }
    return CREATE_ALWAYS;
}

class WindowsFileSystem final : public FileSystemDevice {
public:
    std::unique_ptr<FileDevice> open(const std::string& name, FileAccess access, FileCreate create,
                                     FileShare share, FileError& error) override
    {
        std::wstring wide;
        if (!to_wide_path(name, wide)) {
            error = error_of(ERROR_INVALID_NAME);
            return nullptr;
        }
        const DWORD way =
            access == FileAccess::ReadWrite ? GENERIC_READ | GENERIC_WRITE : GENERIC_READ;
        const HANDLE handle = ::CreateFileW(wide.c_str(), way, share_mode(share), nullptr,
                                            disposition(create), FILE_ATTRIBUTE_NORMAL, nullptr);
        if (handle == INVALID_HANDLE_VALUE) {
            error = last_error();
            return nullptr;
        }
        OwnedKernelHandle file(handle);
        if (::GetFileType(file.get()) != FILE_TYPE_DISK) {
            error = error_of(ERROR_ACCESS_DENIED);
            return nullptr;
        }
        error = {};
        return std::make_unique<WindowsFile>(std::move(file), access);
    }

    FileError rename(const std::string& from, const std::string& to) override
    {
        std::wstring wide_from;
        std::wstring wide_to;
        if (!to_wide_path(from, wide_from) || !to_wide_path(to, wide_to))
            return error_of(ERROR_INVALID_NAME);
        constexpr DWORD kHow = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
        if (!::MoveFileExW(wide_from.c_str(), wide_to.c_str(), kHow))
            return last_error();
        return {};
    }

    FileError remove(const std::string& name) override
    {
        std::wstring wide;
        if (!to_wide_path(name, wide))
            return error_of(ERROR_INVALID_NAME);
        if (!::DeleteFileW(wide.c_str()))
            return last_error();
        return {};
    }

    FileError sync_directory_of(const std::string&) override { return {}; }
};

}  // namespace

FileSystemDevice& FileSystemDevice::Real()
{
    // Never destroyed, as late destructors write too, and nothing left behind by a library that
    // goes.
    alignas(WindowsFileSystem) static std::byte place[sizeof(WindowsFileSystem)];
    static auto* const real = ::new (place) WindowsFileSystem;
    return *real;
}

}  // namespace zmr
