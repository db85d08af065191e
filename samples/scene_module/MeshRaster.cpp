#include "scene_module/MeshRaster.h"

#include <algorithm>
#include <cmath>

namespace scene {

namespace {

constexpr float kSmoothCosine = 0.82f;  ///< Normals further off their triangle mark a sharp edge.
constexpr double kYaw = 0.61;           ///< Turned about the axis that is up,
constexpr double kPitch = 0.49;         ///< then tipped forward.

float dot(const Vector3& a, const Vector3& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

}  // namespace

Vector3 Surface::normal(std::size_t pixel) const
{
    Vector3 normal = normals[pixel];
    // At the outline a smoothed normal may point a little away.
    normal.z = std::max(normal.z, 0.0f);
    // Mixed of unit vectors, so that nothing overflows.
    const float square = dot(normal, normal);
    if (!(square > 1e-12f))
        return {0, 0, 1};
    const float scale = 1 / std::sqrt(square);
    return {normal.x * scale, normal.y * scale, normal.z * scale};
}

/// Fills triangles into a surface.
class MeshRaster::Filler {
public:
    explicit Filler(const RasterWindow& window)
    {
        surface_.width_px = window.width_px;
        surface_.height_px = window.height_px;
        const auto count =
            static_cast<std::size_t>(window.width_px) * static_cast<std::size_t>(window.height_px);
        surface_.depths.assign(count, Surface::kNothing);
        surface_.normals.resize(count);
    }

    void fill(const Corner& a, const Corner& b, const Corner& c)
    {
        const float area = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
        if (!(std::fabs(area) > 1e-12f))
            return;
        const Span across =
            span(std::min({a.x, b.x, c.x}), std::max({a.x, b.x, c.x}), surface_.width_px);
        const Span down =
            span(std::min({a.y, b.y, c.y}), std::max({a.y, b.y, c.y}), surface_.height_px);
        if (across.first > across.last || down.first > down.last)
            return;
        covered_ += static_cast<std::uint64_t>(across.last - across.first + 1) *
                    static_cast<std::uint64_t>(down.last - down.first + 1);
        for (int y = down.first; y <= down.last; ++y) {
            const float py = static_cast<float>(y) + 0.5f;
            const float u_row = (c.x - b.x) * (py - b.y);
            const float v_row = (a.x - c.x) * (py - c.y);
            for (int x = across.first; x <= across.last; ++x) {
                const float px = static_cast<float>(x) + 0.5f;
                const float u = (u_row - (c.y - b.y) * (px - b.x)) / area;
                const float v = (v_row - (a.y - c.y) * (px - c.x)) / area;
                const float w = 1 - u - v;
                if (u >= 0 && v >= 0 && w >= 0)
                    put(x, y, a, b, c, {u, v, w});
            }
        }
    }

    [[nodiscard]] bool is_exhausted() const { return covered_ > kMaxCoveredPixels; }
    [[nodiscard]] Surface take() { return std::move(surface_); }

private:
    struct Span {
        int first;
        int last;
    };
    // The pixels between two coordinates that lie in the window; first is behind last for none.
    [[nodiscard]] static Span span(float low, float high, int size_px)
    {
        const auto end = static_cast<float>(size_px);
        if (!(high >= 0) || !(low < end))
            return {0, -1};
        return {static_cast<int>(std::max(low, 0.0f)), static_cast<int>(std::min(high, end - 1))};
    }

    void put(int x, int y, const Corner& a, const Corner& b, const Corner& c, const Vector3& weight)
    {
        const auto mix = [&weight](float at_a, float at_b, float at_c) {
            return at_a * weight.x + at_b * weight.y + at_c * weight.z;
        };
        const std::size_t index =
            static_cast<std::size_t>(y) * static_cast<std::size_t>(surface_.width_px) +
            static_cast<std::size_t>(x);
        const float depth = mix(a.depth, b.depth, c.depth);
        if (!(depth > surface_.depths[index]))
            return;
        surface_.depths[index] = depth;
        surface_.normals[index] = {mix(a.normal.x, b.normal.x, c.normal.x),
                                   mix(a.normal.y, b.normal.y, c.normal.y),
                                   mix(a.normal.z, b.normal.z, c.normal.z)};
    }

    Surface surface_;
    std::uint64_t covered_ = 0;
};

MeshRaster::MeshRaster(const TriangleMesh& mesh, double turn_rad)
    : mesh_(mesh), yaw_cos_(std::cos(kYaw + turn_rad)), yaw_sin_(std::sin(kYaw + turn_rad))
{
}

ViewPoint MeshRaster::turned(double x, double y, double z) const
{
    static const double pitch_cos = std::cos(kPitch);
    static const double pitch_sin = std::sin(kPitch);
    const double up = mesh_.up == UpAxis::Y ? y : z;
    const double towards = mesh_.up == UpAxis::Y ? z : -y;
    const double right = x * yaw_cos_ - towards * yaw_sin_;
    const double front = x * yaw_sin_ + towards * yaw_cos_;
    return {right, up * pitch_cos - front * pitch_sin, up * pitch_sin + front * pitch_cos};
}

ViewPoint MeshRaster::seen(const Vector3& vertex) const
{
    return turned(vertex.x, vertex.y, vertex.z);
}

bool MeshRaster::box(ViewPoint& low, ViewPoint& high) const
{
    constexpr double kFar = std::numeric_limits<double>::max();
    low = {kFar, kFar, kFar};
    high = {-kFar, -kFar, -kFar};
    for (const auto& triangle : mesh_.triangles) {
        for (const std::uint32_t index : triangle) {
            const ViewPoint p = seen(mesh_.vertices[index]);
            low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
            high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
        }
    }
    const double extent = std::max(high.x - low.x, high.y - low.y);
    return extent > std::numeric_limits<float>::min() && std::isfinite(extent);
}

MeshRaster::Corner MeshRaster::corner(std::uint32_t index, const Vector3& face, double side,
                                      const RasterWindow& window) const
{
    const ViewPoint p = seen(mesh_.vertices[index]);
    const ViewPoint n = seen(mesh_.normals[index]);
    Vector3 normal{static_cast<float>(n.x * side), static_cast<float>(n.y * side),
                   static_cast<float>(n.z * side)};
    if (dot(normal, face) < kSmoothCosine)
        normal = face;
    return {static_cast<float>((p.x - window.middle.x) * window.scale + window.left_px),
            static_cast<float>(window.top_px - (p.y - window.middle.y) * window.scale),
            static_cast<float>((p.z - window.middle.z) * window.scale), normal};
}

Surface MeshRaster::look(const RasterWindow& window) const
{
    Filler filler(window);
    for (const auto& triangle : mesh_.triangles) {
        const auto area = area_normal(mesh_.vertices[triangle[0]], mesh_.vertices[triangle[1]],
                                      mesh_.vertices[triangle[2]]);
        const double length = std::sqrt(area[0] * area[0] + area[1] * area[1] + area[2] * area[2]);
        if (!(length > 0))
            continue;
        const ViewPoint f = turned(area[0] / length, area[1] / length, area[2] / length);
        // Both sides of a surface are shown alike: many models have some triangles turned round.
        const double side = f.z < 0 ? -1 : 1;
        const Vector3 face{static_cast<float>(f.x * side), static_cast<float>(f.y * side),
                           static_cast<float>(f.z * side)};
        filler.fill(corner(triangle[0], face, side, window),
                    corner(triangle[1], face, side, window),
                    corner(triangle[2], face, side, window));
        if (filler.is_exhausted())
            break;
    }
    return filler.take();
}

}  // namespace scene
