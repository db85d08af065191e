#include "scene_editor/core/SceneInput.h"

#include "scene_interface/SceneEvents.h"

namespace editor {

namespace {

GEvent::GEventType kind_of(MouseMessage message)
{
    switch (message) {
        case MouseMessage::Press:
            return scene::kMousePress;
        case MouseMessage::Release:
            return scene::kMouseRelease;
        case MouseMessage::Move:
            return scene::kMouseMove;
        case MouseMessage::Wheel:
            break;
    }
    return scene::kMouseWheel;
}

}  // namespace

GEvent mouse_event(MouseMessage message, unsigned keys, int x, int y, int wheel)
{
    GEvent event;
    event.what = kind_of(message);
    event.mouse.x0 = x;
    event.mouse.y0 = y;
    event.mouse.y1 = wheel;
    event.mouse.word0 = ((keys & kLeftButtonKey) != 0 ? scene::kLeftButton : 0) |
                        ((keys & kRightButtonKey) != 0 ? scene::kRightButton : 0) |
                        ((keys & kMiddleButtonKey) != 0 ? scene::kMiddleButton : 0);
    event.mouse.word1 = ((keys & kShiftKey) != 0 ? GEvent::shift_down : 0) |
                        ((keys & kControlKey) != 0 ? GEvent::control_down : 0);
    return event;
}

std::optional<GEvent> key_event(unsigned virtual_key)
{
    GEvent event;
    event.translate_key_event(virtual_key);
    if (event.what == GEvent::event_none)
        return std::nullopt;
    return event;
}

}  // namespace editor
