#include "store/DirectoryIndex.h"

#include <algorithm>
#include <optional>

// The walks of DirectoryIndex: lists, types, directories.
namespace zmr {
namespace {

/// The changes among `changes` that lie before `key` are told to `visit`, and `change` moves on.
template <class Visit>
bool changes_before(EntryChanges::const_iterator& change, EntryChanges::const_iterator end,
                    const EntryKey& key, Visit visit)
{
    for (; change != end && change->first.view() < key; ++change)
        if (!change->second.removed && !visit(*change))
            return false;
    return true;
}

/// The part of a directory's keys, from `first` to before `last` (to the end when null), that
/// extent `i` holds. The parts of a forged directory's extents don't overlap either: no entry is
/// given twice, and one block under many names gives no more than its records.
struct Part {
    Part(const Directory& base, std::size_t i, const EntryKey& first, const EntryKey* last)
        : from(std::max(first, base.extents[i].first()))
    {
        if (i == 0)
            from = first;  // what find() sees: the first extent takes all below it, too
        if (last != nullptr)
            to = *last;
        if (i + 1 < base.extents.size() && (!to || base.extents[i + 1].first() < *to))
            to = base.extents[i + 1].first();
    }
    [[nodiscard]] std::size_t begin(const IndexBlock& block) const
    {
        return block.lower_bound(from);
    }
    [[nodiscard]] std::size_t end(const IndexBlock& block) const
    {
        return to ? block.lower_bound(*to) : block.count();
    }
    EntryKey from;
    std::optional<EntryKey> to;
};

}  // namespace

LibraryEntryList DirectoryIndex::list(const std::string& directory, std::string_view type) const
{
    LibraryEntryList list;
    const std::string next_type = std::string(type) + '\0';
    const EntryKey first{type, {}};
    const EntryKey last{next_type, {}};
    static const EntryChanges kNone;
    const EntryChanges* changes = &kNone;
    if (const DirectoryChanges* const found = find_changes(directory))
        changes = &found->entries;
    auto change = changes->lower_bound(first);
    const auto end = changes->lower_bound(last);

    // What changed is put into a block of its own, so that a list is only places in blocks.
    IndexBlockBuilder changed(IndexBlock::Kind::Extent);
    constexpr auto kChanged = static_cast<std::uint32_t>(-1);
    const auto add_change = [&](const EntryChanges::value_type& each) {
        list.places_.push_back({kChanged, static_cast<std::uint32_t>(changed.count())});
        changed.add_entry(each.first.view(), each.second.label, each.second.view());
        return true;
    };

    ReadOutcome outcome;
    const auto base = base_of(directory, outcome);
    for (std::size_t i = base == nullptr ? 0 : extent_of(*base, first);
         base != nullptr && i < base->extents.size(); ++i) {
        if (!(base->extents[i].first() < last))
            break;
        auto block = load_extent(directory, base->extents[i]);
        if (block == nullptr)
            continue;
        const Part part(*base, i, first, &last);
        const std::size_t from = part.begin(*block);
        const std::size_t to = part.end(*block);
        if (from >= to)
            continue;
        const auto number = static_cast<std::uint32_t>(list.blocks_.size());
        for (std::size_t record = from; record < to; ++record) {
            if (change != end) {
                EntryKey key;
                if (!block->key(record, key))
                    continue;
                changes_before(change, end, key, add_change);
                if (change != end && change->first.view() == key) {
                    if (!change->second.removed)
                        add_change(*change);
                    ++change;
                    continue;
                }
            }
            list.places_.push_back({number, static_cast<std::uint32_t>(record)});
        }
        list.blocks_.push_back(std::move(block));
    }
    changes_before(change, end, last, add_change);

    if (changed.count() > 0) {
        for (LibraryEntryList::Place& each : list.places_)
            if (each.block == kChanged)
                each.block = static_cast<std::uint32_t>(list.blocks_.size());
        list.blocks_.push_back(changed.finish_in_memory());
    }
    return list;
}

void DirectoryIndex::for_each(const std::string& directory, const EntryVisitor& visit) const
{
    walk(directory, {}, nullptr, visit);
}

void DirectoryIndex::for_each(const std::string& directory, std::string_view type,
                              const EntryVisitor& visit) const
{
    const std::string next_type = std::string(type) + '\0';
    const EntryKey last{next_type, {}};
    walk(directory, {type, {}}, &last, visit);
}

void DirectoryIndex::walk(const std::string& directory, const EntryKey& first, const EntryKey* last,
                          const EntryVisitor& visit) const
{
    const EntryChanges none;
    const EntryChanges* changes = &none;
    const std::string* base_key = &directory;
    if (const DirectoryChanges* const found = find_changes(directory)) {
        changes = &found->entries;
        base_key = found->has_base ? &found->base_key : nullptr;
    }
    auto change = changes->lower_bound(first);
    const auto end = last == nullptr ? changes->end() : changes->lower_bound(*last);
    const auto visit_change = [&](const EntryChanges::value_type& each) {
        return visit({each.first.view(), each.second.label, each.second.view()});
    };

    // Read anew: a walk through all directories must leave nothing in memory.
    Directory base;
    ReadOutcome outcome;
    if (base_key == nullptr || !read_base(*base_key, base, outcome))
        base = {};
    BlockLoader::Walk walk(loader_);
    for (std::size_t i = base.extents.empty() ? 0 : extent_of(base, first); i < base.extents.size();
         ++i) {
        const ExtentRef& extent = base.extents[i];
        if (last != nullptr && !(extent.first() < *last))
            break;
        const IndexBlock* const block = walk.load(extent.block);
        if (block == nullptr) {
            note_damage(directory, extent);
            continue;
        }
        EntryRecord record;
        const Part part(base, i, first, last);
        const std::size_t to = part.end(*block);
        for (std::size_t index = part.begin(*block); index < to; ++index) {
            if (!block->entry(index, record))
                continue;
            if (change != end) {
                if (!changes_before(change, end, record.key, visit_change))
                    return;
                if (change != end && change->first.view() == record.key) {
                    if (!change->second.removed && !visit_change(*change))
                        return;
                    ++change;
                    continue;
                }
            }
            if (!visit(record))
                return;
        }
    }
    for (; change != end; ++change)
        if (!change->second.removed && !visit_change(*change))
            return;
}

std::vector<std::string> DirectoryIndex::types_in(const std::string& directory) const
{
    ReadOutcome outcome;
    const auto base = base_of(directory, outcome);
    const DirectoryChanges* const changes = find_changes(directory);
    std::vector<std::string> types;
    if (base != nullptr && (changes == nullptr || changes->types.empty())) {
        for (const auto& [type, count] : base->types)
            if (count > 0)
                types.push_back(type);
        return types;
    }
    TypeCounts counts;
    if (base != nullptr)
        for (const auto& [type, count] : base->types)
            counts[type] += static_cast<std::int64_t>(count);
    if (changes != nullptr)
        for (const auto& [type, difference] : changes->types)
            counts[type] += difference;
    for (const auto& [type, count] : counts)
        if (count > 0)
            types.push_back(type);
    return types;
}

bool DirectoryIndex::accepts_type(const std::string& directory, std::string_view type) const
{
    ReadOutcome outcome;
    const auto base = base_of(directory, outcome);
    const DirectoryChanges* const changes = find_changes(directory);
    const std::size_t most = (base == nullptr ? 0 : base->types.size()) +
                             (changes == nullptr ? 0 : changes->types.size());
    if (most < LibraryFile::kMaxTypesInDirectory)
        return true;
    const std::vector<std::string> present = types_in(directory);
    return present.size() < LibraryFile::kMaxTypesInDirectory ||
           std::binary_search(present.begin(), present.end(), type);
}

void DirectoryIndex::load_types() const
{
    if (types_loaded_)
        return;
    types_.clear();
    types_loaded_ = true;
    if (root_.types.length == 0)
        return;
    ReadOutcome outcome;
    const std::string bytes = loader_.read_bytes(root_.types, outcome);
    ByteReader in(bytes);
    for (std::uint64_t left = in.count(2); left > 0 && in.good(); --left) {
        const std::string_view type = in.text();
        const std::uint64_t count = in.varint();
        if (in.good())
            types_.emplace(type, static_cast<std::int64_t>(count & 0x7FFFFFFFFFFFFFFF));
    }
    if (outcome == ReadOutcome::Good && in.good())
        return;
    // Tried again at the next call when the device refused.
    types_loaded_ = outcome != ReadOutcome::Unreadable;
    damage_.note(LibraryDamage::Part::TypeTable, {}, {}, {}, "the table of types can't be read");
}

std::vector<std::string> DirectoryIndex::types() const
{
    load_types();
    TypeCounts counts = types_;
    for (const auto& [type, difference] : type_changes_)
        counts[type] += difference;
    std::vector<std::string> types;
    for (const auto& [type, count] : counts)
        if (count > 0)
            types.push_back(type);
    return types;
}

bool DirectoryIndex::has_entries(const DirectoryChanges& changes) const
{
    std::int64_t count = changes.count;
    ReadOutcome outcome;
    if (changes.has_base)
        if (const auto base = base_at(changes.base_key, outcome))
            count += static_cast<std::int64_t>(base->entries & 0x7FFFFFFFFFFF);
    return count > 0;
}

bool DirectoryIndex::next_base(std::string_view key, std::string& found) const
{
    if (root_.pages.empty())
        return false;
    for (std::size_t i = page_of(key); i < root_.pages.size(); ++i) {
        ReadOutcome outcome;
        const PageRef& page = root_.pages[i];
        const auto block = loader_.load(page.block, IndexBlock::Kind::Page, outcome);
        if (block == nullptr) {
            damage_.note(LibraryDamage::Part::DirectoryTable, page.first, {}, {},
                         "a page of the directory table can't be read");
            continue;
        }
        LibraryPath path;
        for (std::size_t index = block->lower_bound_directory(key); index < block->count();
             ++index) {
            std::string_view candidate;
            // A forged page may hold anything; only a step forward ends the walks of the callers.
            if (!block->directory_key(index, candidate) || candidate < key ||
                !path.assign_key(candidate))
                continue;
            found = path.key();
            return true;
        }
    }
    return false;
}

bool DirectoryIndex::next_directory(std::string_view key, std::string& found) const
{
    std::string from(key);
    std::string base_key;
    bool has_base = next_base(from, base_key);
    auto change = changes_.lower_bound(from);
    for (;;) {
        while (change != changes_.end() && (!has_base || change->first <= base_key)) {
            if (has_entries(change->second)) {
                found = change->first;
                return true;
            }
            if (has_base && change->first == base_key)
                has_base = next_base(std::string(base_key) + '\0', base_key);
            ++change;
        }
        if (!has_base)
            return false;
        if (change != changes_.end() && change->first <= base_key)
            continue;
        found = base_key;
        return true;
    }
}

}  // namespace zmr
