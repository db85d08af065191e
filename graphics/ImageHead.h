#pragma once

#include "graphics/ByteView.h"

#include <cstdint>
#include <optional>
#include <span>

namespace zmr {

enum class ImageKind : std::uint8_t { Png, Jpeg, Bmp, Gif, Tiff, Tga };

/// What the first bytes of a picture file tell, before anything is decoded.
struct ImageHead {
    std::uint32_t width = 0;   ///< As stored, before the picture is turned.
    std::uint32_t height = 0;  ///< As stored.
    bool alpha = false;        ///< The pixels have alpha or a transparent colour.
    int orientation = 1;       ///< 1 to 8, as TIFF and EXIF count.
    /// GIF: where the first frame lies within the screen, and its size; 0 in other kinds.
    std::uint32_t frame_left = 0;
    std::uint32_t frame_top = 0;
    std::uint32_t frame_width = 0;
    std::uint32_t frame_height = 0;
    bool premultiplied = false;    ///< Colours are stored multiplied by alpha (TIFF, TGA).
    std::uint64_t max_pixels = 0;  ///< More than the bytes that are there could ever hold.
};

/// Whether a file's name says that it may be a TGA, the one kind without a mark of its own.
enum class TgaHint : std::uint8_t { Named, NotNamed, Unknown };

/// The kind of picture that starts with `start` (64 bytes are enough; fewer only when the whole
/// file is shorter), or none. Content decides; a TGA comes last: never when the name says
/// otherwise, and only when its header holds nothing but sensible values. `file_bytes` is the whole
/// file's length.
[[nodiscard]] std::optional<ImageKind> recognise_image(std::span<const unsigned char> start,
                                                       std::uint64_t file_bytes, TgaHint hint);

/// Reads the head and walks the file's structure, so that a file which was cut is refused the same
/// way whoever decodes it. Throws GLibraryException that says what is wrong. Costs little: no
/// pixels are decoded.
[[nodiscard]] ImageHead read_image_head(ImageKind kind, std::span<const unsigned char> bytes);

/// The same for one kind.
[[nodiscard]] ImageHead read_png_head(ByteView bytes);
[[nodiscard]] ImageHead read_jpeg_head(ByteView bytes);
[[nodiscard]] ImageHead read_gif_head(ByteView bytes);
[[nodiscard]] ImageHead read_tiff_head(ByteView bytes);
[[nodiscard]] ImageHead read_bmp_head(ByteView bytes);
[[nodiscard]] ImageHead read_tga_head(ByteView bytes);

/// The orientation entry of the TIFF structure in `bytes`, as EXIF has it too; 1 without one.
[[nodiscard]] int tiff_orientation(ByteView bytes);

/// Throws GLibraryException with the reason: "the PNG data ends too early".
[[noreturn]] void refuse_image(const char* reason);

}  // namespace zmr
