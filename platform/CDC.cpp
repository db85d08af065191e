#include "platform/CDC.h"

#include "platform/CBitmap.h"
#include "platform/CBrush.h"
#include "platform/CFont.h"
#include "platform/CPen.h"
#include "platform/CRgn.h"
#include "platform/CWnd.h"
#include "platform/ThreadState.h"

#include <utility>

IMPLEMENT_DYNCREATE(CDC, CObject)

namespace {

/// Selects the object and gives the former one.
HGDIOBJ select(HDC dc, const CGdiObject* object)
{
    if (object == nullptr || object->m_hObject == nullptr)
        return nullptr;
    return ::SelectObject(dc, object->m_hObject);
}

HRGN region_of(const CRgn* region)
{
    return region != nullptr ? static_cast<HRGN>(*region) : nullptr;
}

HBRUSH brush_of(const CBrush* brush)
{
    return brush != nullptr ? static_cast<HBRUSH>(*brush) : nullptr;
}

}  // namespace

CDC::~CDC()
{
    DeleteDC();
}

BOOL CDC::Attach(HDC dc)
{
    if (dc == nullptr || m_hDC != nullptr)
        return FALSE;
    zmr::ThreadState::current().device_contexts.set_permanent(dc, this);
    m_hDC = dc;
    return TRUE;
}

HDC CDC::Detach()
{
    if (m_hDC != nullptr)
        zmr::ThreadState::current().device_contexts.remove_permanent(m_hDC);
    return std::exchange(m_hDC, nullptr);
}

BOOL CDC::CreateCompatibleDC(CDC* dc)
{
    if (m_hDC != nullptr)
        return FALSE;
    return Attach(::CreateCompatibleDC(dc != nullptr ? dc->m_hDC : nullptr));
}

BOOL CDC::CreateDC(LPCTSTR driver, LPCTSTR device, LPCTSTR output, const void* init_data)
{
    if (m_hDC != nullptr)
        return FALSE;
    return Attach(::CreateDC(driver, device, output, static_cast<const DEVMODE*>(init_data)));
}

BOOL CDC::DeleteDC()
{
    const HDC dc = Detach();
    return dc != nullptr && ::DeleteDC(dc);
}

CDC* CDC::FromHandle(HDC dc)
{
    return zmr::ThreadState::current().device_contexts.from_handle<&CDC::m_hDC>(dc);
}

HDC CDC::GetSafeHdc() const
{
    return this == nullptr ? nullptr : m_hDC;
}

CWnd* CDC::GetWindow() const
{
    return CWnd::FromHandle(::WindowFromDC(m_hDC));
}

CPen* CDC::SelectObject(CPen* pen)
{
    return CPen::FromHandle(static_cast<HPEN>(select(m_hDC, pen)));
}

CBrush* CDC::SelectObject(CBrush* brush)
{
    return CBrush::FromHandle(static_cast<HBRUSH>(select(m_hDC, brush)));
}

CFont* CDC::SelectObject(CFont* font)
{
    return CFont::FromHandle(static_cast<HFONT>(select(m_hDC, font)));
}

CBitmap* CDC::SelectObject(CBitmap* bitmap)
{
    return CBitmap::FromHandle(static_cast<HBITMAP>(select(m_hDC, bitmap)));
}

CGdiObject* CDC::SelectObject(CGdiObject* object)
{
    // Of a region the system gives a number, not an object.
    if (object != nullptr && object->GetObjectType() == OBJ_REGION)
        return nullptr;
    return CGdiObject::FromHandle(select(m_hDC, object));
}

CGdiObject* CDC::SelectStockObject(int code)
{
    return CGdiObject::FromHandle(::SelectObject(m_hDC, ::GetStockObject(code)));
}

CPen* CDC::GetCurrentPen() const
{
    return CPen::FromHandle(static_cast<HPEN>(::GetCurrentObject(m_hDC, OBJ_PEN)));
}

CBrush* CDC::GetCurrentBrush() const
{
    return CBrush::FromHandle(static_cast<HBRUSH>(::GetCurrentObject(m_hDC, OBJ_BRUSH)));
}

CFont* CDC::GetCurrentFont() const
{
    return CFont::FromHandle(static_cast<HFONT>(::GetCurrentObject(m_hDC, OBJ_FONT)));
}

CBitmap* CDC::GetCurrentBitmap() const
{
    return CBitmap::FromHandle(static_cast<HBITMAP>(::GetCurrentObject(m_hDC, OBJ_BITMAP)));
}

int CDC::SelectClipRgn(CRgn* region)
{
    return ::SelectClipRgn(m_hDC, region_of(region));
}

int CDC::SelectClipRgn(CRgn* region, int how)
{
    return ::ExtSelectClipRgn(m_hDC, region_of(region), how);
}

void CDC::FillRect(LPCRECT rect, CBrush* brush)
{
    ::FillRect(m_hDC, rect, brush_of(brush));
}

void CDC::FrameRect(LPCRECT rect, CBrush* brush)
{
    ::FrameRect(m_hDC, rect, brush_of(brush));
}

BOOL CDC::FillRgn(CRgn* region, CBrush* brush)
{
    return ::FillRgn(m_hDC, region_of(region), brush_of(brush));
}

BOOL CDC::GrayString(CBrush* brush, LPCTSTR text, int length, int x, int y, int width, int height)
{
    return ::GrayString(m_hDC, brush_of(brush), nullptr, reinterpret_cast<LPARAM>(text), length, x,
                        y, width, height);
}

BOOL CDC::DrawState(POINT place, SIZE size, HBITMAP bitmap, UINT flags, HBRUSH brush)
{
    return ::DrawState(m_hDC, brush, nullptr, reinterpret_cast<LPARAM>(bitmap), 0, place.x, place.y,
                       size.cx, size.cy, flags | DST_BITMAP);
}

BOOL CDC::DrawState(POINT place, SIZE size, HICON icon, UINT flags, HBRUSH brush)
{
    return ::DrawState(m_hDC, brush, nullptr, reinterpret_cast<LPARAM>(icon), 0, place.x, place.y,
                       size.cx, size.cy, flags | DST_ICON);
}

BOOL CDC::DrawState(POINT place, SIZE size, LPCTSTR text, UINT flags, BOOL prefix, int length,
                    HBRUSH brush)
{
    const UINT kind = prefix ? DST_PREFIXTEXT : DST_TEXT;
    return ::DrawState(m_hDC, brush, nullptr, reinterpret_cast<LPARAM>(text),
                       static_cast<WPARAM>(length), place.x, place.y, size.cx, size.cy,
                       flags | kind);
}

BOOL CDC::BitBlt(int x, int y, int width, int height, CDC* source, int source_x, int source_y,
                 DWORD operation)
{
    return source != nullptr &&
           ::BitBlt(m_hDC, x, y, width, height, source->m_hDC, source_x, source_y, operation);
}

BOOL CDC::StretchBlt(int x, int y, int width, int height, CDC* source, int source_x, int source_y,
                     int source_width, int source_height, DWORD operation)
{
    return source != nullptr && ::StretchBlt(m_hDC, x, y, width, height, source->m_hDC, source_x,
                                             source_y, source_width, source_height, operation);
}

BOOL CDC::TransparentBlt(int x, int y, int width, int height, CDC* source, int source_x,
                         int source_y, int source_width, int source_height, UINT transparent)
{
    return source != nullptr &&
           ::TransparentBlt(m_hDC, x, y, width, height, source->m_hDC, source_x, source_y,
                            source_width, source_height, transparent);
}
