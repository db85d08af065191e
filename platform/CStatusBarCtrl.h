#pragma once

#include "platform/CommonControls.h"

/// A row of panes with texts. CStatusBar is the same control as a frame's bar. User-interface
/// thread.
class ZMR_GV_API CStatusBarCtrl : public CWnd {
    DECLARE_DYNAMIC(CStatusBarCtrl)

public:
    CStatusBarCtrl() = default;
    virtual BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);

    /// The right edges of the parts in client coordinates; -1 is the end of the bar.
    BOOL SetParts(int count, const int* edges)
    {
        return zmr::ask(*this, SB_SETPARTS, zmr::wparam_of(count), zmr::lparam_of(edges));
    }
    /// The number of parts; at most `room` edges are filled in.
    int GetParts(int room, int* edges) const
    {
        return zmr::ask(*this, SB_GETPARTS, zmr::wparam_of(room), zmr::lparam_of(edges));
    }
    /// `kind` is SBT_ bits.
    BOOL SetText(LPCTSTR text, int part, int kind)
    {
        return zmr::ask(*this, SB_SETTEXT, zmr::wparam_of(part | kind), zmr::lparam_of(text));
    }
    [[nodiscard]] CString GetText(int part, int* kind = nullptr) const;
    [[nodiscard]] int GetTextLength(int part, int* kind = nullptr) const;
    BOOL GetRect(int part, LPRECT rect) const
    {
        return zmr::ask(*this, SB_GETRECT, zmr::wparam_of(part), zmr::lparam_of(rect));
    }
    /// The widths of the horizontal and vertical borders and of the gap between parts.
    BOOL GetBorders(int& horizontal, int& vertical, int& gap) const;
    void SetMinHeight(int height) { zmr::ask(*this, SB_SETMINHEIGHT, zmr::wparam_of(height)); }
    BOOL SetSimple(BOOL simple = TRUE)
    {
        return zmr::ask(*this, SB_SIMPLE, zmr::wparam_of(simple));
    }
    [[nodiscard]] BOOL IsSimple() const { return zmr::ask(*this, SB_ISSIMPLE); }
    BOOL SetIcon(int part, HICON icon)
    {
        return zmr::ask(*this, SB_SETICON, zmr::wparam_of(part), zmr::lparam_of(icon));
    }
};
