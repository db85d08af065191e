#include "graphics/TgaHeader.h"

#include <cstring>

namespace zmr {

TgaHeader::TgaHeader(ByteView bytes)
    : id_bytes(bytes.u8(0)),
      has_map(bytes.u8(1) != 0),
      image_type(bytes.u8(2)),
      map_first(bytes.le16(3)),
      map_count(bytes.le16(5)),
      map_bits(bytes.u8(7)),
      width(bytes.le16(12)),
      height(bytes.le16(14)),
      depth(bytes.u8(16)),
      descriptor(bytes.u8(17))
{
}

bool TgaHeader::is_plausible(ByteView start, std::uint64_t file_bytes)
{
    constexpr std::uint64_t kHeaderBytes = 18;
    if (!start.has(0, kHeaderBytes) || start.u8(1) > 1)
        return false;
    const TgaHeader header(start);
    if (!header.is_plausible() || header.pixels_at() >= file_bytes)
        return false;
    const std::uint64_t left = file_bytes - header.pixels_at();
    return header.run_lengths() || header.pixel_count() * header.pixel_bytes() <= left;
}

bool TgaHeader::is_plausible() const
{
    if (width == 0 || height == 0 || (descriptor & 0xc0) != 0 || alpha_bits() > 8)
        return false;
    if (has_map && map_bits != 15 && map_bits != 16 && map_bits != 24 && map_bits != 32)
        return false;
    switch (image_type & ~8u) {
        case 1:
            return has_map && map_count > 0 && (depth == 8 || depth == 16);
        case 2:
            return depth == 15 || depth == 16 || depth == 24 || depth == 32;
        case 3:
            return depth == 8 || depth == 16;
        default:
            return false;
    }
}

TgaHeader::Alpha TgaHeader::alpha(ByteView bytes) const
{
    const std::uint32_t bits = colors() == Colors::Palette ? map_bits : depth;
    const bool possible = colors() == Colors::Grey   ? bits == 16
                          : colors() == Colors::True ? (bits == 32 && alpha_bits() == 8) ||
                                                           (bits == 16 && alpha_bits() == 1)
                                                     : bits == 32;
    if (!possible)
        return Alpha::None;
    // The block at the end of newer files names an area that tells what the attribute bits mean.
    constexpr std::uint64_t kFooterBytes = 26;
    constexpr std::uint64_t kAreaBytes = 495;
    if (bytes.size() < kFooterBytes + 18)
        return Alpha::Straight;
    const std::uint64_t footer = bytes.size() - kFooterBytes;
    if (std::memcmp(bytes.at(footer + 8), "TRUEVISION-XFILE.", 17) != 0)
        return Alpha::Straight;
    const std::uint32_t area = bytes.le32(footer);
    if (area == 0 || bytes.le16(area) != kAreaBytes || !bytes.has(area, kAreaBytes))
        return Alpha::Straight;
    switch (bytes.u8(area + 494)) {
        case 3:
            return Alpha::Straight;
        case 4:
            return Alpha::Premultiplied;
        default:
            return Alpha::None;  // none, or undefined data
    }
}

}  // namespace zmr
