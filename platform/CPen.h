#pragma once

#include "platform/CGdiObject.h"
#include "platform/Windows.h"

/// A pen: how lines and borders are drawn.
class ZMR_GV_API CPen : public CGdiObject {
    DECLARE_DYNCREATE(CPen)

public:
    CPen() = default;
    /// Throws CResourceException when the system refuses.
    CPen(int style, int width, COLORREF color);

    /// `style` is PS_SOLID, PS_DOT ...; `width` is in logical units, 0 for one pixel.
    BOOL CreatePen(int style, int width, COLORREF color);
    BOOL CreatePenIndirect(LPLOGPEN description) { return take(::CreatePenIndirect(description)); }
    /// A pen with the ends and joins of `style`; `dashes` are the lengths of a PS_USERSTYLE.
    BOOL CreatePen(int style, int width, const LOGBRUSH* brush, int dash_count = 0,
                   const DWORD* dashes = nullptr);
    /// For pens that are not extended ones. Their number of bytes, 0 on failure.
    int GetLogPen(LOGPEN* description) const { return GetObject(sizeof *description, description); }

    /// Null for null and for what is no pen.
    [[nodiscard]] static CPen* FromHandle(HPEN pen) { return from_handle_of<CPen>(pen); }
    [[nodiscard]] operator HPEN() const { return static_cast<HPEN>(m_hObject); }
};
