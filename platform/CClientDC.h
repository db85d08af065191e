#pragma once

#include "platform/CDC.h"
#include "platform/HandlesGdi.h"
#include "platform/Windows.h"

/// The client area of a window to draw on outside WM_PAINT; given back at this object's end.
class ZMR_GV_API CClientDC : public CDC {
    DECLARE_DYNAMIC(CClientDC)

public:
    /// Null is the screen. Throws CResourceException when the system refuses.
    explicit CClientDC(CWnd* window);
    ~CClientDC() override;

private:
    zmr::WindowDC owned_;
};
