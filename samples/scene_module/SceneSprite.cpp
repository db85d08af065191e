#include "scene_module/SceneSprite.h"

#include "scene_module/MeshRaster.h"

#include <algorithm>
#include <cmath>

namespace scene {

namespace {

constexpr std::uint32_t kSeen = 128;  ///< Alpha from which a pixel is the model's.
constexpr double kFar_px = 1e8;       ///< Nothing is placed further off.

std::uint32_t alpha_of(std::uint32_t pixel)
{
    return pixel >> 24;
}

// 0 to 255 * 255, divided by 255 and rounded.
std::uint32_t over_255(std::uint32_t value)
{
    return (value + 128 + ((value + 128) >> 8)) >> 8;
}

// `pixel`, its alpha multiplied in, over `below`.
std::uint32_t blend(std::uint32_t below, std::uint32_t pixel)
{
    const std::uint32_t rest = 255 - alpha_of(pixel);
    if (rest == 0)
        return pixel & 0xFFFFFF;
    const auto part = [&](int shift) {
        const std::uint32_t value =
            over_255((below >> shift & 0xFF) * rest) + (pixel >> shift & 0xFF);
        return std::min<std::uint32_t>(value, 255) << shift;
    };
    return part(0) | part(8) | part(16);
}

// Without its colour, and half of it the ground's.
std::uint32_t greyed(std::uint32_t pixel, std::uint32_t ground)
{
    const std::uint32_t light =
        ((pixel >> 16 & 0xFF) * 77 + (pixel >> 8 & 0xFF) * 150 + (pixel & 0xFF) * 29) >> 8;
    const std::uint32_t alpha = alpha_of(pixel);
    const auto part = [&](int shift) {
        return (light + over_255((ground >> shift & 0xFF) * alpha)) / 2 << shift;
    };
    return alpha << 24 | part(16) | part(8) | part(0);
}

int rounded(double value)
{
    return static_cast<int>(std::lround(std::clamp(value, -kFar_px, kFar_px)));
}

// The mean of the samples of one pixel.
class Mixer {
public:
    void add(std::uint32_t color)
    {
        blue_ += color & 0xFF;
        green_ += color >> 8 & 0xFF;
        red_ += color >> 16 & 0xFF;
        ++covered_;
    }
    [[nodiscard]] std::uint32_t mean(std::uint32_t samples) const
    {
        const auto part = [samples](std::uint32_t sum) { return (sum + samples / 2) / samples; };
        return part(covered_ * 255) << 24 | part(red_) << 16 | part(green_) << 8 | part(blue_);
    }

private:
    std::uint32_t blue_ = 0;
    std::uint32_t green_ = 0;
    std::uint32_t red_ = 0;
    std::uint32_t covered_ = 0;
};

}  // namespace

void SceneSprite::prepare(const TriangleMesh& mesh, const Bounds& bounds, const Look& look,
                          ShadeTables& shades)
{
    if (mesh_ == &mesh && look_ == look)
        return;
    mesh_ = &mesh;
    look_ = look;
    width_px_ = 0;
    height_px_ = 0;
    pixels_.clear();
    const MeshRaster raster(mesh, look.turn_rad);
    ViewPoint low;
    ViewPoint high;
    if (!raster.box(low, high))
        return;
    const ViewPoint a = raster.seen(bounds.low);
    const ViewPoint b = raster.seen(bounds.high);
    const ViewPoint middle{(a.x + b.x) / 2, (a.y + b.y) / 2, (a.z + b.z) / 2};
    const double extent = std::max(high.x - low.x, high.y - low.y) * look.px_per_unit;
    stretch_ = std::max(1.0, extent / (kMostSide_px - 2));
    const double scale = look.px_per_unit / stretch_;
    const double left = std::floor((low.x - middle.x) * scale);
    const double top = std::floor((middle.y - high.y) * scale);
    width_px_ = static_cast<int>(std::ceil((high.x - middle.x) * scale) - left) + 1;
    height_px_ = static_cast<int>(std::ceil((middle.y - low.y) * scale) - top) + 1;
    left_ = left * stretch_;
    top_ = top * stretch_;

    // Looked at so often for each pixel, along each side.
    const int samples = std::max(width_px_, height_px_) <= kSmoothSide_px ? 2 : 1;
    RasterWindow window;
    window.width_px = width_px_ * samples;
    window.height_px = height_px_ * samples;
    window.scale = scale * samples;
    window.middle = middle;
    window.left_px = -left * samples;
    window.top_px = -top * samples;
    const Surface surface = raster.look(window);
    const ShadeTable& shade = shades.of(look.color);
    pixels_.resize(static_cast<std::size_t>(width_px_) * static_cast<std::size_t>(height_px_));
    std::size_t pixel = 0;
    for (int y = 0; y < height_px_; ++y) {
        for (int x = 0; x < width_px_; ++x, ++pixel) {
            Mixer mixer;
            for (int row = y * samples; row < (y + 1) * samples; ++row) {
                const std::size_t first =
                    static_cast<std::size_t>(row) * static_cast<std::size_t>(window.width_px) +
                    static_cast<std::size_t>(x * samples);
                for (std::size_t at = first; at < first + static_cast<std::size_t>(samples); ++at) {
                    if (surface.is_covered(at))
                        mixer.add(shade[surface.normal(at)]);
                }
            }
            pixels_[pixel] = mixer.mean(static_cast<std::uint32_t>(samples * samples));
        }
    }
}

int SceneSprite::left_at(double x_px) const
{
    return rounded(x_px + left_);
}

int SceneSprite::top_at(double y_px) const
{
    return rounded(y_px + top_);
}

int SceneSprite::shown_width() const
{
    return rounded(width_px_ * stretch_);
}

int SceneSprite::shown_height() const
{
    return rounded(height_px_ * stretch_);
}

int SceneSprite::column_of(int offset_px) const
{
    return std::min(width_px_ - 1, static_cast<int>(offset_px / stretch_));
}

int SceneSprite::row_of(int offset_px) const
{
    return std::min(height_px_ - 1, static_cast<int>(offset_px / stretch_));
}

PixelBox SceneSprite::box(double x_px, double y_px, int width_px, int height_px) const
{
    const int left = left_at(x_px);
    const int top = top_at(y_px);
    return {std::max(left, 0), std::max(top, 0), std::min(left + shown_width(), width_px),
            std::min(top + shown_height(), height_px)};
}

bool SceneSprite::covers(double x_px, double y_px, int at_x_px, int at_y_px) const
{
    const PixelBox here = box(x_px, y_px, at_x_px + 1, at_y_px + 1);
    if (at_x_px < here.left || at_y_px < here.top || here.right != at_x_px + 1 ||
        here.bottom != at_y_px + 1)
        return false;
    return alpha_of(at(column_of(at_x_px - left_at(x_px)), row_of(at_y_px - top_at(y_px)))) >=
           kSeen;
}

void SceneSprite::copy_to(const Canvas& canvas, double x_px, double y_px, Tint tint,
                          std::uint32_t ground) const
{
    const PixelBox here = box(x_px, y_px, canvas.width_px, canvas.height_px);
    const int left = left_at(x_px);
    const int top = top_at(y_px);
    for (int y = here.top; y < here.bottom; ++y) {
        std::uint32_t* const row = canvas.pixels + static_cast<std::ptrdiff_t>(y) * canvas.width_px;
        const int source_row = row_of(y - top);
        for (int x = here.left; x < here.right; ++x) {
            const std::uint32_t pixel =
                at(stretch_ == 1 ? x - left : column_of(x - left), source_row);
            if (alpha_of(pixel) != 0)
                row[x] = blend(row[x], tint == Tint::Grey ? greyed(pixel, ground) : pixel);
        }
    }
}

void SceneSprite::outline(const Canvas& canvas, double x_px, double y_px, int width_px,
                          std::uint32_t color) const
{
    PixelBox part = box(x_px, y_px, canvas.width_px, canvas.height_px);
    part = {std::max(part.left - width_px, 0), std::max(part.top - width_px, 0),
            std::min(part.right + width_px, canvas.width_px),
            std::min(part.bottom + width_px, canvas.height_px)};
    if (part.is_empty())
        return;
    // The picture, grown by the line's width to the sides, then up and down.
    const int left = left_at(x_px);
    const int top = top_at(y_px);
    const auto columns = static_cast<std::size_t>(part.right - part.left);
    const auto rows = static_cast<std::size_t>(part.bottom - part.top);
    std::vector<std::uint8_t> inside(columns * rows);
    std::vector<std::uint8_t> wide(columns * rows);
    const PixelBox own = box(x_px, y_px, canvas.width_px, canvas.height_px);
    for (int y = own.top; y < own.bottom; ++y) {
        for (int x = own.left; x < own.right; ++x) {
            if (alpha_of(at(column_of(x - left), row_of(y - top))) < kSeen)
                continue;
            const std::size_t row = static_cast<std::size_t>(y - part.top) * columns;
            inside[row + static_cast<std::size_t>(x - part.left)] = 1;
            const int last = std::min(x + width_px, part.right - 1);
            for (int near = std::max(x - width_px, part.left); near <= last; ++near)
                wide[row + static_cast<std::size_t>(near - part.left)] = 1;
        }
    }
    for (int y = part.top; y < part.bottom; ++y) {
        const int first = std::max(y - width_px, part.top);
        const int last = std::min(y + width_px, part.bottom - 1);
        for (std::size_t x = 0; x < columns; ++x) {
            if (inside[static_cast<std::size_t>(y - part.top) * columns + x] != 0)
                continue;
            bool is_near = false;
            for (int row = first; row <= last && !is_near; ++row)
                is_near = wide[static_cast<std::size_t>(row - part.top) * columns + x] != 0;
            if (is_near)
                canvas.pixels[static_cast<std::ptrdiff_t>(y) * canvas.width_px + part.left +
                              static_cast<std::ptrdiff_t>(x)] = color;
        }
    }
}

}  // namespace scene
