#pragma once

#include "platform/Export.h"
#include "platform/PlatformTypes.h"

#include <cstdint>

class ipstream;

/// A rectangle of pixels: `x1` and `y1` lie just outside it.
class ZMR_GV_API GRect {
public:
    constexpr GRect() = default;
    constexpr GRect(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom)
        : x0(left), y0(top), x1(right), y1(bottom)
    {
    }
    GRect(const RECT& rectangle);

    /// Reads a rectangle of the old format: left, top, right and bottom in 16 bits each, signed. It
    /// stays as it was when the stream throws.
    void read_old(ipstream& in);

    /// Also right for a rectangle whose sides lie as far apart as 32 bits can tell.
    [[nodiscard]] constexpr std::int64_t width() const { return std::int64_t{x1} - x0; }
    [[nodiscard]] constexpr std::int64_t height() const { return std::int64_t{y1} - y0; }
    /// True when no pixel lies inside.
    [[nodiscard]] constexpr bool is_empty() const { return x1 <= x0 || y1 <= y0; }
    friend constexpr bool operator==(const GRect&, const GRect&) = default;

    std::int32_t x0 = 0;
    std::int32_t y0 = 0;
    std::int32_t x1 = 0;
    std::int32_t y1 = 0;
};
