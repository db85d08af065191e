#include "scene_module/SceneSpace.h"

#include "foundation/ClassRegistration.h"
#include "foundation/GException.h"
#include "foundation/ipstream.h"
#include "foundation/opstream.h"
#include "responder/GResponder_Iterators.h"
#include "scene_interface/SceneEvents.h"
#include "scene_interface/SceneItem.h"
#include "scene_module/MeshRaster.h"
#include "scene_module/ReceiversAside.h"
#include "scene_module/SceneMesh.h"
#include "scene_module/SceneObject.h"

#include <algorithm>
#include <cmath>
#include <memory>

G_DEFINE_CLASS(SceneSpace, GView);

namespace {

constexpr std::uint32_t kHome = 0x01;
constexpr int kMostRings = 32;  ///< Of places that are tried for a new object.

double finite_within(double value, double low, double high, double otherwise)
{
    return std::isfinite(value) ? std::clamp(value, low, high) : otherwise;
}

}  // namespace

SceneSpace::~SceneSpace() = default;

void SceneSpace::note_content()
{
    ++revision_;
    object_modified();
}

int SceneSpace::insert_to_list(GResponder* child, GResponder* target, unsigned char announce)
{
    const int inserted = GView::insert_to_list(child, target, announce);
    if (inserted != 0)
        note_content();
    return inserted;
}

void SceneSpace::remove(GResponder* child)
{
    const short before = getCount();
    GView::remove(child);
    if (getCount() != before)
        note_content();
}

void SceneSpace::set_current(GResponder* child)
{
    const GResponder* const before = get_current();
    GView::set_current(child);
    // The states of both were told before the change was through.
    if (get_current() != before)
        object_modified();
}

GResponder* SceneSpace::add_model(GStreamable* model, const char* label)
{
    auto* const mesh = zmr::class_cast<SceneMesh>(model);
    if (mesh == nullptr || getCount() >= zmr::ChildList::kMaxCount)
        return nullptr;
    const scene::MeshRaster raster(mesh->shape());
    scene::ViewPoint low;
    scene::ViewPoint high;
    if (!raster.box(low, high))
        return nullptr;
    auto* const object = new SceneObject(mesh);
    object->set_label(label);
    place_freely(*object);
    insert(object);
    object->select();
    return object;
}

// In a place near the middle of the view where nothing stands: rings of places about it, the sides
// of each first.
void SceneSpace::place_freely(SceneObject& object)
{
    scene::Place place = object.place();
    const auto is_free = [this, &place] {
        for (GResponder_Iterator child(*this); child(); ++child) {
            const auto* const other = zmr::class_cast<SceneObject>(child.object());
            if (other != nullptr && std::hypot(other->place().x - place.x,
                                               other->place().y - place.y) < kFirstSpacing * 0.7)
                return false;
        }
        return true;
    };
    // 0, 1, -1, 2, -2, ...
    const auto alternating = [](int number) {
        return number % 2 != 0 ? (number + 1) / 2 : -number / 2;
    };
    for (int ring = 0; ring <= kMostRings; ++ring) {
        for (int row = 0; row <= 2 * ring; ++row) {
            for (int column = 0; column <= 2 * ring; ++column) {
                const int right = alternating(column);
                const int down = alternating(row);
                place.x = middle_x_ + right * kFirstSpacing;
                place.y = middle_y_ + down * kFirstSpacing;
                if (std::max(std::abs(right), std::abs(down)) == ring && is_free()) {
                    object.set_place(place);
                    return;
                }
            }
        }
    }
}

void SceneSpace::send_to_back(GResponder* child)
{
    if (child == nullptr || contains(child) == 0 || child == last())
        return;
    const bool was_current = get_current() == child;
    remove(child);
    insert_before(child, nullptr);
    if (was_current)
        set_current(child);
}

void SceneSpace::handle_event(GEvent& event)
{
    switch (std::uint32_t{event.what}) {
        case scene::kMousePress:
            press(event);
            return;
        case scene::kMouseMove:
        case scene::kMouseRelease:
            pass_to_held(event);
            return;
        case scene::kMouseWheel:
            turn_wheel(event);
            return;
        case GEvent::event_key:
            key(event);
            return;
        case scene::kRemovalAsked:
            remove_child(event);
            return;
        default:
            GView::handle_event(event);
    }
}

void SceneSpace::press(GEvent& event)
{
    GResponder* const object = item_at(event.mouse.x0, event.mouse.y0);
    held_ = nullptr;
    if (object == nullptr) {
        set_current(nullptr);
        clear_event(event);
        return;
    }
    held_ = object;
    // One that is disabled refuses it.
    if (Message(object, event) == nullptr)
        held_ = nullptr;
}

void SceneSpace::pass_to_held(GEvent& event)
{
    GResponder* const object = held_.get();
    if (event.what == scene::kMouseRelease)
        held_ = nullptr;
    if (object != nullptr && object->get_owner() == this)
        Message(object, event);
}

void SceneSpace::turn_wheel(GEvent& event)
{
    // The scene's point below the mouse stays there.
    const double x = middle_x_ + (event.mouse.x0 - width_px_ / 2.0) / px_per_unit();
    const double y = middle_y_ + (event.mouse.y0 - height_px_ / 2.0) / px_per_unit();
    const double steps = std::clamp(event.mouse.y1 / double{scene::kWheelStep}, -100.0, 100.0);
    const double zoom = std::clamp(zoom_ * std::pow(kZoomStep, steps), kLeastZoom, kMostZoom);
    middle_x_ = x + (middle_x_ - x) * zoom_ / zoom;
    middle_y_ = y + (middle_y_ - y) * zoom_ / zoom;
    zoom_ = zoom;
    clear_event(event);
    object_modified();
}

void SceneSpace::key(GEvent& event)
{
    if (Message(get_current(), event) != nullptr)
        return;
    if ((event.info_word & 0xFFFF) != kHome)
        return;
    clear_event(event);
    view_all();
}

void SceneSpace::remove_child(GEvent& event)
{
    auto* const child = reinterpret_cast<GResponder*>(event.info_long);
    if (child == nullptr || contains(child) == 0)
        return;
    clear_event(event);
    GResponder* const next =
        child->next_view() != nullptr ? child->next_view() : child->prev_view();
    const bool was_current = get_current() == child;
    if (was_current)
        set_current(nullptr);
    remove(child);
    GStreamable::destroy(child);
    if (was_current && next != nullptr)
        set_current(next);
}

void SceneSpace::write(opstream& out)
{
    out.writeByte(kVersion);
    {
        const ReceiversAside aside(*this);
        old_write(out);
    }
    out.writeDouble(middle_x_);
    out.writeDouble(middle_y_);
    out.writeDouble(zoom_);
    write_subobjects(out);
}

void SceneSpace::read(ipstream& in)
{
    if (in.readByte() > kVersion)
        throw GStreamException("This scene was written by a newer program.");
    old_read(in);
    ReceiversAside(*this).drop();
    const double x = in.readDouble();
    const double y = in.readDouble();
    const double zoom = in.readDouble();
    middle_x_ = finite_within(x, -scene::kFarthest, scene::kFarthest, 0);
    middle_y_ = finite_within(y, -scene::kFarthest, scene::kFarthest, 0);
    zoom_ = finite_within(zoom, kLeastZoom, kMostZoom, 1);
    read_subobjects(in);
}
