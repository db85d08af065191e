#include "graphics/AbstractImageReaderWriter.h"

#include "foundation/GException.h"
#include "foundation/ipstream.h"
#include "foundation/opstream.h"
#include "graphics/ImageReaderWriterList.h"
#include "graphics/PictureFile.h"
#include "graphics/PixelMap.h"

#include <algorithm>
#include <memory>

namespace {

constexpr std::size_t kHeadBytes = 64;

/// The reader and writer of one codec.
class CodecReaderWriter : public AbstractImageReaderWriter {
public:
    explicit CodecReaderWriter(const zmr::ImageCodec& codec) : codec_(codec) {}

    void read_image(ipstream& in, PixelMap& map) const override
    {
        map = PixelMap(zmr::decode_image(codec_.kind, zmr::read_to_end(in)));
    }
    [[nodiscard]] ImageFileFilter get_filter() const override
    {
        return ImageFileFilter(codec_.name, codec_.patterns);
    }
    void write_image(opstream& out, const PixelMap& map) const override
    {
        if (codec_.encode == nullptr)
            throw GLibraryException("Pictures can't be written in this format.");
        if (map.pixels().is_empty())
            throw GLibraryException("An empty picture can't be written.");
        const std::vector<unsigned char> bytes = codec_.encode(map.pixels());
        constexpr std::size_t kPieceBytes = 1u << 24;  // a `long` may hold 31 bits only
        for (std::size_t done = 0; done < bytes.size(); done += kPieceBytes)
            out.writeBytes(bytes.data() + done,
                           static_cast<long>(std::min(kPieceBytes, bytes.size() - done)));
    }
    [[nodiscard]] bool can_write() const override { return codec_.encode != nullptr; }

private:
    const zmr::ImageCodec& codec_;
};

std::unique_ptr<FileImageInfo> info_of(zmr::ImageKind kind, const zmr::ImageHead& head)
{
    auto info = std::make_unique<FileImageInfo>();
    info->width = static_cast<int>(head.orientation >= 5 ? head.height : head.width);
    info->height = static_cast<int>(head.orientation >= 5 ? head.width : head.height);
    info->format = head.alpha ? AbstractImage::Format32 : AbstractImage::Format24;
    info->format_name = zmr::image_codec(kind).name;
    return info;
}

}  // namespace

AbstractImageReaderWriter::~AbstractImageReaderWriter() = default;

FileImageInfo* AbstractImageReaderWriter::ReadInfo(ipstream& in, AbstractImageReaderWriter** reader)
{
    if (reader != nullptr)
        *reader = nullptr;
    try {
        const long start = in.tellg();
        const std::vector<unsigned char> bytes = zmr::read_to_end(in);
        if (start < 0 || in.seekg(start, GIO::SeekBegin) != start)
            return nullptr;
        const std::span<const unsigned char> all(bytes);
        const auto kind = zmr::recognise_image(all.first(std::min(all.size(), kHeadBytes)),
                                               all.size(), zmr::TgaHint::Unknown);
        if (!kind)
            return nullptr;
        auto info = info_of(*kind, zmr::read_image_head(*kind, all));
        if (reader != nullptr)
            *reader = new CodecReaderWriter(zmr::image_codec(*kind));
        return info.release();
    } catch (const GLibraryException&) {
        return nullptr;
    }
}

int AbstractImageReaderWriter::GetAllInfo(ImageReaderWriterList& list, unsigned mode, unsigned)
{
    int count = 0;
    for (const zmr::ImageCodec& codec : zmr::image_codecs()) {
        if ((mode & kWriters) != 0 && codec.encode == nullptr)
            continue;
        auto entry = std::make_unique<CodecReaderWriter>(codec);
        list.v_insert(entry.get());
        static_cast<void>(entry.release());
        ++count;
    }
    return count;
}
