// The view of a scene: where it looks, what is seen there, and how it is drawn.
#include "responder/GResponder_Iterators.h"
#include "scene_interface/SceneItem.h"
#include "scene_module/SceneObject.h"
#include "scene_module/SceneSpace.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kLeastGrid_px = 12;  ///< Lines nearer to each other are left out.
constexpr double kViewMargin = 1.15;

}  // namespace

RGB_Color SceneSpace::get_default_color(long index)
{
    switch (index) {
        case scene::kSurfaceColor:
            return {173, 186, 207};
        case scene::kGroundColor:
            return {58, 62, 70};
        case scene::kGridColor:
            return {70, 75, 84};
        case scene::kSelectionColor:
            return {168, 172, 180};
        case scene::kFocusColor:
            return {255, 176, 32};
        default:
            return GView::get_default_color(index);
    }
}

std::uint32_t SceneSpace::ground()
{
    return scene::to_pixel(get_pal(scene::kGroundColor));
}

void SceneSpace::set_view_size(int width_px, int height_px, int dpi)
{
    width_px_ = std::max(width_px, 0);
    height_px_ = std::max(height_px, 0);
    dpi_ = std::clamp(dpi, 24, 960);
    object_modified();
}

void SceneSpace::view_all()
{
    double left = 0;
    double right = 0;
    double top = 0;
    double bottom = 0;
    bool is_first = true;
    for (GResponder_Iterator child(*this); child(); ++child) {
        const auto* const object = zmr::class_cast<SceneObject>(child.object());
        if (object == nullptr || !object->is_visible())
            continue;
        const scene::Place place = object->place();
        const double reach = object->reach();
        left = is_first ? place.x - reach : std::min(left, place.x - reach);
        right = is_first ? place.x + reach : std::max(right, place.x + reach);
        top = is_first ? place.y - reach : std::min(top, place.y - reach);
        bottom = is_first ? place.y + reach : std::max(bottom, place.y + reach);
        is_first = false;
    }
    middle_x_ = std::clamp((left + right) / 2, -scene::kFarthest, scene::kFarthest);
    middle_y_ = std::clamp((top + bottom) / 2, -scene::kFarthest, scene::kFarthest);
    zoom_ = 1;
    if (!is_first && width_px_ > 0 && height_px_ > 0) {
        const double fitting = std::min(width_px_ / std::max(right - left, 1.0),
                                        height_px_ / std::max(bottom - top, 1.0)) /
                               kViewMargin * 96 / dpi_;
        zoom_ = std::clamp(fitting, kLeastZoom, 2.0);
    }
    object_modified();
}

GResponder* SceneSpace::item_at(int x_px, int y_px)
{
    for (GResponder_Iterator child(*this); child(); ++child) {
        auto* const object = zmr::class_cast<SceneObject>(child.object());
        if (object != nullptr && object->is_visible() && object->covers(x_px, y_px, *this))
            return object;
    }
    return nullptr;
}

scene::Point SceneSpace::point_at(int x_px, int y_px) const
{
    return {middle_x_ + (x_px - width_px_ / 2.0) / px_per_unit(),
            middle_y_ + (y_px - height_px_ / 2.0) / px_per_unit()};
}

void SceneSpace::draw(const scene::Canvas& canvas)
{
    if (canvas.width_px <= 0 || canvas.height_px <= 0)
        return;
    draw_ground(canvas);
    // From the back to the front, each over those behind it.
    for (GResponder_ReverseIterator child(*this); child(); --child) {
        auto* const object = zmr::class_cast<SceneObject>(child.object());
        if (object != nullptr && object->is_visible())
            object->draw(canvas, *this);
    }
    // Over all, so that a selected object behind others can be found.
    auto* const current = zmr::class_cast<SceneObject>(get_current());
    if (current != nullptr && current->is_visible() && current->get_state(state_selected))
        current->draw_selection(canvas, *this);
}

void SceneSpace::draw_ground(const scene::Canvas& canvas)
{
    const auto count =
        static_cast<std::size_t>(canvas.width_px) * static_cast<std::size_t>(canvas.height_px);
    std::fill_n(canvas.pixels, count, ground());
    double gap_px = kGrid * px_per_unit();
    while (gap_px < kLeastGrid_px)
        gap_px *= 5;
    const std::uint32_t color = scene::to_pixel(get_pal(scene::kGridColor));
    const auto first = [gap_px](double origin_px) {
        return origin_px - std::floor(origin_px / gap_px) * gap_px;
    };
    for (double x = first(x_px(0)); x < canvas.width_px; x += gap_px) {
        std::uint32_t* pixel = canvas.pixels + static_cast<int>(x);
        for (int y = 0; y < canvas.height_px; ++y, pixel += canvas.width_px)
            *pixel = color;
    }
    for (double y = first(y_px(0)); y < canvas.height_px; y += gap_px)
        std::fill_n(canvas.pixels + static_cast<std::ptrdiff_t>(y) * canvas.width_px,
                    canvas.width_px, color);
}
