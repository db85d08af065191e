#include "graphics/ImageCodecs.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>

#include <gif_lib.h>

namespace zmr {
namespace {

constexpr int kNoColor = -1;

struct CloseGif {
    void operator()(GifFileType* file) const noexcept
    {
        int error = 0;
        static_cast<void>(DGifCloseFile(file, &error));
    }
};
using OwnedGif = std::unique_ptr<GifFileType, CloseGif>;

int read_bytes(GifFileType* file, GifByteType* to, int count)
{
    auto* left = static_cast<std::span<const unsigned char>*>(file->UserData);
    const std::size_t given = std::min(left->size(), static_cast<std::size_t>(count));
    std::memcpy(to, left->data(), given);
    *left = left->subspan(given);
    return static_cast<int>(given);
}

[[noreturn]] void refuse(int error)
{
    const char* text = GifErrorString(error);
    std::string reason = "the GIF data is damaged";
    if (text != nullptr)
        reason = reason + " (" + text + ")";
    refuse_image(reason.c_str());
}

/// Moves to the first frame and returns the index of its transparent colour.
int find_frame(GifFileType* file)
{
    int transparent = kNoColor;
    for (;;) {
        GifRecordType record = UNDEFINED_RECORD_TYPE;
        if (DGifGetRecordType(file, &record) != GIF_OK)
            refuse(file->Error);
        if (record == IMAGE_DESC_RECORD_TYPE) {
            if (DGifGetImageDesc(file) != GIF_OK)
                refuse(file->Error);
            return transparent;
        }
        if (record != EXTENSION_RECORD_TYPE)
            refuse_image("the GIF data holds no picture");
        int code = 0;
        GifByteType* block = nullptr;
        if (DGifGetExtension(file, &code, &block) != GIF_OK)
            refuse(file->Error);
        if (code == GRAPHICS_EXT_FUNC_CODE && block != nullptr && block[0] >= 4)
            transparent = (block[1] & 1) != 0 ? block[4] : kNoColor;
        while (block != nullptr)
            if (DGifGetExtensionNext(file, &block) != GIF_OK)
                refuse(file->Error);
    }
}

class FrameReader {
public:
    FrameReader(GifFileType* file, int transparent, PixelBuffer& picture)
        : file_(file),
          map_(file->Image.ColorMap != nullptr ? file->Image.ColorMap : file->SColorMap),
          transparent_(transparent),
          picture_(picture),
          line_(static_cast<std::size_t>(file->Image.Width))
    {
        if (map_ == nullptr)
            refuse_image("the GIF data has no colours");
    }

    void run()
    {
        if (!file_->Image.Interlace) {
            read_pass(0, 1);
            return;
        }
        read_pass(0, 8);
        read_pass(4, 8);
        read_pass(2, 4);
        read_pass(1, 2);
    }

private:
    void read_pass(int first, int step)
    {
        for (int y = first; y < file_->Image.Height; y += step) {
            if (DGifGetLine(file_, line_.data(), file_->Image.Width) != GIF_OK)
                refuse(file_->Error);
            unsigned char* to = picture_.pixel(file_->Image.Left, file_->Image.Top + y);
            for (const GifPixelType index : line_) {
                put(index, to);
                to += picture_.channels();
            }
        }
    }
    void put(int index, unsigned char* to) const
    {
        if (index == transparent_)
            return;  // the screen is clear from the start
        static constexpr GifColorType kBlack{};
        const GifColorType& color = index < map_->ColorCount ? map_->Colors[index] : kBlack;
        to[0] = color.Blue;
        to[1] = color.Green;
        to[2] = color.Red;
        if (picture_.has_alpha())
            to[3] = 255;
    }

    GifFileType* file_;
    const ColorMapObject* map_;
    int transparent_;
    PixelBuffer& picture_;
    std::vector<GifPixelType> line_;
};

}  // namespace

PixelBuffer decode_gif(std::span<const unsigned char> bytes, const ImageHead& head)
{
    std::span<const unsigned char> left = bytes;
    int error = 0;
    const OwnedGif file(DGifOpen(&left, read_bytes, &error));
    if (!file)
        refuse(error);
    const int transparent = find_frame(file.get());
    const GifImageDesc& frame = file->Image;
    if (frame.Left != static_cast<int>(head.frame_left) ||
        frame.Top != static_cast<int>(head.frame_top) ||
        frame.Width != static_cast<int>(head.frame_width) ||
        frame.Height != static_cast<int>(head.frame_height))
        refuse_image("the GIF data is damaged");
    PixelBuffer picture(static_cast<int>(head.width), static_cast<int>(head.height),
                        head.alpha ? 4 : 3);
    picture.clear();
    FrameReader(file.get(), transparent, picture).run();
    return picture;
}

}  // namespace zmr
