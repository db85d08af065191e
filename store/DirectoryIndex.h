#pragma once

#include "store/BlockLoader.h"
#include "store/CommitRecord.h"
#include "store/LibraryFile.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace zmr {

/// An extent of a directory's entries, with the key of its first.
struct ExtentRef {
    std::string type;
    std::string name;
    BlockRef block;
    std::uint64_t entries = 0;
    [[nodiscard]] EntryKey first() const { return {type, name}; }
};

/// A directory as a page of the table holds it.
struct Directory {
    std::uint64_t entries = 0;
    std::vector<std::pair<std::string, std::uint64_t>> types;  ///< Ascending.
    std::vector<ExtentRef> extents;                            ///< Ascending.

    void write(std::string_view key, IndexBlockBuilder& out) const;
    /// False when record `index` of the page is malformed.
    [[nodiscard]] bool read(const IndexBlock& page, std::size_t index);
};

/// What the entry's record tells; the views are the record's.
[[nodiscard]] inline LibraryEntryView view_of(const EntryRecord& record)
{
    const EntryValue& value = record.value;
    LibraryEntryView view;
    view.name = record.key.name;
    view.label = record.label;
    view.kind = value.has(EntryValue::kRaw) ? ContentKind::Raw : ContentKind::Streamable;
    view.length = value.length;
    view.has_bytes = value.has(EntryValue::kInIndex) && !value.has(EntryValue::kCompressed);
    if (view.has_bytes)
        view.bytes = std::as_bytes(std::span(value.bytes));
    return view;
}

/// A change of one entry that lies over the index in the file: a new value, or its removal.
struct EntryChange {
    bool removed = false;
    EntryValue value;   ///< Without its bytes.
    std::string bytes;  ///< Of a content in the index.
    std::string label;
    /// The value with its bytes; borrowed.
    [[nodiscard]] EntryValue view() const
    {
        EntryValue whole = value;
        whole.bytes = bytes;
        return whole;
    }
};

/// Keeps the key of an entry and compares with borrowed ones.
struct OwnedEntryKey {
    std::string type;
    std::string name;
    [[nodiscard]] EntryKey view() const { return {type, name}; }
};
struct EntryKeyLess {
    using is_transparent = void;
    static EntryKey key(const EntryKey& key) { return key; }
    static EntryKey key(const OwnedEntryKey& owned) { return owned.view(); }
    template <class A, class B>
    bool operator()(const A& a, const B& b) const
    {
        return key(a) < key(b);
    }
};
using EntryChanges = std::map<OwnedEntryKey, EntryChange, EntryKeyLess>;
using TypeCounts = std::map<std::string, std::int64_t, std::less<>>;

/// What changed in one directory since the root.
struct DirectoryChanges {
    bool has_base = true;  ///< What the root's table holds under `base_key` lies below.
    std::string base_key;  ///< Another than its own key after a move.
    EntryChanges entries;
    TypeCounts types;  ///< Differences.
    std::int64_t count = 0;
};

/// Remembers the last damage that any part met.
class DamageLog {
public:
    void note(LibraryDamage::Part part, std::string_view directory, std::string_view type,
              std::string_view name, std::string text);
    [[nodiscard]] const LibraryDamage& last() const { return last_; }
    void clear() { last_ = {}; }

private:
    LibraryDamage last_;
};

/// The names of a library: the index that the root names, read as needed, under the changes since.
/// Directories are named by their keys (LibraryPath::key). The caller locks.
class DirectoryIndex {
public:
    DirectoryIndex(BlockLoader& loader, DamageLog& damage) : loader_(loader), damage_(damage) {}

    /// Stands on `root` with no changes.
    void reset(RootRecord root);
    [[nodiscard]] const RootRecord& root() const { return root_; }

    struct Found {
        EntryValue value;
        std::string_view label;
        std::shared_ptr<const IndexBlock> block;  ///< What the views borrow from, unless a change.
    };
    /// The views of `found` hold until the next change.
    [[nodiscard]] bool find(const std::string& directory, const EntryKey& key, Found& found) const;

