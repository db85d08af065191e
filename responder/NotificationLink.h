#pragma once

#include "foundation/GPointer.h"
#include "responder/GEvent.h"

#include <cstdint>

/// Who is told when a responder is modified, and by which event. `target` is the receiver as a
/// GResponder, null once it is gone.
struct NotificationLink : GPointer {
    GEvent::GEventType event_kind = GEvent::event_none;  ///< The `what` of the event.
    std::uint32_t event_word = 0;                        ///< Its `info_word`.
};
