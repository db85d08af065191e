#pragma once

#include "platform/CPoint.h"
#include "platform/CRect.h"
#include "platform/CSize.h"
#include "platform/CString.h"
#include "platform/Windows.h"

namespace zmr {

/// The handle of a device context with the system's calls on it that need nothing but plain values,
/// each of which does what the function of its name does. Coordinates are logical ones.
class ZMR_GV_API DrawingCalls {
public:
    HDC m_hDC = nullptr;

    [[nodiscard]] operator HDC() const { return m_hDC; }
    [[nodiscard]] int GetDeviceCaps(int index) const { return ::GetDeviceCaps(m_hDC, index); }

    // State.

    /// The level to restore; 0 on failure.
    int SaveDC() { return ::SaveDC(m_hDC); }
    /// -1 is the last level that was saved.
    BOOL RestoreDC(int level) { return ::RestoreDC(m_hDC, level); }
    COLORREF SetTextColor(COLORREF color) { return ::SetTextColor(m_hDC, color); }
    [[nodiscard]] COLORREF GetTextColor() const { return ::GetTextColor(m_hDC); }
    COLORREF SetBkColor(COLORREF color) { return ::SetBkColor(m_hDC, color); }
    [[nodiscard]] COLORREF GetBkColor() const { return ::GetBkColor(m_hDC); }
    int SetBkMode(int mode) { return ::SetBkMode(m_hDC, mode); }
    [[nodiscard]] int GetBkMode() const { return ::GetBkMode(m_hDC); }
    int SetROP2(int mode) { return ::SetROP2(m_hDC, mode); }
    [[nodiscard]] int GetROP2() const { return ::GetROP2(m_hDC); }
    int SetStretchBltMode(int mode) { return ::SetStretchBltMode(m_hDC, mode); }
    UINT SetTextAlign(UINT flags) { return ::SetTextAlign(m_hDC, flags); }
    [[nodiscard]] UINT GetTextAlign() const { return ::GetTextAlign(m_hDC); }
    DWORD SetLayout(DWORD layout) { return ::SetLayout(m_hDC, layout); }

    // Mapping.

    int SetMapMode(int mode) { return ::SetMapMode(m_hDC, mode); }
    [[nodiscard]] int GetMapMode() const { return ::GetMapMode(m_hDC); }
    /// These give the former values.
    CPoint SetViewportOrg(int x, int y);
    CPoint SetViewportOrg(POINT point) { return SetViewportOrg(point.x, point.y); }
    CPoint OffsetViewportOrg(int dx, int dy);
    CPoint SetWindowOrg(int x, int y);
    CPoint SetWindowOrg(POINT point) { return SetWindowOrg(point.x, point.y); }
    CPoint OffsetWindowOrg(int dx, int dy);
    CSize SetViewportExt(int width, int height);
    CSize SetWindowExt(int width, int height);
    CPoint SetBrushOrg(int x, int y);
    [[nodiscard]] CPoint GetViewportOrg() const;
    [[nodiscard]] CPoint GetWindowOrg() const;
    void DPtoLP(LPPOINT points, int count = 1) const { ::DPtoLP(m_hDC, points, count); }
    void DPtoLP(LPRECT rect) const { ::DPtoLP(m_hDC, reinterpret_cast<LPPOINT>(rect), 2); }
    void LPtoDP(LPPOINT points, int count = 1) const { ::LPtoDP(m_hDC, points, count); }
    void LPtoDP(LPRECT rect) const { ::LPtoDP(m_hDC, reinterpret_cast<LPPOINT>(rect), 2); }

    // Clipping: NULLREGION, SIMPLEREGION or COMPLEXREGION; ERROR on failure.

    int GetClipBox(LPRECT box) const { return ::GetClipBox(m_hDC, box); }
    int IntersectClipRect(int left, int top, int right, int bottom)
    {
        return ::IntersectClipRect(m_hDC, left, top, right, bottom);
    }
    int IntersectClipRect(LPCRECT rect)
    {
        return IntersectClipRect(rect->left, rect->top, rect->right, rect->bottom);
    }
    int ExcludeClipRect(int left, int top, int right, int bottom)
    {
        return ::ExcludeClipRect(m_hDC, left, top, right, bottom);
    }
    int ExcludeClipRect(LPCRECT rect)
    {
        return ExcludeClipRect(rect->left, rect->top, rect->right, rect->bottom);
    }
    [[nodiscard]] BOOL PtVisible(POINT point) const { return ::PtVisible(m_hDC, point.x, point.y); }
    [[nodiscard]] BOOL RectVisible(LPCRECT rect) const { return ::RectVisible(m_hDC, rect); }

    // Lines and shapes, with the pen and the brush that are selected.

