#pragma once

#include "platform/CommonControls.h"

/// A list of lines, each a text or something that the control's object draws. Indices count from
/// 0; LB_ERR is -1. User-interface thread.
class ZMR_GV_API CListBox : public CWnd {
    DECLARE_DYNAMIC(CListBox)

public:
    CListBox() = default;
    virtual BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);

    // Items.

    [[nodiscard]] int GetCount() const { return zmr::ask(*this, LB_GETCOUNT); }
    /// The new item's index, LB_ERR or LB_ERRSPACE on failure.
    int AddString(LPCTSTR text) { return zmr::ask(*this, LB_ADDSTRING, 0, zmr::lparam_of(text)); }
    /// -1 adds at the end. The list is not sorted by it.
    int InsertString(int at, LPCTSTR text)
    {
        return zmr::ask(*this, LB_INSERTSTRING, zmr::wparam_of(at), zmr::lparam_of(text));
    }
    /// The number of items left.
    int DeleteString(UINT at) { return zmr::ask(*this, LB_DELETESTRING, at); }
    void ResetContent() { zmr::ask(*this, LB_RESETCONTENT); }
    int Dir(UINT attributes, LPCTSTR pattern)
    {
        return zmr::ask(*this, LB_DIR, attributes, zmr::lparam_of(pattern));
    }
    int InitStorage(int items, UINT bytes)
    {
        return zmr::ask(*this, LB_INITSTORAGE, zmr::wparam_of(items), bytes);
    }
    [[nodiscard]] DWORD_PTR GetItemData(int at) const
    {
        return static_cast<DWORD_PTR>(SendMessage(LB_GETITEMDATA, zmr::wparam_of(at)));
    }
    int SetItemData(int at, DWORD_PTR data)
    {
        return zmr::ask(*this, LB_SETITEMDATA, zmr::wparam_of(at), static_cast<LPARAM>(data));
    }
    [[nodiscard]] void* GetItemDataPtr(int at) const
    {
        return reinterpret_cast<void*>(GetItemData(at));
    }
    int SetItemDataPtr(int at, void* data)
    {
        return SetItemData(at, reinterpret_cast<DWORD_PTR>(data));
    }
    /// The text must have room for GetTextLen and a closing zero. LB_ERR when there is no item.
    int GetText(int at, LPSTR text) const
    {
        return zmr::ask(*this, LB_GETTEXT, zmr::wparam_of(at), zmr::lparam_of(text));
    }
    /// Empty when there is no item.
    void GetText(int at, CString& text) const;
    [[nodiscard]] int GetTextLen(int at) const
    {
        return zmr::ask(*this, LB_GETTEXTLEN, zmr::wparam_of(at));
    }
    // From behind `after`, going round; -1 begins at the first.
    [[nodiscard]] int FindString(int after, LPCTSTR beginning) const
    {
        return zmr::ask(*this, LB_FINDSTRING, zmr::wparam_of(after), zmr::lparam_of(beginning));
    }
    [[nodiscard]] int FindStringExact(int after, LPCTSTR text) const
    {
        return zmr::ask(*this, LB_FINDSTRINGEXACT, zmr::wparam_of(after), zmr::lparam_of(text));
    }
    int SelectString(int after, LPCTSTR beginning)
    {
        return zmr::ask(*this, LB_SELECTSTRING, zmr::wparam_of(after), zmr::lparam_of(beginning));
    }

    // Selection: of lists with one, then of those with several.

    [[nodiscard]] int GetCurSel() const { return zmr::ask(*this, LB_GETCURSEL); }
    /// -1 selects nothing.
    int SetCurSel(int at) { return zmr::ask(*this, LB_SETCURSEL, zmr::wparam_of(at)); }
    [[nodiscard]] int GetSel(int at) const
    {
        return zmr::ask(*this, LB_GETSEL, zmr::wparam_of(at));
    }
    int SetSel(int at, BOOL on = TRUE)
    {
        return zmr::ask(*this, LB_SETSEL, zmr::wparam_of(on), at);
    }
    [[nodiscard]] int GetSelCount() const { return zmr::ask(*this, LB_GETSELCOUNT); }
    int GetSelItems(int room, int* items) const
    {
        return zmr::ask(*this, LB_GETSELITEMS, zmr::wparam_of(room), zmr::lparam_of(items));
    }
    int SelItemRange(BOOL on, int first, int last)
    {
        return zmr::ask(*this, LB_SELITEMRANGE, zmr::wparam_of(on), MAKELPARAM(first, last));
    }
    [[nodiscard]] int GetCaretIndex() const { return zmr::ask(*this, LB_GETCARETINDEX); }
    int SetCaretIndex(int at, BOOL partly = TRUE)
    {
        return zmr::ask(*this, LB_SETCARETINDEX, zmr::wparam_of(at), partly);
    }
    [[nodiscard]] int GetAnchorIndex() const { return zmr::ask(*this, LB_GETANCHORINDEX); }
    void SetAnchorIndex(int at) { zmr::ask(*this, LB_SETANCHORINDEX, zmr::wparam_of(at)); }

    // Form.

    [[nodiscard]] int GetTopIndex() const { return zmr::ask(*this, LB_GETTOPINDEX); }
    int SetTopIndex(int at) { return zmr::ask(*this, LB_SETTOPINDEX, zmr::wparam_of(at)); }
    int GetItemRect(int at, LPRECT rect) const
    {
        return zmr::ask(*this, LB_GETITEMRECT, zmr::wparam_of(at), zmr::lparam_of(rect));
    }
    /// The nearest item to a point of the client area; `outside` tells that the point is not on it.
    [[nodiscard]] UINT ItemFromPoint(CPoint point, BOOL& outside) const;
    [[nodiscard]] int GetItemHeight(int at) const
    {
        return zmr::ask(*this, LB_GETITEMHEIGHT, zmr::wparam_of(at));
    }
    int SetItemHeight(int at, UINT height)
    {
        return zmr::ask(*this, LB_SETITEMHEIGHT, zmr::wparam_of(at), MAKELPARAM(height, 0));
    }
    void SetColumnWidth(int width) { zmr::ask(*this, LB_SETCOLUMNWIDTH, zmr::wparam_of(width)); }
    [[nodiscard]] int GetHorizontalExtent() const
    {
        return zmr::ask(*this, LB_GETHORIZONTALEXTENT);
    }
    void SetHorizontalExtent(int width)
    {
        zmr::ask(*this, LB_SETHORIZONTALEXTENT, zmr::wparam_of(width));
    }
    /// In dialog units. Without an argument: every two of them.
    void SetTabStops() { zmr::ask(*this, LB_SETTABSTOPS); }
    BOOL SetTabStops(const int& each) { return SetTabStops(1, &each); }
    BOOL SetTabStops(int count, const int* stops)
    {
        return zmr::ask(*this, LB_SETTABSTOPS, zmr::wparam_of(count), zmr::lparam_of(stops));
    }

    // For lists that their object draws; the bases do nothing.

    virtual void DrawItem(LPDRAWITEMSTRUCT item);
    virtual void MeasureItem(LPMEASUREITEMSTRUCT item);
    /// Negative, 0 or positive, as the first comes before, with or behind the second.
    virtual int CompareItem(LPCOMPAREITEMSTRUCT items);
    virtual void DeleteItem(LPDELETEITEMSTRUCT item);

protected:
    BOOL OnChildNotify(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result) override;
};
