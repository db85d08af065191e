#pragma once

#include "responder/GEvent.h"

// The events by which a host talks to the responders of a scene, beside those that the library
// names. docs/scene-editor.md tells their ways.

namespace scene {

// Input. Of a mouse event, `mouse.x0` and `y0` are pixels of the view, `word0` the buttons that are
// down, `word1` the modifiers as GEvent has them.
inline constexpr auto kMousePress = GEvent::event_mouse_press;
inline constexpr auto kMouseRelease = static_cast<GEvent::GEventType>(0x2);
inline constexpr auto kMouseMove = static_cast<GEvent::GEventType>(0x40);
/// `mouse.y1` is the way that the wheel was turned, kWheelStep for one step, positive away from the
/// hand.
inline constexpr auto kMouseWheel = static_cast<GEvent::GEventType>(0x80);
inline constexpr int kWheelStep = 120;

inline constexpr std::uint32_t kLeftButton = 0x1;
inline constexpr std::uint32_t kRightButton = 0x2;
inline constexpr std::uint32_t kMiddleButton = 0x4;

/// An object is about to be moved: `info_long` is the address of a Move, which behaviours of the
/// object may change. It never comes from outside of the object.
inline constexpr auto kMoving = static_cast<GEvent::GEventType>(0x1000);
/// Suggested for change notifications; nothing in a scene handles it.
inline constexpr auto kChanged = static_cast<GEvent::GEventType>(0x2000);
/// To the root: the child whose address as a GResponder is `info_long` is to be ended.
inline constexpr auto kRemovalAsked = static_cast<GEvent::GEventType>(0x4000);

/// Where the middle of an object is to be, in scene units.
struct Move {
    double x = 0;
    double y = 0;
    int step_x = 0;  ///< -1 or 1 when a key moves it that way: at least one step is meant.
    int step_y = 0;
};

}  // namespace scene
