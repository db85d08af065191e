#pragma once

#include "platform/CObject.h"
#include "platform/DrawingCalls.h"
#include "platform/Windows.h"

class CBitmap;
class CBrush;
class CFont;
class CGdiObject;
class CPen;
class CRgn;
class CWnd;

/// A device context: where drawing goes, with the objects that it is done with. One that was made
/// or attached is deleted with this object; CClientDC, CWindowDC and CPaintDC give theirs back to
/// the window instead. An object serves the thread that attached its handle. The objects that calls
/// here give back are borrowed, and perhaps temporary.
class ZMR_GV_API CDC : public CObject, public zmr::DrawingCalls {
    DECLARE_DYNCREATE(CDC)

public:
    CDC() = default;
    ~CDC() override;

    /// Takes `dc` over. FALSE, with nothing changed, when it is null or this object has one.
    BOOL Attach(HDC dc);
    /// Gives the handle up to the caller.
    HDC Detach();
    /// A context in memory, with the device's colours once a bitmap that fits is selected. Null
    /// means the screen.
    BOOL CreateCompatibleDC(CDC* dc);
    BOOL CreateDC(LPCTSTR driver, LPCTSTR device, LPCTSTR output, const void* init_data);
    /// Ends a context that was made. FALSE when there was none.
    BOOL DeleteDC();
    /// The object that attached the handle in this thread, else a temporary one, which lives until
    /// the thread's next idle turn. Null for null.
    [[nodiscard]] static CDC* FromHandle(HDC dc);
    /// Null also when called on a null pointer.
    [[nodiscard]] HDC GetSafeHdc() const;
    /// The window whose context this is; null for a context in memory.
    [[nodiscard]] CWnd* GetWindow() const;

    // Each gives the object that was selected before, null on failure and for null.

    CPen* SelectObject(CPen* pen);
    CBrush* SelectObject(CBrush* brush);
    virtual CFont* SelectObject(CFont* font);
    /// Only into a context in memory, and only one that is selected nowhere else.
    CBitmap* SelectObject(CBitmap* bitmap);
    CGdiObject* SelectObject(CGdiObject* object);
    /// The clipping becomes a copy of the region: NULLREGION, SIMPLEREGION ...; ERROR on failure.
    int SelectObject(CRgn* region) { return SelectClipRgn(region); }
    virtual CGdiObject* SelectStockObject(int code);

    [[nodiscard]] CPen* GetCurrentPen() const;
    [[nodiscard]] CBrush* GetCurrentBrush() const;
    [[nodiscard]] CFont* GetCurrentFont() const;
    [[nodiscard]] CBitmap* GetCurrentBitmap() const;

    /// Null ends all clipping.
    int SelectClipRgn(CRgn* region);
    /// `how` is RGN_AND, RGN_OR ...
    int SelectClipRgn(CRgn* region, int how);

    void FillRect(LPCRECT rect, CBrush* brush);
    /// A border one unit wide inside the rectangle.
    void FrameRect(LPCRECT rect, CBrush* brush);
    BOOL FillRgn(CRgn* region, CBrush* brush);
    /// A text in the colours of what cannot be used, by GrayString's rules; `brush` may be null.
    BOOL GrayString(CBrush* brush, LPCTSTR text, int length, int x, int y, int width, int height);
    /// A bitmap, icon or text in a state: DSS_DISABLED ...
    BOOL DrawState(POINT place, SIZE size, HBITMAP bitmap, UINT flags, HBRUSH brush = nullptr);
    BOOL DrawState(POINT place, SIZE size, HICON icon, UINT flags, HBRUSH brush = nullptr);
    BOOL DrawState(POINT place, SIZE size, LPCTSTR text, UINT flags, BOOL prefix = TRUE,
                   int length = 0, HBRUSH brush = nullptr);

    // `operation` is SRCCOPY ...; FALSE when `source` is null.

    BOOL BitBlt(int x, int y, int width, int height, CDC* source, int source_x, int source_y,
                DWORD operation);
    BOOL StretchBlt(int x, int y, int width, int height, CDC* source, int source_x, int source_y,
                    int source_width, int source_height, DWORD operation);
    /// Leaves out what has the colour `transparent`.
    BOOL TransparentBlt(int x, int y, int width, int height, CDC* source, int source_x,
                        int source_y, int source_width, int source_height, UINT transparent);
};
