#include "scene_module/TriangleMesh.h"

#include <algorithm>
#include <cmath>

namespace scene {

namespace {

Vector3 unit(const std::array<double, 3>& vector, const Vector3& fallback)
{
    const double length = std::hypot(vector[0], vector[1], vector[2]);
    if (!(length > 0) || !std::isfinite(length))
        return fallback;
    return {static_cast<float>(vector[0] / length), static_cast<float>(vector[1] / length),
            static_cast<float>(vector[2] / length)};
}

}  // namespace

Vector3 normalized(const Vector3& vector, const Vector3& fallback)
{
    return unit({vector.x, vector.y, vector.z}, fallback);
}

std::array<double, 3> area_normal(const Vector3& a, const Vector3& b, const Vector3& c)
{
    const double ux = double{b.x} - a.x;
    const double uy = double{b.y} - a.y;
    const double uz = double{b.z} - a.z;
    const double vx = double{c.x} - a.x;
    const double vy = double{c.y} - a.y;
    const double vz = double{c.z} - a.z;
    return {uy * vz - uz * vy, uz * vx - ux * vz, ux * vy - uy * vx};
}

Bounds TriangleMesh::bounds() const
{
    if (vertices.empty())
        return {};
    Bounds box{vertices.front(), vertices.front()};
    for (const Vector3& vertex : vertices) {
        box.low.x = std::min(box.low.x, vertex.x);
        box.low.y = std::min(box.low.y, vertex.y);
        box.low.z = std::min(box.low.z, vertex.z);
        box.high.x = std::max(box.high.x, vertex.x);
        box.high.y = std::max(box.high.y, vertex.y);
        box.high.z = std::max(box.high.z, vertex.z);
    }
    return box;
}

void TriangleMesh::compute_normals(const std::vector<std::uint8_t>& missing)
{
    std::vector<std::array<double, 3>> sums(vertices.size());
    for (const Triangle& triangle : triangles) {
        const auto normal =
            area_normal(vertices[triangle[0]], vertices[triangle[1]], vertices[triangle[2]]);
        for (const std::uint32_t corner : triangle) {
            for (std::size_t axis = 0; axis < 3; ++axis)
                sums[corner][axis] += normal[axis];
        }
    }
    const Vector3 upwards = up == UpAxis::Y ? Vector3{0, 1, 0} : Vector3{0, 0, 1};
    normals.resize(vertices.size());
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        if (missing[i] != 0)
            normals[i] = unit(sums[i], upwards);
    }
}

void TriangleMesh::compute_normals()
{
    compute_normals(std::vector<std::uint8_t>(vertices.size(), 1));
}

}  // namespace scene
