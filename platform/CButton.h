#pragma once

#include "platform/CommonControls.h"

/// A push button, check box, radio button or frame around a group, by its style. User-interface
/// thread.
class ZMR_GV_API CButton : public CWnd {
    DECLARE_DYNAMIC(CButton)

public:
    CButton() = default;
    virtual BOOL Create(LPCTSTR caption, DWORD style, const RECT& rect, CWnd* parent, UINT id);

    /// BST_ bits: checked, pushed, focus.
    [[nodiscard]] UINT GetState() const { return static_cast<UINT>(zmr::ask(*this, BM_GETSTATE)); }
    /// Shows the button pushed or not.
    void SetState(BOOL pushed) { zmr::ask(*this, BM_SETSTATE, zmr::wparam_of(pushed)); }
    /// 0 clear, 1 set, 2 undetermined.
    [[nodiscard]] int GetCheck() const { return zmr::ask(*this, BM_GETCHECK); }
    void SetCheck(int check) { zmr::ask(*this, BM_SETCHECK, zmr::wparam_of(check)); }
    /// The BS_ kind.
    [[nodiscard]] UINT GetButtonStyle() const { return LOWORD(GetStyle()) & 0xFFu; }
    void SetButtonStyle(UINT style, BOOL redraw = TRUE)
    {
        zmr::ask(*this, BM_SETSTYLE, style, redraw);
    }
    /// As if the user had clicked it.
    void Click() { zmr::ask(*this, BM_CLICK); }

    // Pictures stay the caller's; these give the former one.

    HICON SetIcon(HICON icon)
    {
        return zmr::ask_for<HICON>(*this, BM_SETIMAGE, IMAGE_ICON, zmr::lparam_of(icon));
    }
    [[nodiscard]] HICON GetIcon() const
    {
        return zmr::ask_for<HICON>(*this, BM_GETIMAGE, IMAGE_ICON);
    }
    HBITMAP SetBitmap(HBITMAP bitmap)
    {
        return zmr::ask_for<HBITMAP>(*this, BM_SETIMAGE, IMAGE_BITMAP, zmr::lparam_of(bitmap));
    }
    [[nodiscard]] HBITMAP GetBitmap() const
    {
        return zmr::ask_for<HBITMAP>(*this, BM_GETIMAGE, IMAGE_BITMAP);
    }

    /// Draws a button with the style BS_OWNERDRAW. The base draws nothing.
    virtual void DrawItem(LPDRAWITEMSTRUCT item);

protected:
    BOOL OnChildNotify(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result) override;
};
