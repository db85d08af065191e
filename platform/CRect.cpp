#include "platform/CRect.h"

#include <algorithm>
#include <utility>

CPoint CRect::CenterPoint() const
{
    return {static_cast<int>((left + right) / 2), static_cast<int>((top + bottom) / 2)};
}

BOOL CRect::IsRectNull() const
{
    return left == 0 && top == 0 && right == 0 && bottom == 0;
}

BOOL CRect::PtInRect(const tagPOINT& point) const
{
    return point.x >= left && point.x < right && point.y >= top && point.y < bottom;
}

void CRect::SetRect(int left_edge, int top_edge, int right_edge, int bottom_edge)
{
    left = left_edge;
    top = top_edge;
    right = right_edge;
    bottom = bottom_edge;
}

BOOL CRect::EqualRect(const tagRECT* rect) const
{
    return left == rect->left && top == rect->top && right == rect->right && bottom == rect->bottom;
}

void CRect::InflateRect(const tagSIZE& by)
{
    InflateRect(static_cast<int>(by.cx), static_cast<int>(by.cy));
}

void CRect::InflateRect(int by_left, int by_top, int by_right, int by_bottom)
{
    left -= by_left;
    top -= by_top;
    right += by_right;
    bottom += by_bottom;
}

void CRect::DeflateRect(const tagSIZE& by)
{
    DeflateRect(static_cast<int>(by.cx), static_cast<int>(by.cy));
}

void CRect::DeflateRect(int by_left, int by_top, int by_right, int by_bottom)
{
    InflateRect(-by_left, -by_top, -by_right, -by_bottom);
}

void CRect::OffsetRect(int dx, int dy)
{
    InflateRect(-dx, -dy, dx, dy);
}

void CRect::OffsetRect(const tagSIZE& by)
{
    OffsetRect(static_cast<int>(by.cx), static_cast<int>(by.cy));
}

void CRect::OffsetRect(const tagPOINT& by)
{
    OffsetRect(static_cast<int>(by.x), static_cast<int>(by.y));
}

void CRect::MoveToXY(int x, int y)
{
    OffsetRect(x - static_cast<int>(left), y - static_cast<int>(top));
}

void CRect::NormalizeRect()
{
    if (left > right)
        std::swap(left, right);
    if (top > bottom)
        std::swap(top, bottom);
}

BOOL CRect::IntersectRect(const tagRECT* a, const tagRECT* b)
{
    const CRect common(static_cast<int>(std::max(a->left, b->left)),
                       static_cast<int>(std::max(a->top, b->top)),
                       static_cast<int>(std::min(a->right, b->right)),
                       static_cast<int>(std::min(a->bottom, b->bottom)));
    // Of an empty rectangle nothing is common with anything, wherever its edges are.
    if (CRect(a).IsRectEmpty() || CRect(b).IsRectEmpty() || common.IsRectEmpty()) {
        SetRectEmpty();
        return 0;
    }
    *this = common;
    return 1;
}

BOOL CRect::UnionRect(const tagRECT* a, const tagRECT* b)
{
    const CRect first(a);
    const CRect second(b);
    if (first.IsRectEmpty() && second.IsRectEmpty()) {
        SetRectEmpty();
        return 0;
    }
    if (first.IsRectEmpty())
        *this = second;
    else if (second.IsRectEmpty())
        *this = first;
    else
        SetRect(static_cast<int>(std::min(first.left, second.left)),
                static_cast<int>(std::min(first.top, second.top)),
                static_cast<int>(std::max(first.right, second.right)),
                static_cast<int>(std::max(first.bottom, second.bottom)));
    return 1;
}

CRect& CRect::operator&=(const tagRECT& other)
{
    IntersectRect(this, &other);
    return *this;
}

CRect& CRect::operator|=(const tagRECT& other)
{
    UnionRect(this, &other);
    return *this;
}
