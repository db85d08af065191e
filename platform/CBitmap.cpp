#include "platform/CBitmap.h"

#include "platform/AfxResources.h"
#include "platform/CDC.h"

IMPLEMENT_DYNCREATE(CBitmap, CGdiObject)

BOOL CBitmap::LoadBitmap(LPCTSTR name)
{
    return take(::LoadBitmap(AfxFindResourceHandle(name, RT_BITMAP), name));
}

BOOL CBitmap::CreateCompatibleBitmap(CDC* dc, int width, int height)
{
    return dc != nullptr && take(::CreateCompatibleBitmap(dc->m_hDC, width, height));
}

BOOL CBitmap::CreateDIBSection(const BITMAPINFO* description, void** bits)
{
    return take(::CreateDIBSection(nullptr, description, DIB_RGB_COLORS, bits, nullptr, 0));
}

CSize CBitmap::size() const
{
    BITMAP description{};
    if (GetBitmap(&description) == 0)
        return {0, 0};
    return {description.bmWidth, description.bmHeight};
}
