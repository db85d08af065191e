#include "platform/CPen.h"

#include "platform/CResourceException.h"

IMPLEMENT_DYNCREATE(CPen, CGdiObject)

CPen::CPen(int style, int width, COLORREF color)
{
    if (!CreatePen(style, width, color))
        AfxThrowResourceException();
}

BOOL CPen::CreatePen(int style, int width, COLORREF color)
{
    return take(::CreatePen(style, width, color));
}

BOOL CPen::CreatePen(int style, int width, const LOGBRUSH* brush, int dash_count,
                     const DWORD* dashes)
{
    return take(::ExtCreatePen(static_cast<DWORD>(style), static_cast<DWORD>(width), brush,
                               static_cast<DWORD>(dash_count), dashes));
}
