#pragma once

#include "foundation/GPointer.h"
#include "responder/GView.h"
#include "scene_interface/SceneRoot.h"
#include "scene_module/ShadeTable.h"

class SceneObject;

namespace scene {

[[nodiscard]] constexpr std::uint32_t to_pixel(const RGB_Color& color)
{
    return color.blue | std::uint32_t{color.green} << 8 | std::uint32_t{color.red} << 16;
}

}  // namespace scene

/// The root of a scene: its objects, the first one in front, and the view of them. It passes the
/// mouse to the object below it, and to that one alone while a button is held; keys go to the
/// current object first. The view is kept with the scene, its size in pixels is not.
/// User-interface thread.
class SceneSpace : public GView, public scene::SceneRoot {
    G_DECLARE_CLASS(SceneSpace)

public:
    SceneSpace() = default;
    SceneSpace(const SceneSpace&) = delete;
    SceneSpace& operator=(const SceneSpace&) = delete;
    ~SceneSpace() override;

    GResponder* add_model(GStreamable* model, const char* label) override;
    void send_to_back(GResponder* child) override;
    void set_view_size(int width_px, int height_px, int dpi) override;
    void view_all() override;
    void draw(const scene::Canvas& canvas) override;
    [[nodiscard]] GResponder* item_at(int x_px, int y_px) override;
    [[nodiscard]] scene::Point point_at(int x_px, int y_px) const override;
    [[nodiscard]] std::uint64_t revision() const override { return revision_; }

    // For its objects.

    /// What would be saved has changed.
    void note_content();
    [[nodiscard]] double px_per_unit() const { return zoom_ * dpi_ / 96.0; }
    [[nodiscard]] double x_px(double x) const
    {
        return width_px_ / 2.0 + (x - middle_x_) * px_per_unit();
    }
    [[nodiscard]] double y_px(double y) const
    {
        return height_px_ / 2.0 + (y - middle_y_) * px_per_unit();
    }
    [[nodiscard]] int line_px() const { return dpi_ < 96 ? 2 : 2 * dpi_ / 96; }
    [[nodiscard]] std::uint32_t ground();
    [[nodiscard]] scene::ShadeTables& shades() { return shades_; }

    void handle_event(GEvent& event) override;
    void remove(GResponder* child) override;
    void set_current(GResponder* child) override;
    RGB_Color get_default_color(long index) override;

    /// Throws GStreamException for a later version and for data that ends early; the scene is then
    /// to be destroyed.
    void read(ipstream& in) override;
    /// Who is told of changes is not written.
    void write(opstream& out) override;

    static constexpr unsigned char kVersion = 1;
    static constexpr double kLeastZoom = 0.05;
    static constexpr double kMostZoom = 20;
    static constexpr double kZoomStep = 1.25;     ///< For one step of the wheel.
    static constexpr double kGrid = 100;          ///< Between the lines on the ground.
    static constexpr double kFirstSpacing = 150;  ///< Between new objects.

protected:
    explicit SceneSpace(StreamableInit init) : GView(init) {}
    int insert_to_list(GResponder* child, GResponder* target, unsigned char announce) override;

private:
    void press(GEvent& event);
    void pass_to_held(GEvent& event);
    void turn_wheel(GEvent& event);
    void key(GEvent& event);
    void remove_child(GEvent& event);
    void draw_ground(const scene::Canvas& canvas);
    void place_freely(SceneObject& object);

    int width_px_ = 0;
    int height_px_ = 0;
    int dpi_ = 96;
    double middle_x_ = 0;  ///< The scene's point in the middle of the view.
    double middle_y_ = 0;
    double zoom_ = 1;
    std::uint64_t revision_ = 0;
    TGPointer<GResponder> held_;  ///< Has taken the press of the button that is down.
    scene::ShadeTables shades_;
};
