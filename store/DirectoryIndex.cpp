#include "store/DirectoryIndex.h"

#include <algorithm>

namespace zmr {
namespace {

constexpr std::size_t kDirectoryCacheBytes = 2u << 20;
constexpr std::size_t kChangeOverhead = 300;  // the nodes and strings of one change, about

}  // namespace

void DamageLog::note(LibraryDamage::Part part, std::string_view directory, std::string_view type,
                     std::string_view name, std::string text)
{
    last_ = {};
    last_.part = part;
    static_cast<void>(last_.name.path.assign_key(directory));
    last_.name.type = std::string(type);
    last_.name.name = std::string(name);
    last_.text = std::move(text);
}

LibraryEntryView LibraryEntryList::operator[](std::size_t index) const
{
    const Place place = places_[index];
    EntryRecord record;
    return blocks_[place.block]->entry(place.record, record) ? view_of(record) : LibraryEntryView();
}

void Directory::write(std::string_view key, IndexBlockBuilder& builder) const
{
    ByteWriter& out = builder.begin_record();
    out.text(key);
    out.varint(entries);
    out.varint(types.size());
    for (const auto& [type, count] : types) {
        out.varint(builder.string_number(type));
        out.varint(count);
    }
    out.varint(extents.size());
    for (const ExtentRef& extent : extents) {
        out.varint(builder.string_number(extent.type));
        out.text(extent.name);
        extent.block.write(out);
        out.varint(extent.entries);
    }
}

bool Directory::read(const IndexBlock& page, std::size_t index)
{
    ByteReader in = page.record(index);
    static_cast<void>(in.text());
    entries = in.varint();
    types.clear();
    extents.clear();
    for (std::uint64_t left = in.count(2); left > 0 && in.good(); --left) {
        const std::string_view type = page.string(in);
        const std::uint64_t count = in.varint();
        if (!types.empty() && type <= types.back().first)
            in.fail();
        types.emplace_back(type, count);
    }
    // Each lies in space of its own, so that reading all takes no more than the file holds.
    std::uint64_t space = page.file_end();
    for (std::uint64_t left = in.count(13); left > 0 && in.good(); --left) {
        ExtentRef extent;
        extent.type = std::string(page.string(in));
        extent.name = std::string(in.text());
        extent.block.read(in, page.file_end());
        extent.entries = in.varint();
        if ((!extents.empty() && extent.first() < extents.back().first()) ||
            extent.block.length > space)
            in.fail();
        space -= std::min(space, extent.block.length);
        extents.push_back(std::move(extent));
    }
    return in.good();
}

void DirectoryIndex::reset(RootRecord root)
{
    root_ = std::move(root);
    last_found_ = nullptr;
    changes_.clear();
    type_changes_.clear();
    count_changes_ = 0;
    change_bytes_ = 0;
    types_loaded_ = false;
    types_.clear();
    directories_.clear();
    directory_bytes_ = 0;
}

std::size_t DirectoryIndex::page_of(std::string_view key) const
{
    const auto above =
        std::upper_bound(root_.pages.begin(), root_.pages.end(), key,
                         [](std::string_view k, const PageRef& page) { return k < page.first; });
    return above == root_.pages.begin() ? 0
                                        : static_cast<std::size_t>(above - root_.pages.begin()) - 1;
}

bool DirectoryIndex::read_base(const std::string& base_key, Directory& directory,
                               ReadOutcome& outcome) const
{
    outcome = ReadOutcome::Good;
    if (root_.pages.empty())
        return false;
    const PageRef& page = root_.pages[page_of(base_key)];
    const auto block = loader_.load(page.block, IndexBlock::Kind::Page, outcome);
    if (block == nullptr) {
        damage_.note(LibraryDamage::Part::DirectoryTable, page.first, {}, {},
                     "a page of the directory table can't be read");
        return false;
    }
    const std::size_t index = block->lower_bound_directory(base_key);
    std::string_view key;
    if (index >= block->count() || !block->directory_key(index, key) || key != base_key)
        return false;
    if (directory.read(*block, index))
        return true;
    damage_.note(LibraryDamage::Part::DirectoryTable, base_key, {}, {},
                 "the directory's record is malformed");
    outcome = ReadOutcome::Damaged;
    return false;
}

std::shared_ptr<const Directory> DirectoryIndex::base_at(const std::string& base_key,
                                                         ReadOutcome& outcome) const
{
    outcome = ReadOutcome::Good;
    const auto cached = directories_.find(base_key);
    if (cached != directories_.end())
        return cached->second;
    auto directory = std::make_shared<Directory>();
    if (!read_base(base_key, *directory, outcome)) {
        if (outcome != ReadOutcome::Good || root_.pages.empty())
            return nullptr;
        directory.reset();
    }
    // Absent ones are remembered, too: many new directories are asked for again and again.
    const std::size_t bytes =
        200 + base_key.size() +
        (directory ? directory->extents.size() * 150 + directory->types.size() * 64 : 0);
    if (directory_bytes_ + bytes > kDirectoryCacheBytes) {
        directories_.clear();
        directory_bytes_ = 0;
    }
    directory_bytes_ += bytes;
    directories_[base_key] = directory;
    return directory;
}

std::shared_ptr<const Directory> DirectoryIndex::base_of(const std::string& directory,
                                                         ReadOutcome& outcome) const
{
    outcome = ReadOutcome::Good;
    const DirectoryChanges* const changes = find_changes(directory);
    if (changes == nullptr)
        return base_at(directory, outcome);
    return changes->has_base ? base_at(changes->base_key, outcome) : nullptr;
}

std::size_t DirectoryIndex::extent_of(const Directory& base, const EntryKey& key)
{
    const auto above = std::upper_bound(
        base.extents.begin(), base.extents.end(), key,
        [](const EntryKey& k, const ExtentRef& extent) { return k < extent.first(); });
    return above == base.extents.begin()
               ? 0
               : static_cast<std::size_t>(above - base.extents.begin()) - 1;
}

std::shared_ptr<const IndexBlock> DirectoryIndex::load_extent(const std::string& directory,
                                                              const ExtentRef& extent) const
{
    ReadOutcome outcome;
    auto block = loader_.load(extent.block, IndexBlock::Kind::Extent, outcome);
    if (block == nullptr)
        note_damage(directory, extent);
    return block;
}

void DirectoryIndex::note_damage(const std::string& directory, const ExtentRef& extent) const
{
    damage_.note(LibraryDamage::Part::IndexExtent, directory, extent.type, extent.name,
                 "an extent of the directory's index can't be read");
}

bool DirectoryIndex::find(const std::string& directory, const EntryKey& key, Found& found) const
{
    if (const DirectoryChanges* const changes = find_changes(directory)) {
        const auto change = changes->entries.find(key);
        if (change != changes->entries.end()) {
            if (change->second.removed)
                return false;
            found = {change->second.view(), change->second.label, nullptr};
            return true;
        }
    }
    return find_in_base(directory, key, found);
}

bool DirectoryIndex::find_in_base(const std::string& directory, const EntryKey& key,
                                  Found& found) const
{
    ReadOutcome outcome;
    const auto base = base_of(directory, outcome);
    if (base == nullptr || base->extents.empty())
        return false;
    auto block = load_extent(directory, base->extents[extent_of(*base, key)]);
    if (block == nullptr)
        return false;
    const std::size_t index = block->lower_bound(key);
    EntryRecord record;
    if (index >= block->count() || !block->entry(index, record) || record.key != key)
        return false;
    found = {record.value, record.label, std::move(block)};
    return true;
}

const DirectoryChanges* DirectoryIndex::look_for_changes(const std::string& directory) const
{
    const auto place = changes_.find(directory);
    if (place == changes_.end())
        return nullptr;
    last_found_ = const_cast<Changes::pointer>(&*place);
    return &place->second;
}

DirectoryChanges& DirectoryIndex::changes_of(const std::string& directory)
{
    if (find_changes(directory) != nullptr)
        return last_found_->second;
    const auto [place, added] = changes_.try_emplace(directory);
    if (added) {
        place->second.base_key = directory;
        change_bytes_ += kChangeOverhead + directory.size() * 2;
    }
    return place->second;
}

void DirectoryIndex::count(DirectoryChanges& changes, std::string_view type,
                           std::int64_t difference)
{
    const auto add = [&](TypeCounts& counts) {
        const auto place = counts.find(type);
        if (place != counts.end())
            place->second += difference;
        else
            counts.emplace(type, difference);
    };
    add(changes.types);
    add(type_changes_);
    changes.count += difference;
    count_changes_ += difference;
}

void DirectoryIndex::put(const std::string& directory, const EntryKey& key, std::string_view label,
                         const EntryValue& value, bool is_new)
{
    DirectoryChanges& changes = changes_of(directory);
    set_change(changes, changes.entries.lower_bound(key), key, label, value);
    if (is_new)
        count(changes, key.type, 1);
}

bool DirectoryIndex::put(const std::string& directory, const EntryKey& key, std::string_view label,
                         const EntryValue& value, FileRange& replaced)
{
    DirectoryChanges& changes = changes_of(directory);
    const auto place = changes.entries.lower_bound(key);
    Found old;
    bool is_new = true;
    if (place != changes.entries.end() && place->first.view() == key) {
        is_new = place->second.removed;
        old.value = place->second.value;
    } else {
        is_new = !find_in_base(directory, key, old);
    }
    if (!is_new)
        replaced = old.value.range();
    set_change(changes, place, key, label, value);
    if (is_new)
        count(changes, key.type, 1);
    return is_new;
}

void DirectoryIndex::set_change(DirectoryChanges& changes, EntryChanges::iterator place,
                                const EntryKey& key, std::string_view label,
                                const EntryValue& value)
{
    if (place == changes.entries.end() || place->first.view() != key) {
        place = changes.entries.emplace_hint(
            place, OwnedEntryKey{std::string(key.type), std::string(key.name)}, EntryChange());
        change_bytes_ += kChangeOverhead;
    }
    EntryChange& change = place->second;
    change_bytes_ += value.bytes.size();
    change.removed = false;
    change.bytes = std::string(value.bytes);
    change.label = std::string(label);
    change.value = value;
    change.value.bytes = {};
}

void DirectoryIndex::remove(const std::string& directory, const EntryKey& key)
{
    DirectoryChanges& changes = changes_of(directory);
    const auto place = changes.entries.find(key);
    if (place != changes.entries.end()) {
        place->second = EntryChange();
        place->second.removed = true;
    } else {
        EntryChange change;
        change.removed = true;
        changes.entries.emplace(OwnedEntryKey{std::string(key.type), std::string(key.name)},
                                std::move(change));
        change_bytes_ += kChangeOverhead;
    }
    count(changes, key.type, -1);
}

void DirectoryIndex::move_directory(const std::string& from, const std::string& to)
{
    std::vector<std::string> moved;
    std::string key;
    for (bool more = next_directory(from, key); more && key.starts_with(from);
         more = next_directory(key + '\0', key))
        moved.push_back(key);
    for (const std::string& old_key : moved) {
        DirectoryChanges changes = std::move(changes_of(old_key));
        changes_[old_key] = {};
        changes_[old_key].has_base = false;
        changes_[to + old_key.substr(from.size())] = std::move(changes);
        change_bytes_ += kChangeOverhead + old_key.size() * 3;
    }
}

void DirectoryIndex::clear()
{
    RootRecord empty;
    empty.file_kind = root_.file_kind;
    reset(std::move(empty));
}

void DirectoryIndex::set_file_kind(std::string_view kind)
{
    root_.file_kind = std::string(kind);
}

bool DirectoryIndex::has_changes() const
{
    return !changes_.empty() || !type_changes_.empty();
}

std::uint64_t DirectoryIndex::entries() const
{
    const std::int64_t sum = static_cast<std::int64_t>(root_.entries) + count_changes_;
    return sum > 0 ? static_cast<std::uint64_t>(sum) : 0;
}

}  // namespace zmr
