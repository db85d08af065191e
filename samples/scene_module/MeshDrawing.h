#pragma once

#include "scene_module/SceneMaterial.h"
#include "scene_module/TriangleMesh.h"

#include <cstdint>
#include <vector>

namespace scene {

/// A square of pixels, the top row first: blue, green, red and alpha, not multiplied in.
struct Drawing {
    int size_px = 0;
    std::vector<std::uint8_t> pixels;
};

/// Draws the mesh as a MeshRaster sees it, fitted into the square, without a background. Empty for
/// a mesh without triangles, or without a size that a double can scale.
[[nodiscard]] Drawing draw_mesh(const TriangleMesh& mesh, int size_px);

/// What models of that colour are made of where no material is told.
[[nodiscard]] MaterialValues model_material(const Vector3& color);

/// Draws a lit sphere of the material; what can be seen through has less alpha.
[[nodiscard]] Drawing draw_material(const MaterialValues& material, int size_px);

}  // namespace scene
