#pragma once

#include "graphics/PixelMap.h"

namespace editor {

/// The pictures of rows and directories that have none of their own, `size_px` a side, with smooth
/// edges on a transparent ground. `size_px` is 1 or more.
[[nodiscard]] PixelMap directory_picture(int size_px);
/// For an entry without an icon.
[[nodiscard]] PixelMap entry_picture(int size_px);

/// `picture` in the middle of a transparent area `width_px` wide and `size_px` high, made smaller
/// where a side is longer than `size_px`. `width_px` is not less than `size_px`.
[[nodiscard]] PixelMap in_middle(const PixelMap& picture, int size_px, int width_px);

}  // namespace editor
