#include "scene_module/MeshDrawing.h"

#include "scene_module/MeshRaster.h"
#include "scene_module/Shading.h"

#include <algorithm>
#include <cmath>

namespace scene {

namespace {

constexpr double kMargin = 0.04;  ///< Of the square's side, left free on each side.

const MaterialValues& icon_material()
{
    static const MaterialValues material = model_material({0.68f, 0.73f, 0.81f});
    return material;
}

}  // namespace

MaterialValues model_material(const Vector3& color)
{
    MaterialValues material;
    material.diffuse = color;
    material.specular = {0.35f, 0.35f, 0.35f};
    material.shininess = 40;
    return material;
}

Drawing draw_mesh(const TriangleMesh& mesh, int size_px)
{
    const MeshRaster raster(mesh);
    ViewPoint low;
    ViewPoint high;
    if (size_px < 1 || !raster.box(low, high))
        return {};
    RasterWindow window;
    window.width_px = size_px;
    window.height_px = size_px;
    window.scale = size_px * (1 - 2 * kMargin) / std::max(high.x - low.x, high.y - low.y);
    window.middle = {(low.x + high.x) / 2, (low.y + high.y) / 2, (low.z + high.z) / 2};
    window.left_px = size_px / 2.0;
    window.top_px = size_px / 2.0;
    const Surface surface = raster.look(window);

    Drawing drawing;
    drawing.size_px = size_px;
    drawing.pixels.assign(surface.depths.size() * 4, 0);
    for (std::size_t i = 0; i < surface.depths.size(); ++i) {
        if (!surface.is_covered(i))
            continue;
        std::uint8_t* const pixel = &drawing.pixels[i * 4];
        shade(surface.normal(i), icon_material(), pixel);
        pixel[3] = 255;
    }
    return drawing;
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
