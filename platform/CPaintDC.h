#pragma once

#include "platform/CDC.h"
#include "platform/HandlesGdi.h"
#include "platform/Windows.h"

/// What a window's invalid part is painted on; only in the answer to WM_PAINT, and once in it.
/// Drawing is clipped to that part, which counts as valid at this object's end.
class ZMR_GV_API CPaintDC : public CDC {
    DECLARE_DYNAMIC(CPaintDC)

public:
    /// Throws CResourceException when the system refuses.
    explicit CPaintDC(CWnd* window);
    ~CPaintDC() override;

    PAINTSTRUCT
        m_ps{};  ///< What the system told: rcPaint is the rectangle around the invalid part.

private:
    zmr::Painting owned_;
};
