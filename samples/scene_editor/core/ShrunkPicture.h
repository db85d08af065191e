#pragma once

#include "graphics/PixelMap.h"

#include <memory>
#include <string>

namespace editor {

/// `picture` in the size that a square of `size_px` has room for; null when it has room as it is.
[[nodiscard]] std::unique_ptr<PixelMap> shrunk(const PixelMap& picture, int size_px);
/// "200 × 100 pixels".
[[nodiscard]] std::string size_text(const PixelMap& picture);

}  // namespace editor
