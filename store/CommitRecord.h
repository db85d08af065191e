#pragma once

#include "store/LibraryFormat.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zmr {

/// A page of the directory table.
struct PageRef {
    std::string first;  ///< The key of its first directory.
    BlockRef block;
    std::uint64_t directories = 0;
};

/// The whole state of a library at one commit.
struct RootRecord {
    std::string file_kind;
    std::uint64_t entries = 0;
    BlockRef types;
    BlockRef free_list;
    std::vector<PageRef> pages;
    void write(ByteWriter& out) const;
    void read(ByteReader& in, std::uint64_t file_end);
};

/// What one commit says of itself; docs/library-format.md tells the fields.
struct CommitRecord {
    static constexpr std::uint64_t kSyncedFirst = 1;
    static constexpr std::uint64_t kHasRoot = 2;
    static constexpr std::uint64_t kCleared = 4;
    struct Used {
        FileRange range;
        std::uint64_t checksum = 0;
    };

    std::uint64_t number = 0;
    std::uint64_t previous_checksum = 0;
    std::uint64_t start = kDataStart;
    std::uint64_t flags = 0;
    std::uint64_t appended_checksum = 0;
    std::uint64_t start_of_new = 0;
    std::vector<Used> used;
    std::vector<FileRange> given_up;
    RootRecord root;
    std::string_view changes;  ///< Borrowed from what was decoded.

    [[nodiscard]] bool has(std::uint64_t flag) const { return (flags & flag) != 0; }
    /// The payload with its checksum behind it.
    [[nodiscard]] std::string encode() const;
    /// False when the payload is malformed. `file_end` bounds what it may point at.
    [[nodiscard]] bool decode(std::string_view payload, std::uint64_t file_end);
    /// The checksum at a payload's end, by which the next commit names this one.
    [[nodiscard]] static std::uint64_t checksum_in(std::string_view payload)
    {
        return load_u64(payload.data() + payload.size() - 8);
    }
    /// True when the payload's checksum fits.
    [[nodiscard]] static bool is_whole(std::string_view payload);
};

enum class ChangeKind : std::uint8_t {
    Directory = 1,
    Put = 2,
    Remove = 3,
    MoveDirectory = 4,
    FileKind = 5,
    Clear = 6
};

/// Collects the changes of the running commit in their stored form.
class ChangeLog {
public:
    void clear();
    void put(const std::string& directory, std::string_view type, std::string_view name,
             std::string_view label, const EntryValue& value, bool is_new);
    void remove(const std::string& directory, std::string_view type, std::string_view name);
    void move_directory(std::string_view from, std::string_view to);
    void file_kind(std::string_view kind);
    void clear_all();
    [[nodiscard]] const std::string& bytes() const { return bytes_; }
    [[nodiscard]] bool empty() const { return bytes_.empty(); }

private:
    void in_directory(const std::string& directory);
    std::string bytes_;
    std::string directory_;
    bool has_directory_ = false;
};

/// Told the changes of a record one by one; see read_changes.
class ChangeVisitor {
public:
    virtual ~ChangeVisitor() = default;
    virtual void put(const std::string& directory, std::string_view type, std::string_view name,
                     std::string_view label, const EntryValue& value, bool is_new) = 0;
    virtual void remove(const std::string& directory, std::string_view type,
                        std::string_view name) = 0;
    virtual void move_directory(const std::string& from, const std::string& to) = 0;
    virtual void file_kind(std::string_view kind) = 0;
    virtual void clear_all() = 0;
};

/// False, with a part of the changes told, when the bytes are malformed. `bytes_position` is where
/// they lie in the file.
[[nodiscard]] bool read_changes(std::string_view bytes, std::uint64_t bytes_position,
                                std::uint64_t file_end, ChangeVisitor& visitor);

}  // namespace zmr
