#pragma once

#include "store/LibraryEntry.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

// The bytes of a library file, as docs/library-format.md tells them: encoding and decoding of plain
// values. Readers never go beyond what they were given.
namespace zmr {

constexpr std::uint32_t kFormatVersion = 1;
constexpr std::uint64_t kSectorBytes = 512;
constexpr std::uint64_t kPageBytes = 4096;
constexpr std::array<std::uint64_t, 2> kSlotPosition = {4096, 8192};
constexpr std::uint64_t kOwnerPosition = 12288;
constexpr std::uint64_t kDataStart = 16384;
constexpr std::uint64_t kFrameBytes = 24;
constexpr std::uint64_t kLibraryBlock = LibraryContent::kBlockBytes;
constexpr std::uint64_t kMaxInflatedBytes = 64u << 20;
constexpr std::uint64_t kReaderLocks = std::uint64_t{1} << 62;
constexpr std::uint64_t kWriterLock = kReaderLocks - 1;

/// The one checksum of the format: XXH3, 64 bits.
[[nodiscard]] std::uint64_t checksum_of(std::string_view bytes, std::uint64_t seed = 0);
[[nodiscard]] inline std::uint64_t checksum_of(const void* data, std::size_t size)
{
    return checksum_of(std::string_view(static_cast<const char*>(data), size));
}

/// The checksum of bytes that come in pieces.
class RunningChecksum {
public:
    RunningChecksum();
    ~RunningChecksum();
    RunningChecksum(const RunningChecksum&) = delete;
    RunningChecksum& operator=(const RunningChecksum&) = delete;
    void reset();
    void add(const void* data, std::size_t size);
    [[nodiscard]] std::uint64_t value() const;

private:
    void* state_;
};

// Inline, because every record's every number goes through them; compilers make one load of each.
[[nodiscard]] inline std::uint32_t load_u32(const char* bytes)
{
    const auto byte = [&](int i) { return std::uint32_t{static_cast<unsigned char>(bytes[i])}; };
    return byte(0) | byte(1) << 8 | byte(2) << 16 | byte(3) << 24;
}
[[nodiscard]] inline std::uint64_t load_u64(const char* bytes)
{
    return std::uint64_t{load_u32(bytes + 4)} << 32 | load_u32(bytes);
}

/// Appends numbers and texts to a string.
class ByteWriter {
public:
    explicit ByteWriter(std::string& out) : out_(out) {}
    void u8(std::uint8_t value) { out_ += static_cast<char>(value); }
    void u32(std::uint32_t value);
    void u64(std::uint64_t value);
    void varint(std::uint64_t value);
    void text(std::string_view value);
    void bytes(std::string_view value) { out_ += value; }

private:
    std::string& out_;
};

/// Takes numbers and texts from bytes. Past the end, or at a malformed number, it turns bad, stays
/// bad and gives zeros and empty texts.
class ByteReader {
public:
    explicit ByteReader(std::string_view bytes) : left_(bytes) {}
    [[nodiscard]] bool good() const { return good_; }
    [[nodiscard]] bool at_end() const { return left_.empty(); }
    [[nodiscard]] std::size_t left() const { return left_.size(); }
    std::uint8_t u8()
    {
        if (left_.empty()) {
            fail();
            return 0;
        }
        const auto value = static_cast<std::uint8_t>(left_[0]);
        left_.remove_prefix(1);
        return value;
    }
    std::uint32_t u32();
    std::uint64_t u64();
    std::uint64_t varint()
    {
        if (!left_.empty() && static_cast<unsigned char>(left_[0]) < 0x80) {
            const auto value = static_cast<unsigned char>(left_[0]);
            left_.remove_prefix(1);
            return value;
        }
        return long_varint();
    }
    /// Borrowed from the bytes.
    std::string_view text() { return bytes(varint()); }
    std::string_view bytes(std::uint64_t count)
    {
        if (count > left_.size()) {
            fail();
            return {};
        }
        const std::string_view part = left_.substr(0, static_cast<std::size_t>(count));
        left_.remove_prefix(part.size());
        return part;
    }
    /// A count of things that take at least `least_bytes` each.
    std::uint64_t count(std::size_t least_bytes);
    void fail() { good_ = false, left_ = {}; }

private:
    std::uint64_t long_varint();
    std::string_view left_;
    bool good_ = true;
};

/// A part of the file.
struct FileRange {
    std::uint64_t position = 0;
    std::uint64_t length = 0;
    friend bool operator==(const FileRange&, const FileRange&) = default;
};

/// Where a block lies and what its bytes hash to. Length 0 stands for none.
struct BlockRef {
    std::uint64_t position = 0;
    std::uint64_t length = 0;
    std::uint64_t checksum = 0;
    /// The space it takes, with its frame.
    [[nodiscard]] FileRange range() const
    {
        return length == 0 ? FileRange() : FileRange{position - kFrameBytes, length + kFrameBytes};
    }
    void write(ByteWriter& out) const;
    /// Bad unless it lies between the start of the data and `file_end`.
    void read(ByteReader& in, std::uint64_t file_end);
};

/// A root slot.
struct RootSlot {
    std::uint64_t number = 0;
    std::uint64_t record_position = 0;
    std::uint64_t record_length = 0;
    std::uint64_t record_checksum = 0;
    std::uint64_t tail = kDataStart;
    friend bool operator==(const RootSlot&, const RootSlot&) = default;
};
[[nodiscard]] std::string encode_header();
[[nodiscard]] std::string encode_slot(const RootSlot& slot);
[[nodiscard]] std::string encode_owner(std::string_view text);
/// False when the sector is no valid one.
[[nodiscard]] bool decode_slot(std::string_view sector, RootSlot& slot);
[[nodiscard]] bool decode_owner(std::string_view sector, std::string& text);
enum class HeaderKind { Valid, Newer, Damaged, Foreign };
[[nodiscard]] HeaderKind decode_header(std::string_view sector);
/// True for the fixed part of a library whose making was cut short.
[[nodiscard]] bool is_unfinished(std::string_view file);

enum class FrameKind : std::uint32_t { Content = 1, Commit = 2, Index = 3 };
struct Frame {
    FrameKind kind = FrameKind::Content;
    std::uint64_t length = 0;
};
[[nodiscard]] std::string encode_frame(const Frame& frame, std::uint64_t position);
[[nodiscard]] bool decode_frame(std::string_view bytes, std::uint64_t position, Frame& frame);

/// What an entry's record tells of its content, with the views borrowed from where it lies.
struct EntryValue {
    static constexpr std::uint8_t kRaw = 1;
    static constexpr std::uint8_t kCompressed = 2;
    static constexpr std::uint8_t kInIndex = 4;
    static constexpr std::uint8_t kInBlocks = 8;

