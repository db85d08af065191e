#pragma once

#include "platform/CommonControls.h"
#include "platform/PlatformPosition.h"

class CEdit;
class CHeaderCtrl;
class CImageList;

/// A list of items, shown as icons, as lines or as a table with columns. With the style
/// LVS_OWNERDATA the control holds no items: it is told their number, and asks for what it shows by
/// LVN_GETDISPINFO, so that a list of a million costs no more than one of ten. Indices count from
/// 0; -1 is none. User-interface thread.
class ZMR_GV_API CListCtrl : public CWnd {
    DECLARE_DYNAMIC(CListCtrl)

public:
    CListCtrl() = default;
    virtual BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);

    // Items.

    [[nodiscard]] int GetItemCount() const { return zmr::ask(*this, LVM_GETITEMCOUNT); }
    /// Makes room beforehand; for a virtual list this is the number of items.
    void SetItemCount(int count) { zmr::ask(*this, LVM_SETITEMCOUNT, zmr::wparam_of(count)); }
    /// For virtual lists: `flags` of LVSICF_ say that the view is not scrolled or not drawn anew.
    BOOL SetItemCountEx(int count, DWORD flags = LVSICF_NOINVALIDATEALL)
    {
        return zmr::ask(*this, LVM_SETITEMCOUNT, zmr::wparam_of(count), static_cast<LPARAM>(flags));
    }
    /// The new item's index, -1 on failure.
    int InsertItem(const LVITEM* item)
    {
        return zmr::ask(*this, LVM_INSERTITEM, 0, zmr::lparam_of(item));
    }
    int InsertItem(UINT mask, int at, LPCTSTR text, UINT state, UINT state_mask, int image,
                   LPARAM data);
    int InsertItem(int at, LPCTSTR text) { return InsertItem(LVIF_TEXT, at, text, 0, 0, 0, 0); }
    int InsertItem(int at, LPCTSTR text, int image)
    {
        return InsertItem(LVIF_TEXT | LVIF_IMAGE, at, text, 0, 0, image, 0);
    }
    BOOL DeleteItem(int at) { return zmr::ask(*this, LVM_DELETEITEM, zmr::wparam_of(at)); }
    BOOL DeleteAllItems() { return zmr::ask(*this, LVM_DELETEALLITEMS); }
    BOOL GetItem(LVITEM* item) const
    {
        return zmr::ask(*this, LVM_GETITEM, 0, zmr::lparam_of(item));
    }
    BOOL SetItem(const LVITEM* item)
    {
        return zmr::ask(*this, LVM_SETITEM, 0, zmr::lparam_of(item));
    }
    BOOL SetItem(int at, int column, UINT mask, LPCTSTR text, int image, UINT state,
                 UINT state_mask, LPARAM data);
    /// At most 65,535 bytes of it.
    [[nodiscard]] CString GetItemText(int at, int column) const;
    /// Cut to `size` with a closing zero; the length.
    int GetItemText(int at, int column, LPSTR text, int size) const;
    BOOL SetItemText(int at, int column, LPCTSTR text);
    [[nodiscard]] DWORD_PTR GetItemData(int at) const;
    BOOL SetItemData(int at, DWORD_PTR data)
    {
        return SetItem(at, 0, LVIF_PARAM, nullptr, 0, 0, 0, static_cast<LPARAM>(data));
    }
    /// The LVIS_ bits of `mask`.
    [[nodiscard]] UINT GetItemState(int at, UINT mask) const
    {
        return static_cast<UINT>(zmr::ask(*this, LVM_GETITEMSTATE, zmr::wparam_of(at), mask));
    }
    /// -1 sets the state of all items.
    BOOL SetItemState(int at, UINT state, UINT mask);
    BOOL SetItemState(int at, const LVITEM* item)
    {
        return zmr::ask(*this, LVM_SETITEMSTATE, zmr::wparam_of(at), zmr::lparam_of(item));
    }
    /// For lists with check boxes.
    [[nodiscard]] BOOL GetCheck(int at) const;
    BOOL SetCheck(int at, BOOL check = TRUE);

    // Looking for items.

    /// From behind `after`; -1 begins at the first. `flags` are LVNI_ bits.
    [[nodiscard]] int GetNextItem(int after, int flags) const
    {
        return zmr::ask(*this, LVM_GETNEXTITEM, zmr::wparam_of(after), MAKELPARAM(flags, 0));
    }
    /// A walk over the selected items: null when there is none (any more).
    [[nodiscard]] POSITION GetFirstSelectedItemPosition() const;
    /// The item at the position, which goes on to the next selected one.
    int GetNextSelectedItem(POSITION& position) const;
    [[nodiscard]] UINT GetSelectedCount() const
    {
        return static_cast<UINT>(zmr::ask(*this, LVM_GETSELECTEDCOUNT));
    }
    [[nodiscard]] int GetSelectionMark() const { return zmr::ask(*this, LVM_GETSELECTIONMARK); }
    int SetSelectionMark(int at) { return zmr::ask(*this, LVM_SETSELECTIONMARK, 0, at); }
    int FindItem(const LVFINDINFO* what, int after = -1) const
    {
        return zmr::ask(*this, LVM_FINDITEM, zmr::wparam_of(after), zmr::lparam_of(what));
    }
    /// The item at a point of the client area; `flags`, where given, gets LVHT_ bits.
    int HitTest(CPoint point, UINT* flags = nullptr) const;
    int HitTest(LVHITTESTINFO* where) const
    {
        return zmr::ask(*this, LVM_HITTEST, 0, zmr::lparam_of(where));
    }
    int SubItemHitTest(LVHITTESTINFO* where) const
    {
        return zmr::ask(*this, LVM_SUBITEMHITTEST, 0, zmr::lparam_of(where));
    }
    BOOL SortItems(PFNLVCOMPARE order, DWORD_PTR data)
    {
        return zmr::ask(*this, LVM_SORTITEMS, data, reinterpret_cast<LPARAM>(order));
    }

    // Columns.

    /// The new column's index, -1 on failure.
    int InsertColumn(int at, const LVCOLUMN* column)
    {
        return zmr::ask(*this, LVM_INSERTCOLUMN, zmr::wparam_of(at), zmr::lparam_of(column));
    }
    /// `format` is LVCFMT_LEFT, LVCFMT_RIGHT or LVCFMT_CENTER; -1 leaves width or sub-item open.
    int InsertColumn(int at, LPCTSTR heading, int format = LVCFMT_LEFT, int width = -1,
                     int sub_item = -1);
    BOOL DeleteColumn(int at) { return zmr::ask(*this, LVM_DELETECOLUMN, zmr::wparam_of(at)); }
    BOOL GetColumn(int at, LVCOLUMN* column) const
    {
        return zmr::ask(*this, LVM_GETCOLUMN, zmr::wparam_of(at), zmr::lparam_of(column));
    }
    BOOL SetColumn(int at, const LVCOLUMN* column)
    {
        return zmr::ask(*this, LVM_SETCOLUMN, zmr::wparam_of(at), zmr::lparam_of(column));
    }
    [[nodiscard]] int GetColumnWidth(int at) const
    {
        return zmr::ask(*this, LVM_GETCOLUMNWIDTH, zmr::wparam_of(at));
    }
    /// Pixels, LVSCW_AUTOSIZE or LVSCW_AUTOSIZE_USEHEADER.
    BOOL SetColumnWidth(int at, int width)
    {
        return zmr::ask(*this, LVM_SETCOLUMNWIDTH, zmr::wparam_of(at), MAKELPARAM(width, 0));
    }
    BOOL GetColumnOrderArray(int* order, int count) const
    {
        return zmr::ask(*this, LVM_GETCOLUMNORDERARRAY, zmr::wparam_of(count),
                        zmr::lparam_of(order));
    }
    BOOL SetColumnOrderArray(int count, const int* order)
    {
        return zmr::ask(*this, LVM_SETCOLUMNORDERARRAY, zmr::wparam_of(count),
                        zmr::lparam_of(order));
    }
    /// Null for a list that never was a table.
    [[nodiscard]] CHeaderCtrl* GetHeaderCtrl() const;

    // View.

    /// LVS_EX_ bits; these give the former ones.
    [[nodiscard]] DWORD GetExtendedStyle() const
    {
        return static_cast<DWORD>(SendMessage(LVM_GETEXTENDEDLISTVIEWSTYLE));
    }
    DWORD SetExtendedStyle(DWORD style)
    {
        return static_cast<DWORD>(
            SendMessage(LVM_SETEXTENDEDLISTVIEWSTYLE, 0, static_cast<LPARAM>(style)));
    }
    BOOL EnsureVisible(int at, BOOL partly)
    {
        return zmr::ask(*this, LVM_ENSUREVISIBLE, zmr::wparam_of(at), partly);
    }
    [[nodiscard]] int GetTopIndex() const { return zmr::ask(*this, LVM_GETTOPINDEX); }
    [[nodiscard]] int GetCountPerPage() const { return zmr::ask(*this, LVM_GETCOUNTPERPAGE); }
    BOOL RedrawItems(int first, int last)
    {
        return zmr::ask(*this, LVM_REDRAWITEMS, zmr::wparam_of(first), last);
    }
    BOOL Update(int at) { return zmr::ask(*this, LVM_UPDATE, zmr::wparam_of(at)); }
    BOOL Scroll(CSize by)
    {
        return zmr::ask(*this, LVM_SCROLL, zmr::wparam_of(static_cast<int>(by.cx)),
                        static_cast<LPARAM>(by.cy));
    }
    BOOL Arrange(UINT how) { return zmr::ask(*this, LVM_ARRANGE, how); }
    /// `part` is LVIR_BOUNDS, LVIR_ICON or LVIR_LABEL.
    BOOL GetItemRect(int at, LPRECT rect, UINT part) const;
    BOOL GetSubItemRect(int at, int column, int part, CRect& rect) const;
    BOOL GetItemPosition(int at, LPPOINT place) const
    {
        return zmr::ask(*this, LVM_GETITEMPOSITION, zmr::wparam_of(at), zmr::lparam_of(place));
    }
    BOOL SetItemPosition(int at, POINT place)
    {
        return zmr::ask(*this, LVM_SETITEMPOSITION32, zmr::wparam_of(at), zmr::lparam_of(&place));
    }
    CSize SetIconSpacing(int width, int height);
    BOOL SetBkColor(COLORREF color)
    {
        return zmr::ask(*this, LVM_SETBKCOLOR, 0, static_cast<LPARAM>(color));
    }
    BOOL SetTextColor(COLORREF color)
    {
        return zmr::ask(*this, LVM_SETTEXTCOLOR, 0, static_cast<LPARAM>(color));
    }
    BOOL SetTextBkColor(COLORREF color)
    {
        return zmr::ask(*this, LVM_SETTEXTBKCOLOR, 0, static_cast<LPARAM>(color));
    }

    /// The pictures: LVSIL_NORMAL, LVSIL_SMALL or LVSIL_STATE. Unless the style has
    /// LVS_SHAREIMAGELISTS, the control takes the list over: detach it. The former one, or null.
    CImageList* SetImageList(CImageList* list, int which);
    [[nodiscard]] CImageList* GetImageList(int which) const;

    /// Begins to edit the label; the control, null when it cannot be edited.
    CEdit* EditLabel(int at);
    [[nodiscard]] CEdit* GetEditControl() const;

    /// Draws an item of a list with LVS_OWNERDRAWFIXED. The base draws nothing.
    virtual void DrawItem(LPDRAWITEMSTRUCT item);

protected:
    BOOL OnChildNotify(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result) override;
};
