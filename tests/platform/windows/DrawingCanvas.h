#pragma once

#include "platform/CBitmap.h"
#include "platform/CDC.h"

/// A context in memory with a picture of 32 bits a pixel to draw on, black at first.
class DrawingCanvas {
public:
    DrawingCanvas(int width, int height);
    ~DrawingCanvas();
    DrawingCanvas(const DrawingCanvas&) = delete;
    DrawingCanvas& operator=(const DrawingCanvas&) = delete;

    [[nodiscard]] COLORREF pixel(int x, int y) const { return ::GetPixel(dc.m_hDC, x, y); }
    /// How many pixels have the colour.
    [[nodiscard]] int count(COLORREF color) const;

    CDC dc;

private:
    int width_;
    int height_;
    CBitmap picture_;
    CBitmap* former_ = nullptr;
};

inline constexpr COLORREF kRed = RGB(255, 0, 0);
inline constexpr COLORREF kGreen = RGB(0, 255, 0);
inline constexpr COLORREF kBlue = RGB(0, 0, 255);
inline constexpr COLORREF kBlack = RGB(0, 0, 0);
inline constexpr COLORREF kWhite = RGB(255, 255, 255);
