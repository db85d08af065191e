#pragma once

#include "responder/GResponder.h"
#include "scene_interface/SceneEvents.h"
#include "scene_interface/SceneItem.h"
#include "scene_module/SceneSprite.h"

class SceneMesh;
class SceneSpace;

/// A model in a scene, as a responder: a press selects it, dragging moves it, keys move, turn and
/// scale it and ask for its removal. Its colour is the palette's kSurfaceColor. It owns its mesh.
/// User-interface thread.
class SceneObject : public GResponder, public scene::SceneItem {
    G_DECLARE_CLASS(SceneObject)

public:
    SceneObject();
    /// Takes `mesh`, which is not null, over; it stands at 0, 0 in a size that suits a scene.
    explicit SceneObject(SceneMesh* mesh);
    SceneObject(const SceneObject&) = delete;
    SceneObject& operator=(const SceneObject&) = delete;
    ~SceneObject() override;

    [[nodiscard]] scene::Place place() const override { return place_; }
    void set_place(const scene::Place& place) override;
    [[nodiscard]] std::uint32_t triangle_count() const override;
    [[nodiscard]] double grid_step() const override;
    void touch() override;
    [[nodiscard]] const SceneMesh* mesh() const { return mesh_; }
    [[nodiscard]] bool is_dragged() const { return drag_ == Drag::Moving; }

    /// How the view of `space` shows it; it need not be visible.
    void draw(const scene::Canvas& canvas, SceneSpace& space);
    void draw_selection(const scene::Canvas& canvas, SceneSpace& space);
    [[nodiscard]] bool covers(int x_px, int y_px, SceneSpace& space);
    /// Half of the larger side of its picture, in scene units.
    [[nodiscard]] double reach() const;

    void handle_event(GEvent& event) override;
    void set_state(unsigned long bits, unsigned char on) override;
    unsigned char makeFirst() override;

    /// Throws GStreamException for a later version, and for data without a mesh or that ends early;
    /// the object is then to be destroyed. Values outside their limits are brought into them.
    void read(ipstream& in) override;
    /// Who is told of changes is not written.
    void write(opstream& out) override;

    static constexpr unsigned char kVersion = 1;
    static constexpr double kFirstSize = 120;  ///< Of a new object's larger side, in scene units.
    static constexpr double kStep = 10;        ///< Of an arrow key, and
    static constexpr double kFineStep = 1;     ///< with Shift, in scene units.
    static constexpr double kTurnStep_deg = 15;
    static constexpr double kScaleStep = 1.1;
    static constexpr int kDragStart_px = 3;  ///< So far the mouse moves before a drag begins.

protected:
    explicit SceneObject(StreamableInit init) : GResponder(init) { set_up(); }

private:
    enum class Drag : std::uint8_t { None, Pressed, Moving };

    void set_up();
    [[nodiscard]] SceneSpace* space() const;
    void move_to(const scene::Move& wanted);
    void change_place(const scene::Place& place);
    void press(GEvent& event);
    void follow_mouse(GEvent& event);
    void key(GEvent& event);
    void prepare(SceneSpace& space);

    SceneMesh* mesh_ = nullptr;
    scene::Place place_;
    scene::SceneSprite sprite_;
    Drag drag_ = Drag::None;
    int pressed_x_px_ = 0;
    int pressed_y_px_ = 0;
    scene::Place place_before_;  ///< The drag.
};
