#pragma once

#include "store/DirectoryIndex.h"
#include "store/IndexFold.h"
#include "store/LibraryFile.h"
#include "store/LibraryStorage.h"
#include "store/SpaceMap.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace zmr {

/// What stands behind a LibraryFile: the file's bytes, its index, its free space and the running
/// commit. Its operations are those of LibraryFile, called under `mutex`; the sources are
/// LibraryOpen and LibraryTail (open, find the last commit, close), LibraryCommit (commits, roots,
/// space), LibraryContents (reading) and LibraryChanges, LibraryPack and LibraryVerify.
class LibraryState {
public:
    LibraryState(FileSystemDevice& file_system, const LibraryTuning& limits)
        : files(file_system),
          tuning(limits),
          storage(file_system, limits.one_sync_bytes),
          loader(storage),
          index(loader, damage)
    {
    }

    // LibraryOpen
    [[nodiscard]] LibraryOpenResult open(const std::string& name, LibraryAccess access,
                                         std::string_view owner_text);
    [[nodiscard]] LibraryOpenResult begin_writing(std::string_view owner_text);
    [[nodiscard]] bool refresh();
    bool close();

    // LibraryCommit
    [[nodiscard]] bool can_write() const
    {
        return is_open && writable && !busy && !storage.error();
    }
    bool commit();
    bool commit_if_due();
    /// Called behind each change; `bytes` is what it wrote or will write.
    void changed(std::uint64_t bytes);
    /// Commits what there is; with `root` as a root, which a slot names durably when it returns.
    /// Never throws: where memory runs out, the commit fails.
    bool commit_now(bool root);
    /// Runs a change. One that throws may have been done by half: then the file fails as by a
    /// failed write, and the last commit is what is seen.
    template <typename Change>
    auto change(const Change& act)
    {
        try {
            return act();
        } catch (...) {
            fail();
            throw;
        }
    }
    /// Sets the error of a change that could not be ended, and goes back.
    void fail() noexcept;
    /// Gives space up that the last commit, or only the running one, has taken.
    void release(const FileRange& range);
    /// Room for `bytes` and their frame in free space; false when they must be appended.
    [[nodiscard]] bool find_room(std::uint64_t bytes, std::uint64_t& start);
    /// Writes a block into free space or behind all.
    [[nodiscard]] bool write_block(FrameKind kind, std::string_view bytes, std::string_view more,
                                   std::uint64_t& position);
    void load_space();

    // LibraryContents
    [[nodiscard]] bool find(const LibraryPath& path, const EntryKey& key,
                            DirectoryIndex::Found& found) const;
    [[nodiscard]] LibraryContent content_of(const DirectoryIndex::Found& found) const;
    [[nodiscard]] bool get(const LibraryPath& path, const EntryKey& key, std::string& bytes);
    [[nodiscard]] std::size_t read_at(const LibraryContent& content, std::uint64_t offset,
                                      char* data, std::size_t size);
    [[nodiscard]] std::size_t read_position(std::uint64_t position, char* data, std::size_t size);
    [[nodiscard]] bool put(const LibraryPath& path, const EntryKey& key, ContentKind kind,
                           std::string_view label, std::string_view bytes);
    [[nodiscard]] bool put_from(const LibraryPath& path, const EntryKey& key,
                                std::string_view label, const LibrarySource& source);
    [[nodiscard]] bool copy_from(const LibraryPath& path, const EntryKey& key, LibraryState& source,
                                 const LibraryPath& from_path, const EntryKey& from_key);
    bool remove(const LibraryPath& path, const EntryKey& key);
    [[nodiscard]] bool rename(const LibraryPath& path, const EntryKey& key,
                              const LibraryPath& to_path, const EntryKey& to_key);
    [[nodiscard]] bool rename_directory(const LibraryPath& from, const LibraryPath& to);
    bool clear();
    [[nodiscard]] bool set_file_kind(std::string_view kind);
    [[nodiscard]] std::vector<std::string> directories(const LibraryPath& path) const;
    [[nodiscard]] bool pin(const LibraryPath& path, const EntryKey& key, LibraryContent& content);
    void unpin(const LibraryContent& content);

    // LibraryPack, LibraryVerify
    bool pack(const LibraryProgress& progress);
    bool verify(const std::function<void(const LibraryDamage&)>& visit,
                const LibraryProgress& progress);
    [[nodiscard]] LibraryStatistics statistics();

    mutable std::recursive_mutex mutex;
    bool is_open = false;
    bool writable = false;
    bool busy = false;  ///< A source or a visitor of the user's runs.
    int scopes = 0;
    bool commit_wanted = false;

    FileSystemDevice& files;
    const LibraryTuning tuning;
    LibraryStorage storage;
    BlockLoader loader;
    DamageLog damage;
    DirectoryIndex index;

private:
    friend class LibraryPack;
    friend class LibraryVerify;

    /// A commit behind the root, as far as space is concerned.
    struct TailCommit {
        std::uint64_t number;
        std::vector<CommitRecord::Used> used;
        std::vector<FileRange> given_up;
        bool cleared;
        std::uint64_t start_of_new;
    };
    class Replay;

