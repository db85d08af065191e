#pragma once

#include "graphics/PixelMap.h"

namespace editor {

/// The pictures of rows and directories that have none of their own, `size_px` a side, with smooth
/// edges on a transparent ground. `size_px` is 1 or more.
[[nodiscard]] PixelMap directory_picture(int size_px);
/// For an entry without an icon.
[[nodiscard]] PixelMap entry_picture(int size_px);

/// `picture` in the middle of a transparent square of `size_px`, made smaller where it is larger.
[[nodiscard]] PixelMap in_square(const PixelMap& picture, int size_px);

}  // namespace editor
