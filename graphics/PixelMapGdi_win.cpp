#include "graphics/PixelMap.h"

#include "graphics/StretchPart.h"
#include "platform/Handles.h"

#include <cstring>

namespace {

struct DeleteBitmap {
    static void close(HBITMAP bitmap) noexcept { ::DeleteObject(bitmap); }
};
using OwnedBitmap = zmr::Owned<HBITMAP, DeleteBitmap>;
struct DeleteMemoryDC {
    static void close(HDC dc) noexcept { ::DeleteDC(dc); }
};
using OwnedMemoryDC = zmr::Owned<HDC, DeleteMemoryDC>;

/// Puts an object into a device context for a scope.
class SelectedObject {
public:
    SelectedObject(HDC dc, HGDIOBJ object) : dc_(dc), former_(::SelectObject(dc, object)) {}
    ~SelectedObject() { ::SelectObject(dc_, former_); }
    SelectedObject(const SelectedObject&) = delete;
    SelectedObject& operator=(const SelectedObject&) = delete;

private:
    HDC dc_;
    HGDIOBJ former_;
};

BITMAPINFO header_of(int width, int height, int channels)
{
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;  // the top row first
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = static_cast<WORD>(channels * 8);
    info.bmiHeader.biCompression = BI_RGB;
    return info;
}

unsigned char multiplied(int color, int alpha)
{
    return static_cast<unsigned char>((color * alpha + 127) / 255);
}

/// A bitmap of the part of the pixels at (`x`, `y`); with `multiply` the colours are multiplied by
/// their alpha, as blending wants them. Null on failure.
OwnedBitmap make_bitmap(const zmr::PixelBuffer& pixels, int x, int y, int width, int height,
                        bool multiply)
{
    const BITMAPINFO info = header_of(width, height, pixels.channels());
    void* bits = nullptr;
    OwnedBitmap bitmap(::CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    if (!bitmap)
        return bitmap;
    const std::size_t used =
        static_cast<std::size_t>(width) * static_cast<std::size_t>(pixels.channels());
    const std::size_t stride = (used + 3) / 4 * 4;
    for (int row = 0; row < height; ++row) {
        auto* to = static_cast<unsigned char*>(bits) + static_cast<std::size_t>(row) * stride;
        const unsigned char* from = pixels.pixel(x, y + row);
        std::memcpy(to, from, used);
        for (int column = 0; multiply && column < width; ++column, to += 4)
            for (int part = 0; part < 3; ++part)
                to[part] = multiplied(to[part], to[3]);
    }
    return bitmap;
}

}  // namespace

void PixelMap::CloseBitmap::operator()(HBITMAP bitmap) const noexcept
{
    ::DeleteObject(bitmap);
}

void PixelMap::stretch(HDC dc, int x, int y, int width, int height, int left, int top, int right,
                       int bottom) const
{
    zmr::StretchPart part{x, y, width, height, left, top, right, bottom};
    if (dc == nullptr || !zmr::clip_to_map(part, get_width(), get_height()))
        return;
    const OwnedBitmap bitmap =
        make_bitmap(pixels_, part.x, part.y, part.width, part.height, pixels_.has_alpha());
    const OwnedMemoryDC memory(::CreateCompatibleDC(dc));
    if (!bitmap || !memory)
        return;  // nothing is drawn, as when the system itself lacks room
    const SelectedObject selected(memory.get(), bitmap.get());
    const int drawn_width = part.right - part.left;
    const int drawn_height = part.bottom - part.top;
    if (!pixels_.has_alpha()) {
        ::StretchBlt(dc, part.left, part.top, drawn_width, drawn_height, memory.get(), 0, 0,
                     part.width, part.height, SRCCOPY);
        return;
    }
    const BLENDFUNCTION over = {AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
    ::AlphaBlend(dc, part.left, part.top, drawn_width, drawn_height, memory.get(), 0, 0, part.width,
                 part.height, over);
}

HBITMAP PixelMap::create_handle()
{
    if (!handle_ && !pixels_.is_empty())
        handle_.reset(make_bitmap(pixels_, 0, 0, get_width(), get_height(), false).release());
    return handle_.get();
}