    /// `is_new` tells whether it was absent.
    void put(const std::string& directory, const EntryKey& key, std::string_view label,
             const EntryValue& value, bool is_new);
    /// The same when that is not known: true when it was, else `replaced` is where the old one lay.
    bool put(const std::string& directory, const EntryKey& key, std::string_view label,
             const EntryValue& value, FileRange& replaced);
    /// Of an entry that is there.
    void remove(const std::string& directory, const EntryKey& key);
    void move_directory(const std::string& from, const std::string& to);
    void clear();
    void set_file_kind(std::string_view kind);
    void set_free_list(const BlockRef& block) { root_.free_list = block; }
    /// Has the directory folded though nothing in it changes.
    void touch(const std::string& directory) { static_cast<void>(changes_of(directory)); }
    /// False when the directory would hold more types than the format allows.
    [[nodiscard]] bool accepts_type(const std::string& directory, std::string_view type) const;
    [[nodiscard]] const std::string& file_kind() const { return root_.file_kind; }

    [[nodiscard]] std::uint64_t entries() const;
    [[nodiscard]] LibraryEntryList list(const std::string& directory, std::string_view type) const;
    [[nodiscard]] std::vector<std::string> types_in(const std::string& directory) const;
    [[nodiscard]] std::vector<std::string> types() const;
    /// The first directory with entries whose key is not below `key`; false when there is none.
    [[nodiscard]] bool next_directory(std::string_view key, std::string& found) const;
    /// The extents of a directory as the root's index holds them, and the pages, for those who
    /// check all. Null when there is none.
    [[nodiscard]] std::shared_ptr<const Directory> base_of(const std::string& directory,
                                                           ReadOutcome& outcome) const;
    /// Told each entry of a directory, ascending; false stops. The views hold during the call.
    using EntryVisitor = std::function<bool(const EntryRecord&)>;
    void for_each(const std::string& directory, const EntryVisitor& visit) const;
    /// Only those of one type.
    void for_each(const std::string& directory, std::string_view type,
                  const EntryVisitor& visit) const;

    [[nodiscard]] bool has_changes() const;
    /// The memory that the changes take, about.
    [[nodiscard]] std::size_t change_bytes() const { return change_bytes_; }

private:
    friend class IndexFold;
    /// What changed in a directory; null when nothing did.
    [[nodiscard]] const DirectoryChanges* find_changes(const std::string& directory) const
    {
        if (last_found_ != nullptr && last_found_->first == directory)
            return &last_found_->second;
        return look_for_changes(directory);
    }
    [[nodiscard]] const DirectoryChanges* look_for_changes(const std::string& directory) const;
    DirectoryChanges& changes_of(const std::string& directory);
    void count(DirectoryChanges& changes, std::string_view type, std::int64_t difference);
    /// False when the root's table has none under that key.
    [[nodiscard]] bool read_base(const std::string& base_key, Directory& directory,
                                 ReadOutcome& outcome) const;
    [[nodiscard]] std::shared_ptr<const Directory> base_at(const std::string& base_key,
                                                           ReadOutcome& outcome) const;
    [[nodiscard]] std::size_t page_of(std::string_view key) const;
    [[nodiscard]] bool next_base(std::string_view key, std::string& found) const;
    [[nodiscard]] bool has_entries(const DirectoryChanges& changes) const;
    /// An entry as the root's index holds it.
    [[nodiscard]] bool find_in_base(const std::string& directory, const EntryKey& key,
                                    Found& found) const;
    /// Puts a change at `place`, where that of `key` is or belongs.
    void set_change(DirectoryChanges& changes, EntryChanges::iterator place, const EntryKey& key,
                    std::string_view label, const EntryValue& value);
    /// The extent that holds `key` if any does.
    [[nodiscard]] static std::size_t extent_of(const Directory& base, const EntryKey& key);
    void load_types() const;
    /// From `first` to before `last`, or to the end.
    void walk(const std::string& directory, const EntryKey& first, const EntryKey* last,
              const EntryVisitor& visit) const;
    void note_damage(const std::string& directory, const ExtentRef& extent) const;
    [[nodiscard]] std::shared_ptr<const IndexBlock> load_extent(const std::string& directory,
                                                                const ExtentRef& extent) const;

    BlockLoader& loader_;
    DamageLog& damage_;
    RootRecord root_;
    using Changes = std::map<std::string, DirectoryChanges, std::less<>>;
    Changes changes_;
    /// The one that was found last: most work stays in a directory for long.
    mutable Changes::pointer last_found_ = nullptr;
    TypeCounts type_changes_;
    std::int64_t count_changes_ = 0;
    std::size_t change_bytes_ = 0;
    mutable bool types_loaded_ = false;
    mutable TypeCounts types_;  // of the root
    mutable std::unordered_map<std::string, std::shared_ptr<const Directory>> directories_;
    mutable std::size_t directory_bytes_ = 0;
};

}  // namespace zmr
