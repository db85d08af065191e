#pragma once

#include "platform/Export.h"
#include "platform/Windows.h"

/// Shows the hourglass for the life of this object. Objects nest; the last one's end brings back
/// the cursor from before the first. Without an application object nothing happens.
class ZMR_GV_API CWaitCursor {
public:
    CWaitCursor();
    ~CWaitCursor();
    CWaitCursor(const CWaitCursor&) = delete;
    CWaitCursor& operator=(const CWaitCursor&) = delete;

    /// Shows it again after something else changed the cursor: a message box.
    void Restore();
};
