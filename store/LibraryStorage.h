#pragma once

#include "platform/FileDevice.h"
#include "store/ByteBuffer.h"
#include "store/LibraryFormat.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace zmr {

enum class ReadOutcome : std::uint8_t {
    Good,
    Damaged,    ///< Beyond the file's end, or the checksum does not fit.
    Unreadable  ///< The device refused; trying again may help.
};

/// The bytes of a library file below its meaning: reading, appending through a small buffer,
/// writing into free space, syncing, and the account that a commit record gives of what its commit
/// wrote. The first failed write or sync stays in error(), and nothing is written after it.
class LibraryStorage {
public:
    /// A commit that writes more than `one_sync_bytes` must be synced in front of its record.
    LibraryStorage(FileSystemDevice& files, std::uint64_t one_sync_bytes)
        : files_(files), one_sync_bytes_(one_sync_bytes)
    {
    }

    /// Takes an open device. `fixed_part_missing`: header and slots are still to be written.
    void attach(std::unique_ptr<FileDevice> device, std::string name, std::string owner,
                bool fixed_part_missing);
    /// A file that is made at the first flush, locked for writing and given `owner`.
    void attach_missing(std::string name, std::string owner);
    void detach();
    [[nodiscard]] FileDevice* device() const { return device_.get(); }
    /// A reader that lives on beside its writing successor, for its lock.
    [[nodiscard]] std::unique_ptr<FileDevice> release_device() { return std::move(device_); }

    /// Where the next append goes; everything from here on is unused.
    [[nodiscard]] std::uint64_t end() const { return end_; }
    /// Drops what is not flushed and goes on at `end`.
    void restart_at(std::uint64_t end);

    /// Reads exactly `size` bytes, not yet flushed ones included.
    [[nodiscard]] ReadOutcome read(std::uint64_t position, void* data, std::size_t size) const;
    /// Reads a string of `length` bytes that must hash to `checksum`. Memory is taken only after
    /// the length was compared with the file's.
    [[nodiscard]] ReadOutcome read_checked(std::uint64_t position, std::uint64_t length,
                                           std::uint64_t checksum, std::string& bytes) const;
    [[nodiscard]] ReadOutcome read_checked(std::uint64_t position, std::uint64_t length,
                                           std::uint64_t checksum, ByteBuffer& bytes) const;
    /// Reads up to `size` bytes and gives the count.
    [[nodiscard]] std::size_t read_some(std::uint64_t position, void* data, std::size_t size) const;
    /// The length of the file with what is not flushed.
    [[nodiscard]] std::uint64_t length() const;

    // Writing. False when error() is set.
    /// Appends a frame and behind it the bytes and those of `more`; `position` is that of the
    /// bytes.
    [[nodiscard]] bool append(FrameKind kind, std::string_view bytes, std::string_view more,
                              std::uint64_t& position);
    /// The same in pieces, when the length is not known before the end.
    [[nodiscard]] bool begin_stream(std::uint64_t& position);
    [[nodiscard]] bool stream(const void* data, std::size_t size);
    [[nodiscard]] bool end_stream();
    /// Forgets a stream that was begun; its space is used again.
    void cancel_stream();
    /// The same into free space that begins at `start`; the commit's account lists it.
    [[nodiscard]] bool write_free(std::uint64_t start, FrameKind kind, std::string_view bytes,
                                  std::string_view more, std::uint64_t& position);
    /// Writes a piece of free space; note_used tells the account of the whole, which must then be
    /// synced before the record.
    [[nodiscard]] bool write_piece(std::uint64_t position, std::string_view bytes);
    void note_used(std::uint64_t start, std::uint64_t length) { used_[start] = {length, 0}; }
    /// Takes a range out of the account; it is to be written anew.
    void forget_free(std::uint64_t start) { used_.erase(start); }
    /// Writes at a place of the fixed part.
    [[nodiscard]] bool write_fixed(std::uint64_t position, std::string_view bytes);
    [[nodiscard]] bool flush();
    [[nodiscard]] bool sync();
    /// Writes `bytes` zeros behind all unless some are there still. A disk without room for them
    /// is no error; they are not tried again then.
    void reserve(std::uint64_t bytes);
    /// Cuts off what lies behind all. A file that can't be cut is as good, only longer.
    void cut_reserve();

    // The account of the running commit.
    struct Used {
        std::uint64_t length;
        std::uint64_t checksum;
    };
    [[nodiscard]] std::uint64_t commit_start() const { return commit_start_; }
    [[nodiscard]] std::uint64_t commit_bytes() const { return commit_bytes_; }
    /// Only while must_sync_first() is false.
    [[nodiscard]] std::uint64_t appended_checksum() const { return appended_.value(); }
    [[nodiscard]] const std::map<std::uint64_t, Used>& used() const { return used_; }
    /// True when the account can't tell the bytes any more, so that they must be synced first.
    [[nodiscard]] bool must_sync_first() const { return must_sync_first_; }
    void set_must_sync_first() { must_sync_first_ = true; }
    void begin_commit();

    /// The first read that the device refused since forget_read_error().
    [[nodiscard]] const FileError& read_error() const { return read_error_; }
    void forget_read_error() { read_error_ = {}; }

    [[nodiscard]] const FileError& error() const { return error_; }
    void set_error(const FileError& error);
    [[nodiscard]] std::uint64_t syncs() const { return syncs_; }

private:
    static constexpr std::size_t kBufferBytes = 64 * 1024;
    static constexpr std::uint64_t kWriteOutBytes = 4u << 20;
    /// Whether memory may be taken for that many bytes there.
    [[nodiscard]] bool may_hold(std::uint64_t position, std::uint64_t length) const;
    /// Makes the file, or gives an empty one its fixed part.
    [[nodiscard]] bool make_file();
    [[nodiscard]] bool add(std::string_view bytes);
    /// Counts what the commit writes.
    void count_written(std::uint64_t bytes);
    /// Sends what a large commit has appended on to the disk while it goes on.
    void write_out();
    /// Reads from the device and remembers that it refused. False then.
    [[nodiscard]] bool read_device(std::uint64_t position, void* data, std::size_t size,
                                   std::size_t& done) const;

    FileSystemDevice& files_;
    const std::uint64_t one_sync_bytes_;
    std::unique_ptr<FileDevice> device_;
    std::string name_;
    std::string owner_;
    bool fixed_part_missing_ = false;
    std::uint64_t end_ = kDataStart;
    std::string buffer_;  // the bytes before end_ that are not flushed
    std::uint64_t stream_frame_ = 0;
    std::uint64_t commit_start_ = kDataStart;
    std::uint64_t commit_bytes_ = 0;
    std::uint64_t written_out_ = kDataStart;  // so far the disk was told to write
    RunningChecksum appended_;
    std::map<std::uint64_t, Used> used_;
    bool must_sync_first_ = false;
    bool no_reserve_ = false;
    FileError error_;
    mutable FileError read_error_;
    std::uint64_t syncs_ = 0;
};

}  // namespace zmr
