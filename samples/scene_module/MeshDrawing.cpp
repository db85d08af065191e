#include "scene_module/MeshDrawing.h"

#include "scene_module/Shading.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace scene {

namespace {

constexpr double kMargin = 0.04;        ///< Of the square's side, left free on each side.
constexpr float kSmoothCosine = 0.82f;  ///< Normals further off their triangle mark a sharp edge.

struct Point {
    double x;
    double y;
    double z;
};

struct Corner {
    float x;      ///< Pixels from the left.
    float y;      ///< Pixels from the top.
    float depth;  ///< Larger is nearer.
    Vector3 normal;
};

// From the right, the front and above: turned about the axis that is up, then tipped forward.
class View {
public:
    explicit View(UpAxis up) : up_(up) {}

    [[nodiscard]] Point turn(const Vector3& v) const
    {
        const double x = v.x;
        const double y = up_ == UpAxis::Y ? double{v.y} : double{v.z};
        const double z = up_ == UpAxis::Y ? double{v.z} : -double{v.y};
        const double right = x * yaw_cos_ - z * yaw_sin_;
        const double front = x * yaw_sin_ + z * yaw_cos_;
        return {right, y * pitch_cos_ - front * pitch_sin_, y * pitch_sin_ + front * pitch_cos_};
    }

private:
    UpAxis up_;
    double yaw_cos_ = std::cos(0.61);
    double yaw_sin_ = std::sin(0.61);
    double pitch_cos_ = std::cos(0.49);
    double pitch_sin_ = std::sin(0.49);
};

class MeshPainter {
public:
    MeshPainter(const TriangleMesh& mesh, int size_px) : mesh_(mesh), view_(mesh.up), size_(size_px)
    {
        material_.diffuse = {0.68f, 0.73f, 0.81f};
        material_.specular = {0.35f, 0.35f, 0.35f};
        material_.shininess = 40;
    }

    // False for a mesh that has no size on the screen.
    [[nodiscard]] bool fit()
    {
        constexpr double kFar = std::numeric_limits<double>::max();
        Point low{kFar, kFar, kFar};
        Point high{-kFar, -kFar, -kFar};
        for (const auto& triangle : mesh_.triangles) {
            for (const std::uint32_t index : triangle) {
                const Point p = view_.turn(mesh_.vertices[index]);
                low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
                high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
            }
        }
        const double extent = std::max(high.x - low.x, high.y - low.y);
        if (!(extent > std::numeric_limits<float>::min()) || !std::isfinite(extent))
            return false;
        scale_ = size_ * (1 - 2 * kMargin) / extent;
        center_ = {(low.x + high.x) / 2, (low.y + high.y) / 2, (low.z + high.z) / 2};
        return true;
    }

    [[nodiscard]] Drawing paint()
    {
        const std::size_t count = static_cast<std::size_t>(size_) * static_cast<std::size_t>(size_);
        drawing_.size_px = size_;
        drawing_.pixels.assign(count * 4, 0);
        depth_.assign(count, -std::numeric_limits<float>::infinity());
        for (const auto& triangle : mesh_.triangles) {
            paint_triangle(triangle);
            if (covered_ > kMaxCoveredPixels)
                break;
        }
        return std::move(drawing_);
    }

private:
    [[nodiscard]] Corner project(std::uint32_t index, const Vector3& face, double side) const
    {
        const Point p = view_.turn(mesh_.vertices[index]);
        const Point n = view_.turn(mesh_.normals[index]);
        Vector3 normal{static_cast<float>(n.x * side), static_cast<float>(n.y * side),
                       static_cast<float>(n.z * side)};
        if (normal.x * face.x + normal.y * face.y + normal.z * face.z < kSmoothCosine)
            normal = face;
        return {static_cast<float>((p.x - center_.x) * scale_ + size_ / 2.0),
                static_cast<float>(size_ / 2.0 - (p.y - center_.y) * scale_),
                static_cast<float>((p.z - center_.z) * scale_), normal};
    }

    void paint_triangle(const TriangleMesh::Triangle& triangle)
    {
        const auto area = area_normal(mesh_.vertices[triangle[0]], mesh_.vertices[triangle[1]],
                                      mesh_.vertices[triangle[2]]);
        const double length = std::hypot(area[0], area[1], area[2]);
        if (!(length > 0))
            return;
        const Point f =
            view_.turn({static_cast<float>(area[0] / length), static_cast<float>(area[1] / length),
                        static_cast<float>(area[2] / length)});
        // Both sides of a surface are shown alike: many models have some triangles turned round.
        const double side = f.z < 0 ? -1 : 1;
        const Vector3 face{static_cast<float>(f.x * side), static_cast<float>(f.y * side),
                           static_cast<float>(f.z * side)};
        fill(project(triangle[0], face, side), project(triangle[1], face, side),
             project(triangle[2], face, side));
    }

