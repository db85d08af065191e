#include "platform/FileDevice.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <limits>
#include <new>

namespace zmr {
namespace {

constexpr std::uint64_t kLastPosition = std::numeric_limits<off_t>::max();
constexpr std::size_t kPieceBytes = std::size_t{1} << 30;  // one call moves less than 2 GiB

FileErrorKind kind_of(int code)
{
    switch (code) {
        case ENOENT:
        case ENOTDIR:
            return FileErrorKind::NotFound;
        case EACCES:
        case EPERM:
        case EROFS:
        case EISDIR:
        case EBADF:  // a writing operation on a device opened for reading
            return FileErrorKind::AccessDenied;
        case EEXIST:
            return FileErrorKind::AlreadyExists;
        case EAGAIN:
        case EBUSY:
        case ETXTBSY:
            return FileErrorKind::InUse;
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            return FileErrorKind::DiskFull;
        case EMFILE:
        case ENFILE:
            return FileErrorKind::TooManyOpen;
        case ENAMETOOLONG:
        case EILSEQ:
        case ELOOP:
            return FileErrorKind::BadName;
        case ENOMEM:
            return FileErrorKind::OutOfMemory;
        default:
            return FileErrorKind::Other;
    }
}

FileError error_of(int code)
{
    return {kind_of(code), code};
}

FileError last_error()
{
    return error_of(errno);
}

/// Calls until no signal breaks in.
template <class Call>
auto uninterrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

/// Owns a file descriptor.
class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor()
    {
        const int kept = errno;
        if (number_ >= 0)
            ::close(number_);  // not taken up again: the number is free even when interrupted
        errno = kept;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    Descriptor(Descriptor&& other) noexcept : number_(other.number_) { other.number_ = -1; }
    Descriptor& operator=(Descriptor&&) = delete;

    [[nodiscard]] int get() const { return number_; }

private:
    int number_;
};

class PosixFile final : public FileDevice {
public:
    explicit PosixFile(Descriptor file) : file_(std::move(file)) {}

    FileError read_at(std::uint64_t position, void* data, std::size_t size,
                      std::size_t& done) const override
    {
        done = 0;
        auto* bytes = static_cast<char*>(data);
        while (done < size && position + done < kLastPosition && position < kLastPosition) {
            const std::size_t piece = std::min(size - done, kPieceBytes);
            const ssize_t count = uninterrupted([&] {
                return ::pread(file_.get(), bytes + done, piece,
                               static_cast<off_t>(position + done));
            });
            if (count < 0)
                return last_error();
            if (count == 0)
                break;
            done += static_cast<std::size_t>(count);
        }
        return {};
    }

    FileError write_at(std::uint64_t position, const void* data, std::size_t size) override
    {
        if (position > kLastPosition || size > kLastPosition - position)
            return error_of(EFBIG);
        const auto* bytes = static_cast<const char*>(data);
        std::size_t done = 0;
        while (done < size) {
            const std::size_t piece = std::min(size - done, kPieceBytes);
            const ssize_t count = uninterrupted([&] {
                return ::pwrite(file_.get(), bytes + done, piece,
                                static_cast<off_t>(position + done));
            });
            if (count < 0)
                return last_error();
            if (count == 0)
                return error_of(ENOSPC);
            done += static_cast<std::size_t>(count);
        }
        return {};
    }

    FileError length(std::uint64_t& bytes) const override
    {
        struct stat status;
        if (::fstat(file_.get(), &status) != 0)
            return last_error();
        bytes = static_cast<std::uint64_t>(status.st_size);
        return {};
    }

    FileError set_length(std::uint64_t bytes) override
    {
        if (bytes > kLastPosition)
            return error_of(EFBIG);
        const int result =
            uninterrupted([&] { return ::ftruncate(file_.get(), static_cast<off_t>(bytes)); });
        // For a device opened for reading the system's word is "invalid argument".
        if (result != 0)
            return errno == EINVAL ? error_of(EBADF) : last_error();
        return {};
    }

    FileError sync() override
    {
        if (uninterrupted([&] { return ::fdatasync(file_.get()); }) != 0)
            return last_error();
        return {};
    }

    FileError lock(std::uint64_t position, std::uint64_t size, FileLockKind kind) override
    {
        struct flock range = {};
        if (!describe(position, size, range))
            return error_of(EINVAL);
        if (size == 0)
            return {};
        range.l_type = kind == FileLockKind::Exclusive ? F_WRLCK : F_RDLCK;
        // Of the open description: it neither goes when another device on the file closes, nor
        // does a second device of this process slip through.
        if (uninterrupted([&] { return ::fcntl(file_.get(), F_OFD_SETLK, &range); }) != 0)
            return errno == EACCES ? error_of(EAGAIN) : last_error();
        return {};
    }

    void unlock(std::uint64_t position, std::uint64_t size) override
    {
        struct flock range = {};
        if (size == 0 || !describe(position, size, range))
            return;
        range.l_type = F_UNLCK;
        // Can't fail for a range that was locked; for another one there is nothing to tell.
        static_cast<void>(uninterrupted([&] { return ::fcntl(file_.get(), F_OFD_SETLK, &range); }));
    }

