#include "store/IndexFold.h"

#include <utility>

namespace zmr {

/// Collects entries into extents of the right size.
class IndexFold::ExtentWriter {
public:
    ExtentWriter(IndexFold& fold, Directory& directory) : fold_(fold), directory_(directory) {}

    [[nodiscard]] bool add(const EntryKey& key, std::string_view label, const EntryValue& value)
    {
        // Of one type, when that fills an extent: what is listed is read without the rest.
        const bool full = builder_.size() >= kExtentBytes ||
                          (builder_.size() >= kSmallBytes && key.type != last_type_);
        if (full && !finish())
            return false;
        if (key.type != last_type_)
            last_type_ = std::string(key.type);
        if (builder_.count() == 0) {
            next_ = {};
            next_.type = std::string(key.type);
            next_.name = std::string(key.name);
        }
        builder_.add_entry(key, label, value);
        return true;
    }
    [[nodiscard]] bool add(const EntryChanges::value_type& change)
    {
        return change.second.removed ||
               add(change.first.view(), change.second.label, change.second.view());
    }
    /// Writes what is collected as one extent.
    [[nodiscard]] bool finish()
    {
        if (builder_.count() == 0)
            return true;
        next_.entries = builder_.count();
        if (!fold_.write_block(builder_.finish(), next_.block))
            return false;
        directory_.entries += next_.entries;
        directory_.extents.push_back(std::move(next_));
        return true;
    }
    [[nodiscard]] bool keep(const ExtentRef& extent)
    {
        if (!finish())
            return false;
        directory_.entries += extent.entries;
        directory_.extents.push_back(extent);
        return true;
    }
    [[nodiscard]] bool is_small() const
    {
        return builder_.count() > 0 && builder_.size() < kSmallBytes;
    }

private:
    IndexFold& fold_;
    Directory& directory_;
    IndexBlockBuilder builder_{IndexBlock::Kind::Extent};
    ExtentRef next_;
    std::string last_type_;
};

bool IndexFold::write_block(std::string_view bytes, BlockRef& block)
{
    if (!write_(bytes, block))
        return false;
    written_.push_back(block.range());
    return true;
}

bool IndexFold::run()
{
    root_ = index_.root_;
    for (const auto& [key, changes] : index_.changes_) {
        Directory directory;
        if (!fold_directory(changes, directory))
            return false;
        if (directory.extents.empty())
            folded_[key] = std::nullopt;
        else
            folded_[key] = std::move(directory);
    }
    return fold_pages() && fold_types();
}

bool IndexFold::fold_directory(const DirectoryChanges& changes, Directory& folded)
{
    std::shared_ptr<const Directory> base;
    if (changes.has_base) {
        ReadOutcome outcome;
        base = index_.base_at(changes.base_key, outcome);
        if (outcome == ReadOutcome::Unreadable)
            return false;
    }
    ExtentWriter out(*this, folded);
    auto change = changes.entries.begin();
    const auto end = changes.entries.end();
    for (std::size_t i = 0; base != nullptr && i < base->extents.size(); ++i) {
        const ExtentRef& extent = base->extents[i];
        const auto upper = i + 1 < base->extents.size()
                               ? changes.entries.lower_bound(base->extents[i + 1].first())
                               : end;
        const bool joins = out.is_small() && extent.block.length < kSmallBytes;
        if (change == upper && !joins && !moves_(extent.block)) {
            if (!out.keep(extent))
                return false;
            continue;
        }
        if (!fold_extent(extent, change, upper, out))
            return false;
        change = upper;
    }
    for (; change != end; ++change)
        if (!out.add(*change))
            return false;
    if (!out.finish())
        return false;

    TypeCounts counts = changes.types;
    if (base != nullptr)
        for (const auto& [type, count] : base->types)
            counts[type] += static_cast<std::int64_t>(count);
    for (const auto& [type, count] : counts)
        if (count > 0)
            folded.types.emplace_back(type, static_cast<std::uint64_t>(count));
    return true;
}

bool IndexFold::fold_extent(const ExtentRef& extent, EntryChanges::const_iterator& change,
                            EntryChanges::const_iterator end, ExtentWriter& out)
{
    ReadOutcome outcome;
    const auto block = index_.loader_.load(extent.block, IndexBlock::Kind::Extent, outcome);
    if (outcome == ReadOutcome::Unreadable)
        return false;
    if (block == nullptr) {
        // The damaged extent stays for verify to name; what is new lies beside it.
        for (; change != end && change->first.view() < extent.first(); ++change)
            if (!out.add(*change))
                return false;
        if (!out.keep(extent))
            return false;
        for (; change != end; ++change)
            if (!out.add(*change))
                return false;
        return true;
    }
    for (std::size_t i = 0; i < block->count(); ++i) {
        EntryRecord record;
        if (!block->entry(i, record))
            continue;
        for (; change != end && change->first.view() < record.key; ++change)
            if (!out.add(*change))
                return false;
        if (change != end && change->first.view() == record.key) {
            if (!out.add(*change))
                return false;
            ++change;
        } else if (!out.add(record.key, record.label, record.value)) {
            return false;
        }
    }
    for (; change != end; ++change)
        if (!out.add(*change))
            return false;
    give_up(extent.block);
    return true;
}

bool IndexFold::end_page(IndexBlockBuilder& page, const std::string& first)
{
    if (page.count() == 0)
        return true;
    PageRef ref;
    ref.first = first;
    ref.directories = page.count();
    if (!write_block(page.finish(), ref.block))
        return false;
    root_.pages.push_back(std::move(ref));
    return true;
}

bool IndexFold::fold_pages()
{
    root_.pages.clear();
    const std::vector<PageRef>& old = index_.root_.pages;
    IndexBlockBuilder page(IndexBlock::Kind::Page);
    std::string first;
    const auto add = [&](std::string_view key, const Directory& directory) {
        if (page.size() >= kTablePageBytes && !end_page(page, first))
            return false;
        if (page.count() == 0)
            first = std::string(key);
        directory.write(key, page);
        return true;
    };
    auto change = folded_.begin();
    for (std::size_t i = 0; i < old.size(); ++i) {
        const auto upper =
            i + 1 < old.size() ? folded_.lower_bound(old[i + 1].first) : folded_.end();
        if (change == upper && !moves_(old[i].block)) {
            if (!end_page(page, first))
                return false;
            root_.pages.push_back(old[i]);
            continue;
        }
        ReadOutcome outcome;
        const auto block = index_.loader_.load(old[i].block, IndexBlock::Kind::Page, outcome);
        if (outcome == ReadOutcome::Unreadable)
            return false;
        if (block == nullptr) {
            // As with a damaged extent: it stays, and the new page lies behind it.
            for (; change != upper && change->first < old[i].first; ++change)
                if (change->second && !add(change->first, *change->second))
                    return false;
            if (!end_page(page, first))
                return false;
            root_.pages.push_back(old[i]);
        }
        for (std::size_t index = 0; block != nullptr && index < block->count(); ++index) {
            std::string_view key;
            Directory directory;
            LibraryPath path;
            if (!block->directory_key(index, key) || !path.assign_key(key) ||
                !directory.read(*block, index))
                continue;
            for (; change != upper && change->first < key; ++change)
                if (change->second && !add(change->first, *change->second))
                    return false;
            if (change != upper && change->first == key) {
                if (change->second && !add(key, *change->second))
                    return false;
                ++change;
            } else if (!add(key, directory)) {
                return false;
            }
        }
        for (; change != upper; ++change)
            if (change->second && !add(change->first, *change->second))
                return false;
        if (block != nullptr)
            give_up(old[i].block);
    }
    for (; change != folded_.end(); ++change)
        if (change->second && !add(change->first, *change->second))
            return false;
    return end_page(page, first);
}

bool IndexFold::fold_types()
{
    root_.entries = index_.entries();
    if (index_.type_changes_.empty() && !moves_(index_.root_.types))
        return true;
    index_.load_types();
    if (!index_.types_loaded_)
        return false;
    TypeCounts counts = index_.types_;
    for (const auto& [type, difference] : index_.type_changes_)
        counts[type] += difference;
    std::erase_if(counts, [](const auto& count) { return count.second <= 0; });
    std::string bytes;
    ByteWriter out(bytes);
    out.varint(counts.size());
    for (const auto& [type, count] : counts) {
        out.text(type);
        out.varint(static_cast<std::uint64_t>(count));
    }
    if (index_.root_.types.length > 0)
        give_up(index_.root_.types);
    root_.types = {};
    return counts.empty() || write_block(bytes, root_.types);
}

void IndexFold::apply()
{
    root_.free_list = index_.root_.free_list;
    index_.reset(std::move(root_));
}

}  // namespace zmr
