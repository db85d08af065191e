#pragma once

#include "graphics/PixelBuffer.h"

namespace zmr {

/// The picture at another size, each side at least 1, with the same channels. Smaller sides are the
/// mean over the area that a pixel covers, so that nothing is skipped and fine patterns do not
/// alias; larger ones are interpolated linearly. Colours are weighed by their alpha. A picture of
/// one colour keeps it exactly. Time in proportion to the pixels of both; an empty picture stays
/// empty.
[[nodiscard]] PixelBuffer scaled_smooth(const PixelBuffer& source, int width, int height);

/// The same with the nearest pixel for each.
[[nodiscard]] PixelBuffer scaled_nearest(const PixelBuffer& source, int width, int height);

}  // namespace zmr
