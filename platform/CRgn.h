#pragma once

#include "platform/CGdiObject.h"
#include "platform/Windows.h"

/// A region: a set of pixels, made of rectangles. Operations that build one answer NULLREGION,
/// SIMPLEREGION or COMPLEXREGION, and ERROR on failure.
class ZMR_GV_API CRgn : public CGdiObject {
    DECLARE_DYNCREATE(CRgn)

public:
    CRgn() = default;

    BOOL CreateRectRgn(int left, int top, int right, int bottom)
    {
        return take(::CreateRectRgn(left, top, right, bottom));
    }
    BOOL CreateRectRgnIndirect(LPCRECT rect) { return take(::CreateRectRgnIndirect(rect)); }
    BOOL CreateEllipticRgn(int left, int top, int right, int bottom)
    {
        return take(::CreateEllipticRgn(left, top, right, bottom));
    }
    BOOL CreateRoundRectRgn(int left, int top, int right, int bottom, int width, int height)
    {
        return take(::CreateRoundRectRgn(left, top, right, bottom, width, height));
    }
    BOOL CreatePolygonRgn(const POINT* points, int count, int fill_mode)
    {
        return take(::CreatePolygonRgn(points, count, fill_mode));
    }

    void SetRectRgn(LPCRECT rect)
    {
        ::SetRectRgn(*this, rect->left, rect->top, rect->right, rect->bottom);
    }
    /// This region, which must exist, becomes a combination of the two: RGN_AND, RGN_DIFF ...
    int CombineRgn(const CRgn* a, const CRgn* b, int how);
    int CopyRgn(const CRgn* source);
    [[nodiscard]] BOOL EqualRgn(const CRgn* other) const;
    int OffsetRgn(int dx, int dy) { return ::OffsetRgn(*this, dx, dy); }
    int GetRgnBox(LPRECT box) const { return ::GetRgnBox(*this, box); }
    [[nodiscard]] BOOL PtInRegion(int x, int y) const { return ::PtInRegion(*this, x, y); }
    [[nodiscard]] BOOL PtInRegion(POINT point) const { return PtInRegion(point.x, point.y); }
    [[nodiscard]] BOOL RectInRegion(LPCRECT rect) const { return ::RectInRegion(*this, rect); }

    /// Null for null and for what is no region.
    [[nodiscard]] static CRgn* FromHandle(HRGN region) { return from_handle_of<CRgn>(region); }
    [[nodiscard]] operator HRGN() const { return static_cast<HRGN>(m_hObject); }
};