    // LibraryOpen
    /// Takes the newest commit over the writer's device, and says who writes.
    [[nodiscard]] LibraryOpenResult load_to_write(const std::string& owner);
    [[nodiscard]] LibraryOpenResult open_device(const std::string& name, LibraryAccess access,
                                                std::string_view owner_text);
    /// Reads the roots and follows the tail, also beside a process that writes.
    [[nodiscard]] LibraryOpenResult load();
    [[nodiscard]] LibraryOpenResult load_once();
    [[nodiscard]] bool read_slot(std::size_t which, RootSlot& slot) const;
    /// True when a slot names a root behind the commit that is seen.
    [[nodiscard]] bool is_superseded() const;
    [[nodiscard]] bool load_from(const RootSlot& slot, std::uint64_t file_bytes);
    /// Follows the tail; false when it ends in a commit that must have been whole once.
    [[nodiscard]] bool follow_tail(std::uint64_t file_bytes);
    [[nodiscard]] bool find_commit(std::uint64_t& position, std::uint64_t file_bytes,
                                   std::string& payload) const;
    [[nodiscard]] bool wrote_all(const CommitRecord& record, std::uint64_t frame_position) const;
    /// False when the record's changes are malformed.
    [[nodiscard]] bool apply(CommitRecord& record, const std::string& payload,
                             std::uint64_t payload_position);
    [[nodiscard]] LibraryOpenResult lock_writer(FileDevice& device);
    [[nodiscard]] bool lock_reader(FileDevice& device);
    void keep_reader_lock();
    /// Why an older state must not be written to.
    [[nodiscard]] LibraryOpenResult refuse_stale() const;
    void forget_commits();
    void forget_all();
    /// Sees the last commit again after a failed write.
    void go_back();

    // LibraryCommit
    [[nodiscard]] bool write_commit(bool root);
    [[nodiscard]] bool fold();
    [[nodiscard]] bool write_free_list();
    [[nodiscard]] bool write_record(bool root);
    [[nodiscard]] bool write_slot(const RootSlot& slot, bool durably);
    void note_synced();
    void advance_space();
    [[nodiscard]] std::uint64_t usable_number() const;

    // LibraryContents
    [[nodiscard]] bool store(std::string_view bytes, EntryValue& value);
    void put_entry(const LibraryPath& path, const EntryKey& key, std::string_view label,
                   const EntryValue& value);
    [[nodiscard]] bool accepts(const LibraryPath& path, const EntryKey& key) const;
    [[nodiscard]] bool stored_bytes(const EntryValue& value, std::string& bytes) const;
    [[nodiscard]] bool load_table(const LibraryContent& content);
    [[nodiscard]] const std::string* verified_block(const LibraryContent& content,
                                                    std::uint64_t block);
    [[nodiscard]] bool copy_stored(const EntryValue& from, const LibraryState& source,
                                   EntryValue& to);

    std::string name_;
    std::string owner_;
    SpaceMap space_;
    bool space_loaded_ = true;
    std::vector<TailCommit> tail_commits_;
    ChangeLog log_;
    std::unique_ptr<FileDevice> former_reader_;  // keeps the lock of a state that pins hold

    // The last commit, and the root that it stands on.
    std::uint64_t number_ = 0;
    std::uint64_t checksum_ = 0;
    std::array<RootSlot, 2> slots_;
    std::array<bool, 2> slot_valid_{};
    std::array<std::uint64_t, 2> durable_{};  // numbers that the slots on the disk surely name
    std::vector<FileRange> records_;          // of the root and the commits behind it
    std::uint64_t record_bytes_ = 0;          // of the commits behind the root
    bool root_unnamed_ = false;               // no slot on the disk surely names that root

    // The running commit.
    std::vector<FileRange> given_up_;
    bool cleared_ = false;
    std::uint64_t start_of_new_ = 0;
    bool index_ahead_ = false;  // folded already, so that the record must hold the root
    bool space_advanced_ = false;
    static constexpr int kFewCommits = 3;
    int small_commits_ = 0;  // since the file was opened
    std::size_t fold_at_bytes_ = tuning.change_bytes;
    std::uint64_t work_bytes_ = 0;
    bool has_work_ = false;
    std::chrono::steady_clock::time_point work_since_;
    // While packing: which blocks are worth moving, where room for a content must end, and where
    // the file is to be cut.
    static constexpr auto kNoLimit = std::numeric_limits<std::uint64_t>::max();
    std::uint64_t move_above_ = kNoLimit;
    std::uint64_t room_limit_ = kNoLimit;
    std::uint64_t cut_at_ = kNoLimit;

    std::uint64_t reader_number_ = 0;
    bool stale_ = false;  // an older state, because the newest can't be read

    std::map<std::uint64_t, LibraryContent> pinned_;
    // The block of a content that was read last, and the last table of checksums.
    std::uint64_t block_position_ = 0;
    std::uint64_t block_checksum_ = 0;
    std::string block_;
    std::uint64_t table_position_ = 0;
    std::uint64_t table_checksum_ = 0;
    std::string table_;
    ByteBuffer copied_;  // at most kLibraryBlock, of the content that is being copied
};

}  // namespace zmr
