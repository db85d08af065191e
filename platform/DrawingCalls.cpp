#include "platform/DrawingCalls.h"

namespace zmr {
namespace {

/// The text extents of tabs come in two 16-bit halves.
CSize size_of_words(DWORD words)
{
    return {static_cast<int>(LOWORD(words)), static_cast<int>(HIWORD(words))};
}

}  // namespace

CPoint DrawingCalls::SetViewportOrg(int x, int y)
{
    CPoint former;
    ::SetViewportOrgEx(m_hDC, x, y, &former);
    return former;
}

CPoint DrawingCalls::OffsetViewportOrg(int dx, int dy)
{
    CPoint former;
    ::OffsetViewportOrgEx(m_hDC, dx, dy, &former);
    return former;
}

CPoint DrawingCalls::SetWindowOrg(int x, int y)
{
    CPoint former;
    ::SetWindowOrgEx(m_hDC, x, y, &former);
    return former;
}

CPoint DrawingCalls::OffsetWindowOrg(int dx, int dy)
{
    CPoint former;
    ::OffsetWindowOrgEx(m_hDC, dx, dy, &former);
    return former;
}

CSize DrawingCalls::SetViewportExt(int width, int height)
{
    CSize former;
    ::SetViewportExtEx(m_hDC, width, height, &former);
    return former;
}

CSize DrawingCalls::SetWindowExt(int width, int height)
{
    CSize former;
    ::SetWindowExtEx(m_hDC, width, height, &former);
    return former;
}

CPoint DrawingCalls::SetBrushOrg(int x, int y)
{
    CPoint former;
    ::SetBrushOrgEx(m_hDC, x, y, &former);
    return former;
}

CPoint DrawingCalls::GetViewportOrg() const
{
    CPoint origin;
    ::GetViewportOrgEx(m_hDC, &origin);
    return origin;
}

CPoint DrawingCalls::GetWindowOrg() const
{
    CPoint origin;
    ::GetWindowOrgEx(m_hDC, &origin);
    return origin;
}

CPoint DrawingCalls::MoveTo(int x, int y)
{
    CPoint former;
    ::MoveToEx(m_hDC, x, y, &former);
    return former;
}

CPoint DrawingCalls::GetCurrentPosition() const
{
    CPoint place;
    ::GetCurrentPositionEx(m_hDC, &place);
    return place;
}

void DrawingCalls::FillSolidRect(LPCRECT rect, COLORREF color)
{
    const COLORREF former = ::SetBkColor(m_hDC, color);
    ::ExtTextOut(m_hDC, 0, 0, ETO_OPAQUE, rect, nullptr, 0, nullptr);
    ::SetBkColor(m_hDC, former);
}

void DrawingCalls::FillSolidRect(int x, int y, int width, int height, COLORREF color)
{
    const RECT rect{x, y, x + width, y + height};
    FillSolidRect(&rect, color);
}

void DrawingCalls::Draw3dRect(LPCRECT rect, COLORREF top_left, COLORREF bottom_right)
{
    Draw3dRect(rect->left, rect->top, rect->right - rect->left, rect->bottom - rect->top, top_left,
               bottom_right);
}

void DrawingCalls::Draw3dRect(int x, int y, int width, int height, COLORREF top_left,
                              COLORREF bottom_right)
{
    FillSolidRect(x, y, width - 1, 1, top_left);
    FillSolidRect(x, y, 1, height - 1, top_left);
    FillSolidRect(x + width - 1, y, 1, height, bottom_right);
    FillSolidRect(x, y + height - 1, width, 1, bottom_right);
}

CSize DrawingCalls::GetTextExtent(LPCTSTR text, int length) const
{
    CSize extent;
    ::GetTextExtentPoint32(m_hDC, text, length, &extent);
    return extent;
}

CSize DrawingCalls::GetTabbedTextExtent(LPCTSTR text, int length, int stop_count,
                                        const int* stops) const
{
    return size_of_words(::GetTabbedTextExtent(m_hDC, text, length, stop_count, stops));
}

CSize DrawingCalls::TabbedTextOut(int x, int y, LPCTSTR text, int length, int stop_count,
                                  const int* stops, int tab_origin)
{
    return size_of_words(::TabbedTextOut(m_hDC, x, y, text, length, stop_count, stops, tab_origin));
}

}  // namespace zmr
