#pragma once

#include "Random.h"
#include "platform/FileDevice.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace zmr {

/// Files in memory that fail, stop and lose power on demand. Each keeps what was synced apart from
/// what was only written, so that a power loss can drop, tear and reorder the rest. One thread.
class FaultyFileSystem final : public FileSystemDevice {
public:
    /// Another with the same files, without faults and locks.
    [[nodiscard]] FaultyFileSystem copy() const;

    std::unique_ptr<FileDevice> open(const std::string& name, FileAccess access, FileCreate create,
                                     FileShare share, FileError& error) override;
    FileError rename(const std::string& from, const std::string& to) override;
    FileError remove(const std::string& name) override;
    FileError sync_directory_of(const std::string& name) override;

    /// Writes, syncs, cuts and directory syncs so far.
    [[nodiscard]] std::uint64_t operations() const { return operations_; }
    /// From operation `number` on (counted from 1) all of them fail; that one is done in part, as
    /// the seed says, when it is a write.
    void stop_at(std::uint64_t number, std::uint32_t seed);
    /// Operation `number` fails with `kind` and does nothing; with `sticky` all later ones, too.
    void fail_at(std::uint64_t number, FileErrorKind kind, bool sticky);
    /// Read number `number` from now fails once.
    void fail_read(std::uint64_t number) { failing_read_ = reads_ + number; }
    /// So do that one and all later ones.
    void fail_reads_from(std::uint64_t number) { failing_reads_from_ = reads_ + number; }
    /// Calls `look` within operation `number` from now: of a write half of the bytes are there.
    void within_operation(std::uint64_t number, std::function<void()> look);
    /// Calls `act` before read number `number` from now.
    void before_read(std::uint64_t number, std::function<void()> act);
    /// Ends all faults and forgets what was to be called.
    void heal();
    /// Ends all faults. Of what was not synced, each 512-byte sector of each write, each cut and
    /// each new or renamed file's entry may survive or not, in any order, as the seed says. All
    /// locks are gone; devices still open must not be used any more.
    void lose_power(std::uint32_t seed);

    /// Ends all faults and locks, as when the process was killed: what was written stays.
    void end_process();

    [[nodiscard]] bool has(const std::string& name) const { return files_.contains(name); }
    [[nodiscard]] std::string& bytes(const std::string& name) { return files_.at(name)->bytes; }
    void set_bytes(const std::string& name, std::string bytes);
    [[nodiscard]] std::uint64_t syncs() const { return syncs_; }
    /// Bytes that devices were told to start writing out.
    [[nodiscard]] std::uint64_t written_out() const { return written_out_; }
    [[nodiscard]] std::uint64_t reads() const { return reads_; }
    [[nodiscard]] std::uint64_t bytes_read() const { return bytes_read_; }

private:
    friend class FaultyFile;
    struct Change {
        bool cuts;
        std::uint64_t position;  // or the length
        std::string bytes;
    };
    struct Lock {
        const void* device;
        std::uint64_t position;
        std::uint64_t size;
        FileLockKind kind;
    };
    struct File {
        std::string bytes;
        std::string synced;
        std::vector<Change> unsynced;
        std::vector<Lock> locks;
        std::uint64_t number = 0;
        bool entry_synced = false;
        std::shared_ptr<File> replaced;  // what had the name when the entry was last synced
    };
    /// Counts an operation; the error that it meets.
    [[nodiscard]] FileError next_operation();

    std::map<std::string, std::shared_ptr<File>> files_;
    std::uint64_t files_made_ = 0;
    std::uint64_t operations_ = 0;
    std::uint64_t reads_ = 0;
    std::uint64_t syncs_ = 0;
    std::uint64_t bytes_read_ = 0;
    std::uint64_t written_out_ = 0;
    std::uint64_t stop_ = 0;
    std::uint64_t failing_ = 0;
    std::uint64_t failing_read_ = 0;
    std::uint64_t failing_reads_from_ = 0;
    std::uint64_t looked_in_ = 0;
    std::function<void()> look_;
    std::uint64_t read_acted_before_ = 0;
    std::function<void()> act_;
    FileErrorKind failure_ = FileErrorKind::None;
    bool sticky_ = false;
    Random random_;
};

}  // namespace zmr
