#pragma once

#include "platform/Export.h"

namespace zmr {

/// Gives the state of a key by its virtual key code, as the platform's functions do: the high bit
/// of the 16 is set while the key is down, the low bit while it is switched on. `asynchronous` asks
/// for the state at this moment, else for that of the message being handled.
using KeySource = unsigned short (*)(int virtual_key, bool asynchronous);

/// Where GEvent asks. At first the system; where that has no keyboard state, all keys are up. Null
/// stands for that first one. Returns the former one. User-interface thread.
ZMR_GV_API KeySource set_key_source(KeySource source);

/// Asks the present source.
[[nodiscard]] unsigned short key_state(int virtual_key, bool asynchronous);

/// The system's answer.
[[nodiscard]] unsigned short system_key_state(int virtual_key, bool asynchronous);

}  // namespace zmr
