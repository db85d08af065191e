#pragma once

#include "platform/CGdiObject.h"
#include "platform/CSize.h"
#include "platform/Windows.h"

class CDC;

/// A bitmap.
class ZMR_GV_API CBitmap : public CGdiObject {
    DECLARE_DYNCREATE(CBitmap)

public:
    CBitmap() = default;

    /// A bitmap of the program's resources, or of a module whose resources the program finds.
    BOOL LoadBitmap(LPCTSTR name);
    BOOL LoadBitmap(UINT id) { return LoadBitmap(MAKEINTRESOURCE(id)); }
    /// `bits`, when given, are rows padded to 16 bits.
    BOOL CreateBitmap(int width, int height, UINT planes, UINT bits_per_pixel, const void* bits)
    {
        return take(::CreateBitmap(width, height, planes, bits_per_pixel, bits));
    }
    BOOL CreateBitmapIndirect(LPBITMAP description)
    {
        return take(::CreateBitmapIndirect(description));
    }
    /// In the colours of the device. A memory context without a bitmap of its own has two colours.
    BOOL CreateCompatibleBitmap(CDC* dc, int width, int height);
    /// A bitmap whose pixels lie in memory at `*bits`, which live as long as the bitmap. Call
    /// GdiFlush before reading what was drawn.
    BOOL CreateDIBSection(const BITMAPINFO* description, void** bits);

    /// Its number of bytes, 0 on failure.
    int GetBitmap(BITMAP* description) const { return GetObject(sizeof *description, description); }
    /// Width and height in pixels; 0, 0 without a bitmap.
    [[nodiscard]] CSize size() const;

    /// Null for null and for what is no bitmap.
    [[nodiscard]] static CBitmap* FromHandle(HBITMAP bitmap)
    {
        return from_handle_of<CBitmap>(bitmap);
    }
    [[nodiscard]] operator HBITMAP() const { return static_cast<HBITMAP>(m_hObject); }
};
