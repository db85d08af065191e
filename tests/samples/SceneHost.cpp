#include "SceneHost.h"

#include "scene_interface/SceneEvents.h"
#include "scene_module/SceneMesh.h"

#include <algorithm>

SceneMesh* make_cube(float side)
{
    scene::TriangleMesh mesh;
    mesh.name = "cube";
    const float h = side / 2;
    const auto add_side = [&mesh](const scene::Vector3& a, const scene::Vector3& b,
                                  const scene::Vector3& c, const scene::Vector3& d) {
        const auto first = static_cast<std::uint32_t>(mesh.vertices.size());
        mesh.vertices.insert(mesh.vertices.end(), {a, b, c, d});
        mesh.triangles.push_back({first, first + 1, first + 2});
        mesh.triangles.push_back({first, first + 2, first + 3});
    };
    add_side({-h, -h, h}, {h, -h, h}, {h, h, h}, {-h, h, h});
    add_side({h, -h, -h}, {-h, -h, -h}, {-h, h, -h}, {h, h, -h});
    add_side({h, -h, h}, {h, -h, -h}, {h, h, -h}, {h, h, h});
    add_side({-h, -h, -h}, {-h, -h, h}, {-h, h, h}, {-h, h, -h});
    add_side({-h, h, h}, {h, h, h}, {h, h, -h}, {-h, h, -h});
    add_side({-h, -h, -h}, {h, -h, -h}, {h, -h, h}, {-h, -h, h});
    mesh.compute_normals();
    return new SceneMesh(std::move(mesh));
}

void Watcher::handle_event(GEvent& event)
{
    if (event.what != scene::kChanged)
        return;
    ++told;
    if (then)
        then();
}

SceneHost::SceneHost() : SceneHost(new SceneSpace) {}

SceneHost::SceneHost(SceneSpace* shown)
    : space(shown), pixels_(static_cast<std::size_t>(kWidth_px * kHeight_px))
{
    space->set_view_size(kWidth_px, kHeight_px, 96);
    space->set_state(GResponder::state_exposed, 1);
}

SceneHost::~SceneHost()
{
    GStreamable::Destroy(space);
}

SceneObject* SceneHost::add(const char* label, double x, double y)
{
    GResponder* const added = space->add_model(make_cube(), label);
    auto* const object = zmr::class_cast<SceneObject>(added);
    scene::Place place = object->place();
    place.x = x;
    place.y = y;
    object->set_place(place);
    return object;
}

void SceneHost::mouse(GEvent::GEventType what, int x, int y, std::uint32_t buttons)
{
    GEvent event;
    event.what = what;
    event.mouse.x0 = x;
    event.mouse.y0 = y;
    event.mouse.word0 = buttons;
    GResponder::message(space, event);
}

void SceneHost::press(int x, int y)
{
    mouse(scene::kMousePress, x, y, scene::kLeftButton);
}

void SceneHost::move(int x, int y)
{
    mouse(scene::kMouseMove, x, y, scene::kLeftButton);
}

void SceneHost::release(int x, int y)
{
    mouse(scene::kMouseRelease, x, y, 0);
}

void SceneHost::drag(int from_x, int from_y, int to_x, int to_y)
{
    press(from_x, from_y);
    move((from_x + to_x) / 2, (from_y + to_y) / 2);
    move(to_x, to_y);
    release(to_x, to_y);
}

bool SceneHost::key(std::uint32_t code)
{
    GEvent event;
    event.what = GEvent::event_key;
    event.info_word = code;
    return GResponder::message(space, event) != nullptr;
}

void SceneHost::draw()
{
    space->draw({pixels_.data(), kWidth_px, kHeight_px});
}

std::uint32_t SceneHost::pixel(int x, int y) const
{
    return pixels_[static_cast<std::size_t>(y * kWidth_px + x)];
}

int SceneHost::drawn_pixels()
{
    const std::uint32_t grid = scene::to_pixel(space->get_pal(scene::kGridColor));
    return static_cast<int>(std::count_if(pixels_.begin(), pixels_.end(), [&](std::uint32_t pixel) {
        return pixel != space->ground() && pixel != grid;
    }));
}
