#pragma once

#include "platform/Export.h"
#include "platform/PlatformTypes.h"

#include <string>

namespace zmr {

/// Finds a text of the program by its number. False, with `text` unchanged, when there is none.
using StringLookup = bool (*)(UINT id, std::string& text);

/// Installs a lookup that is asked before the system's string tables, and returns the former one;
/// null takes it out. Where there are no string tables, it is the only source of such texts. Set it
/// before other threads run.
ZMR_GV_API StringLookup set_string_lookup(StringLookup lookup);

/// The text number `id` in UTF-8: from the installed lookup, else from the string table of the
/// program, else from that of the library. False, with `text` unchanged, when nobody has it.
[[nodiscard]] ZMR_GV_API bool find_string(UINT id, std::string& text);

/// The lane's part: what the system's string tables hold.
[[nodiscard]] bool find_system_string(UINT id, std::string& text);

}  // namespace zmr
