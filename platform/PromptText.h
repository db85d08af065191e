#pragma once

#include "platform/Export.h"
#include "platform/PlatformTypes.h"

#include <string_view>

namespace zmr {

// The texts of commands: a line for the status bar and, behind a line feed, a short one for the tip
// of a button.

/// What the status bar shows: the text up to its first line feed.
[[nodiscard]] ZMR_GV_API std::string_view prompt_of(std::string_view text);
/// What a tip shows: the text from behind the first line feed to the next; empty when there is
/// none.
[[nodiscard]] ZMR_GV_API std::string_view tip_of(std::string_view text);

/// The number of the text that goes with a choice in a menu, told by the two words of
/// WM_MENUSELECT: the command's own, one of the range at AFX_IDS_SCFIRST for a command of the
/// system, 0 for items that are no command.
[[nodiscard]] ZMR_GV_API UINT prompt_id_of_choice(UINT item, UINT flags);
/// True when the two words and the menu's handle tell that the menu was closed.
[[nodiscard]] ZMR_GV_API bool menu_was_closed(UINT flags, bool has_menu);

}  // namespace zmr
