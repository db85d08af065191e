#pragma once

#include "platform/Export.h"
#include "platform/Windows.h"

/// What WM_SIZEPARENT goes round with among a window's children: each that is a bar takes its part
/// off `rect`. docs/platform.md tells the order.
struct AFX_SIZEPARENTPARAMS {
    HDWP hDWP = nullptr;   ///< Collects the moves; null when the layout is only asked for.
    RECT rect{};           ///< What is left, in the parent's client coordinates.
    SIZE sizeTotal{};      ///< What the bars want together.
    BOOL bStretch = TRUE;  ///< Bars lie along the whole edge.
};

/// Moves a child to `rect` of its parent, together with the others of the layout, unless it lies
/// there already or the layout is only asked for. Null for `layout` moves it at once.
ZMR_GV_API void AfxRepositionWindow(AFX_SIZEPARENTPARAMS* layout, HWND child, const RECT& rect);
