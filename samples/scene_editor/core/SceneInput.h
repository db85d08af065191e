#pragma once

#include "responder/GEvent.h"

#include <cstdint>
#include <optional>

namespace editor {

enum class MouseMessage : std::uint8_t { Press, Release, Move, Wheel };

/// The event of a mouse message. `keys` are the buttons and keys that are down, as such messages
/// have them; `x` and `y` are pixels of the client area; `wheel` is the way that it was turned, 120
/// for one step away from the hand, and 0 for the others.
[[nodiscard]] GEvent mouse_event(MouseMessage message, unsigned keys, int x, int y, int wheel = 0);

/// The event of a key that went down, by its virtual key code; none for a key without a code.
[[nodiscard]] std::optional<GEvent> key_event(unsigned virtual_key);

// Bits of `keys`.
inline constexpr unsigned kLeftButtonKey = 0x01;
inline constexpr unsigned kRightButtonKey = 0x02;
inline constexpr unsigned kShiftKey = 0x04;
inline constexpr unsigned kControlKey = 0x08;
inline constexpr unsigned kMiddleButtonKey = 0x10;

}  // namespace editor
