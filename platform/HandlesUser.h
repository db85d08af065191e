#pragma once

#include "platform/Handles.h"

#include <commctrl.h>

// Owners of what windows show and take beside their drawing.

namespace zmr {

struct CloseIcon {
    static void close(HICON icon) noexcept { ::DestroyIcon(icon); }
};
/// An icon that was made or copied. One that LoadIcon gave is shared and not owned.
using OwnedIcon = Owned<HICON, CloseIcon>;

struct CloseCursor {
    static void close(HCURSOR cursor) noexcept { ::DestroyCursor(cursor); }
};
/// A cursor that was made or copied. One that LoadCursor gave is shared and not owned.
using OwnedCursor = Owned<HCURSOR, CloseCursor>;

struct CloseMenu {
    static void close(HMENU menu) noexcept { ::DestroyMenu(menu); }
};
/// A menu with its popups. Release it where a window or another menu takes it over.
using OwnedMenu = Owned<HMENU, CloseMenu>;

struct CloseAccelerators {
    static void close(HACCEL table) noexcept { ::DestroyAcceleratorTable(table); }
};
using OwnedAccelerators = Owned<HACCEL, CloseAccelerators>;

struct CloseHook {
    static void close(HHOOK hook) noexcept { ::UnhookWindowsHookEx(hook); }
};
using OwnedHook = Owned<HHOOK, CloseHook>;

struct CloseImageList {
    static void close(HIMAGELIST list) noexcept { ::ImageList_Destroy(list); }
};
using OwnedImageList = Owned<HIMAGELIST, CloseImageList>;

}  // namespace zmr
