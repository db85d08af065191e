#pragma once

#include "scene_module/SceneMaterial.h"

#include <string_view>

namespace scene {

/// Reads the material of a Wavefront MTL text: newmtl, Kd, Ks, Ns, d and Tr; other statements are
/// passed over. Throws GLibraryException, whose message names the line, for what can't be read, and
/// for a file of several materials: one object would lose the others in silence.
[[nodiscard]] MaterialValues read_mtl(std::string_view text);

/// True when the first statement in `head`, the start of a file, begins a material.
[[nodiscard]] bool looks_like_mtl(std::string_view head);

}  // namespace scene
