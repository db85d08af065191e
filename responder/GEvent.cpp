#include "responder/GEvent.h"

#include "responder/KeySource.h"
#include "responder/KeyTables.h"

namespace {

constexpr unsigned kDown = 0x8000;
constexpr unsigned kOn = 0x1;

struct WatchedKey {
    int virtual_key;
    unsigned mask;
    ShiftState bit;
};

constexpr WatchedKey kWatchedKeys[] = {
    {zmr::kShiftKey, kDown, GEvent::shift_down}, {zmr::kControlKey, kDown, GEvent::control_down},
    {zmr::kAltKey, kDown, GEvent::alt_down},     {zmr::kScrollLockKey, kOn, GEvent::scroll_lock},
    {zmr::kNumLockKey, kOn, GEvent::num_lock},   {zmr::kCapsLockKey, kOn, GEvent::caps_lock},
};

/// The code with the flags of the modifiers; Shift alone may give another character in its place.
std::uint32_t code_with_modifiers(std::uint32_t code, ShiftState modifiers)
{
    if ((modifiers & GEvent::shift_down) != 0) {
        if (const std::uint32_t character = zmr::shifted_character(code); character != 0)
            return character;
        code |= GEvent::key_shift_flag;
    }
    if ((modifiers & GEvent::control_down) != 0)
        code |= GEvent::key_control_flag;
    if ((modifiers & GEvent::alt_down) != 0)
        code |= GEvent::key_alt_flag;
    return code;
}

}  // namespace

ShiftState GEvent::GetShiftState(bool asynchronous)
{
    ShiftState state = 0;
    for (const WatchedKey& key : kWatchedKeys) {
        if ((zmr::key_state(key.virtual_key, asynchronous) & key.mask) != 0)
            state |= key.bit;
    }
    return state;
}

void GEvent::translate_key_event(unsigned int virtual_key)
{
    const ShiftState modifiers = GetShiftState(false);
    const std::uint32_t code = code_with_modifiers(zmr::key_code(virtual_key), modifiers);
    if ((code & 0xFF) == 0) {
        what = event_none;
        return;
    }
    what = event_key;
    info_word = (info_word & 0xFFFF0000) | code;
    info_long = static_cast<std::intptr_t>(modifiers);
}
