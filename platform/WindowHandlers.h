#pragma once

#include "platform/CCmdTarget.h"
#include "platform/WindowMessages.h"

namespace zmr {

/// The handlers that every window has, each named after its message. They hand the message on as it
/// came; an heir's handler calls its base's unless its header says why not.
class ZMR_GV_API WindowHandlers : public CCmdTarget {
protected:
    /// Processes the current message as it would be without a handler.
    virtual LRESULT Default() = 0;

    int OnCreate(LPCREATESTRUCT) { return static_cast<int>(Default()); }
    BOOL OnNcCreate(LPCREATESTRUCT) { return Default() != 0; }
    void OnDestroy() { Default(); }
    void OnNcDestroy() { Default(); }
    void OnClose() { Default(); }
    void OnSize(UINT, int, int) { Default(); }
    void OnMove(int, int) { Default(); }
    void OnSizing(UINT, LPRECT) { Default(); }
    void OnPaint() { Default(); }
    BOOL OnEraseBkgnd(CDC*) { return Default() != 0; }
    void OnEnable(BOOL) { Default(); }
    void OnShowWindow(BOOL, UINT) { Default(); }
    void OnSetFocus(CWnd*) { Default(); }
    void OnKillFocus(CWnd*) { Default(); }
    void OnActivate(UINT, CWnd*, BOOL) { Default(); }
    void OnActivateApp(BOOL, DWORD) { Default(); }
    BOOL OnNcActivate(BOOL) { return Default() != 0; }
    void OnNcPaint() { Default(); }
    LRESULT OnNcHitTest(CPoint) { return Default(); }
    void OnNcCalcSize(BOOL, NCCALCSIZE_PARAMS*) { Default(); }
    void OnNcLButtonDown(UINT, CPoint) { Default(); }
    void OnNcLButtonUp(UINT, CPoint) { Default(); }
    void OnNcLButtonDblClk(UINT, CPoint) { Default(); }
    void OnNcRButtonDown(UINT, CPoint) { Default(); }
    void OnNcMouseMove(UINT, CPoint) { Default(); }
    void OnMouseMove(UINT, CPoint) { Default(); }
    void OnLButtonDown(UINT, CPoint) { Default(); }
    void OnLButtonUp(UINT, CPoint) { Default(); }
    void OnLButtonDblClk(UINT, CPoint) { Default(); }
    void OnRButtonDown(UINT, CPoint) { Default(); }
    void OnRButtonUp(UINT, CPoint) { Default(); }
    void OnRButtonDblClk(UINT, CPoint) { Default(); }
    void OnMButtonDown(UINT, CPoint) { Default(); }
    void OnMButtonUp(UINT, CPoint) { Default(); }
    void OnMButtonDblClk(UINT, CPoint) { Default(); }
    BOOL OnMouseWheel(UINT, short, CPoint) { return Default() != 0; }
    void OnMouseLeave() { Default(); }
    int OnMouseActivate(CWnd*, UINT, UINT) { return static_cast<int>(Default()); }
    void OnCaptureChanged(CWnd*) { Default(); }
    BOOL OnSetCursor(CWnd*, UINT, UINT) { return Default() != 0; }
    void OnContextMenu(CWnd*, CPoint) { Default(); }
    void OnKeyDown(UINT, UINT, UINT) { Default(); }
    void OnKeyUp(UINT, UINT, UINT) { Default(); }
    void OnChar(UINT, UINT, UINT) { Default(); }
    void OnSysKeyDown(UINT, UINT, UINT) { Default(); }
    void OnSysKeyUp(UINT, UINT, UINT) { Default(); }
    void OnSysChar(UINT, UINT, UINT) { Default(); }
    void OnSysCommand(UINT, LPARAM) { Default(); }
    UINT OnGetDlgCode() { return static_cast<UINT>(Default()); }
    void OnTimer(UINT_PTR) { Default(); }
    void OnHScroll(UINT, UINT, CWnd*) { Default(); }
    void OnVScroll(UINT, UINT, CWnd*) { Default(); }
    void OnDrawItem(int, LPDRAWITEMSTRUCT) { Default(); }
    void OnMeasureItem(int, LPMEASUREITEMSTRUCT) { Default(); }
    int OnCompareItem(int, LPCOMPAREITEMSTRUCT) { return static_cast<int>(Default()); }
    void OnDeleteItem(int, LPDELETEITEMSTRUCT) { Default(); }
    void OnInitMenu(CMenu*) { Default(); }
    void OnInitMenuPopup(CMenu*, UINT, BOOL) { Default(); }
    void OnMenuSelect(UINT, UINT, HMENU) { Default(); }
    void OnEnterMenuLoop(BOOL) { Default(); }
    void OnExitMenuLoop(BOOL) { Default(); }
    void OnEnterIdle(UINT, CWnd*) { Default(); }
    void OnGetMinMaxInfo(MINMAXINFO*) { Default(); }
    void OnWindowPosChanging(WINDOWPOS*) { Default(); }
    void OnWindowPosChanged(WINDOWPOS*) { Default(); }
    void OnCancelMode() { Default(); }
    void OnParentNotify(UINT, LPARAM) { Default(); }
    void OnStyleChanged(int, LPSTYLESTRUCT) { Default(); }
    void OnSysColorChange() { Default(); }
    void OnSettingChange(UINT, LPCTSTR) { Default(); }
    BOOL OnQueryEndSession() { return Default() != 0; }
    void OnEndSession(BOOL) { Default(); }
    void OnDropFiles(HDROP) { Default(); }
    BOOL OnHelpInfo(HELPINFO*) { return Default() != 0; }
};

}  // namespace zmr
