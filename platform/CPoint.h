#pragma once

#include "platform/CSize.h"

/// A position; differences of positions are sizes.
class CPoint : public tagPOINT {
public:
    CPoint() : tagPOINT{0, 0} {}
    CPoint(int left, int top) : tagPOINT{left, top} {}
    CPoint(const tagPOINT& point) : tagPOINT(point) {}
    explicit CPoint(const tagSIZE& size) : tagPOINT{size.cx, size.cy} {}
    explicit CPoint(const tagPOINTS& point) : tagPOINT{point.x, point.y} {}

    void Offset(int dx, int dy)
    {
        x += dx;
        y += dy;
    }
    void Offset(const tagSIZE& by) { *this += by; }
    void SetPoint(int left, int top)
    {
        x = left;
        y = top;
    }
    CPoint& operator+=(const tagSIZE& by)
    {
        x += by.cx;
        y += by.cy;
        return *this;
    }
    CPoint& operator-=(const tagSIZE& by)
    {
        x -= by.cx;
        y -= by.cy;
        return *this;
    }
    CPoint& operator+=(const tagPOINT& by) { return *this += CSize(by.x, by.y); }
    CPoint& operator-=(const tagPOINT& by) { return *this -= CSize(by.x, by.y); }
    [[nodiscard]] CPoint operator-() const { return {static_cast<int>(-x), static_cast<int>(-y)}; }
    friend CPoint operator+(CPoint a, const CSize& by) { return a += by; }
    friend CPoint operator-(CPoint a, const CSize& by) { return a -= by; }
    friend CPoint operator+(CPoint a, const CPoint& by) { return a += by; }
    friend CSize operator-(const CPoint& a, const CPoint& b)
    {
        return {static_cast<int>(a.x - b.x), static_cast<int>(a.y - b.y)};
    }
    friend bool operator==(const CPoint& a, const CPoint& b) { return a.x == b.x && a.y == b.y; }
};
