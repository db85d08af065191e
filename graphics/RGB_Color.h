#pragma once

#include "platform/PlatformTypes.h"

/// A colour of three bytes, in memory blue, green, red, as bitmaps have them.
struct RGB_Color {
    unsigned char blue = 0;
    unsigned char green = 0;
    unsigned char red = 0;

    /// Black.
    constexpr RGB_Color() = default;
    constexpr RGB_Color(unsigned char red_part, unsigned char green_part, unsigned char blue_part)
        : blue(blue_part), green(green_part), red(red_part)
    {
    }
    /// The colour of a platform value: red in the lowest byte, then green, then blue.
    [[nodiscard]] static constexpr RGB_Color from_colorref(COLORREF color)
    {
        return RGB_Color(static_cast<unsigned char>(color & 0xff),
                         static_cast<unsigned char>((color >> 8) & 0xff),
                         static_cast<unsigned char>((color >> 16) & 0xff));
    }
    [[nodiscard]] constexpr COLORREF to_colorref() const
    {
        return static_cast<COLORREF>(blue) << 16 | static_cast<COLORREF>(green) << 8 | red;
    }
    friend constexpr bool operator==(const RGB_Color&, const RGB_Color&) = default;
};

static_assert(sizeof(RGB_Color) == 3);
