#include "scene_editor/core/SceneCommands.h"

#include "foundation/GMetaClass.h"
#include "graphics/PaletteCollection.h"
#include "responder/GBehaviour.h"
#include "responder/GResponder_Iterators.h"
#include "scene_interface/SceneEvents.h"
#include "scene_interface/SceneItem.h"

#include <cstring>

namespace editor {

namespace {

constexpr const char* kSnapClass = "SnapToGrid";
constexpr const char* kModelClass = "SceneMesh";

unsigned long id_of(SceneCommand command)
{
    return static_cast<unsigned long>(command);
}

GBehaviour* snap_of(const GResponder& object)
{
    GBehaviour* behaviour = object.get_behaviours();
    while (behaviour != nullptr && std::strcmp(behaviour->getMetaClass()->name, kSnapClass) != 0)
        behaviour = behaviour->get_next();
    return behaviour;
}

void touch(GResponder& object)
{
    if (auto* const item = dynamic_cast<scene::SceneItem*>(&object))
        item->touch();
}

// Which colour of the menu the object has of its own: 0 for none, and one that is none of them.
std::optional<std::size_t> color_of(const GResponder& object)
{
    const PaletteCollection* const palette = object.get_palette();
    const long position = palette != nullptr ? palette->find_color(scene::kSurfaceColor) : -1;
    if (position < 0)
        return 0;
    for (std::size_t i = 0; i < kColors.size(); ++i) {
        if (kColors[i].color == palette->at(position)->color)
            return i + 1;
    }
    return std::nullopt;
}

void set_color(GResponder& object, std::size_t number)
{
    if (number == 0)
        object.remove_palette_entry(scene::kSurfaceColor);
    else
        object.set_palette_entry(scene::kSurfaceColor, kColors[number - 1].color);
    touch(object);
}

void toggle_snap(GResponder& object)
{
    if (GBehaviour* const attached = snap_of(object)) {
        object.detach(attached);
        GStreamable::Destroy(attached);
    } else if (const GMetaClass* const type = GMetaClass::FindByName(kSnapClass)) {
        object.attach(zmr::class_cast<GBehaviour>(type->buildObject()));
    }
    touch(object);
}

void hide(GResponder& root, GResponder& object)
{
    root.select_next(1);
    if (root.get_current() == &object)
        root.set_current(nullptr);
    object.set_state(GResponder::state_shown, 0);
}

void set_state_of_all(GResponder& root, unsigned long bits, unsigned char on)
{
    for (GResponder_Iterator child(root); child(); ++child) {
        if (child.object()->get_state(bits) != (on != 0))
            child.object()->set_state(bits, on);
    }
}

bool has_child_with(const GResponder& root, unsigned long bits, bool on)
{
    for (GResponder_Iterator child(root); child(); ++child) {
        if (child.object()->get_state(bits) == on)
            return true;
    }
    return false;
}

void select_neighbour(GResponder& root, unsigned char forward)
{
    if (root.get_current() == nullptr)
        root.reset_current();
    else
        root.select_next(forward);
}

}  // namespace

void update_commands(const SceneDocument& document, bool has_model_row)
{
    const auto enable = [](SceneCommand command, bool on) {
        GResponder::EnableCommand(id_of(command), on ? 1 : 0);
    };
    const GResponder* const root = document.root();
    const GResponder* const object = document.current();
    const bool has_scene = root != nullptr;
    const bool has_object = object != nullptr;
    for (const SceneCommand command :
         {SceneCommand::New, SceneCommand::Open, SceneCommand::Save, SceneCommand::SaveAs})
        enable(command, has_scene);
    enable(SceneCommand::AddFromLibrary, has_scene && has_model_row);
    enable(SceneCommand::Delete, has_object);
    enable(SceneCommand::BringToFront, has_object && root->first() != object);
    enable(SceneCommand::SendToBack, has_object && root->last() != object);
    enable(SceneCommand::Hide, has_object);
    enable(SceneCommand::ShowAll,
           has_scene && has_child_with(*root, GResponder::state_shown, false));
    enable(SceneCommand::EnableAll,
           has_scene && has_child_with(*root, GResponder::state_disabled, true));
    const bool has_children = has_scene && root->getCount() > 0;
    enable(SceneCommand::SelectNext, has_children);
    enable(SceneCommand::SelectPrevious, has_children);
    enable(SceneCommand::ViewAll, has_scene);

    const auto enable_marked = [&](SceneCommand command, bool on, bool is_marked) {
        if (on && is_marked)
            GResponder::CheckCommand(id_of(command), 1);
        else
            enable(command, on);
    };
    enable_marked(SceneCommand::SnapToGrid, has_object && GMetaClass::FindByName(kSnapClass),
                  has_object && snap_of(*object) != nullptr);
    enable_marked(SceneCommand::Disable, has_object, has_object && object->is_disabled());
    // One of several: shown by another mark.
    const std::optional<std::size_t> color = has_object ? color_of(*object) : std::nullopt;
    for (std::size_t i = 0; i <= kColors.size(); ++i) {
        const unsigned long id = id_of(SceneCommand::FirstColor) + static_cast<unsigned long>(i);
        if (has_object && color == i)
            GResponder::SelectCommand(id, 1);
        else
            GResponder::EnableCommand(id, has_object ? 1 : 0);
    }
}

bool is_model_class(std::string_view class_name)
{
    const GMetaClass* const model = GMetaClass::FindByName(kModelClass);
    const GMetaClass* const type = GMetaClass::FindByName(std::string(class_name).c_str());
    return model != nullptr && type != nullptr && type->isKindOf(model) != nullptr;
}

bool run_command(SceneDocument& document, SceneCommand command)
{
    update_commands(document, false);
    if (document.root() == nullptr || !GResponder::CommandEnabled(id_of(command)))
        return false;
    GResponder& root = *document.root();
    GResponder* const object = document.current();
    switch (command) {
        case SceneCommand::Delete:
            GResponder::message(&root, scene::kRemovalAsked, 0, object);
            return true;
        case SceneCommand::BringToFront:
            object->makeFirst();
            return true;
        case SceneCommand::SendToBack:
            document.scene()->send_to_back(object);
            return true;
        case SceneCommand::SnapToGrid:
            toggle_snap(*object);
            return true;
        case SceneCommand::Hide:
            hide(root, *object);
            return true;
        case SceneCommand::ShowAll:
            set_state_of_all(root, GResponder::state_shown, 1);
            return true;
        case SceneCommand::Disable:
            object->set_state(GResponder::state_disabled, object->is_disabled() ? 0 : 1);
            return true;
        case SceneCommand::EnableAll:
            set_state_of_all(root, GResponder::state_disabled, 0);
            return true;
        case SceneCommand::SelectNext:
            select_neighbour(root, 1);
            return true;
        case SceneCommand::SelectPrevious:
            select_neighbour(root, 0);
            return true;
        case SceneCommand::ViewAll:
            document.scene()->view_all();
            return true;
        default:
            break;
    }
    if (command < SceneCommand::FirstColor || command > SceneCommand::LastColor)
        return false;
    set_color(*object, id_of(command) - id_of(SceneCommand::FirstColor));
    return true;
}

}  // namespace editor
