#include "foundation/GException.h"
#include "foundation/mpstream.h"
#include "graphics/AbstractImageReaderWriter.h"
#include "graphics/ImageCodecs.h"
#include "graphics/PixelMap.h"

#include <cstdlib>
#include <memory>

namespace {

/// Larger pictures are right, but cost the fuzzer its memory and time.
constexpr std::uint64_t kMostPixels = 1u << 22;

bool is_small(std::span<const unsigned char> bytes)
{
    const auto kind = zmr::recognise_image(bytes.first(std::min<std::size_t>(bytes.size(), 64)),
                                           bytes.size(), zmr::TgaHint::Unknown);
    if (!kind)
        return true;
    const zmr::ImageHead head = zmr::read_image_head(*kind, bytes);
    return std::uint64_t{head.width} * head.height <= kMostPixels;
}

}  // namespace

/// Picture files of every format through the common reader: what the head tells and what the whole
/// gives agree, or it is refused with GLibraryException.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    const std::span<const unsigned char> bytes(data, size);
    try {
        if (!is_small(bytes))
            return 0;
        impstream in(bytes);
        AbstractImageReaderWriter* found = nullptr;
        const std::unique_ptr<FileImageInfo> info(AbstractImageReaderWriter::ReadInfo(in, &found));
        const std::unique_ptr<AbstractImageReaderWriter> reader(found);
        if (!info)
            return 0;
        PixelMap map(0, 0, AbstractImage::Format24, nullptr);
        reader->read_image(in, map);
        if (map.get_width() != info->width || map.get_height() != info->height ||
            map.get_format() != info->format)
            std::abort();
    } catch (const GLibraryException&) {
        return 0;  // refused
    }
    return 0;
}
