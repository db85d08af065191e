#include "graphics/ImageHead.h"

#include <algorithm>

namespace zmr {
namespace {

constexpr std::uint32_t kHeaderChunk = 0x49484452;        // "IHDR"
constexpr std::uint32_t kTransparencyChunk = 0x74524e53;  // "tRNS"
constexpr std::uint32_t kDataChunk = 0x49444154;          // "IDAT"
constexpr std::uint32_t kEndChunk = 0x49454e44;           // "IEND"

std::uint64_t channels_of(std::uint32_t color_type)
{
    switch (color_type) {
        case 2:
            return 3;
        case 4:
            return 2;
        case 6:
            return 4;
        default:
            return 1;
    }
}

}  // namespace

ImageHead read_png_head(ByteView bytes)
{
    constexpr std::uint64_t kChunkFrame = 12;  // length, name, checksum
    if (bytes.be32(8) != 13 || bytes.be32(12) != kHeaderChunk || !bytes.has(8, 13 + kChunkFrame))
        refuse_image("the PNG header is missing");
    ImageHead head;
    head.width = bytes.be32(16);
    head.height = bytes.be32(20);
    const std::uint32_t depth = bytes.u8(24);
    const std::uint32_t color_type = bytes.u8(25);
    head.alpha = color_type == 4 || color_type == 6;

    std::uint64_t data_bytes = 0;
    std::uint64_t position = 8;
    for (;;) {
        if (!bytes.has(position, kChunkFrame))
            refuse_image("the PNG data ends too early");
        const std::uint32_t length = bytes.be32(position);
        const std::uint32_t name = bytes.be32(position + 4);
        if (!bytes.has(position, kChunkFrame + length))
            refuse_image("the PNG data ends too early");
        if (name == kEndChunk)
            break;
        if (name == kTransparencyChunk && data_bytes == 0)
            head.alpha = true;
        if (name == kDataChunk)
            data_bytes += length;
        position += kChunkFrame + length;
    }
    // Deflate shrinks to 1/1032 at best; a byte of rows holds at most 8 pixels.
    const std::uint64_t bits = std::max<std::uint64_t>(depth * channels_of(color_type), 1);
    head.max_pixels = (data_bytes + 16) * 1040 * 8 / bits;
    return head;
}

}  // namespace zmr
