#pragma once

#include "platform/Export.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace zmr {

/// Why a file operation failed, the same in both lanes. The system's own number and text are kept
/// beside it in FileError.
enum class FileErrorKind : std::uint8_t {
    None,
    NotFound,      ///< No such file, or a directory of its path is missing.
    AccessDenied,  ///< Permissions, a read-only file or disk, or a directory where a file is meant.
    AlreadyExists,  ///< Asked to create a new file, and there is one.
    InUse,        ///< Another process holds it open in a way that forbids this, or holds the lock.
    DiskFull,     ///< No space, or beyond a quota or a size limit.
    TooManyOpen,  ///< The process or the system is out of file handles.
    BadName,      ///< The name can't be a file's name on this system.
    OutOfMemory,  ///< Memory ran out, the system's or the program's.
    Damaged,      ///< What must be read to go on is not what was written.
    Other         ///< A device error; see the text.
};

/// The outcome of one operation; converts to true when it failed. A plain value.
struct FileError {
    FileErrorKind kind = FileErrorKind::None;
    int system_code = 0;  ///< errno or GetLastError(), 0 when there is none.

    explicit operator bool() const { return kind != FileErrorKind::None; }
    /// A sentence in English for a message, without the file's name and without a full stop:
    /// "no space is left on the disk".
    [[nodiscard]] ZMR_GV_API std::string text() const;
};

/// How a file is opened.
enum class FileAccess : std::uint8_t { Read, ReadWrite };
enum class FileCreate : std::uint8_t {
    OpenExisting,     ///< Fails when it is missing.
    OpenOrCreate,     ///< Makes an empty one when it is missing.
    CreateNew,        ///< Fails when there is one.
    CreateOrTruncate  ///< Starts empty in either case.
};
/// What other handles may do while this one is open. Enforced by Windows only; other systems share
/// everything.
enum class FileShare : std::uint8_t { None, Read, ReadWrite };
enum class FileLockKind : std::uint8_t { Shared, Exclusive };

/// Names one file whatever path led to it. Equal only for the same file on the same volume, while
/// some handle is open.
struct FileIdentity {
    std::uint64_t volume = 0;
    std::uint64_t file = 0;
    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

/// One open file: positioned reads and writes, length, sync, cut, byte-range locks. All the file
/// access of the library goes through this class, so that tests can put a faulty one in its place.
///
/// Positions and lengths are in bytes and 64 bits wide. No operation moves a shared position, so
/// several threads may call the const operations of one device at once; writing operations need
/// the caller's own order. Interrupted calls are taken up again inside. Nothing here throws.
class ZMR_GV_API FileDevice {
public:
    virtual ~FileDevice() = default;
    FileDevice(const FileDevice&) = delete;
    FileDevice& operator=(const FileDevice&) = delete;

    /// Reads up to `size` bytes from `position`. `done` receives the count: less than `size` only
    /// at the end of the file (then without an error) or on an error.
    [[nodiscard]] virtual FileError read_at(std::uint64_t position, void* data, std::size_t size,
                                            std::size_t& done) const = 0;
    /// Writes all of `data`, extending the file as needed (a gap reads as zeros). On an error any
    /// part of the range may have been written.
    [[nodiscard]] virtual FileError write_at(std::uint64_t position, const void* data,
                                             std::size_t size) = 0;
    [[nodiscard]] virtual FileError length(std::uint64_t& bytes) const = 0;
    /// Cuts or extends the file to `bytes`.
    [[nodiscard]] virtual FileError set_length(std::uint64_t bytes) = 0;
    /// Returns when everything written so far, and the length, is on the disk.
    [[nodiscard]] virtual FileError sync() = 0;
    /// Tries to lock the range without waiting; InUse when another process or another device of
    /// this process holds it. The range may lie behind the end. Locks belong to this device alone:
    /// they go when it is closed or the process ends in any way, never when another device on the
    /// file closes. A range that this device holds shared may be locked exclusive (and back) by a
    /// second call; on Windows this lets go for an instant.
    [[nodiscard]] virtual FileError lock(std::uint64_t position, std::uint64_t size,
                                         FileLockKind kind) = 0;
    /// Lets a range go that was locked with the same numbers.
    virtual void unlock(std::uint64_t position, std::uint64_t size) = 0;
    /// True when an exclusive lock of that range by another device would conflict now.
    [[nodiscard]] virtual bool is_locked_by_other(std::uint64_t position,
                                                  std::uint64_t size) const = 0;
    /// The identity of the file behind the device.
    [[nodiscard]] virtual FileError identity(FileIdentity& identity) const = 0;
    /// A hint that reads will jump about; no read-ahead. Costs one call, never fails.
    virtual void advise_random() = 0;
    /// A hint that written bytes may start on their way to the disk, so that a later sync() has
    /// less to wait for. Costs one call, never fails; nothing where the system has no such call.
    virtual void start_write_out(std::uint64_t /*position*/, std::uint64_t /*size*/) {}

protected:
    FileDevice() = default;
};

/// Opens files and acts on their names: the file system as the library sees it. Names are UTF-8 in
/// both lanes; in the win lane both slashes are accepted, and names are passed on in UTF-16.
/// Stateless; any thread.
class ZMR_GV_API FileSystemDevice {
public:
    virtual ~FileSystemDevice() = default;
    /// Null on failure, with the reason in `error`. A directory is AccessDenied.
    [[nodiscard]] virtual std::unique_ptr<FileDevice> open(const std::string& name,
                                                           FileAccess access, FileCreate create,
                                                           FileShare share, FileError& error) = 0;
    /// Replaces `to` when it exists, in one step that a crash leaves either undone or done.
    [[nodiscard]] virtual FileError rename(const std::string& from, const std::string& to) = 0;
    [[nodiscard]] virtual FileError remove(const std::string& name) = 0;
    /// Makes the entries of the directory that holds `name` durable. A no-op where the system has
    /// no such call.
    [[nodiscard]] virtual FileError sync_directory_of(const std::string& name) = 0;

    /// The real file system of this machine. Never destroyed.
    [[nodiscard]] static FileSystemDevice& Real();
};

}  // namespace zmr
