#pragma once

#include "platform/CommonControls.h"

/// The row of column titles above a list. User-interface thread.
class ZMR_GV_API CHeaderCtrl : public CWnd {
    DECLARE_DYNAMIC(CHeaderCtrl)

public:
    CHeaderCtrl() = default;
    virtual BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);

    [[nodiscard]] int GetItemCount() const { return zmr::ask(*this, HDM_GETITEMCOUNT); }
    /// The new item's place, -1 on failure.
    int InsertItem(int place, HDITEM* item)
    {
        return zmr::ask(*this, HDM_INSERTITEM, zmr::wparam_of(place), zmr::lparam_of(item));
    }
    BOOL DeleteItem(int place) { return zmr::ask(*this, HDM_DELETEITEM, zmr::wparam_of(place)); }
    BOOL GetItem(int place, HDITEM* item) const
    {
        return zmr::ask(*this, HDM_GETITEM, zmr::wparam_of(place), zmr::lparam_of(item));
    }
    BOOL SetItem(int place, HDITEM* item)
    {
        return zmr::ask(*this, HDM_SETITEM, zmr::wparam_of(place), zmr::lparam_of(item));
    }
    BOOL GetItemRect(int place, LPRECT rect) const
    {
        return zmr::ask(*this, HDM_GETITEMRECT, zmr::wparam_of(place), zmr::lparam_of(rect));
    }
    [[nodiscard]] int OrderToIndex(int order) const
    {
        return zmr::ask(*this, HDM_ORDERTOINDEX, zmr::wparam_of(order));
    }
    BOOL Layout(HDLAYOUT* layout) { return zmr::ask(*this, HDM_LAYOUT, 0, zmr::lparam_of(layout)); }
    int HitTest(HDHITTESTINFO* where) const
    {
        return zmr::ask(*this, HDM_HITTEST, 0, zmr::lparam_of(where));
    }
};
