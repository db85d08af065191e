#include "scene_module/SceneObject.h"

#include "foundation/ClassRegistration.h"
#include "foundation/GException.h"
#include "foundation/ipstream.h"
#include "foundation/opstream.h"
#include "scene_module/ReceiversAside.h"
#include "scene_module/SceneMesh.h"
#include "scene_module/SceneSpace.h"
#include "scene_module/SnapToGrid.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>

G_DEFINE_CLASS(SceneObject, GResponder);

namespace {

// Codes of keys, as GEvent makes them.
constexpr std::uint32_t kPageUp = 0x0B;
constexpr std::uint32_t kPageDown = 0x0C;
constexpr std::uint32_t kEscape = 0x1B;
constexpr std::uint32_t kLeft = 0x1C;
constexpr std::uint32_t kRight = 0x1D;
constexpr std::uint32_t kUp = 0x1E;
constexpr std::uint32_t kDown = 0x1F;
constexpr std::uint32_t kDelete = 0x7F;

constexpr unsigned long kLooks = GResponder::state_visible | GResponder::state_selected |
                                 GResponder::state_focused | GResponder::state_disabled |
                                 GResponder::state_shown;
constexpr unsigned long kKept = GResponder::state_disabled | GResponder::state_shown;

double within(double value, double low, double high, double otherwise)
{
    return std::isfinite(value) ? std::clamp(value, low, high) : otherwise;
}

double turn_within(double turn_deg)
{
    if (!std::isfinite(turn_deg))
        return 0;
    const double rest = std::fmod(turn_deg, 360);
    const double turn = rest < 0 ? rest + 360 : rest;
    return turn < 360 ? turn : 0;  // a tiny negative one is rounded to 360
}

scene::Place valid_place(const scene::Place& place)
{
    return {within(place.x, -scene::kFarthest, scene::kFarthest, 0),
            within(place.y, -scene::kFarthest, scene::kFarthest, 0), turn_within(place.turn_deg),
            within(place.scale, scene::kLeastScale, scene::kMostScale, 1)};
}

double largest_side(const scene::Bounds& bounds)
{
    return std::max({double{bounds.high.x} - bounds.low.x, double{bounds.high.y} - bounds.low.y,
                     double{bounds.high.z} - bounds.low.z});
}

}  // namespace

SceneObject::SceneObject()
{
    set_up();
}

SceneObject::SceneObject(SceneMesh* mesh) : mesh_(mesh)
{
    set_up();
    if (const double side = largest_side(mesh_->bounds()); side > 0)
        place_.scale = std::clamp(kFirstSize / side, scene::kLeastScale, scene::kMostScale);
}

SceneObject::~SceneObject()
{
    GResponder::shut_down();
    GStreamable::Destroy(mesh_);
}

void SceneObject::set_up()
{
    set_options(option_selectable | option_pass_click, 1);
}

SceneSpace* SceneObject::space() const
{
    return zmr::class_cast<SceneSpace>(get_owner());
}

std::uint32_t SceneObject::triangle_count() const
{
    return mesh_ != nullptr ? static_cast<std::uint32_t>(mesh_->shape().triangles.size()) : 0;
}

double SceneObject::grid_step() const
{
    for (const GBehaviour* behaviour = get_behaviours(); behaviour != nullptr;
         behaviour = behaviour->get_next()) {
        if (const auto* const grid = zmr::class_cast<SnapToGrid>(behaviour))
            return grid->step();
    }
    return 0;
}

void SceneObject::touch()
{
    object_modified();
    if (SceneSpace* const scene = space())
        scene->note_content();
}

void SceneObject::set_place(const scene::Place& place)
{
    const scene::Place wanted = valid_place(place);
    change_place({place_.x, place_.y, wanted.turn_deg, wanted.scale});
    if (wanted.x != place_.x || wanted.y != place_.y)
        move_to({wanted.x, wanted.y});
}

void SceneObject::change_place(const scene::Place& place)
{
    const scene::Place valid = valid_place(place);
    if (valid == place_)
        return;
    place_ = valid;
    touch();
}

void SceneObject::move_to(const scene::Move& wanted)
{
    scene::Move move = wanted;
    const TGPointer<SceneObject> self(this);
    Message(this, scene::kMoving, 0, &move);
    if (self)  // a behaviour may have ended it
        change_place({move.x, move.y, place_.turn_deg, place_.scale});
}

void SceneObject::handle_event(GEvent& event)
{
    switch (std::uint32_t{event.what}) {
        case scene::kMoving:
            clear_event(event);
            return;
        case scene::kMousePress:
            press(event);
            return;
        case scene::kMouseMove:
        case scene::kMouseRelease:
            follow_mouse(event);
            return;
        case GEvent::event_key:
            key(event);
            return;
        default:
            GResponder::handle_event(event);
    }
}

void SceneObject::press(GEvent& event)
{
    GResponder::handle_event(event);
    if (event.what != scene::kMousePress)
        return;
    if ((event.mouse.word0 & scene::kLeftButton) != 0) {
        drag_ = Drag::Pressed;
        pressed_x_px_ = event.mouse.x0;
        pressed_y_px_ = event.mouse.y0;
        place_before_ = place_;
    }
    clear_event(event);
}

