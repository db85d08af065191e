#pragma once

#include "platform/Export.h"
#include "platform/Windows.h"

#include <commctrl.h>

namespace zmr {

/// Makes the window classes of the common controls known. The first call does it; later ones cost
/// a look-up.
ZMR_GV_API void load_common_controls();

/// What a pointer is as a message's second parameter.
[[nodiscard]] inline LPARAM lparam_of(const void* pointer)
{
    return reinterpret_cast<LPARAM>(pointer);
}

}  // namespace zmr