    CPoint MoveTo(int x, int y);
    CPoint MoveTo(POINT point) { return MoveTo(point.x, point.y); }
    [[nodiscard]] CPoint GetCurrentPosition() const;
    BOOL LineTo(int x, int y) { return ::LineTo(m_hDC, x, y); }
    BOOL LineTo(POINT point) { return LineTo(point.x, point.y); }
    BOOL Polyline(const POINT* points, int count) { return ::Polyline(m_hDC, points, count); }
    BOOL Polygon(const POINT* points, int count) { return ::Polygon(m_hDC, points, count); }
    BOOL Rectangle(int left, int top, int right, int bottom)
    {
        return ::Rectangle(m_hDC, left, top, right, bottom);
    }
    BOOL Rectangle(LPCRECT rect)
    {
        return Rectangle(rect->left, rect->top, rect->right, rect->bottom);
    }
    BOOL RoundRect(LPCRECT rect, POINT corner)
    {
        return ::RoundRect(m_hDC, rect->left, rect->top, rect->right, rect->bottom, corner.x,
                           corner.y);
    }
    BOOL Ellipse(int left, int top, int right, int bottom)
    {
        return ::Ellipse(m_hDC, left, top, right, bottom);
    }
    BOOL Ellipse(LPCRECT rect) { return Ellipse(rect->left, rect->top, rect->right, rect->bottom); }
    BOOL PatBlt(int x, int y, int width, int height, DWORD operation)
    {
        return ::PatBlt(m_hDC, x, y, width, height, operation);
    }
    /// One colour without a brush; the background colour is kept.
    void FillSolidRect(LPCRECT rect, COLORREF color);
    void FillSolidRect(int x, int y, int width, int height, COLORREF color);
    /// A border one unit wide inside the rectangle.
    void Draw3dRect(LPCRECT rect, COLORREF top_left, COLORREF bottom_right);
    void Draw3dRect(int x, int y, int width, int height, COLORREF top_left, COLORREF bottom_right);
    BOOL InvertRect(LPCRECT rect) { return ::InvertRect(m_hDC, rect); }
    void DrawFocusRect(LPCRECT rect) { ::DrawFocusRect(m_hDC, rect); }
    BOOL DrawEdge(LPRECT rect, UINT edge, UINT flags)
    {
        return ::DrawEdge(m_hDC, rect, edge, flags);
    }
    BOOL DrawFrameControl(LPRECT rect, UINT kind, UINT state)
    {
        return ::DrawFrameControl(m_hDC, rect, kind, state);
    }
    BOOL DrawIcon(int x, int y, HICON icon) { return ::DrawIcon(m_hDC, x, y, icon); }
    BOOL DrawIcon(POINT point, HICON icon) { return DrawIcon(point.x, point.y, icon); }
    [[nodiscard]] COLORREF GetPixel(int x, int y) const { return ::GetPixel(m_hDC, x, y); }
    [[nodiscard]] COLORREF GetPixel(POINT point) const { return GetPixel(point.x, point.y); }
    COLORREF SetPixel(int x, int y, COLORREF color) { return ::SetPixel(m_hDC, x, y, color); }
    BOOL SetPixelV(int x, int y, COLORREF color) { return ::SetPixelV(m_hDC, x, y, color); }

    // Text, with the font that is selected.

    BOOL TextOut(int x, int y, LPCTSTR text, int length)
    {
        return ::TextOut(m_hDC, x, y, text, length);
    }
    BOOL TextOut(int x, int y, const CString& text)
    {
        return TextOut(x, y, text, text.GetLength());
    }
    BOOL ExtTextOut(int x, int y, UINT flags, LPCRECT rect, LPCTSTR text, UINT length,
                    const int* widths)
    {
        return ::ExtTextOut(m_hDC, x, y, flags, rect, text, length, widths);
    }
    BOOL ExtTextOut(int x, int y, UINT flags, LPCRECT rect, const CString& text, const int* widths)
    {
        return ExtTextOut(x, y, flags, rect, text, static_cast<UINT>(text.GetLength()), widths);
    }
    /// The text's height. With DT_MODIFYSTRING the text needs room for four bytes more.
    int DrawText(LPCTSTR text, int length, LPRECT rect, UINT format)
    {
        return ::DrawText(m_hDC, text, length, rect, format);
    }
    int DrawText(const CString& text, LPRECT rect, UINT format)
    {
        return DrawText(text, text.GetLength(), rect, format);
    }
    [[nodiscard]] CSize GetTextExtent(LPCTSTR text, int length) const;
    [[nodiscard]] CSize GetTextExtent(const CString& text) const
    {
        return GetTextExtent(text, text.GetLength());
    }
    /// `stops` are in logical units from the left of the text; none means eight average characters.
    [[nodiscard]] CSize GetTabbedTextExtent(LPCTSTR text, int length, int stop_count,
                                            const int* stops) const;
    CSize TabbedTextOut(int x, int y, LPCTSTR text, int length, int stop_count, const int* stops,
                        int tab_origin);
    BOOL GetTextMetrics(LPTEXTMETRIC metrics) const { return ::GetTextMetrics(m_hDC, metrics); }
    int GetTextFace(int size, LPSTR face) const { return ::GetTextFace(m_hDC, size, face); }
    BOOL GetCharWidth(UINT first, UINT last, int* widths) const
    {
        return ::GetCharWidth32(m_hDC, first, last, widths);
    }

protected:
    DrawingCalls() = default;
    ~DrawingCalls() = default;
};

}  // namespace zmr
