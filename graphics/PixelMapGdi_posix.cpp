#include "graphics/PixelMap.h"

#include "platform/CNotSupportedException.h"

void PixelMap::CloseBitmap::operator()(HBITMAP) const noexcept {}

void PixelMap::stretch(HDC, int, int, int, int, int, int, int, int) const
{
    AfxThrowNotSupportedException();
}

HBITMAP PixelMap::create_handle()
{
    return nullptr;
}
