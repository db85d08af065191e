#pragma once

#include "platform/CommonControls.h"

class CEdit;
class CImageList;

/// A tree of items, each with a label, a picture, a state and a number of its maker's. Item handles
/// are null where there is none. User-interface thread.
class ZMR_GV_API CTreeCtrl : public CWnd {
    DECLARE_DYNAMIC(CTreeCtrl)

public:
    CTreeCtrl() = default;
    virtual BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);

    // Items. `after` is an item, TVI_FIRST, TVI_LAST or TVI_SORT.

    HTREEITEM InsertItem(TVINSERTSTRUCT* item)
    {
        return zmr::ask_for<HTREEITEM>(*this, TVM_INSERTITEM, 0, zmr::lparam_of(item));
    }
    HTREEITEM InsertItem(UINT mask, LPCTSTR text, int image, int selected_image, UINT state,
                         UINT state_mask, LPARAM data, HTREEITEM parent, HTREEITEM after);
    HTREEITEM InsertItem(LPCTSTR text, HTREEITEM parent = TVI_ROOT, HTREEITEM after = TVI_LAST)
    {
        return InsertItem(TVIF_TEXT, text, 0, 0, 0, 0, 0, parent, after);
    }
    HTREEITEM InsertItem(LPCTSTR text, int image, int selected_image, HTREEITEM parent = TVI_ROOT,
                         HTREEITEM after = TVI_LAST)
    {
        return InsertItem(TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE, text, image, selected_image,
                          0, 0, 0, parent, after);
    }
    /// With all below it.
    BOOL DeleteItem(HTREEITEM item)
    {
        return zmr::ask(*this, TVM_DELETEITEM, 0, zmr::lparam_of(item));
    }
    BOOL DeleteAllItems() { return DeleteItem(TVI_ROOT); }
    [[nodiscard]] UINT GetCount() const { return static_cast<UINT>(zmr::ask(*this, TVM_GETCOUNT)); }

    BOOL GetItem(TVITEM* item) const
    {
        return zmr::ask(*this, TVM_GETITEM, 0, zmr::lparam_of(item));
    }
    BOOL SetItem(const TVITEM* item)
    {
        return zmr::ask(*this, TVM_SETITEM, 0, zmr::lparam_of(item));
    }
    BOOL SetItem(HTREEITEM item, UINT mask, LPCTSTR text, int image, int selected_image, UINT state,
                 UINT state_mask, LPARAM data);
    /// The label, at most 1,023 bytes of it.
    [[nodiscard]] CString GetItemText(HTREEITEM item) const;
    BOOL SetItemText(HTREEITEM item, LPCTSTR text)
    {
        return SetItem(item, TVIF_TEXT, text, 0, 0, 0, 0, 0);
    }
    BOOL GetItemImage(HTREEITEM item, int& image, int& selected_image) const;
    BOOL SetItemImage(HTREEITEM item, int image, int selected_image)
    {
        return SetItem(item, TVIF_IMAGE | TVIF_SELECTEDIMAGE, nullptr, image, selected_image, 0, 0,
                       0);
    }
    /// The TVIS_ bits of `mask`. 0 when there is no such item.
    [[nodiscard]] UINT GetItemState(HTREEITEM item, UINT mask) const;
    BOOL SetItemState(HTREEITEM item, UINT state, UINT mask)
    {
        return SetItem(item, TVIF_STATE, nullptr, 0, 0, state, mask, 0);
    }
    /// 0 when there is no such item.
    [[nodiscard]] DWORD_PTR GetItemData(HTREEITEM item) const;
    BOOL SetItemData(HTREEITEM item, DWORD_PTR data)
    {
        return SetItem(item, TVIF_PARAM, nullptr, 0, 0, 0, 0, static_cast<LPARAM>(data));
    }
    /// For trees with check boxes.
    [[nodiscard]] BOOL GetCheck(HTREEITEM item) const;
    BOOL SetCheck(HTREEITEM item, BOOL check = TRUE);

    // Relatives.

    [[nodiscard]] HTREEITEM GetNextItem(HTREEITEM item, UINT which) const
    {
        return zmr::ask_for<HTREEITEM>(*this, TVM_GETNEXTITEM, which, zmr::lparam_of(item));
    }
    [[nodiscard]] HTREEITEM GetRootItem() const { return GetNextItem(nullptr, TVGN_ROOT); }
    [[nodiscard]] HTREEITEM GetChildItem(HTREEITEM item) const
    {
        return GetNextItem(item, TVGN_CHILD);
    }
    [[nodiscard]] HTREEITEM GetParentItem(HTREEITEM item) const
    {
        return GetNextItem(item, TVGN_PARENT);
    }
    [[nodiscard]] HTREEITEM GetNextSiblingItem(HTREEITEM item) const
    {
        return GetNextItem(item, TVGN_NEXT);
    }
    [[nodiscard]] HTREEITEM GetPrevSiblingItem(HTREEITEM item) const
    {
        return GetNextItem(item, TVGN_PREVIOUS);
    }
    [[nodiscard]] HTREEITEM GetFirstVisibleItem() const
    {
        return GetNextItem(nullptr, TVGN_FIRSTVISIBLE);
    }
    [[nodiscard]] HTREEITEM GetNextVisibleItem(HTREEITEM item) const
    {
        return GetNextItem(item, TVGN_NEXTVISIBLE);
    }
    [[nodiscard]] HTREEITEM GetPrevVisibleItem(HTREEITEM item) const
    {
        return GetNextItem(item, TVGN_PREVIOUSVISIBLE);
    }
    [[nodiscard]] BOOL ItemHasChildren(HTREEITEM item) const
    {
        return GetChildItem(item) != nullptr;
    }

    // Selection and view.

    [[nodiscard]] HTREEITEM GetSelectedItem() const { return GetNextItem(nullptr, TVGN_CARET); }
    [[nodiscard]] HTREEITEM GetDropHilightItem() const
    {
        return GetNextItem(nullptr, TVGN_DROPHILITE);
    }
    /// `how` is TVGN_CARET, TVGN_DROPHILITE or TVGN_FIRSTVISIBLE.
    BOOL Select(HTREEITEM item, UINT how)
    {
        return zmr::ask(*this, TVM_SELECTITEM, how, zmr::lparam_of(item));
    }
    BOOL SelectItem(HTREEITEM item) { return Select(item, TVGN_CARET); }
    BOOL SelectDropTarget(HTREEITEM item) { return Select(item, TVGN_DROPHILITE); }
    BOOL SelectSetFirstVisible(HTREEITEM item) { return Select(item, TVGN_FIRSTVISIBLE); }
    /// One of TVE_EXPAND, TVE_COLLAPSE, TVE_TOGGLE, with TVE_COLLAPSERESET.
    BOOL Expand(HTREEITEM item, UINT how)
    {
        return zmr::ask(*this, TVM_EXPAND, how, zmr::lparam_of(item));
    }
    BOOL EnsureVisible(HTREEITEM item)
    {
        return zmr::ask(*this, TVM_ENSUREVISIBLE, 0, zmr::lparam_of(item));
    }
    /// The item at a point of the client area; `flags`, where given, gets TVHT_ bits.
    HTREEITEM HitTest(CPoint point, UINT* flags = nullptr) const;
    HTREEITEM HitTest(TVHITTESTINFO* where) const
    {
        return zmr::ask_for<HTREEITEM>(*this, TVM_HITTEST, 0, zmr::lparam_of(where));
    }
    /// FALSE when the item is not in view.
    BOOL GetItemRect(HTREEITEM item, LPRECT rect, BOOL text_only) const;
    [[nodiscard]] UINT GetVisibleCount() const
    {
        return static_cast<UINT>(zmr::ask(*this, TVM_GETVISIBLECOUNT));
    }
    [[nodiscard]] UINT GetIndent() const
    {
        return static_cast<UINT>(zmr::ask(*this, TVM_GETINDENT));
    }
    void SetIndent(UINT width) { zmr::ask(*this, TVM_SETINDENT, width); }
    [[nodiscard]] int GetItemHeight() const { return zmr::ask(*this, TVM_GETITEMHEIGHT); }
    int SetItemHeight(int height)
    {
        return zmr::ask(*this, TVM_SETITEMHEIGHT, zmr::wparam_of(height));
    }
    COLORREF SetBkColor(COLORREF color)
    {
        return static_cast<COLORREF>(
            zmr::ask(*this, TVM_SETBKCOLOR, 0, static_cast<LPARAM>(color)));
    }
    COLORREF SetTextColor(COLORREF color)
    {
        return static_cast<COLORREF>(
            zmr::ask(*this, TVM_SETTEXTCOLOR, 0, static_cast<LPARAM>(color)));
    }

    /// The pictures of items (TVSIL_NORMAL) or states (TVSIL_STATE). The list stays the caller's;
    /// the former one, null when there was none.
    CImageList* SetImageList(CImageList* list, int which);
    [[nodiscard]] CImageList* GetImageList(UINT which) const;

    BOOL SortChildren(HTREEITEM parent)
    {
        return zmr::ask(*this, TVM_SORTCHILDREN, 0, zmr::lparam_of(parent));
    }
    BOOL SortChildrenCB(TVSORTCB* how)
    {
        return zmr::ask(*this, TVM_SORTCHILDRENCB, 0, zmr::lparam_of(how));
    }

    /// Begins to edit the label; the control, null when it cannot be edited.
    CEdit* EditLabel(HTREEITEM item);
    [[nodiscard]] CEdit* GetEditControl() const;
    BOOL EndEditLabelNow(BOOL cancel)
    {
        return zmr::ask(*this, TVM_ENDEDITLABELNOW, zmr::wparam_of(cancel));
    }
    [[nodiscard]] HWND GetToolTips() const { return zmr::ask_for<HWND>(*this, TVM_GETTOOLTIPS); }
};
