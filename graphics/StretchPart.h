#pragma once

#include <cstdint>

namespace zmr {

/// A part of a map and the rectangle that it is drawn into.
struct StretchPart {
    int x;
    int y;
    int width;
    int height;
    int left;
    int top;
    int right;
    int bottom;

    friend bool operator==(const StretchPart&, const StretchPart&) = default;
};

/// Cuts what lies outside a map of that size off the part, and off the rectangle in proportion, so
/// that what is left stays at its place. False when nothing is left to draw.
[[nodiscard]] bool clip_to_map(StretchPart& part, int map_width, int map_height);

}  // namespace zmr