    bool is_locked_by_other(std::uint64_t position, std::uint64_t size) const override
    {
        struct flock range = {};
        if (size == 0 || !describe(position, size, range))
            return false;
        range.l_type = F_WRLCK;
        return uninterrupted([&] { return ::fcntl(file_.get(), F_OFD_GETLK, &range); }) == 0 &&
               range.l_type != F_UNLCK;
    }

    FileError identity(FileIdentity& identity) const override
    {
        struct stat status;
        if (::fstat(file_.get(), &status) != 0)
            return last_error();
        identity.volume = static_cast<std::uint64_t>(status.st_dev);
        identity.file = static_cast<std::uint64_t>(status.st_ino);
        return {};
    }

    void advise_random() override
    {
        static_cast<void>(::posix_fadvise(file_.get(), 0, 0, POSIX_FADV_RANDOM));
    }

    void start_write_out(std::uint64_t position, std::uint64_t size) override
    {
        // Where a write fails, the sync to come tells it.
        static_cast<void>(::sync_file_range(file_.get(), static_cast<off_t>(position),
                                            static_cast<off_t>(size), SYNC_FILE_RANGE_WRITE));
    }

private:
    /// False when the range can't be told to the system.
    static bool describe(std::uint64_t position, std::uint64_t size, struct flock& range)
    {
        if (position > kLastPosition || size > kLastPosition - position)
            return false;
        range.l_whence = SEEK_SET;
        range.l_start = static_cast<off_t>(position);
        range.l_len = static_cast<off_t>(size);
        return true;
    }

    Descriptor file_;
};

bool can_be_a_name(const std::string& name)
{
    return name.find('\0') == std::string::npos;
}

int open_flags(FileAccess access, FileCreate create)
{
    // Non-blocking: a pipe of that name must not wait for its other end before it is refused.
    const int common = O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    const int way = access == FileAccess::ReadWrite ? O_RDWR : O_RDONLY;
    switch (create) {
        case FileCreate::OpenExisting:
            return common | way;
        case FileCreate::OpenOrCreate:
            return common | way | O_CREAT;
        case FileCreate::CreateNew:
            return common | way | O_CREAT | O_EXCL;
        case FileCreate::CreateOrTruncate:
            break;
    }
    return common | O_RDWR | O_CREAT | O_TRUNC;  // cutting is undefined for reading alone
}

class PosixFileSystem final : public FileSystemDevice {
public:
    std::unique_ptr<FileDevice> open(const std::string& name, FileAccess access, FileCreate create,
                                     FileShare, FileError& error) override
    {
        if (!can_be_a_name(name)) {
            error = {FileErrorKind::BadName, EINVAL};
            return nullptr;
        }
        Descriptor file(
            uninterrupted([&] { return ::open(name.c_str(), open_flags(access, create), 0666); }));
        if (file.get() < 0) {
            // A pipe without a reader and a device without a driver are no files of ours either.
            error = errno == ENXIO || errno == ENODEV ? error_of(EACCES) : last_error();
            return nullptr;
        }
        struct stat status;
        if (::fstat(file.get(), &status) != 0) {
            error = last_error();
            return nullptr;
        }
        if (!S_ISREG(status.st_mode)) {
            error = error_of(S_ISDIR(status.st_mode) ? EISDIR : EACCES);
            return nullptr;
        }
        error = {};
        return std::make_unique<PosixFile>(std::move(file));
    }

    FileError rename(const std::string& from, const std::string& to) override
    {
        if (!can_be_a_name(from) || !can_be_a_name(to))
            return {FileErrorKind::BadName, EINVAL};
        if (::rename(from.c_str(), to.c_str()) != 0)
            return last_error();
        return {};
    }

    FileError remove(const std::string& name) override
    {
        if (!can_be_a_name(name))
            return {FileErrorKind::BadName, EINVAL};
        if (::unlink(name.c_str()) != 0)
            return last_error();
        return {};
    }

    FileError sync_directory_of(const std::string& name) override
    {
        if (!can_be_a_name(name))
            return {FileErrorKind::BadName, EINVAL};
        const std::size_t slash = name.rfind('/');
        std::string folder = ".";
        if (slash != std::string::npos)
            folder = slash == 0 ? "/" : name.substr(0, slash);
        const Descriptor directory(uninterrupted(
            [&] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
        if (directory.get() < 0)
            return last_error();
        if (uninterrupted([&] { return ::fsync(directory.get()); }) != 0)
            return last_error();
        return {};
    }
};

}  // namespace

FileSystemDevice& FileSystemDevice::Real()
{
    // Never destroyed, as late destructors write too, and nothing left behind by a library that
    // goes.
    alignas(PosixFileSystem) static std::byte place[sizeof(PosixFileSystem)];
    static auto* const real = ::new (place) PosixFileSystem;
    return *real;
}

}  // namespace zmr
