#pragma once

#include <cstdint>

namespace zmr {

/// The key code of a virtual key, without flags; 0 for a key that has none, and above 255.
[[nodiscard]] std::uint32_t key_code(unsigned virtual_key);

/// The character that Shift makes of the one with this code; 0 when there is none.
[[nodiscard]] std::uint32_t shifted_character(std::uint32_t code);

// The keys whose state counts, by their virtual key codes.
constexpr int kShiftKey = 0x10;
constexpr int kControlKey = 0x11;
constexpr int kAltKey = 0x12;
constexpr int kCapsLockKey = 0x14;
constexpr int kNumLockKey = 0x90;
constexpr int kScrollLockKey = 0x91;

}  // namespace zmr