void SceneObject::follow_mouse(GEvent& event)
{
    SceneSpace* const scene = space();
    if (drag_ == Drag::None || scene == nullptr)
        return;
    const bool ends =
        event.what == scene::kMouseRelease || (event.mouse.word0 & scene::kLeftButton) == 0;
    const std::int64_t across = std::int64_t{event.mouse.x0} - pressed_x_px_;
    const std::int64_t down = std::int64_t{event.mouse.y0} - pressed_y_px_;
    if (std::max(std::llabs(across), std::llabs(down)) >= kDragStart_px)
        drag_ = Drag::Moving;
    const bool moves = drag_ == Drag::Moving;
    if (ends)
        drag_ = Drag::None;
    clear_event(event);
    if (moves)
        move_to({place_before_.x + static_cast<double>(across) / scene->px_per_unit(),
                 place_before_.y + static_cast<double>(down) / scene->px_per_unit()});
}

void SceneObject::key(GEvent& event)
{
    scene::Place place = place_;
    scene::Move move{place.x, place.y};
    const std::uint32_t code = event.info_word & 0xFFFF;
    const bool is_fine = (code & GEvent::key_shift_flag) != 0;
    const double step = is_fine ? kFineStep : kStep;
    switch (is_fine ? code & ~GEvent::key_shift_flag : code) {
        case kLeft:
            move.step_x = -1;
            break;
        case kRight:
            move.step_x = 1;
            break;
        case kUp:
            move.step_y = -1;
            break;
        case kDown:
            move.step_y = 1;
            break;
        case kPageUp:
            place.turn_deg -= kTurnStep_deg;
            break;
        case kPageDown:
            place.turn_deg += kTurnStep_deg;
            break;
        case '+':
        case '=':
            place.scale *= kScaleStep;
            break;
        case '-':
            place.scale /= kScaleStep;
            break;
        case kEscape:
            if (drag_ == Drag::None)
                return;
            drag_ = Drag::None;
            place = place_before_;
            break;
        case kDelete:
            clear_event(event);
            // The last thing that is done here: it may be the end of this object.
            Message(get_owner(), scene::kRemovalAsked, 0, static_cast<GResponder*>(this));
            return;
        default:
            return;
    }
    clear_event(event);
    if (move.step_x != 0 || move.step_y != 0) {
        move.x += move.step_x * step;
        move.y += move.step_y * step;
        move_to(move);
        return;
    }
    change_place(place);
}

void SceneObject::set_state(unsigned long bits, unsigned char on)
{
    const unsigned long before = get_state() & kLooks;
    GResponder::set_state(bits, on);
    const unsigned long changed = before ^ (get_state() & kLooks);
    if (changed == 0)
        return;
    if ((changed & kKept) != 0) {
        drag_ = Drag::None;
        touch();
        return;
    }
    object_modified();
    if (SceneSpace* const scene = space())
        scene->object_modified();
}

unsigned char SceneObject::makeFirst()
{
    if (GResponder::makeFirst() == 0)
        return 0;
    touch();
    return 1;
}

double SceneObject::reach() const
{
    return mesh_ != nullptr ? largest_side(mesh_->bounds()) * place_.scale / 2 : 0;
}

void SceneObject::prepare(SceneSpace& space)
{
    scene::SceneSprite::Look look;
    look.turn_rad = place_.turn_deg * std::numbers::pi / 180;
    look.px_per_unit = place_.scale * space.px_per_unit();
    look.color = get_pal(scene::kSurfaceColor);
    sprite_.prepare(mesh_->shape(), mesh_->bounds(), look, space.shades());
}

void SceneObject::draw(const scene::Canvas& canvas, SceneSpace& space)
{
    if (mesh_ == nullptr)
        return;
    prepare(space);
    using Tint = scene::SceneSprite::Tint;
    sprite_.copy_to(canvas, space.x_px(place_.x), space.y_px(place_.y),
                    is_disabled() ? Tint::Grey : Tint::None, space.ground());
}

void SceneObject::draw_selection(const scene::Canvas& canvas, SceneSpace& space)
{
    if (mesh_ == nullptr)
        return;
    prepare(space);
    const bool is_focused = get_state(state_focused);
    const RGB_Color color = get_pal(is_focused ? scene::kFocusColor : scene::kSelectionColor);
    sprite_.outline(canvas, space.x_px(place_.x), space.y_px(place_.y), space.line_px(),
                    scene::to_pixel(color));
}

bool SceneObject::covers(int x_px, int y_px, SceneSpace& space)
{
    if (mesh_ == nullptr)
        return false;
    prepare(space);
    return sprite_.covers(space.x_px(place_.x), space.y_px(place_.y), x_px, y_px);
}

void SceneObject::write(opstream& out)
{
    out.writeByte(kVersion);
    {
        const ReceiversAside aside(*this);
        old_write(out);
    }
    out.writeDouble(place_.x);
    out.writeDouble(place_.y);
    out.writeDouble(place_.turn_deg);
    out.writeDouble(place_.scale);
    out.writePointer(mesh_);
}

void SceneObject::read(ipstream& in)
{
    if (in.readByte() > kVersion)
        throw GStreamException("This object of a scene was written by a newer program.");
    old_read(in);
    ReceiversAside(*this).drop();
    set_up();
    scene::Place place;
    place.x = in.readDouble();
    place.y = in.readDouble();
    place.turn_deg = in.readDouble();
    place.scale = in.readDouble();
    auto* const mesh = in.read_owned<SceneMesh>();
    if (mesh == nullptr)
        throw GStreamException("An object of a scene has no mesh.");

    GStreamable::Destroy(mesh_);
    mesh_ = mesh;
    sprite_ = {};
    place_ = valid_place(place);
}
