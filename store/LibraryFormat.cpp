#include "store/LibraryFormat.h"

#include <algorithm>
#include <new>

#include <xxhash.h>

namespace zmr {
namespace {

constexpr std::string_view kHeaderMagic("\x89ZMRLIB\n", 8);
constexpr std::string_view kSlotMagic("ZMRROOT\n", 8);
constexpr std::string_view kOwnerMagic("ZMROWNR\n", 8);
constexpr std::uint32_t kFrameMagic = 0x5A4D4652;
constexpr std::size_t kSealAt = kSectorBytes - 8;

/// Fills a sector up and puts its checksum at its end.
std::string sealed(std::string sector)
{
    sector.resize(kSealAt, '\0');
    ByteWriter(sector).u64(checksum_of(std::string_view(sector)));
    return sector;
}

bool is_sealed(std::string_view sector, std::string_view magic)
{
    return sector.size() == kSectorBytes && sector.starts_with(magic) &&
           load_u64(sector.data() + kSealAt) == checksum_of(sector.substr(0, kSealAt));
}

}  // namespace

std::uint64_t checksum_of(std::string_view bytes, std::uint64_t seed)
{
    return XXH3_64bits_withSeed(bytes.data(), bytes.size(), seed);
}

RunningChecksum::RunningChecksum() : state_(XXH3_createState())
{
    if (state_ == nullptr)
        throw std::bad_alloc();
    reset();
}

RunningChecksum::~RunningChecksum()
{
    XXH3_freeState(static_cast<XXH3_state_t*>(state_));
}

void RunningChecksum::reset()
{
    XXH3_64bits_reset(static_cast<XXH3_state_t*>(state_));
}

void RunningChecksum::add(const void* data, std::size_t size)
{
    XXH3_64bits_update(static_cast<XXH3_state_t*>(state_), data, size);
}

std::uint64_t RunningChecksum::value() const
{
    return XXH3_64bits_digest(static_cast<const XXH3_state_t*>(state_));
}

void ByteWriter::u32(std::uint32_t value)
{
    for (int i = 0; i < 4; ++i)
        out_ += static_cast<char>(value >> (8 * i));
}

void ByteWriter::u64(std::uint64_t value)
{
    for (int i = 0; i < 8; ++i)
        out_ += static_cast<char>(value >> (8 * i));
}

void ByteWriter::varint(std::uint64_t value)
{
    for (; value >= 0x80; value >>= 7)
        out_ += static_cast<char>(value | 0x80);
    out_ += static_cast<char>(value);
}

void ByteWriter::text(std::string_view value)
{
    varint(value.size());
    out_ += value;
}

std::uint32_t ByteReader::u32()
{
    const std::string_view part = bytes(4);
    return part.empty() ? 0 : load_u32(part.data());
}

std::uint64_t ByteReader::u64()
{
    const std::string_view part = bytes(8);
    return part.empty() ? 0 : load_u64(part.data());
}

std::uint64_t ByteReader::long_varint()
{
    std::uint64_t value = 0;
    const std::size_t most = std::min<std::size_t>(left_.size(), 10);
    for (std::size_t i = 0; i < most; ++i) {
        const auto byte = static_cast<unsigned char>(left_[i]);
        value |= std::uint64_t{byte & 0x7Fu} << (7 * i);
        if (byte >= 0x80)
            continue;
        if (i == 9 && byte > 1)
            break;
        left_.remove_prefix(i + 1);
        return value;
    }
    fail();
    return 0;
}

std::uint64_t ByteReader::count(std::size_t least_bytes)
{
    const std::uint64_t value = varint();
    if (value > left_.size() / least_bytes) {
        fail();
        return 0;
    }
    return value;
}

void BlockRef::write(ByteWriter& out) const
{
    out.varint(position);
    out.varint(length);
    out.u64(checksum);
}

void BlockRef::read(ByteReader& in, std::uint64_t file_end)
{
    position = in.varint();
    length = in.varint();
    checksum = in.u64();
    if (length == 0)
        return;
    if (position < kDataStart + kFrameBytes || position > file_end || length > file_end - position)
        in.fail();
}

std::string encode_header()
{
    std::string sector(kHeaderMagic);
    ByteWriter(sector).u32(kFormatVersion);
    return sealed(std::move(sector));
}

HeaderKind decode_header(std::string_view sector)
{
    if (!sector.starts_with(kHeaderMagic))
        return HeaderKind::Foreign;
    if (!is_sealed(sector, kHeaderMagic))
        return HeaderKind::Damaged;
    return load_u32(sector.data() + 8) > kFormatVersion ? HeaderKind::Newer : HeaderKind::Valid;
}

std::string encode_slot(const RootSlot& slot)
{
    std::string sector(kSlotMagic);
    ByteWriter out(sector);
    out.u64(slot.number);
    out.u64(slot.record_position);
    out.u64(slot.record_length);
    out.u64(slot.record_checksum);
    out.u64(slot.tail);
    return sealed(std::move(sector));
}

bool decode_slot(std::string_view sector, RootSlot& slot)
{
    if (!is_sealed(sector, kSlotMagic))
        return false;
    ByteReader in(sector.substr(8));
    slot.number = in.u64();
    slot.record_position = in.u64();
    slot.record_length = in.u64();
    slot.record_checksum = in.u64();
    slot.tail = in.u64();
    return slot.number < kReaderLocks - 1 && slot.tail >= kDataStart && slot.tail < kReaderLocks &&
           (slot.number > 0) == (slot.record_length > kFrameBytes);
}

std::string encode_owner(std::string_view text)
{
    std::string sector(kOwnerMagic);
    ByteWriter(sector).text(text.substr(0, 400));
    return sealed(std::move(sector));
}

bool decode_owner(std::string_view sector, std::string& text)
{
    if (!is_sealed(sector, kOwnerMagic))
        return false;
    ByteReader in(sector.substr(8, kSealAt - 8));
    text = std::string(in.text());
    return in.good();
}

bool is_unfinished(std::string_view file)
{
    if (file.size() > kDataStart)
        return false;
    for (std::size_t at = 0; at < file.size(); at += kPageBytes) {
        const std::string_view page = file.substr(at, kPageBytes);
        const std::string_view magic = at == 0                ? kHeaderMagic
                                       : at == kOwnerPosition ? kOwnerMagic
                                                              : kSlotMagic;
        const bool proper = page.starts_with(magic.substr(0, page.size()));
        // A slot that names a commit is proof that there was more.
        RootSlot slot;
        if (decode_slot(page.substr(0, kSectorBytes), slot) && slot.number > 0)
            return false;
        if (!proper && page.find_first_not_of('\0') != std::string_view::npos)
            return false;
    }
    // With both slots it is whole, though empty.
    RootSlot slot;
    for (const std::uint64_t at : kSlotPosition)
        if (file.size() < at + kSectorBytes ||
            !decode_slot(file.substr(static_cast<std::size_t>(at), kSectorBytes), slot))
            return true;
    return false;
}

std::string encode_frame(const Frame& frame, std::uint64_t position)
{
    std::string bytes;
    ByteWriter out(bytes);
    out.u32(kFrameMagic);
    out.u32(static_cast<std::uint32_t>(frame.kind));
    out.u64(frame.length);
    out.u64(checksum_of(std::string_view(bytes), position));
    return bytes;
}

bool decode_frame(std::string_view bytes, std::uint64_t position, Frame& frame)
{
    if (bytes.size() != kFrameBytes || load_u32(bytes.data()) != kFrameMagic ||
        load_u64(bytes.data() + 16) != checksum_of(bytes.substr(0, 16), position))
        return false;
    frame.kind = static_cast<FrameKind>(load_u32(bytes.data() + 4));
    frame.length = load_u64(bytes.data() + 8);
    return frame.kind == FrameKind::Content || frame.kind == FrameKind::Commit ||
           frame.kind == FrameKind::Index;
}

FileRange EntryValue::range() const
{
    if (has(kInIndex))
        return {};
    const std::uint64_t table = has(kInBlocks) ? block_table_bytes(stored) : 0;
    return {position - kFrameBytes, kFrameBytes + stored + table};
}

void EntryValue::write(ByteWriter& out) const
{
    out.u8(flags);
    out.varint(length);
    if (has(kCompressed))
        out.varint(stored);
    if (has(kInIndex)) {
        out.bytes(bytes);
        return;
    }
    out.varint(position);
    out.u64(checksum);
}

void EntryValue::read_place(ByteReader& in, std::uint64_t file_end)
{
    stored = has(kCompressed) ? in.varint() : length;
    // zlib can't inflate by more than this factor, and longer contents are never compressed.
    if (has(kCompressed) && (length > kMaxInflatedBytes || length / 1032 > stored))
        in.fail();
    position = 0;
    checksum = 0;
    bytes = {};
    if (has(kInIndex)) {
        if (has(kInBlocks))
            in.fail();
        bytes = in.bytes(stored);
        return;
    }
    position = in.varint();
    checksum = in.u64();
    if (position < kDataStart + kFrameBytes || position > file_end || stored > file_end - position)
        in.fail();
    else if (has(kInBlocks) && block_table_bytes(stored) > file_end - position - stored)
        in.fail();
}

}  // namespace zmr
