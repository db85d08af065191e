#include "graphics/BmpHeader.h"

#include "graphics/ImageHead.h"

#include <algorithm>
#include <bit>

namespace zmr {
namespace {

constexpr std::uint64_t kFileHeaderBytes = 14;
constexpr std::uint32_t kCoreHeaderBytes = 12;
constexpr std::uint32_t kInfoHeaderBytes = 40;

bool is_contiguous(std::uint32_t mask)
{
    if (mask == 0)
        return true;
    mask >>= std::countr_zero(mask);
    return (mask & (mask + 1)) == 0;
}

}  // namespace

BmpHeader::BmpHeader(ByteView bytes)
{
    const std::uint32_t header_bytes = bytes.le32(kFileHeaderBytes);
    if (!bytes.has(kFileHeaderBytes, header_bytes) || header_bytes < kCoreHeaderBytes)
        refuse_image("the BMP data ends too early");
    if (header_bytes == kCoreHeaderBytes)
        read_core(bytes);
    else
        read_info(bytes, header_bytes);

    switch (depth) {
        case 1:
        case 4:
        case 8:
        case 16:
        case 24:
        case 32:
            break;
        default:
            refuse_image("the BMP has an unknown number of bits per pixel");
    }
    pixels_at = bytes.le32(10);
    if (pixels_at < palette_at)  // some writers leave it 0
        pixels_at = palette_at + std::uint64_t{palette_count} * palette_entry_bytes;
    if (depth <= 8) {
        const std::uint64_t room = (pixels_at - palette_at) / palette_entry_bytes;
        palette_count = static_cast<std::uint32_t>(std::min<std::uint64_t>(palette_count, room));
    }
    if (!bytes.has(palette_at, std::uint64_t{palette_count} * palette_entry_bytes) ||
        !bytes.has(pixels_at, 1))
        refuse_image("the BMP data ends too early");
}

void BmpHeader::read_core(ByteView bytes)
{
    width = bytes.le16(kFileHeaderBytes + 4);
    height = bytes.le16(kFileHeaderBytes + 6);
    depth = bytes.le16(kFileHeaderBytes + 10);
    palette_entry_bytes = 3;
    palette_at = kFileHeaderBytes + kCoreHeaderBytes;
    palette_count = depth <= 8 ? 1u << depth : 0;
    if (depth == 16)
        masks = {0x1f, 0x3e0, 0x7c00, 0};
}

void BmpHeader::read_info(ByteView bytes, std::uint32_t header_bytes)
{
    // Headers from 16 bytes on may be cut anywhere; the fields they lack are 0.
    const auto field32 = [&](std::uint32_t place) {
        return place + 4 <= header_bytes ? bytes.le32(kFileHeaderBytes + place) : 0u;
    };
    width = field32(4);
    height = field32(8);
    if ((height & 0x80000000u) != 0) {
        from_top = true;
        height = 0u - height;
    }
    if (width > 0x7fffffffu || height > 0x7fffffffu)
        refuse_image("the BMP header is damaged");
    depth = bytes.le16(kFileHeaderBytes + 14);
    const std::uint32_t compression = field32(16);
    switch (compression) {
        case 0:
            packing = Packing::None;
            break;
        case 1:
            packing = Packing::Runs8;
            break;
        case 2:
            packing = Packing::Runs4;
            break;
        case 3:
        case 6:
            packing = Packing::BitFields;
            break;
        default:
            refuse_image("the BMP is compressed in an unknown way");
    }
    const bool fits = packing == Packing::None || (packing == Packing::Runs8 && depth == 8) ||
                      (packing == Packing::Runs4 && depth == 4) ||
                      (packing == Packing::BitFields && (depth == 16 || depth == 32));
    if (!fits || (has_runs() && from_top))
        refuse_image("the BMP header is damaged");
    palette_at = kFileHeaderBytes + header_bytes;
    read_masks(bytes, header_bytes, compression);
    if (depth <= 8) {
        const std::uint32_t most = 1u << depth;
        const std::uint32_t used = field32(32);
        palette_count = used == 0 || used > most ? most : used;
    }
}

void BmpHeader::read_masks(ByteView bytes, std::uint32_t header_bytes, std::uint32_t compression)
{
    if (packing != Packing::BitFields) {
        if (depth == 16)
            masks = {0x1f, 0x3e0, 0x7c00, 0};
        if (depth == 32)
            masks = {0xff, 0xff00, 0xff0000, 0};  // the fourth byte is unused
        return;
    }
    const std::uint64_t place = kFileHeaderBytes + kInfoHeaderBytes;
    bool alpha = header_bytes >= 56;
    if (header_bytes == kInfoHeaderBytes) {  // the masks follow the header
        alpha = compression == 6;
        palette_at += alpha ? 16 : 12;
    } else if (header_bytes < 52) {
        refuse_image("the BMP header is damaged");
    }
    if (!bytes.has(place, alpha ? 16 : 12))
        refuse_image("the BMP data ends too early");
    masks = {bytes.le32(place + 8), bytes.le32(place + 4), bytes.le32(place),
             alpha ? bytes.le32(place + 12) : 0u};
    if (!std::all_of(masks.begin(), masks.end(), is_contiguous))
        refuse_image("the BMP header is damaged");
}

}  // namespace zmr