    std::uint8_t flags = 0;
    std::uint64_t length = 0;
    std::uint64_t stored = 0;
    std::uint64_t position = 0;  ///< Of a content in the index: when its place is known, else 0.
    std::uint64_t checksum = 0;  ///< 0 for a content in the index.
    std::string_view bytes;      ///< The stored bytes of a content in the index.

    [[nodiscard]] bool has(std::uint8_t flag) const { return (flags & flag) != 0; }
    /// The space that a content outside the index takes, with its frame and table of checksums.
    [[nodiscard]] FileRange range() const;
    void write(ByteWriter& out) const;
    /// Bad when it contradicts itself or lies outside a file of `file_end` bytes.
    void read(ByteReader& in, std::uint64_t file_end)
    {
        flags = in.u8();
        length = in.varint();
        if ((flags & (kCompressed | kInIndex | kInBlocks)) != kInIndex) {
            read_place(in, file_end);
            return;
        }
        stored = length;
        position = 0;
        checksum = 0;
        bytes = in.bytes(length);
    }

private:
    void read_place(ByteReader& in, std::uint64_t file_end);
};

/// The bytes of the checksum table behind `stored` bytes.
[[nodiscard]] constexpr std::uint64_t block_table_bytes(std::uint64_t stored)
{
    return (stored / kLibraryBlock + (stored % kLibraryBlock != 0 ? 1 : 0)) * 8;
}

}  // namespace zmr
