#include "foundation/GException.h"
#include "graphics/ImageCodecs.h"

#include <cstdlib>

/// TGA files from anywhere: a picture of the size that the head tells, or GLibraryException.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    const std::span<const unsigned char> bytes(data, size);
    try {
        const zmr::ImageHead head = zmr::read_image_head(zmr::ImageKind::Tga, bytes);
        const zmr::PixelBuffer picture = zmr::decode_image(zmr::ImageKind::Tga, bytes);
        if (static_cast<std::uint32_t>(picture.width()) != head.width ||
            static_cast<std::uint32_t>(picture.height()) != head.height ||
            picture.has_alpha() != head.alpha)
            std::abort();
    } catch (const GLibraryException&) {
        return 0;  // refused
    }
    return 0;
}