    void fill(const Corner& a, const Corner& b, const Corner& c)
    {
        const float area = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
        if (!(std::fabs(area) > 1e-12f))
            return;
        // The corners lie in the square, up to rounding.
        const auto first = [this](float value) {
            return std::clamp(static_cast<int>(std::floor(value)), 0, size_ - 1);
        };
        const int left = first(std::min({a.x, b.x, c.x}));
        const int right = first(std::max({a.x, b.x, c.x}));
        const int top = first(std::min({a.y, b.y, c.y}));
        const int bottom = first(std::max({a.y, b.y, c.y}));
        covered_ += static_cast<std::uint64_t>(right - left + 1) *
                    static_cast<std::uint64_t>(bottom - top + 1);
        for (int y = top; y <= bottom; ++y) {
            for (int x = left; x <= right; ++x) {
                const float px = static_cast<float>(x) + 0.5f;
                const float py = static_cast<float>(y) + 0.5f;
                const float u = ((c.x - b.x) * (py - b.y) - (c.y - b.y) * (px - b.x)) / area;
                const float v = ((a.x - c.x) * (py - c.y) - (a.y - c.y) * (px - c.x)) / area;
                const float w = 1 - u - v;
                if (u >= 0 && v >= 0 && w >= 0)
                    put(x, y, a, b, c, {u, v, w});
            }
        }
    }

    void put(int x, int y, const Corner& a, const Corner& b, const Corner& c, const Vector3& weight)
    {
        const auto mix = [&weight](float at_a, float at_b, float at_c) {
            return at_a * weight.x + at_b * weight.y + at_c * weight.z;
        };
        const std::size_t index = static_cast<std::size_t>(y) * static_cast<std::size_t>(size_) +
                                  static_cast<std::size_t>(x);
        const float depth = mix(a.depth, b.depth, c.depth);
        if (!(depth > depth_[index]))
            return;
        depth_[index] = depth;
        Vector3 normal = normalized(
            {mix(a.normal.x, b.normal.x, c.normal.x), mix(a.normal.y, b.normal.y, c.normal.y),
             mix(a.normal.z, b.normal.z, c.normal.z)},
            {0, 0, 1});
        // At the outline a smoothed normal may point a little away.
        if (normal.z < 0)
            normal = normalized({normal.x, normal.y, 0}, {0, 0, 1});
        std::uint8_t* pixel = &drawing_.pixels[index * 4];
        shade(normal, material_, pixel);
        pixel[3] = 255;
    }

    const TriangleMesh& mesh_;
    View view_;
    int size_;
    MaterialValues material_;
    double scale_ = 1;
    Point center_{};
    Drawing drawing_;
    std::vector<float> depth_;
    std::uint64_t covered_ = 0;
};

}  // namespace

Drawing draw_mesh(const TriangleMesh& mesh, int size_px)
{
    if (mesh.triangles.empty() || size_px < 1)
        return {};
    MeshPainter painter(mesh, size_px);
    if (!painter.fit())
        return {};
    return painter.paint();
}

Drawing draw_material(const MaterialValues& material, int size_px)
{
    Drawing drawing;
    if (size_px < 1)
        return drawing;
    drawing.size_px = size_px;
    drawing.pixels.assign(static_cast<std::size_t>(size_px) * static_cast<std::size_t>(size_px) * 4,
                          0);
    const float radius = static_cast<float>(size_px * (0.5 - kMargin));
    const float center = static_cast<float>(size_px) / 2;
    // A sphere that could not be seen at all would look like a missing icon.
    const float opacity = 0.15f + 0.85f * material.opacity;
    std::uint8_t* pixel = drawing.pixels.data();
    for (int y = 0; y < size_px; ++y) {
        for (int x = 0; x < size_px; ++x, pixel += 4) {
            const float dx = (static_cast<float>(x) + 0.5f - center) / radius;
            const float dy = (center - static_cast<float>(y) - 0.5f) / radius;
            const float square = dx * dx + dy * dy;
            if (square > 1)
                continue;
            const Vector3 normal{dx, dy, std::sqrt(1 - square)};
            shade(normal, material, pixel);
            // Thicker glass at the rim.
            const float rim = 1 - normal.z;
            pixel[3] = static_cast<std::uint8_t>(
                255 * std::min(1.0f, opacity + (1 - opacity) * rim * rim) + 0.5f);
        }
    }
    return drawing;
}

}  // namespace scene
