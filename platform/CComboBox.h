#pragma once

#include "platform/CommonControls.h"

/// A list that drops down below a field that shows the choice, or that can be typed into. Indices
/// count from 0; CB_ERR is -1. User-interface thread.
class ZMR_GV_API CComboBox : public CWnd {
    DECLARE_DYNAMIC(CComboBox)

public:
    CComboBox() = default;
    virtual BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);

    // Items.

    [[nodiscard]] int GetCount() const { return zmr::ask(*this, CB_GETCOUNT); }
    /// The new item's index, CB_ERR or CB_ERRSPACE on failure.
    int AddString(LPCTSTR text) { return zmr::ask(*this, CB_ADDSTRING, 0, zmr::lparam_of(text)); }
    /// -1 adds at the end. The list is not sorted by it.
    int InsertString(int at, LPCTSTR text)
    {
        return zmr::ask(*this, CB_INSERTSTRING, zmr::wparam_of(at), zmr::lparam_of(text));
    }
    /// The number of items left.
    int DeleteString(UINT at) { return zmr::ask(*this, CB_DELETESTRING, at); }
    void ResetContent() { zmr::ask(*this, CB_RESETCONTENT); }
    int Dir(UINT attributes, LPCTSTR pattern)
    {
        return zmr::ask(*this, CB_DIR, attributes, zmr::lparam_of(pattern));
    }
    [[nodiscard]] DWORD_PTR GetItemData(int at) const
    {
        return static_cast<DWORD_PTR>(SendMessage(CB_GETITEMDATA, zmr::wparam_of(at)));
    }
    int SetItemData(int at, DWORD_PTR data)
    {
        return zmr::ask(*this, CB_SETITEMDATA, zmr::wparam_of(at), static_cast<LPARAM>(data));
    }
    [[nodiscard]] void* GetItemDataPtr(int at) const
    {
        return reinterpret_cast<void*>(GetItemData(at));
    }
    int SetItemDataPtr(int at, void* data)
    {
        return SetItemData(at, reinterpret_cast<DWORD_PTR>(data));
    }
    /// The text must have room for GetLBTextLen and a closing zero. CB_ERR when there is no item.
    int GetLBText(int at, LPSTR text) const
    {
        return zmr::ask(*this, CB_GETLBTEXT, zmr::wparam_of(at), zmr::lparam_of(text));
    }
    /// Empty when there is no item.
    void GetLBText(int at, CString& text) const;
    [[nodiscard]] int GetLBTextLen(int at) const
    {
        return zmr::ask(*this, CB_GETLBTEXTLEN, zmr::wparam_of(at));
    }
    // From behind `after`, going round; -1 begins at the first.
    [[nodiscard]] int FindString(int after, LPCTSTR beginning) const
    {
        return zmr::ask(*this, CB_FINDSTRING, zmr::wparam_of(after), zmr::lparam_of(beginning));
    }
    [[nodiscard]] int FindStringExact(int after, LPCTSTR text) const
    {
        return zmr::ask(*this, CB_FINDSTRINGEXACT, zmr::wparam_of(after), zmr::lparam_of(text));
    }
    int SelectString(int after, LPCTSTR beginning)
    {
        return zmr::ask(*this, CB_SELECTSTRING, zmr::wparam_of(after), zmr::lparam_of(beginning));
    }

    // Choice and field.

    [[nodiscard]] int GetCurSel() const { return zmr::ask(*this, CB_GETCURSEL); }
    /// -1 chooses nothing.
    int SetCurSel(int at) { return zmr::ask(*this, CB_SETCURSEL, zmr::wparam_of(at)); }
    /// The first position in the low word, the last in the high one.
    [[nodiscard]] DWORD GetEditSel() const
    {
        return static_cast<DWORD>(SendMessage(CB_GETEDITSEL));
    }
    BOOL SetEditSel(int first, int last)
    {
        return zmr::ask(*this, CB_SETEDITSEL, 0, MAKELPARAM(first, last));
    }
    BOOL LimitText(int limit) { return zmr::ask(*this, CB_LIMITTEXT, zmr::wparam_of(limit)); }
    void Clear() { zmr::ask(*this, WM_CLEAR); }
    void Copy() { zmr::ask(*this, WM_COPY); }
    void Cut() { zmr::ask(*this, WM_CUT); }
    void Paste() { zmr::ask(*this, WM_PASTE); }

    // Form.

    void ShowDropDown(BOOL show = TRUE) { zmr::ask(*this, CB_SHOWDROPDOWN, zmr::wparam_of(show)); }
    [[nodiscard]] BOOL GetDroppedState() const { return zmr::ask(*this, CB_GETDROPPEDSTATE); }
    /// On the screen.
    void GetDroppedControlRect(LPRECT rect) const
    {
        zmr::ask(*this, CB_GETDROPPEDCONTROLRECT, 0, zmr::lparam_of(rect));
    }
    [[nodiscard]] int GetDroppedWidth() const { return zmr::ask(*this, CB_GETDROPPEDWIDTH); }
    int SetDroppedWidth(UINT width) { return zmr::ask(*this, CB_SETDROPPEDWIDTH, width); }
    /// -1 is the field.
    [[nodiscard]] int GetItemHeight(int at) const
    {
        return zmr::ask(*this, CB_GETITEMHEIGHT, zmr::wparam_of(at));
    }
    int SetItemHeight(int at, UINT height)
    {
        return zmr::ask(*this, CB_SETITEMHEIGHT, zmr::wparam_of(at), height);
    }
    [[nodiscard]] int GetTopIndex() const { return zmr::ask(*this, CB_GETTOPINDEX); }
    int SetTopIndex(int at) { return zmr::ask(*this, CB_SETTOPINDEX, zmr::wparam_of(at)); }
    void SetHorizontalExtent(UINT width) { zmr::ask(*this, CB_SETHORIZONTALEXTENT, width); }
    [[nodiscard]] UINT GetHorizontalExtent() const
    {
        return static_cast<UINT>(zmr::ask(*this, CB_GETHORIZONTALEXTENT));
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
