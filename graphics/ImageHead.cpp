#include "graphics/ImageHead.h"

#include "foundation/GException.h"
#include "graphics/PixelBuffer.h"
#include "graphics/TgaHeader.h"

#include <cstring>

namespace zmr {
namespace {

bool starts_with(std::span<const unsigned char> bytes, const char* mark, std::size_t length)
{
    return bytes.size() >= length && std::memcmp(bytes.data(), mark, length) == 0;
}

bool is_bmp(ByteView bytes)
{
    if (bytes.u8(0) != 'B' || bytes.u8(1) != 'M')
        return false;
    const std::uint32_t header = bytes.le32(14);  // two letters alone are too common
    return header == 12 || (header >= 16 && header <= 124);
}

bool is_tiff(ByteView bytes)
{
    return bytes.be32(0) == 0x49492a00 || bytes.be32(0) == 0x4d4d002a;
}

}  // namespace

std::optional<ImageKind> recognise_image(std::span<const unsigned char> start,
                                         std::uint64_t file_bytes, TgaHint hint)
{
    const ByteView view(start);
    if (starts_with(start, "\x89PNG\r\n\x1a\n", 8))
        return ImageKind::Png;
    if (starts_with(start, "\xff\xd8\xff", 3))
        return ImageKind::Jpeg;
    if (starts_with(start, "GIF87a", 6) || starts_with(start, "GIF89a", 6))
        return ImageKind::Gif;
    if (is_tiff(view))
        return ImageKind::Tiff;
    if (is_bmp(view))
        return ImageKind::Bmp;
    // Under its own name a file that was cut is known too, so that the message can say so.
    const std::uint64_t bytes = hint == TgaHint::Named ? ~std::uint64_t{0} : file_bytes;
    if (hint != TgaHint::NotNamed && TgaHeader::is_plausible(view, bytes))
        return ImageKind::Tga;
    return std::nullopt;
}

ImageHead read_image_head(ImageKind kind, std::span<const unsigned char> bytes)
{
    const auto read_kind = [kind](ByteView view) {
        switch (kind) {
            case ImageKind::Png:
                return read_png_head(view);
            case ImageKind::Jpeg:
                return read_jpeg_head(view);
            case ImageKind::Gif:
                return read_gif_head(view);
            case ImageKind::Tiff:
                return read_tiff_head(view);
            case ImageKind::Bmp:
                return read_bmp_head(view);
            case ImageKind::Tga:
                break;
        }
        return read_tga_head(view);
    };
    const ImageHead head = read_kind(ByteView(bytes));
    if (head.width == 0 || head.height == 0)
        refuse_image("the picture has no pixels");
    if (!PixelBuffer::fits(head.width, head.height)) {
        GLibraryException error;
        error.message("the picture is too large (%u by %u pixels)", head.width, head.height);
        throw error;
    }
    // A small file that claims a large picture is cut or made to exhaust memory.
    constexpr std::uint64_t kAlwaysAllowed = 1u << 20;
    const std::uint64_t pixels = std::uint64_t{head.width} * head.height;
    if (pixels > kAlwaysAllowed && pixels > head.max_pixels)
        refuse_image("the file is too short for a picture of its size");
    return head;
}

void refuse_image(const char* reason)
{
    throw GLibraryException(reason);
}

}  // namespace zmr
