#pragma once

#include "platform/CDC.h"
#include "platform/HandlesGdi.h"
#include "platform/Windows.h"

/// A whole window, with its caption and border, to draw on; given back at this object's end.
class ZMR_GV_API CWindowDC : public CDC {
    DECLARE_DYNAMIC(CWindowDC)

public:
    /// Null is the screen. Throws CResourceException when the system refuses.
    explicit CWindowDC(CWnd* window);
    ~CWindowDC() override;

private:
    zmr::WindowDC owned_;
};
