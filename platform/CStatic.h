#pragma once

#include "platform/CommonControls.h"

/// A text, picture or frame that takes no input. User-interface thread.
class ZMR_GV_API CStatic : public CWnd {
    DECLARE_DYNAMIC(CStatic)

public:
    CStatic() = default;
    virtual BOOL Create(LPCTSTR text, DWORD style, const RECT& rect, CWnd* parent,
                        UINT id = 0xFFFF);

    // Pictures stay the caller's; these give the former one.

    HICON SetIcon(HICON icon) { return static_cast<HICON>(exchange(IMAGE_ICON, icon)); }
    [[nodiscard]] HICON GetIcon() const { return static_cast<HICON>(image(IMAGE_ICON)); }
    HBITMAP SetBitmap(HBITMAP bitmap)
    {
        return static_cast<HBITMAP>(exchange(IMAGE_BITMAP, bitmap));
    }
    [[nodiscard]] HBITMAP GetBitmap() const { return static_cast<HBITMAP>(image(IMAGE_BITMAP)); }
    HCURSOR SetCursor(HCURSOR cursor)
    {
        return static_cast<HCURSOR>(exchange(IMAGE_CURSOR, cursor));
    }
    [[nodiscard]] HCURSOR GetCursor() const { return static_cast<HCURSOR>(image(IMAGE_CURSOR)); }

    /// Draws a control with the style SS_OWNERDRAW. The base draws nothing.
    virtual void DrawItem(LPDRAWITEMSTRUCT item);

protected:
    BOOL OnChildNotify(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result) override;

private:
    // void* is the handle of any kind: HICON, HBITMAP and HCURSOR are pointers.
    void* exchange(UINT kind, void* picture)
    {
        return zmr::ask_for<void*>(*this, STM_SETIMAGE, kind, zmr::lparam_of(picture));
    }
    [[nodiscard]] void* image(UINT kind) const
    {
        return zmr::ask_for<void*>(*this, STM_GETIMAGE, kind);
    }
};
