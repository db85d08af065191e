#pragma once

#include "platform/PlatformRecordsOfLane.h"

/// A width and a height.
class CSize : public tagSIZE {
public:
    CSize() : tagSIZE{0, 0} {}
    CSize(int width, int height) : tagSIZE{width, height} {}
    CSize(const tagSIZE& size) : tagSIZE(size) {}

    CSize& operator+=(const tagSIZE& other)
    {
        cx += other.cx;
        cy += other.cy;
        return *this;
    }
    CSize& operator-=(const tagSIZE& other)
    {
        cx -= other.cx;
        cy -= other.cy;
        return *this;
    }
    [[nodiscard]] CSize operator-() const { return {static_cast<int>(-cx), static_cast<int>(-cy)}; }
    friend CSize operator+(CSize a, const CSize& b) { return a += b; }
    friend CSize operator-(CSize a, const CSize& b) { return a -= b; }
    friend bool operator==(const CSize& a, const CSize& b) { return a.cx == b.cx && a.cy == b.cy; }
};
