#include "graphics/ImageHead.h"

#include <cstring>

namespace zmr {
namespace {

bool is_frame_header(std::uint32_t marker)
{
    return marker >= 0xc0 && marker <= 0xcf && marker != 0xc4 && marker != 0xc8 && marker != 0xcc;
}

bool has_no_length(std::uint32_t marker)
{
    return marker == 0x01 || (marker >= 0xd0 && marker <= 0xd8);
}

/// The next marker at or behind `position`, 0 at the end of the data. `position` is left behind it.
std::uint32_t next_marker(ByteView bytes, std::uint64_t& position)
{
    while (position < bytes.size()) {
        const auto left = static_cast<std::size_t>(bytes.size() - position);
        const void* found = std::memchr(bytes.at(position), 0xff, left);
        if (found == nullptr)
            break;
        position =
            static_cast<std::uint64_t>(static_cast<const unsigned char*>(found) - bytes.at(0)) + 1;
        const std::uint32_t marker = bytes.u8(position);
        if (marker != 0 && marker != 0xff) {
            ++position;
            return marker;
        }
    }
    position = bytes.size();
    return 0;
}

int exif_orientation(ByteView segment)
{
    constexpr std::uint64_t kMark = 6;  // "Exif" and two zero bytes
    if (segment.be32(0) != 0x45786966 || !segment.has(0, kMark))
        return 1;
    return tiff_orientation(ByteView(segment.all().subspan(kMark)));
}

}  // namespace

ImageHead read_jpeg_head(ByteView bytes)
{
    ImageHead head;
    bool frame_seen = false;
    bool exif_seen = false;
    std::uint64_t position = 2;
    for (;;) {
        const std::uint32_t marker = next_marker(bytes, position);
        if (marker == 0)
            refuse_image("the JPEG data ends too early");
        if (marker == 0xd9)
            break;
        if (has_no_length(marker))
            continue;
        const std::uint32_t length = bytes.be16(position);
        if (length < 2 || !bytes.has(position, length))
            refuse_image("the JPEG data ends too early");
        if (is_frame_header(marker) && !frame_seen) {
            frame_seen = true;
            head.height = bytes.be16(position + 3);
            head.width = bytes.be16(position + 5);
        }
        if (marker == 0xe1 && !exif_seen && bytes.be32(position + 2) == 0x45786966) {
            exif_seen = true;
            const auto* segment = bytes.at(position + 2);
            head.orientation = exif_orientation(ByteView({segment, length - 2}));
        }
        position += length;
    }
    if (!frame_seen)
        refuse_image("the JPEG data holds no picture");
    // Each block of 64 pixels costs a bit in one of the scans.
    head.max_pixels = bytes.size() * 8 * 64;
    return head;
}

}  // namespace zmr
