#pragma once

#include "platform/CGdiObject.h"
#include "platform/Windows.h"

class CBitmap;

/// A brush: how areas are filled.
class ZMR_GV_API CBrush : public CGdiObject {
    DECLARE_DYNCREATE(CBrush)

public:
    CBrush() = default;
    // These throw CResourceException when the system refuses.
    explicit CBrush(COLORREF color);
    CBrush(int hatch, COLORREF color);
    explicit CBrush(CBitmap* pattern);

    BOOL CreateSolidBrush(COLORREF color) { return take(::CreateSolidBrush(color)); }
    /// `hatch` is HS_CROSS, HS_VERTICAL ...
    BOOL CreateHatchBrush(int hatch, COLORREF color)
    {
        return take(::CreateHatchBrush(hatch, color));
    }
    /// The bitmap is copied.
    BOOL CreatePatternBrush(CBitmap* pattern);
    BOOL CreateBrushIndirect(const LOGBRUSH* description)
    {
        return take(::CreateBrushIndirect(description));
    }
    /// The brush of a COLOR_... index. The system keeps it; deleting this object leaves it whole.
    BOOL CreateSysColorBrush(int index) { return take(::GetSysColorBrush(index)); }
    /// Its number of bytes, 0 on failure.
    int GetLogBrush(LOGBRUSH* description) const
    {
        return GetObject(sizeof *description, description);
    }

    /// Null for null and for what is no brush.
    [[nodiscard]] static CBrush* FromHandle(HBRUSH brush) { return from_handle_of<CBrush>(brush); }
    [[nodiscard]] operator HBRUSH() const { return static_cast<HBRUSH>(m_hObject); }
};
