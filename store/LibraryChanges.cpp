#include "store/LibraryState.h"

#include "store/Compression.h"

#include <algorithm>
#include <utility>

// What changes entries: putting, copying, moving, removing.
namespace zmr {
namespace {

bool is_name(const EntryKey& key)
{
    return key.name.size() <= LibraryFile::kMaxNameBytes &&
           key.type.size() <= LibraryFile::kMaxNameBytes;
}

/// The table behind a content in blocks, made as the blocks come.
class BlockTable {
public:
    void add(std::string_view block) { ByteWriter(bytes_).u64(checksum_of(block)); }
    [[nodiscard]] const std::string& bytes() const { return bytes_; }

private:
    std::string bytes_;
};

/// Takes back a begun stream unless it was finished.
class StreamGuard {
public:
    StreamGuard(LibraryStorage& storage, bool& busy) : storage_(storage), busy_(busy)
    {
        busy_ = true;
    }
    ~StreamGuard()
    {
        busy_ = false;
        if (begun && !finished)
            storage_.cancel_stream();
    }
    StreamGuard(const StreamGuard&) = delete;
    StreamGuard& operator=(const StreamGuard&) = delete;
    bool begun = false;
    bool finished = false;

private:
    LibraryStorage& storage_;
    bool& busy_;
};

}  // namespace

bool LibraryState::accepts(const LibraryPath& path, const EntryKey& key) const
{
    return can_write() && is_name(key) && index.accepts_type(path.key(), key.type);
}

bool LibraryState::store(std::string_view bytes, EntryValue& value)
{
    value.stored = bytes.size();
    if (!value.has(EntryValue::kRaw) && bytes.size() <= LibraryFile::kInlineBytes) {
        value.flags |= EntryValue::kInIndex;
        value.bytes = bytes;
        return true;
    }
    if (bytes.size() <= kLibraryBlock) {
        value.checksum = checksum_of(bytes);
        return write_block(FrameKind::Content, bytes, {}, value.position);
    }
    BlockTable table;
    for (std::size_t at = 0; at < bytes.size(); at += kLibraryBlock)
        table.add(bytes.substr(at, kLibraryBlock));
    value.flags |= EntryValue::kInBlocks;
    value.checksum = checksum_of(std::string_view(table.bytes()));
    return write_block(FrameKind::Content, bytes, table.bytes(), value.position);
}

void LibraryState::put_entry(const LibraryPath& path, const EntryKey& key, std::string_view label,
                             const EntryValue& value)
{
    FileRange replaced;
    const bool is_new = index.put(path.key(), key, label, value, replaced);
    log_.put(path.key(), key.type, key.name, label, value, is_new);
    release(replaced);
}

bool LibraryState::put(const LibraryPath& path, const EntryKey& key, ContentKind kind,
                       std::string_view label, std::string_view bytes)
{
    if (!accepts(path, key) || label.size() > LibraryFile::kMaxLabelBytes)
        return false;
    EntryValue value;
    value.length = bytes.size();
    std::string deflated;
    if (kind == ContentKind::Raw) {
        value.flags |= EntryValue::kRaw;
    } else if (deflate_if_worth_it(bytes, deflated)) {
        value.flags |= EntryValue::kCompressed;
        bytes = deflated;
    }
    if (!store(bytes, value)) {
        go_back();
        return false;
    }
    put_entry(path, key, label, value);
    changed(bytes.size());
    return !storage.error();
}

bool LibraryState::put_from(const LibraryPath& path, const EntryKey& key, std::string_view label,
                            const LibrarySource& source)
{
    if (!accepts(path, key) || label.size() > LibraryFile::kMaxLabelBytes)
        return false;
    EntryValue value;
    value.flags = EntryValue::kRaw;
    {
        StreamGuard guard(storage, busy);
        BlockTable table;
        std::string block;
        const auto fill_block = [&] {
            block.resize(kLibraryBlock);
            std::size_t filled = 0;
            std::size_t done = 1;
            while (done > 0 && filled < block.size()) {
                done = 0;
                if (!source(block.data() + filled, block.size() - filled, done) ||
                    done > block.size() - filled)
                    return false;
                filled += done;
            }
            block.resize(filled);
            return true;
        };
        if (!fill_block())
            return false;
        if (block.size() < kLibraryBlock) {
            value.length = block.size();
            static_cast<void>(store(block, value));
        } else {
            guard.begun = storage.begin_stream(value.position);
            while (guard.begun && !block.empty()) {
                table.add(block);
                value.length += block.size();
                if (!storage.stream(block.data(), block.size()))
                    break;
                if (block.size() < kLibraryBlock)
                    break;
                if (!fill_block())
                    return false;
            }
            value.stored = value.length;
            if (value.length > kLibraryBlock)
                value.flags |= EntryValue::kInBlocks;
            value.checksum = value.has(EntryValue::kInBlocks)
                                 ? checksum_of(std::string_view(table.bytes()))
                                 : load_u64(table.bytes().data());
            if (value.has(EntryValue::kInBlocks))
                static_cast<void>(storage.stream(table.bytes().data(), table.bytes().size()));
            guard.finished = storage.end_stream();
        }
    }
    if (storage.error()) {
        go_back();
        return false;
    }
    put_entry(path, key, label, value);
    changed(value.length);
    return !storage.error();
}

bool LibraryState::copy_stored(const EntryValue& from, const LibraryState& source, EntryValue& to)
{
    to = from;
    if (from.has(EntryValue::kInIndex))
        return true;
    if (!from.has(EntryValue::kInBlocks)) {
        if (from.stored == 0)
            return write_block(FrameKind::Content, {}, {}, to.position);
        return source.storage.read_checked(from.position, from.stored, from.checksum, copied_) ==
                   ReadOutcome::Good &&
               write_block(FrameKind::Content, copied_.view(), {}, to.position);
    }
    const std::uint64_t table_bytes = block_table_bytes(from.stored);
    std::string table;
    if (source.storage.read_checked(from.position + from.stored, table_bytes, from.checksum,
                                    table) != ReadOutcome::Good)
        return false;
    constexpr std::uint64_t kAtOnce = 1u << 20;
    if (from.stored <= kAtOnce) {
        std::string bytes;
        return source.stored_bytes(from, bytes) &&
               write_block(FrameKind::Content, bytes, table, to.position);
    }
    StreamGuard guard(storage, busy);
    guard.begun = storage.begin_stream(to.position);
    for (std::uint64_t at = 0, entry = 0; guard.begun && at < from.stored;
         at += kLibraryBlock, entry += 8) {
        const std::uint64_t part = std::min(kLibraryBlock, from.stored - at);
        const std::uint64_t checksum = load_u64(table.data() + static_cast<std::size_t>(entry));
        if (source.storage.read_checked(from.position + at, part, checksum, copied_) !=
                ReadOutcome::Good ||
            !storage.stream(copied_.data(), copied_.size()))
            return false;
    }
    guard.finished =
        guard.begun && storage.stream(table.data(), table.size()) && storage.end_stream();
    return guard.finished;
}

bool LibraryState::copy_from(const LibraryPath& path, const EntryKey& key, LibraryState& source,
                             const LibraryPath& from_path, const EntryKey& from_key)
{
    DirectoryIndex::Found found;
    if (!accepts(path, key) || !source.find(from_path, from_key, found))
        return false;
    if (&source == this && path == from_path && key == from_key)
        return true;
    EntryValue value;
    const std::string label(found.label);
    const std::string bytes(found.value.bytes);
    if (!copy_stored(found.value, source, value)) {
        if (storage.error())
            go_back();
        else
            source.damage.note(LibraryDamage::Part::Content, from_path.key(), from_key.type,
                               from_key.name, "the content's checksum does not fit");
        return false;
    }
    value.bytes = bytes;
    if (value.has(EntryValue::kInIndex))
        value.position = 0;
    put_entry(path, key, label, value);
    changed(value.stored);
    return !storage.error();
}

bool LibraryState::remove(const LibraryPath& path, const EntryKey& key)
{
    DirectoryIndex::Found found;
    if (!can_write() || !find(path, key, found))
        return false;
    release(found.value.range());
    log_.remove(path.key(), key.type, key.name);
    index.remove(path.key(), key);
    changed(kSectorBytes);
    return !storage.error();
}

bool LibraryState::rename(const LibraryPath& path, const EntryKey& key, const LibraryPath& to_path,
                          const EntryKey& to_key)
{
    DirectoryIndex::Found found;
    if (!can_write() || !find(path, key, found) || !accepts(to_path, to_key))
        return false;
    if (path == to_path && key == to_key)
        return true;
    // The views of what was found end with the first change.
    EntryValue value = found.value;
    const std::string bytes(value.bytes);
    const std::string label(found.label);
    value.bytes = bytes;
    log_.remove(path.key(), key.type, key.name);
    index.remove(path.key(), key);
    if (value.has(EntryValue::kInIndex))
        value.position = 0;
    put_entry(to_path, to_key, label, value);
    changed(kSectorBytes);
    return !storage.error();
}

bool LibraryState::rename_directory(const LibraryPath& from, const LibraryPath& to)
{
    if (!can_write() || from.is_root() || to.is_root() || to.starts_with(from))
        return false;
    std::string found;
    const auto exists = [&](const LibraryPath& path) {
        return index.next_directory(path.key(), found) && found.starts_with(path.key());
    };
    if (exists(to) || !exists(from))
        return false;
    // Only then is every new path within the limits.
    for (bool more = true; more && found.starts_with(from.key());
         more = index.next_directory(found + '\0', found)) {
        LibraryPath moved;
        if (!moved.assign_key(to.key() + found.substr(from.key().size())))
            return false;
    }
    log_.move_directory(from.key(), to.key());
    index.move_directory(from.key(), to.key());
    changed(kSectorBytes);
    return !storage.error();
}

bool LibraryState::set_file_kind(std::string_view kind)
{
    if (!can_write() || kind.size() > LibraryFile::kMaxFileKindBytes)
        return false;
    if (kind == index.file_kind())
        return true;
    log_.file_kind(kind);
    index.set_file_kind(kind);
    changed(kSectorBytes);
    return !storage.error();
}

bool LibraryState::clear()
{
    if (!can_write())
        return false;
    load_space();
    const std::string kind = index.file_kind();
    index.clear();
    log_.clear_all();
    if (!kind.empty())
        log_.file_kind(kind);
    cleared_ = true;
    start_of_new_ = storage.end();
    space_.clear();
    space_.give({kDataStart, start_of_new_ - kDataStart}, number_ + 1);
    given_up_.clear();
    records_.clear();
    changed(kSectorBytes);
    return !storage.error();
}

}  // namespace zmr
