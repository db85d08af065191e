#pragma once

#include "platform/Export.h"
#include "platform/Windows.h"

class ipstream;
class opstream;

/// Writes all of `placement` but its length: ten values of 32 bits (zmr::WindowPlacementRecord).
ZMR_GV_API opstream& operator<<(opstream& out, const WINDOWPLACEMENT& placement);
/// Reads what << wrote, and leaves the length alone. Values are taken as they come. A stream that
/// ends early throws GStreamException and leaves `placement` as it was.
ZMR_GV_API ipstream& operator>>(ipstream& in, WINDOWPLACEMENT& placement);

/// Writes where the window stands and how it shows: one that is hidden comes back hidden, and one
/// that is maximised now becomes so again whatever state it is restored from.
ZMR_GV_API void GMfcSaveWindowPlacement(opstream& out, HWND window);
/// Reads that and puts the window there. A damaged record, or one from a machine with other
/// monitors, puts no top-level window where it can't be seen: a rectangle that no monitor's work
/// area shows is moved into the nearest one, and one without a size becomes three quarters of the
/// primary one. A stream that ends early throws GStreamException and changes nothing.
ZMR_GV_API void GMfcLoadWindowPlacement(ipstream& in, HWND window);
