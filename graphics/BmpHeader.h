#pragma once

#include "graphics/ByteView.h"

#include <array>
#include <cstdint>

namespace zmr {

/// The headers of a BMP file in all their versions, checked against the file's length.
struct BmpHeader {
    enum class Packing : std::uint8_t { None, Runs8, Runs4, BitFields };

    std::uint32_t width = 0;
    std::uint32_t height = 0;
    bool from_top = false;
    std::uint32_t depth = 0;  ///< Bits of a pixel: 1, 4, 8, 16, 24 or 32.
    Packing packing = Packing::None;
    std::array<std::uint32_t, 4> masks{};  ///< Blue, green, red, alpha; of 16 and 32 bits.
    std::uint64_t palette_at = 0;
    std::uint32_t palette_count = 0;
    std::uint32_t palette_entry_bytes = 4;
    std::uint64_t pixels_at = 0;

    /// Reads the headers; throws GLibraryException when they are cut, contradict themselves or tell
    /// of a kind that is not read.
    explicit BmpHeader(ByteView bytes);
    [[nodiscard]] bool has_alpha() const { return masks[3] != 0; }
    [[nodiscard]] bool has_runs() const
    {
        return packing == Packing::Runs8 || packing == Packing::Runs4;
    }
    [[nodiscard]] std::uint64_t row_bytes() const
    {
        return (std::uint64_t{width} * depth + 31) / 32 * 4;
    }

private:
    void read_core(ByteView bytes);
    void read_info(ByteView bytes, std::uint32_t header_bytes);
    void read_masks(ByteView bytes, std::uint32_t header_bytes, std::uint32_t compression);
};

}  // namespace zmr
