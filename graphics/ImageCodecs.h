#pragma once

#include "graphics/ImageHead.h"
#include "graphics/PixelBuffer.h"

#include <span>
#include <vector>

namespace zmr {

/// One picture format: its name, the patterns of its files' names, and what decodes and encodes it.
/// BMP and TGA are this folder's own; the others belong to the system's codecs in the win lane and
/// to the well-known libraries natively, with the same results for the lossless kinds.
struct ImageCodec {
    /// Decodes a picture whose head was read and accepted, not yet turned. Throws
    /// GLibraryException.
    using Decode = PixelBuffer (*)(std::span<const unsigned char> bytes, const ImageHead& head);
    /// Encodes a picture that is not empty. Throws GLibraryException.
    using Encode = std::vector<unsigned char> (*)(const PixelBuffer& picture);

    ImageKind kind;
    const char* name;
    const char* patterns;  ///< Split by ";".
    Decode decode;
    Encode encode;  ///< Null for a format that is only read.
};

/// All formats, in the order in which users see them.
[[nodiscard]] std::span<const ImageCodec> image_codecs();
[[nodiscard]] const ImageCodec& image_codec(ImageKind kind);
/// The format whose patterns match the file's extension; null without one.
[[nodiscard]] const ImageCodec* image_codec_of_file(const char* file);

/// Decodes a picture of that kind as it is to be seen: upright, colours not multiplied by alpha.
/// Throws GLibraryException, whose message says what is wrong, for a damaged or cut file. Memory is
/// bounded by the picture's size, which is checked against the file's length first.
[[nodiscard]] PixelBuffer decode_image(ImageKind kind, std::span<const unsigned char> bytes);

[[nodiscard]] PixelBuffer decode_png(std::span<const unsigned char> bytes, const ImageHead& head);
[[nodiscard]] PixelBuffer decode_jpeg(std::span<const unsigned char> bytes, const ImageHead& head);
[[nodiscard]] PixelBuffer decode_gif(std::span<const unsigned char> bytes, const ImageHead& head);
[[nodiscard]] PixelBuffer decode_tiff(std::span<const unsigned char> bytes, const ImageHead& head);
[[nodiscard]] PixelBuffer decode_bmp(std::span<const unsigned char> bytes, const ImageHead& head);
[[nodiscard]] PixelBuffer decode_tga(std::span<const unsigned char> bytes, const ImageHead& head);

[[nodiscard]] std::vector<unsigned char> encode_png(const PixelBuffer& picture);
/// Without alpha: laid on white, at quality kJpegQuality.
[[nodiscard]] std::vector<unsigned char> encode_jpeg(const PixelBuffer& picture);
[[nodiscard]] std::vector<unsigned char> encode_bmp(const PixelBuffer& picture);
[[nodiscard]] std::vector<unsigned char> encode_tga(const PixelBuffer& picture);

inline constexpr int kJpegQuality = 90;

/// The colour of one pixel of four inks, 0 none to 255 full, into blue, green and red.
inline void ink_to_color(const unsigned char* ink, unsigned char* color)
{
    const int light = 255 - ink[3];
    for (int part = 0; part < 3; ++part)
        color[2 - part] = static_cast<unsigned char>(((255 - ink[part]) * light + 127) / 255);
}

}  // namespace zmr
