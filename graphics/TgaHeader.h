#pragma once

#include "graphics/ByteView.h"

#include <cstdint>

namespace zmr {

/// The 18 bytes at the start of a TGA file, and what the block at the end of newer ones adds.
struct TgaHeader {
    enum class Colors : std::uint8_t { Palette = 1, True = 2, Grey = 3 };
    enum class Alpha : std::uint8_t { None, Straight, Premultiplied };

    std::uint32_t id_bytes = 0;
    bool has_map = false;
    std::uint32_t image_type = 0;
    std::uint32_t map_first = 0;
    std::uint32_t map_count = 0;
    std::uint32_t map_bits = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t depth = 0;
    std::uint32_t descriptor = 0;

    /// Reads the header; `bytes` may be shorter.
    explicit TgaHeader(ByteView bytes);
    /// True when the start of a file of `file_bytes` holds nothing but values that a TGA may have,
    /// and uncompressed pixels would fit. TGA has no mark of its own.
    [[nodiscard]] static bool is_plausible(ByteView start, std::uint64_t file_bytes);

    [[nodiscard]] bool is_plausible() const;
    [[nodiscard]] Colors colors() const { return static_cast<Colors>(image_type & 7); }
    [[nodiscard]] bool run_lengths() const { return (image_type & 8) != 0; }
    [[nodiscard]] bool from_right() const { return (descriptor & 0x10) != 0; }
    [[nodiscard]] bool from_top() const { return (descriptor & 0x20) != 0; }
    [[nodiscard]] std::uint32_t alpha_bits() const { return descriptor & 0x0f; }
    [[nodiscard]] std::uint32_t pixel_bytes() const { return (depth + 7) / 8; }
    [[nodiscard]] std::uint64_t map_bytes() const
    {
        return has_map ? std::uint64_t{map_count} * ((map_bits + 7) / 8) : 0;
    }
    [[nodiscard]] std::uint64_t pixels_at() const { return 18 + id_bytes + map_bytes(); }
    [[nodiscard]] std::uint64_t pixel_count() const { return std::uint64_t{width} * height; }
    /// What the fourth part of the pixels is; `bytes` is the whole file.
    [[nodiscard]] Alpha alpha(ByteView bytes) const;
};

}  // namespace zmr
