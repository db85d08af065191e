#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace scene {

struct Vector3 {
    float x = 0;
    float y = 0;
    float z = 0;
    friend bool operator==(const Vector3&, const Vector3&) = default;
};

/// The box around a mesh; both corners are 0 for a mesh without vertices.
struct Bounds {
    Vector3 low;
    Vector3 high;
};

/// Which axis of a model points upwards: programs that write OBJ mean y, those that write STL mean
/// z.
enum class UpAxis : std::uint8_t { Y = 0, Z = 1 };

/// A surface of triangles with one normal per vertex. A plain value.
struct TriangleMesh {
    using Triangle = std::array<std::uint32_t, 3>;  ///< Indices of vertices, counter-clockwise.

    static constexpr std::uint32_t kMaxVertices = 50'000'000;  ///< More are refused by all readers.
    static constexpr std::uint32_t kMaxTriangles =
        100'000'000;  ///< More are refused by all readers.

    std::string name;  ///< UTF-8; as the file says, else empty.
    UpAxis up = UpAxis::Y;
    std::vector<Vector3> vertices;
    std::vector<Vector3> normals;  ///< As many as vertices, of length 1.
    std::vector<Triangle> triangles;

    [[nodiscard]] Bounds bounds() const;
    /// Sets the normal of each vertex whose `missing` is not 0 to the mean of its triangles'
    /// normals, weighted by their areas; one without an area points along the axis that is up.
    void compute_normals(const std::vector<std::uint8_t>& missing);
    /// All of them.
    void compute_normals();
};

/// `vector` at length 1, or `fallback` when it has no direction.
[[nodiscard]] Vector3 normalized(const Vector3& vector, const Vector3& fallback);
/// The normal of the triangle, its length being twice the area. In double, so that no finite
/// corners overflow it.
[[nodiscard]] std::array<double, 3> area_normal(const Vector3& a, const Vector3& b,
                                                const Vector3& c);

}  // namespace scene
