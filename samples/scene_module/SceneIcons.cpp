// The icons of this module's classes. The makers register as the module loads and leave as it
// unloads.
#include "graphics/GIconMaker.h"
#include "graphics/PixelMap.h"
#include "graphics/PixelMapTools.h"
#include "scene_module/MeshDrawing.h"
#include "scene_module/SceneMaterial.h"
#include "scene_module/SceneMesh.h"

#include <cstring>
#include <memory>

namespace {

constexpr int kSamples = 3;  ///< Pixels drawn per pixel of the icon, along each side.

// The drawing, made kSamples times too large, as an icon; null for an empty one.
PixelMap* to_icon(const scene::Drawing& drawing, int size_px)
{
    if (drawing.size_px < 1)
        return nullptr;
    PixelMap large(drawing.size_px, drawing.size_px, AbstractImage::Format32, nullptr);
    auto& pixels = large.edit_pixels();
    for (int y = 0; y < drawing.size_px; ++y)
        std::memcpy(pixels.row(y),
                    drawing.pixels.data() + static_cast<std::size_t>(y) * pixels.row_bytes(),
                    pixels.row_bytes());
    return PixelMapTools::Resize(large, size_px, size_px, true);
}

class MeshIconMaker final : public GIconMaker {
public:
    MeshIconMaker() { Register(*this); }
    [[nodiscard]] PixelMap* make_icon(const GStreamable& object, int size_px) const override
    {
        const auto* mesh = zmr::class_cast<SceneMesh>(&object);
        if (mesh == nullptr)
            return nullptr;
        return to_icon(scene::draw_mesh(mesh->shape(), size_px * kSamples), size_px);
    }
};

class MaterialIconMaker final : public GIconMaker {
public:
    MaterialIconMaker() { Register(*this); }
    [[nodiscard]] PixelMap* make_icon(const GStreamable& object, int size_px) const override
    {
        const auto* material = zmr::class_cast<SceneMaterial>(&object);
        if (material == nullptr)
            return nullptr;
        return to_icon(scene::draw_material(material->values(), size_px * kSamples), size_px);
    }
};

MeshIconMaker mesh_icons;
MaterialIconMaker material_icons;

}  // namespace
