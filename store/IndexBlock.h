#pragma once

#include "store/ByteBuffer.h"
#include "store/LibraryFormat.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace zmr {

/// Orders entries: by type, then by name.
struct EntryKey {
    std::string_view type;
    std::string_view name;
    friend auto operator<=>(const EntryKey&, const EntryKey&) = default;
};

/// One entry as an index block holds it; the views borrow from the block.
struct EntryRecord {
    EntryKey key;
    std::string_view label;
    EntryValue value;
};

/// A checked block of the index in memory: a page of the directory table or an extent of entries.
/// Records are decoded as they are asked for, each within the block's bounds, so that a malformed
/// block costs nothing but itself. The cache and the lists share blocks that never change.
class IndexBlock {
public:
    enum class Kind : std::uint32_t { Page = 0x5A4D5047, Extent = 0x5A4D5854 };
    static constexpr std::size_t kHeadBytes = 16;

    /// No records.
    IndexBlock() = default;
    IndexBlock(const IndexBlock&) = delete;
    IndexBlock& operator=(const IndexBlock&) = delete;
    /// Keeps the bytes; false, without records, when they are no block of that kind. `position` is
    /// where they lie in the file, 0 for a block made in memory; `file_end` bounds what its values
    /// may point at.
    [[nodiscard]] bool assign(ByteBuffer bytes, Kind kind, std::uint64_t position,
                              std::uint64_t file_end);
    /// Gives the memory up, to be used again.
    [[nodiscard]] ByteBuffer release();

    [[nodiscard]] std::size_t count() const { return count_; }
    [[nodiscard]] std::size_t bytes() const { return bytes_.size(); }
    [[nodiscard]] std::size_t memory() const { return buffer_.capacity(); }
    /// A string of the block's table; empty, and `in` bad, when there is none of that number.
    [[nodiscard]] std::string_view string(ByteReader& in) const
    {
        const std::uint64_t number = in.varint();
        if (number < strings_.size())
            return strings_[static_cast<std::size_t>(number)];
        in.fail();
        return {};
    }
    /// The bytes from record `index` on.
    [[nodiscard]] ByteReader record(std::size_t index) const
    {
        const std::uint32_t offset = load_u32(bytes_.data() + kHeadBytes + index * 4);
        return ByteReader(offset < bytes_.size() ? bytes_.substr(offset) : std::string_view());
    }
    [[nodiscard]] std::uint64_t file_end() const { return file_end_; }

    // Of an extent.
    [[nodiscard]] bool key(std::size_t index, EntryKey& key) const
    {
        ByteReader in = record(index);
        key.type = string(in);
        key.name = in.text();
        return in.good();
    }
    [[nodiscard]] bool entry(std::size_t index, EntryRecord& entry) const
    {
        ByteReader in = record(index);
        entry.key.type = string(in);
        entry.key.name = in.text();
        entry.label = string(in);
        entry.value.read(in, file_end_);
        if (!in.good())
            return false;
        if (position_ != 0 && entry.value.has(EntryValue::kInIndex))
            entry.value.position =
                position_ + static_cast<std::uint64_t>(entry.value.bytes.data() - bytes_.data());
        return true;
    }
    /// The first record not below `key`; count() when there is none. Logarithmic.
    [[nodiscard]] std::size_t lower_bound(const EntryKey& key) const;

    // Of a page.
    [[nodiscard]] bool directory_key(std::size_t index, std::string_view& key) const;
    [[nodiscard]] std::size_t lower_bound_directory(std::string_view key) const;

private:
    template <class Below>
    std::size_t partition_point(Below below) const;

    ByteBuffer buffer_;
    std::string_view bytes_;  // of the buffer
    std::vector<std::string_view> strings_;
    std::size_t count_ = 0;
    std::uint64_t position_ = 0;
    std::uint64_t file_end_ = 0;
};

/// Makes the bytes of an index block. Records are added in ascending order.
class IndexBlockBuilder {
public:
    explicit IndexBlockBuilder(IndexBlock::Kind kind) : kind_(kind) {}
    IndexBlockBuilder(const IndexBlockBuilder&) = delete;
    IndexBlockBuilder& operator=(const IndexBlockBuilder&) = delete;

    void add_entry(const EntryKey& key, std::string_view label, const EntryValue& value);
    /// Begins a record that the caller writes through out(), with strings by string_number().
    ByteWriter& begin_record();
    [[nodiscard]] std::uint32_t string_number(std::string_view text);
    [[nodiscard]] std::size_t count() const { return offsets_.size(); }
    /// The size of the finished block, about.
    [[nodiscard]] std::size_t size() const
    {
        return IndexBlock::kHeadBytes + offsets_.size() * 4 + strings_.size() + records_.size();
    }
    /// The block's bytes; the builder is empty afterwards.
    [[nodiscard]] std::string finish();
    /// The block itself, as one that lies nowhere in the file.
    [[nodiscard]] std::shared_ptr<const IndexBlock> finish_in_memory();

private:
    IndexBlock::Kind kind_;
    std::vector<std::uint32_t> offsets_;
    std::unordered_map<std::string, std::uint32_t> numbers_;
    std::string strings_;
    std::string records_;
    ByteWriter out_{records_};
};

}  // namespace zmr
