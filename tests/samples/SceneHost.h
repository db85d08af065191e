#pragma once

#include "responder/GResponder.h"
#include "scene_module/SceneObject.h"
#include "scene_module/SceneSpace.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

/// A mesh of the six sides of a cube, `side` long, with its middle at 0.
[[nodiscard]] SceneMesh* make_cube(float side = 2);

/// Is told of changes.
class Watcher : public GResponder {
public:
    int told = 0;
    std::function<void()> then;
    void handle_event(GEvent& event) override;
};

/// A scene that is shown in a window of 400 x 300 pixels, as a host keeps it.
class SceneHost {
public:
    SceneHost();
    /// Takes over a scene that was read.
    explicit SceneHost(SceneSpace* space);
    ~SceneHost();
    SceneHost(const SceneHost&) = delete;
    SceneHost& operator=(const SceneHost&) = delete;

    /// A cube with its middle there; it has become the current one.
    SceneObject* add(const char* label, double x, double y);
    void press(int x, int y);
    void move(int x, int y);
    void release(int x, int y);
    void drag(int from_x, int from_y, int to_x, int to_y);
    /// A code as GEvent has it. True when somebody has taken it.
    bool key(std::uint32_t code);
    void draw();
    /// 0xRRGGBB of what was drawn last.
    [[nodiscard]] std::uint32_t pixel(int x, int y) const;
    /// The pixels that were drawn last and are neither ground nor grid.
    [[nodiscard]] int drawn_pixels();

    static constexpr int kWidth_px = 400;
    static constexpr int kHeight_px = 300;
    SceneSpace* const space;

private:
    void mouse(GEvent::GEventType what, int x, int y, std::uint32_t buttons);

    std::vector<std::uint32_t> pixels_;
};
