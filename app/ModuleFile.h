#pragma once

#include "foundation/GFile.h"
#include "platform/PlatformTypes.h"

namespace zmr {

/// The full path of the file that `module` was loaded from; null stands for the program. Empty when
/// the system can't tell.
[[nodiscard]] ZMR_GV_API GFile file_of_module(HINSTANCE module);

}  // namespace zmr
