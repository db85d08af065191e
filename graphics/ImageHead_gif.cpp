#include "graphics/ImageHead.h"

#include <algorithm>

namespace zmr {
namespace {

std::uint64_t color_table_bytes(std::uint32_t flags)
{
    return (flags & 0x80) != 0 ? std::uint64_t{3} << ((flags & 7) + 1) : 0;
}

/// Moves behind a chain of data blocks and returns how many bytes they hold.
std::uint64_t skip_blocks(ByteView bytes, std::uint64_t& position)
{
    std::uint64_t sum = 0;
    for (;;) {
        if (!bytes.has(position, 1))
            refuse_image("the GIF data ends too early");
        const std::uint32_t length = bytes.u8(position++);
        if (length == 0)
            return sum;
        if (!bytes.has(position, length))
            refuse_image("the GIF data ends too early");
        sum += length;
        position += length;
    }
}

}  // namespace

ImageHead read_gif_head(ByteView bytes)
{
    ImageHead head;
    const std::uint32_t screen_width = bytes.le16(6);
    const std::uint32_t screen_height = bytes.le16(8);
    std::uint64_t position = 13 + color_table_bytes(bytes.u8(10));
    for (;;) {
        const std::uint32_t introducer = bytes.u8(position++);
        if (introducer == 0x21) {  // an extension
            const std::uint32_t label = bytes.u8(position++);
            if (label == 0xf9 && bytes.u8(position) >= 4)
                head.alpha = (bytes.u8(position + 1) & 1) != 0;
            skip_blocks(bytes, position);
            continue;
        }
        if (introducer == 0x2c)
            break;
        if (introducer == 0x3b)
            refuse_image("the GIF data holds no picture");
        refuse_image(bytes.has(position, 1) ? "the GIF data is damaged"
                                            : "the GIF data ends too early");
    }
    if (!bytes.has(position, 9))
        refuse_image("the GIF data ends too early");
    head.frame_left = bytes.le16(position);
    head.frame_top = bytes.le16(position + 2);
    head.frame_width = bytes.le16(position + 4);
    head.frame_height = bytes.le16(position + 6);
    position += 9 + color_table_bytes(bytes.u8(position + 8));
    ++position;  // code size
    const std::uint64_t data_bytes = skip_blocks(bytes, position);

    // A frame that leaves the screen widens it; one that does not cover it leaves the rest clear.
    head.width = std::max(screen_width, head.frame_left + head.frame_width);
    head.height = std::max(screen_height, head.frame_top + head.frame_height);
    if (head.frame_width != head.width || head.frame_height != head.height)
        head.alpha = true;
    if (head.frame_width == 0 || head.frame_height == 0)
        refuse_image("the picture has no pixels");
    // A code has 3 bits or more and stands for at most 4,096 pixels; the screen is 16 times that of
    // the frame at most, or the file was made to exhaust memory.
    const std::uint64_t frame_pixels = std::uint64_t{head.frame_width} * head.frame_height;
    head.max_pixels = std::min(data_bytes * 4096, frame_pixels * 16);
    return head;
}

}  // namespace zmr
