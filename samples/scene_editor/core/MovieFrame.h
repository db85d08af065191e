#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace editor {

/// How the frames of an uncompressed movie lie in memory, as their bitmap header tells.
struct FrameForm {
    std::int32_t width = 0;
    std::int32_t height = 0;             ///< Negative when the top row comes first.
    std::uint16_t bits = 0;              ///< Of a pixel: 8, 16 (5 for each colour), 24 or 32.
    std::vector<std::uint32_t> palette;  ///< 0xRRGGBB, for 8 bits.
};

/// Reads the header of a bitmap and the palette behind it. Nothing for a form that is compressed,
/// has no room, or is larger than kMostPixels.
[[nodiscard]] std::optional<FrameForm> read_frame_form(std::span<const unsigned char> header);
/// The bytes of a frame: its rows begin at multiples of four.
[[nodiscard]] std::size_t frame_bytes(const FrameForm& form);

/// A picture to be drawn: 0xRRGGBB, the top row first.
struct FramePicture {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;
};
/// False, with `picture` unchanged, when `bytes` are too few.
bool convert_frame(const FrameForm& form, std::span<const unsigned char> bytes,
                   FramePicture& picture);

/// The largest rectangle of the proportions `width` to `height` in the middle of an area.
struct FittedArea {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    bool operator==(const FittedArea&) const = default;
};
[[nodiscard]] FittedArea fit_into(int width, int height, int area_width, int area_height);

inline constexpr std::int64_t kMostPixels = std::int64_t{1} << 26;

}  // namespace editor
