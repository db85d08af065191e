#pragma once

#include "graphics/RGB_Color.h"
#include "scene_interface/SceneRoot.h"
#include "scene_module/ShadeTable.h"
#include "scene_module/TriangleMesh.h"

#include <cstdint>
#include <vector>

namespace scene {

/// A rectangle in pixels; right and bottom lie outside it.
struct PixelBox {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    [[nodiscard]] bool is_empty() const { return left >= right || top >= bottom; }
};

/// The picture of one model with smooth edges, kept as long as nothing but its place changes: a
/// model that is dragged is copied, not drawn. Where it would be larger than kMostSide_px a side,
/// its pixels are.
class SceneSprite {
public:
    /// What the picture depends on beside the mesh.
    struct Look {
        double turn_rad = 0;
        double px_per_unit = 1;
        RGB_Color color;
        friend bool operator==(const Look&, const Look&) = default;
    };
    enum class Tint : std::uint8_t { None, Grey };

    /// Draws the picture unless it is there. The middle of the mesh's bounds is what `x_px` and
    /// `y_px` below tell the place of.
    void prepare(const TriangleMesh& mesh, const Bounds& bounds, const Look& look,
                 ShadeTables& shades);
    /// Where it lies, as far as that is on a view of that size.
    [[nodiscard]] PixelBox box(double x_px, double y_px, int width_px, int height_px) const;
    [[nodiscard]] bool covers(double x_px, double y_px, int at_x_px, int at_y_px) const;
    /// Grey is paler, too: mixed with `ground`.
    void copy_to(const Canvas& canvas, double x_px, double y_px, Tint tint,
                 std::uint32_t ground) const;
    /// A line of that width round the picture.
    void outline(const Canvas& canvas, double x_px, double y_px, int width_px,
                 std::uint32_t color) const;

    static constexpr int kMostSide_px = 1200;

private:
    static constexpr int kSmoothSide_px = 500;  ///< Larger pictures have rough edges.

    [[nodiscard]] std::uint32_t at(int x, int y) const
    {
        return pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_px_) +
                       static_cast<std::size_t>(x)];
    }
    // The left and the top edge on the view.
    [[nodiscard]] int left_at(double x_px) const;
    [[nodiscard]] int top_at(double y_px) const;
    [[nodiscard]] int shown_width() const;
    [[nodiscard]] int shown_height() const;
    [[nodiscard]] int column_of(int offset_px) const;
    [[nodiscard]] int row_of(int offset_px) const;

    Look look_;
    const TriangleMesh* mesh_ = nullptr;
    int width_px_ = 0;
    int height_px_ = 0;
    double left_ = 0;  ///< Of the left edge from the middle, in pixels of the view.
    double top_ = 0;
    double stretch_ = 1;  ///< Pixels of the view for each of the picture, along each side.
    std::vector<std::uint32_t> pixels_;  ///< Alpha in the highest byte; it is multiplied in.
};

}  // namespace scene
