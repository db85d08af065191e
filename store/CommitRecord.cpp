#include "store/CommitRecord.h"

namespace zmr {

void RootRecord::write(ByteWriter& out) const
{
    out.text(file_kind);
    out.varint(entries);
    types.write(out);
    free_list.write(out);
    out.varint(pages.size());
    for (const PageRef& page : pages) {
        out.text(page.first);
        page.block.write(out);
        out.varint(page.directories);
    }
}

void RootRecord::read(ByteReader& in, std::uint64_t file_end)
{
    file_kind = std::string(in.text());
    entries = in.varint();
    types.read(in, file_end);
    free_list.read(in, file_end);
    pages.resize(static_cast<std::size_t>(in.count(12)));
    const PageRef* before = nullptr;
    for (PageRef& page : pages) {
        page.first = std::string(in.text());
        page.block.read(in, file_end);
        page.directories = in.varint();
        if (before != nullptr && page.first < before->first)
            in.fail();
        before = &page;
    }
}

std::string CommitRecord::encode() const
{
    std::string payload;
    ByteWriter out(payload);
    out.u64(number);
    out.u64(previous_checksum);
    out.u64(start);
    out.varint(flags);
    out.u64(appended_checksum);
    if (has(kCleared))
        out.varint(start_of_new);
    out.varint(used.size());
    for (const Used& part : used) {
        out.varint(part.range.position);
        out.varint(part.range.length);
        out.u64(part.checksum);
    }
    out.varint(given_up.size());
    for (const FileRange& range : given_up) {
        out.varint(range.position);
        out.varint(range.length);
    }
    if (has(kHasRoot)) {
        root.write(out);
    } else {
        out.bytes(changes);
    }
    out.u64(checksum_of(std::string_view(payload)));
    return payload;
}

bool CommitRecord::is_whole(std::string_view payload)
{
    return payload.size() >= 8 &&
           checksum_in(payload) == checksum_of(payload.substr(0, payload.size() - 8));
}

bool CommitRecord::decode(std::string_view payload, std::uint64_t file_end)
{
    if (!is_whole(payload))
        return false;
    ByteReader in(payload.substr(0, payload.size() - 8));
    const auto range_in_file = [&](FileRange& range) {
        range.position = in.varint();
        range.length = in.varint();
        if (range.position < kDataStart || range.position > file_end ||
            range.length > file_end - range.position)
            in.fail();
    };
    number = in.u64();
    previous_checksum = in.u64();
    start = in.u64();
    flags = in.varint();
    appended_checksum = in.u64();
    start_of_new = has(kCleared) ? in.varint() : 0;
    used.resize(static_cast<std::size_t>(in.count(10)));
    for (Used& part : used) {
        range_in_file(part.range);
        part.checksum = in.u64();
    }
    given_up.resize(static_cast<std::size_t>(in.count(2)));
    for (FileRange& range : given_up)
        range_in_file(range);
    if (start_of_new > file_end || number == 0 || number >= kReaderLocks - 1)
        in.fail();
    if (has(kHasRoot))
        root.read(in, file_end);
    changes = in.bytes(in.left());
    return in.good();
}

void ChangeLog::clear()
{
    bytes_.clear();
    directory_.clear();
    has_directory_ = false;
}

void ChangeLog::in_directory(const std::string& directory)
{
    if (has_directory_ && directory_ == directory)
        return;
    ByteWriter out(bytes_);
    out.u8(static_cast<std::uint8_t>(ChangeKind::Directory));
    out.text(directory);
    directory_ = directory;
    has_directory_ = true;
}

void ChangeLog::put(const std::string& directory, std::string_view type, std::string_view name,
                    std::string_view label, const EntryValue& value, bool is_new)
{
    in_directory(directory);
    ByteWriter out(bytes_);
    out.u8(static_cast<std::uint8_t>(ChangeKind::Put));
    out.text(type);
    out.text(name);
    out.text(label);
    value.write(out);
    out.u8(is_new ? 1 : 0);
}

void ChangeLog::remove(const std::string& directory, std::string_view type, std::string_view name)
{
    in_directory(directory);
    ByteWriter out(bytes_);
    out.u8(static_cast<std::uint8_t>(ChangeKind::Remove));
    out.text(type);
    out.text(name);
}

void ChangeLog::move_directory(std::string_view from, std::string_view to)
{
    ByteWriter out(bytes_);
    out.u8(static_cast<std::uint8_t>(ChangeKind::MoveDirectory));
    out.text(from);
    out.text(to);
}

void ChangeLog::file_kind(std::string_view kind)
{
    ByteWriter out(bytes_);
    out.u8(static_cast<std::uint8_t>(ChangeKind::FileKind));
    out.text(kind);
}

void ChangeLog::clear_all()
{
    clear();
    ByteWriter(bytes_).u8(static_cast<std::uint8_t>(ChangeKind::Clear));
}

bool read_changes(std::string_view bytes, std::uint64_t bytes_position, std::uint64_t file_end,
                  ChangeVisitor& visitor)
{
    ByteReader in(bytes);
    std::string directory;
    const auto is_path = [](std::string_view key) {
        LibraryPath path;
        return path.assign_key(key);
    };
    while (in.good() && !in.at_end()) {
        switch (static_cast<ChangeKind>(in.u8())) {
            case ChangeKind::Directory: {
                directory = std::string(in.text());
                if (!is_path(directory))
                    in.fail();
                break;
            }
            case ChangeKind::Put: {
                const std::string_view type = in.text();
                const std::string_view name = in.text();
                const std::string_view label = in.text();
                EntryValue value;
                value.read(in, file_end);
                const bool is_new = in.u8() != 0;
                if (!in.good())
                    break;
                if (value.has(EntryValue::kInIndex))
                    value.position = bytes_position +
                                     static_cast<std::uint64_t>(value.bytes.data() - bytes.data());
                visitor.put(directory, type, name, label, value, is_new);
                break;
            }
            case ChangeKind::Remove: {
                const std::string_view type = in.text();
                const std::string_view name = in.text();
                if (in.good())
                    visitor.remove(directory, type, name);
                break;
            }
            case ChangeKind::MoveDirectory: {
                const std::string from(in.text());
                const std::string to(in.text());
                if (in.good() && is_path(from) && is_path(to))
                    visitor.move_directory(from, to);
                else
                    in.fail();
                break;
            }
            case ChangeKind::FileKind: {
                const std::string_view kind = in.text();
                if (in.good())
                    visitor.file_kind(kind);
                break;
            }
            case ChangeKind::Clear:
                visitor.clear_all();
                break;
            default:
                in.fail();
        }
    }
    return in.good();
}

}  // namespace zmr
