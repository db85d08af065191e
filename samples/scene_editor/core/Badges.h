#pragma once

#include "graphics/PixelMap.h"
#include "scene_editor/core/EntryRows.h"

namespace editor {

/// The icon of an entry in a square of `size_px`, with a mark at its lower left where the object is
/// not in the library: an arrow for a reference, a sheet for a file of its own, a red cross where
/// what it stands for is not there. `size_px` is 8 or more.
[[nodiscard]] PixelMap with_badge(const PixelMap& icon, Holding holding, int size_px);

}  // namespace editor
