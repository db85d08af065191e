#pragma once

#include "graphics/RGB_Color.h"
#include "platform/Export.h"

/// A colour as hue, saturation and value, each 0 to 255. The hue is a 256th of the circle: red is
/// 0, yellow 43, green 85, cyan 128, blue 171, magenta 213. A colour without saturation has hue 0.
/// A colour that goes through an HSV_Color and back comes within 3 of itself in each part (within 1
/// where it has little saturation): 256 hues can't tell all the 1,530 pure ones apart.
struct ZMR_GV_API HSV_Color {
    unsigned char hue = 0;
    unsigned char saturation = 0;
    unsigned char value = 0;

    constexpr HSV_Color() = default;
    constexpr HSV_Color(unsigned char hue_part, unsigned char saturation_part,
                        unsigned char value_part)
        : hue(hue_part), saturation(saturation_part), value(value_part)
    {
    }
    /// The nearest one of each part.
    explicit HSV_Color(const RGB_Color& color);
    /// The colour, each part rounded to the nearest.
    operator RGB_Color() const;
    friend constexpr bool operator==(const HSV_Color&, const HSV_Color&) = default;
};
