#include "store/LibraryState.h"

#include <algorithm>
#include <utility>

// Reading and checking all of a library.
namespace zmr {

/// One run of verify.
class LibraryVerify {
public:
    LibraryVerify(LibraryState& state, const std::function<void(const LibraryDamage&)>& visit,
                  const LibraryProgress& progress)
        : state_(state), visit_(visit), progress_(progress), all_(state.storage.length())
    {
    }
    [[nodiscard]] bool run();

private:
    void found(LibraryDamage::Part part, const LibraryPath& path, const EntryKey& key,
               std::string text);
    void check_roots();
    void check_tables();
    void check_directory(const LibraryPath& path);
    void check_content(const LibraryPath& path, const EntryRecord& entry);
    /// Counts bytes that were read; false when the user stops.
    bool advance(std::uint64_t bytes);

    LibraryState& state_;
    const std::function<void(const LibraryDamage&)>& visit_;
    const LibraryProgress& progress_;
    std::uint64_t done_ = 0;
    std::uint64_t all_;
    bool good_ = true;
    bool stopped_ = false;
    std::string piece_;
};

void LibraryVerify::found(LibraryDamage::Part part, const LibraryPath& path, const EntryKey& key,
                          std::string text)
{
    good_ = false;
    state_.damage.note(part, path.key(), key.type, key.name, std::move(text));
    if (visit_)
        visit_(state_.damage.last());
}

bool LibraryVerify::advance(std::uint64_t bytes)
{
    done_ += bytes;
    if (!stopped_ && progress_ && !progress_(done_, std::max(done_, all_)))
        stopped_ = true;
    return !stopped_;
}

void LibraryVerify::check_roots()
{
    if (state_.storage.device() == nullptr || (state_.number_ == 0 && !state_.stale_))
        return;  // nothing was committed yet, and the roots may still be missing
    RootSlot slot;
    for (std::size_t i = 0; i < 2; ++i) {
        if (!state_.read_slot(i, slot))
            found(LibraryDamage::Part::RootSlot, {}, {},
                  i == 0 ? "the first root is damaged" : "the second root is damaged");
    }
    std::string header(kSectorBytes, '\0');
    header.resize(state_.storage.read_some(0, header.data(), header.size()));
    if (decode_header(header) != HeaderKind::Valid)
        found(LibraryDamage::Part::RootSlot, {}, {}, "the header is damaged");
    if (state_.stale_)
        found(LibraryDamage::Part::RootSlot, {}, {},
              "the newest state is damaged; this is an older one");
}

void LibraryVerify::check_tables()
{
    ReadOutcome outcome = ReadOutcome::Good;
    const RootRecord& root = state_.index.root();
    if (root.types.length > 0)
        static_cast<void>(state_.loader.read_bytes(root.types, outcome));
    if (outcome != ReadOutcome::Good)
        found(LibraryDamage::Part::TypeTable, {}, {}, "the table of types can't be read");
    outcome = ReadOutcome::Good;
    if (root.free_list.length > 0)
        static_cast<void>(state_.loader.read_bytes(root.free_list, outcome));
    // The writer's, not the reader's: a pack cuts off the list of the root before its own.
    if (outcome != ReadOutcome::Good && !state_.is_superseded())
        found(LibraryDamage::Part::FreeSpace, {}, {}, "the list of free space can't be read");
    for (const PageRef& page : root.pages) {
        if (state_.loader.load(page.block, IndexBlock::Kind::Page, outcome) == nullptr) {
            LibraryPath first;
            static_cast<void>(first.assign_key(page.first));
            found(LibraryDamage::Part::DirectoryTable, first, {},
                  "a page of the directory table can't be read");
        }
        if (!advance(page.block.length))
            return;
    }
}

void LibraryVerify::check_content(const LibraryPath& path, const EntryRecord& entry)
{
    const EntryValue& value = entry.value;
    if (value.has(EntryValue::kInIndex))
        return;
    bool good = true;
    if (!value.has(EntryValue::kInBlocks)) {
        good = state_.storage.read_checked(value.position, value.stored, value.checksum, piece_) ==
               ReadOutcome::Good;
    } else {
        std::string table;
        good = state_.storage.read_checked(value.position + value.stored,
                                           block_table_bytes(value.stored), value.checksum,
                                           table) == ReadOutcome::Good;
        std::size_t each = 0;
        for (std::uint64_t at = 0; good && at < value.stored; at += kLibraryBlock, each += 8) {
            const std::uint64_t part = std::min(kLibraryBlock, value.stored - at);
            good = state_.storage.read_checked(value.position + at, part,
                                               load_u64(table.data() + each),
                                               piece_) == ReadOutcome::Good;
            if (!advance(part))
                return;
        }
    }
    if (!good)
        found(LibraryDamage::Part::Content, path, entry.key, "the content's checksum does not fit");
    if (!value.has(EntryValue::kInBlocks))
        advance(value.stored);
}

void LibraryVerify::check_directory(const LibraryPath& path)
{
    ReadOutcome outcome;
    const auto base = state_.index.base_of(path.key(), outcome);
    for (std::size_t i = 0; base != nullptr && i < base->extents.size() && !stopped_; ++i) {
        const ExtentRef& extent = base->extents[i];
        const auto block = state_.loader.load(extent.block, IndexBlock::Kind::Extent, outcome);
        if (block == nullptr)
            found(LibraryDamage::Part::IndexExtent, path, extent.first(),
                  "an extent of the directory's index can't be read");
        EntryRecord entry;
        for (std::size_t record = 0; block != nullptr && record < block->count(); ++record)
            if (!block->entry(record, entry))
                found(LibraryDamage::Part::IndexExtent, path, extent.first(),
                      "an entry of the directory's index is malformed");
        advance(extent.block.length);
    }
    state_.index.for_each(path.key(), [&](const EntryRecord& entry) {
        if (!stopped_)
            check_content(path, entry);
        return !stopped_;
    });
}

bool LibraryVerify::run()
{
    // From the disk, not from memory.
    state_.loader.clear();
    check_roots();
    check_tables();
    std::string key;
    LibraryPath path;
    for (bool more = state_.index.next_directory({}, key); more && !stopped_;
         more = state_.index.next_directory(key + '\0', key))
        if (path.assign_key(key))
            check_directory(path);
    return good_ && !stopped_;
}

bool LibraryState::verify(const std::function<void(const LibraryDamage&)>& visit,
                          const LibraryProgress& progress)
{
    if (!is_open || busy)
        return false;
    busy = true;
    const bool good = LibraryVerify(*this, visit, progress).run();
    busy = false;
    return good;
}

LibraryStatistics LibraryState::statistics()
{
    LibraryStatistics figures;
    if (!is_open)
        return figures;
    load_space();
    figures.file_bytes = storage.length();
    figures.free_bytes = space_.free_bytes();
    figures.entries = index.entries();
    for (const PageRef& page : index.root().pages)
        figures.directories += page.directories;
    figures.commits = number_;
    figures.syncs = storage.syncs();
    return figures;
}

}  // namespace zmr
