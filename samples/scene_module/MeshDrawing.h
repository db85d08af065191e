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

/// Draws the mesh from a three-quarter view above, fitted into the square, smoothly shaded but for
/// sharp edges, without a background. Depth is kept per pixel. Empty for a mesh without triangles,
/// or without a size that a double can scale. Linear in the vertices, the triangles and the pixels
/// that they cover; at kMaxCoveredPixels drawing ends, so that no model takes more than seconds.
[[nodiscard]] Drawing draw_mesh(const TriangleMesh& mesh, int size_px);
inline constexpr std::uint64_t kMaxCoveredPixels = 400'000'000;

/// Draws a lit sphere of the material; what can be seen through has less alpha.
[[nodiscard]] Drawing draw_material(const MaterialValues& material, int size_px);

}  // namespace scene
