#include "platform/CBrush.h"

#include "platform/CBitmap.h"
#include "platform/CResourceException.h"

IMPLEMENT_DYNCREATE(CBrush, CGdiObject)

CBrush::CBrush(COLORREF color)
{
    if (!CreateSolidBrush(color))
        AfxThrowResourceException();
}

CBrush::CBrush(int hatch, COLORREF color)
{
    if (!CreateHatchBrush(hatch, color))
        AfxThrowResourceException();
}

CBrush::CBrush(CBitmap* pattern)
{
    if (!CreatePatternBrush(pattern))
        AfxThrowResourceException();
}

BOOL CBrush::CreatePatternBrush(CBitmap* pattern)
{
    return pattern != nullptr && take(::CreatePatternBrush(*pattern));
}
