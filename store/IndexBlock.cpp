#include "store/IndexBlock.h"

#include <cstring>
#include <limits>
#include <utility>

namespace zmr {

bool IndexBlock::assign(ByteBuffer bytes, Kind kind, std::uint64_t position, std::uint64_t file_end)
{
    buffer_ = std::move(bytes);
    bytes_ = buffer_.view();
    strings_.clear();
    count_ = 0;
    position_ = position;
    file_end_ = file_end;
    ByteReader head(bytes_);
    const std::uint32_t magic = head.u32();
    const std::uint32_t records = head.u32();
    const std::uint32_t strings = head.u32();
    static_cast<void>(head.u32());
    if (!head.good() || magic != static_cast<std::uint32_t>(kind) || records > head.left() / 4)
        return false;
    ByteReader in(bytes_.substr(kHeadBytes + std::size_t{records} * 4));
    if (strings > in.left())
        return false;
    strings_.reserve(strings);
    for (std::uint32_t i = 0; i < strings && in.good(); ++i)
        strings_.push_back(in.text());
    if (!in.good())
        return false;
    count_ = records;
    return true;
}

ByteBuffer IndexBlock::release()
{
    bytes_ = {};
    strings_.clear();
    count_ = 0;
    return std::move(buffer_);
}

template <class Below>
std::size_t IndexBlock::partition_point(Below below) const
{
    std::size_t first = 0;
    std::size_t left = count_;
    while (left > 0) {
        const std::size_t half = left / 2;
        if (below(first + half)) {
            first += half + 1;
            left -= half + 1;
        } else {
            left = half;
        }
    }
    return first;
}

std::size_t IndexBlock::lower_bound(const EntryKey& key) const
{
    return partition_point([&](std::size_t index) {
        EntryKey other;
        return this->key(index, other) && other < key;
    });
}

bool IndexBlock::directory_key(std::size_t index, std::string_view& key) const
{
    ByteReader in = record(index);
    key = in.text();
    return in.good();
}

std::size_t IndexBlock::lower_bound_directory(std::string_view key) const
{
    return partition_point([&](std::size_t index) {
        std::string_view other;
        return directory_key(index, other) && other < key;
    });
}

ByteWriter& IndexBlockBuilder::begin_record()
{
    offsets_.push_back(static_cast<std::uint32_t>(records_.size()));
    return out_;
}

std::uint32_t IndexBlockBuilder::string_number(std::string_view text)
{
    const auto [place, added] =
        numbers_.try_emplace(std::string(text), static_cast<std::uint32_t>(numbers_.size()));
    if (added)
        ByteWriter(strings_).text(text);
    return place->second;
}

void IndexBlockBuilder::add_entry(const EntryKey& key, std::string_view label,
                                  const EntryValue& value)
{
    ByteWriter& out = begin_record();
    out.varint(string_number(key.type));
    out.text(key.name);
    out.varint(string_number(label));
    value.write(out);
}

std::string IndexBlockBuilder::finish()
{
    std::string bytes;
    bytes.reserve(size());
    ByteWriter out(bytes);
    out.u32(static_cast<std::uint32_t>(kind_));
    out.u32(static_cast<std::uint32_t>(offsets_.size()));
    out.u32(static_cast<std::uint32_t>(numbers_.size()));
    out.u32(0);
    const std::size_t records_at = IndexBlock::kHeadBytes + offsets_.size() * 4 + strings_.size();
    for (const std::uint32_t offset : offsets_)
        out.u32(static_cast<std::uint32_t>(records_at + offset));
    out.bytes(strings_);
    out.bytes(records_);
    offsets_.clear();
    numbers_.clear();
    strings_.clear();
    records_.clear();
    return bytes;
}

std::shared_ptr<const IndexBlock> IndexBlockBuilder::finish_in_memory()
{
    const std::string bytes = finish();
    ByteBuffer buffer;
    buffer.reset(bytes.size());
    std::memcpy(buffer.data(), bytes.data(), bytes.size());
    const auto block = std::make_shared<IndexBlock>();
    static_cast<void>(
        block->assign(std::move(buffer), kind_, 0, std::numeric_limits<std::uint64_t>::max()));
    return block;
}

}  // namespace zmr
