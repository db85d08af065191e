#include "store/LibraryState.h"

#include "store/Compression.h"

#include <algorithm>
#include <cstring>
#include <utility>

// The bytes of entries: finding, reading and checking them, use in place.
namespace zmr {

bool LibraryState::find(const LibraryPath& path, const EntryKey& key,
                        DirectoryIndex::Found& found) const
{
    return is_open && index.find(path.key(), key, found);
}

LibraryContent LibraryState::content_of(const DirectoryIndex::Found& found) const
{
    const EntryValue& value = found.value;
    LibraryContent content;
    content.kind = value.has(EntryValue::kRaw) ? ContentKind::Raw : ContentKind::Streamable;
    content.compressed = value.has(EntryValue::kCompressed);
    content.in_index = value.has(EntryValue::kInIndex);
    content.in_blocks = value.has(EntryValue::kInBlocks);
    content.length = value.length;
    content.stored = value.stored;
    content.position = value.position;
    content.checksum = content.in_index ? checksum_of(value.bytes) : value.checksum;
    content.label = std::string(found.label);
    return content;
}

std::vector<std::string> LibraryState::directories(const LibraryPath& path) const
{
    std::vector<std::string> names;
    const std::size_t depth = path.size();
    LibraryPath below;
    std::string key;
    // From each directory found directly to behind its subtree: 02 is above the 01 that ends a
    // level and below the FF that can't begin one.
    std::string from = path.key() + '\0';
    if (path.is_root())
        from.clear();
    while (index.next_directory(from, key) && key.starts_with(path.key())) {
        if (key == path.key()) {
            from = key + '\0';
            continue;
        }
        if (!below.assign_key(key))
            break;
        LibraryPath child = path;
        names.push_back(below.level(depth));
        if (!child.append(names.back()))
            break;
        from = child.key();
        from.back() = '\x02';
    }
    return names;
}

bool LibraryState::stored_bytes(const EntryValue& value, std::string& bytes) const
{
    if (value.has(EntryValue::kInIndex)) {
        bytes = std::string(value.bytes);
        return true;
    }
    if (!value.has(EntryValue::kInBlocks))
        return storage.read_checked(value.position, value.stored, value.checksum, bytes) ==
               ReadOutcome::Good;
    const FileRange range = value.range();
    const std::uint64_t file = storage.length();
    if (range.position > file || range.length > file - range.position)
        return false;
    std::string table;
    if (storage.read_checked(value.position + value.stored, block_table_bytes(value.stored),
                             value.checksum, table) != ReadOutcome::Good)
        return false;
    bytes.resize(static_cast<std::size_t>(value.stored));
    if (storage.read(value.position, bytes.data(), bytes.size()) != ReadOutcome::Good)
        return false;
    for (std::size_t at = 0, entry = 0; at < bytes.size(); at += kLibraryBlock, entry += 8)
        if (checksum_of(std::string_view(bytes).substr(at, kLibraryBlock)) !=
            load_u64(table.data() + entry))
            return false;
    return true;
}

bool LibraryState::get(const LibraryPath& path, const EntryKey& key, std::string& bytes)
{
    DirectoryIndex::Found found;
    if (!find(path, key, found)) {
        bytes.clear();
        return false;
    }
    // Not cleared before: a string of the same size that is used again needs no zeros.
    bool good = stored_bytes(found.value, bytes);
    if (good && found.value.has(EntryValue::kCompressed)) {
        std::string inflated;
        good = inflate_whole(bytes, found.value.length, inflated);
        bytes = std::move(inflated);
    }
    if (good)
        return true;
    bytes.clear();
    damage.note(LibraryDamage::Part::Content, path.key(), key.type, key.name,
                "the content's checksum does not fit");
    return false;
}

bool LibraryState::load_table(const LibraryContent& content)
{
    if (table_position_ == content.position && table_checksum_ == content.checksum)
        return true;
    table_position_ = 0;
    if (storage.read_checked(content.position + content.stored, block_table_bytes(content.stored),
                             content.checksum, table_) != ReadOutcome::Good)
        return false;
    table_position_ = content.position;
    table_checksum_ = content.checksum;
    return true;
}

const std::string* LibraryState::verified_block(const LibraryContent& content, std::uint64_t block)
{
    const std::uint64_t offset = content.in_blocks ? block * kLibraryBlock : 0;
    std::uint64_t checksum = content.checksum;
    std::uint64_t length = content.stored;
    if (content.in_blocks) {
        if (!load_table(content))
            return nullptr;
        checksum = load_u64(table_.data() + static_cast<std::size_t>(block * 8));
        length = std::min(kLibraryBlock, content.stored - offset);
    }
    const std::uint64_t position = content.position + offset;
    if (block_position_ == position && block_checksum_ == checksum && block_.size() == length)
        return &block_;
    block_position_ = 0;
    if (storage.read_checked(position, length, checksum, block_) != ReadOutcome::Good)
        return nullptr;
    block_position_ = position;
    block_checksum_ = checksum;
    return &block_;
}

std::size_t LibraryState::read_at(const LibraryContent& content, std::uint64_t offset, char* data,
                                  std::size_t size)
{
    if (!is_open || content.position < kDataStart || offset >= content.stored)
        return 0;
    const std::uint64_t file = storage.length();
    if (content.position > file || content.stored > file - content.position)
        return 0;
    size = static_cast<std::size_t>(std::min<std::uint64_t>(size, content.stored - offset));
    std::size_t done = 0;
    while (done < size) {
        const std::uint64_t at = offset + done;
        const std::uint64_t block = content.in_blocks ? at / kLibraryBlock : 0;
        const std::string* bytes = verified_block(content, block);
        if (bytes == nullptr) {
            damage.note(LibraryDamage::Part::Content, {}, {}, {},
                        "a block's checksum does not fit");
            return done;
        }
        const auto from =
            static_cast<std::size_t>(at - (content.in_blocks ? block * kLibraryBlock : 0));
        const std::size_t part = std::min(size - done, bytes->size() - from);
        std::memcpy(data + done, bytes->data() + from, part);
        done += part;
    }
    return done;
}

std::size_t LibraryState::read_position(std::uint64_t position, char* data, std::size_t size)
{
    if (!is_open)
        return 0;
    std::size_t done = 0;
    while (done < size) {
        const std::uint64_t at = position + done;
        std::size_t part = size - done;
        auto next = pinned_.upper_bound(at);
        if (next != pinned_.end())
            part = static_cast<std::size_t>(std::min<std::uint64_t>(part, next->first - at));
        std::size_t count = 0;
        if (next != pinned_.begin() && at - std::prev(next)->first < std::prev(next)->second.stored)
            count =
                read_at(std::prev(next)->second, at - std::prev(next)->first, data + done, part);
        else
            count = storage.read_some(at, data + done, part);
        if (count == 0)
            break;
        done += count;
    }
    return done;
}

bool LibraryState::pin(const LibraryPath& path, const EntryKey& key, LibraryContent& content)
{
    DirectoryIndex::Found found;
    if (!find(path, key, found))
        return false;
    if (found.value.position == 0) {
        // Small and not written yet: give it a place of its own.
        if (!can_write())
            return false;
        EntryValue value = found.value;
        const std::string bytes(value.bytes);
        const std::string label(found.label);
        if (!write_block(FrameKind::Content, bytes, {}, value.position)) {
            go_back();
            return false;
        }
        value.flags &= static_cast<std::uint8_t>(~EntryValue::kInIndex);
        value.checksum = checksum_of(std::string_view(bytes));
        value.bytes = {};
        put_entry(path, key, label, value);
        if (!find(path, key, found))
            return false;
    }
    content = content_of(found);
    const bool table = found.value.has(EntryValue::kInBlocks);
    space_.pin(
        {content.position, content.stored + (table ? block_table_bytes(content.stored) : 0)});
    pinned_[content.position] = content;
    return true;
}

void LibraryState::unpin(const LibraryContent& content)
{
    space_.unpin({content.position, content.stored});
    if (!space_.is_pinned({content.position, 1}))
        pinned_.erase(content.position);
    if (!space_.has_pins())
        former_reader_.reset();
}

}  // namespace zmr
