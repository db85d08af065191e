#pragma once

#include "platform/Export.h"
#include "platform/Windows.h"

namespace zmr {

/// The system's message box, by its words of buttons and icons. Its answer; 0 when it cannot be
/// shown. A box with a lone OK answers IDOK however it is closed: not every system says so by
/// itself.
ZMR_GV_API int system_message_box(HWND owner, LPCTSTR text, LPCTSTR caption, UINT type);

}  // namespace zmr
