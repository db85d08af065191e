#pragma once

#include "platform/Export.h"

class CCmdTarget;

/// Whether the command `id` can be run now, as a menu that opens now would show it: asks the route
/// that begins at `target`, by its update handlers. A command that nobody on the route handles is
/// disabled; one whose update handler says nothing of it is enabled when it has a handler. The ids
/// that stand for no command, 0 and 0xFFFF, give true and ask nobody. No menu and no control
/// changes. User-interface thread; costs one walk over the route, or two.
[[nodiscard]] ZMR_GV_API bool GMfcCommandEnabled(CCmdTarget& target, unsigned int id);
