#pragma once

#include "foundation/GRect.h"
#include "platform/Export.h"

#include <array>

// Where a picture lies in the area that shows it, and what of the area it leaves free. No window.

namespace zmr {

/// How a picture is placed.
enum class PicturePlacing {
    kCentered = 1,  ///< In its natural size, in the middle.
    kTopLeft = 2,   ///< In its natural size, at the top left.
    kFit = 3,       ///< In the largest size that keeps its proportions, in the middle.
    kStretch = 4,   ///< All over the area.
};

/// A width and a height in pixels.
struct PictureSize {
    int width;
    int height;
};

/// The rectangle of a picture in an area whose top left is 0, 0. It is as large as the picture when
/// that is in its natural size, and then reaches over the area when the picture is the larger; left
/// and top are then negative for kCentered. All 0 when a side of the picture is below 1 or
/// `placing` is none. A side of the area below 0 counts as 0, and scaled pictures then have no
/// pixel. For kFit the height of the area decides where both sides would fit; the other one is
/// rounded down and may so become 0.
[[nodiscard]] ZMR_GV_API GRect place_picture(PicturePlacing placing, PictureSize picture,
                                             PictureSize area);
/// True when a picture shown in `placed` is worth being made smaller once, instead of at each
/// painting: it is to be scaled, is wider or higher than `placed`, and that is not empty.
[[nodiscard]] ZMR_GV_API bool wants_smaller_picture(PicturePlacing placing, PictureSize picture,
                                                    const GRect& placed);
/// What the picture in `placed` leaves free of the area: full width above it and below it, then at
/// its height left and right of it, each empty (all 0) where there is nothing. When the picture
/// lies outside, the first is the whole area.
[[nodiscard]] ZMR_GV_API std::array<GRect, 4> free_strips(const GRect& placed, PictureSize area);

}  // namespace zmr
