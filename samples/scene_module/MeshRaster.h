#pragma once

#include "scene_module/TriangleMesh.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace scene {

/// A point as the viewer sees it: x to the right, y upwards, z towards the viewer.
struct ViewPoint {
    double x = 0;
    double y = 0;
    double z = 0;
};

/// What is seen in each pixel of a rectangle, the top row first.
struct Surface {
    static constexpr float kNothing = -std::numeric_limits<float>::infinity();

    int width_px = 0;
    int height_px = 0;
    std::vector<float> depths;     ///< Larger is nearer; kNothing where no triangle is.
    std::vector<Vector3> normals;  ///< Towards the viewer, of any length. Unset where nothing is.

    [[nodiscard]] bool is_covered(std::size_t pixel) const { return depths[pixel] > kNothing; }
    /// The normal at a covered pixel, of length 1.
    [[nodiscard]] Vector3 normal(std::size_t pixel) const;
};

/// Which part of the picture is looked at, and how large.
struct RasterWindow {
    int width_px = 1;
    int height_px = 1;
    double scale = 1;    ///< Pixels for each unit of the mesh.
    ViewPoint middle;    ///< This point of the mesh as it is seen
    double left_px = 0;  ///< lies so far from the left
    double top_px = 0;   ///< and from the top.
};

/// A mesh seen from the right, the front and above, turned about its axis that is up. Depth is kept
/// per pixel; both sides of a triangle are seen alike; normals are smooth but for sharp edges.
/// Keeps the mesh by reference.
class MeshRaster {
public:
    explicit MeshRaster(const TriangleMesh& mesh, double turn_rad = 0);

    [[nodiscard]] ViewPoint seen(const Vector3& vertex) const;
    /// The box around all triangles as they are seen; false when there are none, or the picture has
    /// no size that a double can scale. Linear.
    [[nodiscard]] bool box(ViewPoint& low, ViewPoint& high) const;
    /// Linear in the triangles and the pixels that they cover; at kMaxCoveredPixels drawing ends,
    /// so that no model takes more than seconds.
    [[nodiscard]] Surface look(const RasterWindow& window) const;

    static constexpr std::uint64_t kMaxCoveredPixels = 400'000'000;

private:
    struct Corner {
        float x;
        float y;
        float depth;
        Vector3 normal;
    };
    class Filler;

    [[nodiscard]] ViewPoint turned(double x, double y, double z) const;
    [[nodiscard]] Corner corner(std::uint32_t index, const Vector3& face, double side,
                                const RasterWindow& window) const;

    const TriangleMesh& mesh_;
    double yaw_cos_;
    double yaw_sin_;
};

}  // namespace scene
