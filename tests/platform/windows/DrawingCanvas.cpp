#include "tests/platform/windows/DrawingCanvas.h"

DrawingCanvas::DrawingCanvas(int width, int height) : width_(width), height_(height)
{
    BITMAPINFO description{};
    description.bmiHeader.biSize = sizeof description.bmiHeader;
    description.bmiHeader.biWidth = width;
    description.bmiHeader.biHeight = -height;
    description.bmiHeader.biPlanes = 1;
    description.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    picture_.CreateDIBSection(&description, &bits);
    dc.CreateCompatibleDC(nullptr);
    former_ = dc.SelectObject(&picture_);
}

DrawingCanvas::~DrawingCanvas()
{
    dc.SelectObject(former_);
}

int DrawingCanvas::count(COLORREF color) const
{
    int found = 0;
    for (int y = 0; y < height_; ++y)
        for (int x = 0; x < width_; ++x)
            if (pixel(x, y) == color)
                ++found;
    return found;
}
