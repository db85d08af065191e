#include "scene_module/ShadeTable.h"

#include "scene_module/MeshDrawing.h"
#include "scene_module/Shading.h"

#include <cmath>

namespace scene {

ShadeTable::ShadeTable(const RGB_Color& color) : colors_(kSide * kSide)
{
    const MaterialValues material =
        model_material({static_cast<float>(color.red) / 255, static_cast<float>(color.green) / 255,
                        static_cast<float>(color.blue) / 255});
    const auto coordinate = [](std::size_t at) {
        return static_cast<float>(at) * 2 / static_cast<float>(kSide - 1) - 1;
    };
    const float beyond = 1 + 4 / static_cast<float>(kSide);  // rounding reaches so far
    for (std::size_t row = 0; row < kSide; ++row) {
        for (std::size_t column = 0; column < kSide; ++column) {
            const float x = coordinate(column);
            const float y = coordinate(row);
            const float square = x * x + y * y;
            if (square > beyond * beyond)
                continue;
            const Vector3 normal = square < 1 ? Vector3{x, y, std::sqrt(1 - square)}
                                              : normalized({x, y, 0}, {0, 0, 1});
            std::uint8_t bytes[3];
            shade(normal, material, bytes);
            colors_[row * kSide + column] =
                bytes[0] | std::uint32_t{bytes[1]} << 8 | std::uint32_t{bytes[2]} << 16;
        }
    }
}

const ShadeTable& ShadeTables::of(const RGB_Color& color)
{
    const std::uint32_t key = color.to_colorref();
    const auto found = tables_.find(key);
    if (found != tables_.end())
        return found->second;
    if (tables_.size() >= kMostTables)
        tables_.clear();
    return tables_.emplace(key, ShadeTable(color)).first->second;
}

}  // namespace scene
