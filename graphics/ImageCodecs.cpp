#include "graphics/ImageCodecs.h"

#include "foundation/GFile.h"

#include <string_view>

namespace zmr {
namespace {

constexpr ImageCodec kCodecs[] = {
    {ImageKind::Png, "PNG", "*.png", &decode_png, &encode_png},
    {ImageKind::Jpeg, "JPEG", "*.jpg;*.jpeg", &decode_jpeg, &encode_jpeg},
    {ImageKind::Bmp, "BMP", "*.bmp;*.dib", &decode_bmp, &encode_bmp},
    {ImageKind::Tga, "TGA", "*.tga;*.targa", &decode_tga, &encode_tga},
    {ImageKind::Gif, "GIF", "*.gif", &decode_gif, nullptr},
    {ImageKind::Tiff, "TIFF", "*.tif;*.tiff", &decode_tiff, nullptr},
};

}  // namespace

std::span<const ImageCodec> image_codecs()
{
    return kCodecs;
}

const ImageCodec& image_codec(ImageKind kind)
{
    const ImageCodec* codec = kCodecs;
    while (codec->kind != kind)
        ++codec;
    return *codec;
}

const ImageCodec* image_codec_of_file(const char* file)
{
    GString extension = GFile(file).get_extension();
    extension.toLower();
    if (extension.is_empty())
        return nullptr;
    for (const ImageCodec& codec : kCodecs) {
        std::string_view patterns = codec.patterns;
        while (!patterns.empty()) {
            const std::string_view pattern = patterns.substr(0, patterns.find(';'));
            if (pattern.substr(2) == extension.view())  // behind "*."
                return &codec;
            patterns.remove_prefix(std::min(pattern.size() + 1, patterns.size()));
        }
    }
    return nullptr;
}

PixelBuffer decode_image(ImageKind kind, std::span<const unsigned char> bytes)
{
    const ImageHead head = read_image_head(kind, bytes);
    PixelBuffer picture = image_codec(kind).decode(bytes, head);
    if (head.premultiplied)
        remove_premultiplication(picture);
    return oriented(std::move(picture), head.orientation);
}

}  // namespace zmr
