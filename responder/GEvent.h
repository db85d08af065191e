#pragma once

#include "platform/Export.h"

#include <cstdint>

class GResponder;

/// Which modifier keys are down and which locks are on: bits of GEvent.
using ShiftState = std::uint32_t;

/// The mouse's part of an event: two pairs of coordinates and two more words. The host gives them
/// their meaning.
struct MouseEvent {
    std::uint32_t word0 = 0;
    std::int32_t x0 = 0;
    std::int32_t y0 = 0;
    std::uint32_t word1 = 0;
    std::int32_t x1 = 0;
    std::int32_t y1 = 0;
};

/// What happened, for one call of GResponder::Message: a plain value on the caller's stack that
/// allocates nothing. docs/events.md tells its way through the responders.
class ZMR_GV_API GEvent {
public:
    /// A kind of event is a single bit. The bits without a name are the host's, and those of change
    /// notifications.
    enum GEventType : std::uint32_t {
        event_none = 0,           ///< No event; a cleared event.
        event_mouse_press = 0x1,  ///< Selects a responder; positional.
        event_key = 0x100,
        event_uncancellable = 0x800,  ///< clear_event leaves it alone.
    };
    /// The kinds for which mouse_ran_round is called.
    static constexpr std::uint32_t event_positional_mask = 0xC3;
    /// The kinds that stay on the responder that they are sent to. All others go down the tree.
    static constexpr std::uint32_t event_input_mask = 0x3C3;

    static constexpr ShiftState shift_down = 0x01;
    static constexpr ShiftState control_down = 0x02;
    static constexpr ShiftState alt_down = 0x04;
    static constexpr ShiftState scroll_lock = 0x10;
    static constexpr ShiftState num_lock = 0x20;
    static constexpr ShiftState caps_lock = 0x40;

    // Added to a key's code, which is a byte.
    static constexpr std::uint32_t key_shift_flag = 0x200;
    static constexpr std::uint32_t key_control_flag = 0x400;
    static constexpr std::uint32_t key_alt_flag = 0x800;

    /// The modifiers now, or with `asynchronous` false at the time of the message being handled.
    [[nodiscard]] static ShiftState GetShiftState(bool asynchronous);
    /// Becomes the event of a key that went down, by its virtual key code: the key code in the low
    /// 16 bits of `info_word`, the modifiers in `info_long`. A key without a code gives event_none
    /// and leaves the rest.
    void translate_key_event(unsigned int virtual_key);

    GEventType what = event_none;
    MouseEvent mouse;
    std::uint32_t info_word = 0;
    std::intptr_t info_long = 0;  ///< A number, or the address of an object.
    GResponder* cleared_by = nullptr;
};
