#pragma once

#include "scene_module/SceneMaterial.h"
#include "scene_module/TriangleMesh.h"

#include <cstdint>

namespace scene {

/// Light on a surface as the viewer sees it, who looks along -z, with x to the right and y upwards:
/// a key light from the upper left, a soft one from the right, a rim behind, and sky over ground.
/// `normal` is of length 1 and turned towards the viewer. Writes blue, green and red.
void shade(const Vector3& normal, const MaterialValues& material, std::uint8_t* color);

}  // namespace scene
