#pragma once

#include "graphics/RGB_Color.h"

#include <cstdint>

/// A colour as luma, 0 to 255, and two colour differences, about -128 to 127.
struct YUV_Color {
    std::int16_t luma = 0;
    std::int16_t blue_difference = 0;
    std::int16_t red_difference = 0;

    constexpr YUV_Color() = default;
    /// With the weights of ITU-R BT.601, rounded to the nearest.
    explicit constexpr YUV_Color(const RGB_Color& color)
        : luma(static_cast<std::int16_t>(
              (299 * color.red + 587 * color.green + 114 * color.blue + 500) / 1000)),
          blue_difference(static_cast<std::int16_t>((color.blue - luma) * 564 / 1000)),
          red_difference(static_cast<std::int16_t>((color.red - luma) * 713 / 1000))
    {
    }
};
