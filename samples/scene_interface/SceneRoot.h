#pragma once

#include <cstdint>

class GResponder;
class GStreamable;

namespace scene {

/// Pixels to draw into, the top row first: blue in the lowest byte, then green and red.
struct Canvas {
    std::uint32_t* pixels = nullptr;
    int width_px = 0;  ///< Of a row, which is as long in memory.
    int height_px = 0;
};

/// A place of a scene, in scene units.
struct Point {
    double x = 0;
    double y = 0;
};

/// What the root of a scene offers beside being a responder; see SceneItem. The class that the
/// module brings is called "SceneSpace".
///
/// Its object_modified runs whenever something is to be drawn anew: after every change of the
/// scene's contents, its selection and its view.
class SceneRoot {
public:
    /// Puts a model into the scene, in front, where there is room, and selects it. The scene takes
    /// `model` over. Null, with `model` left to the caller, when it is no model of the module's,
    /// has no size, or the scene is full.
    virtual GResponder* add_model(GStreamable* model, const char* label) = 0;
    /// Null is ignored, as is what is no child.
    virtual void send_to_back(GResponder* child) = 0;

    /// The size and the dots per inch of the window; the middle stays in the middle.
    virtual void set_view_size(int width_px, int height_px, int dpi) = 0;
    /// Moves and scales the view so that everything that is visible is seen.
    virtual void view_all() = 0;
    /// Draws the whole view, without a pause to look at: into `canvas`, which is of the view's
    /// size.
    virtual void draw(const Canvas& canvas) = 0;
    /// The visible child that is drawn at that pixel of the view; null for the ground.
    [[nodiscard]] virtual GResponder* item_at(int x_px, int y_px) = 0;
    /// The place at the upper left corner of that pixel, which may lie outside of the view.
    [[nodiscard]] virtual Point point_at(int x_px, int y_px) const = 0;

    /// A number that grows with every change of what would be saved.
    [[nodiscard]] virtual std::uint64_t revision() const = 0;

protected:
    ~SceneRoot() = default;
};

}  // namespace scene
