#pragma once

#include "platform/CPoint.h"
#include "platform/Export.h"

/// A rectangle. Left and top belong to it, right and bottom do not. One whose right is not beyond
/// its left, or whose bottom is not beyond its top, is empty.
class ZMR_GV_API CRect : public tagRECT {
public:
    CRect() : tagRECT{0, 0, 0, 0} {}
    CRect(int left_edge, int top_edge, int right_edge, int bottom_edge)
        : tagRECT{left_edge, top_edge, right_edge, bottom_edge}
    {
    }
    CRect(const tagRECT& rect) : tagRECT(rect) {}
    explicit CRect(const tagRECT* rect) : tagRECT(*rect) {}
    CRect(const tagPOINT& corner, const tagSIZE& size)
        : tagRECT{corner.x, corner.y, corner.x + size.cx, corner.y + size.cy}
    {
    }
    CRect(const tagPOINT& top_left, const tagPOINT& bottom_right)
        : tagRECT{top_left.x, top_left.y, bottom_right.x, bottom_right.y}
    {
    }

    [[nodiscard]] int Width() const { return static_cast<int>(right - left); }
    [[nodiscard]] int Height() const { return static_cast<int>(bottom - top); }
    [[nodiscard]] CSize Size() const { return {Width(), Height()}; }
    [[nodiscard]] CPoint TopLeft() const { return {static_cast<int>(left), static_cast<int>(top)}; }
    [[nodiscard]] CPoint BottomRight() const
    {
        return {static_cast<int>(right), static_cast<int>(bottom)};
    }
    /// Halves rounded towards zero, as the division of the sums is.
    [[nodiscard]] CPoint CenterPoint() const;
    [[nodiscard]] BOOL IsRectEmpty() const { return left >= right || top >= bottom; }
    /// True when all four edges are 0.
    [[nodiscard]] BOOL IsRectNull() const;
    [[nodiscard]] BOOL PtInRect(const tagPOINT& point) const;

    operator tagRECT*() { return this; }
    operator const tagRECT*() const { return this; }

    void SetRect(int left_edge, int top_edge, int right_edge, int bottom_edge);
    void SetRectEmpty() { SetRect(0, 0, 0, 0); }
    void CopyRect(const tagRECT* rect) { *static_cast<tagRECT*>(this) = *rect; }
    [[nodiscard]] BOOL EqualRect(const tagRECT* rect) const;
    void InflateRect(int dx, int dy) { InflateRect(dx, dy, dx, dy); }
    void InflateRect(const tagSIZE& by);
    /// Each edge outwards by its own amount.
    void InflateRect(int by_left, int by_top, int by_right, int by_bottom);
    void DeflateRect(int dx, int dy) { InflateRect(-dx, -dy); }
    void DeflateRect(const tagSIZE& by);
    void DeflateRect(int by_left, int by_top, int by_right, int by_bottom);
    void OffsetRect(int dx, int dy);
    void OffsetRect(const tagSIZE& by);
    void OffsetRect(const tagPOINT& by);
    void MoveToXY(int x, int y);
    /// Exchanges edges so that neither the width nor the height is negative.
    void NormalizeRect();
    /// Becomes what both have in common. False, and all edges 0, when that is empty.
    BOOL IntersectRect(const tagRECT* a, const tagRECT* b);
    /// Becomes the smallest rectangle around both; an empty one does not count. False, and all
    /// edges 0, when both are empty.
    BOOL UnionRect(const tagRECT* a, const tagRECT* b);

    CRect& operator&=(const tagRECT& other);
    CRect& operator|=(const tagRECT& other);
    friend CRect operator&(CRect a, const CRect& b) { return a &= b; }
    friend CRect operator|(CRect a, const CRect& b) { return a |= b; }
    friend CRect operator+(CRect a, const CPoint& by)
    {
        a.OffsetRect(by);
        return a;
    }
    friend bool operator==(const CRect& a, const CRect& b) { return a.EqualRect(&b) != 0; }
};
