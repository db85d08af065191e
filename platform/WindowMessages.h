#pragma once

#include "platform/CPoint.h"
#include "platform/MessageMap.h"
#include "platform/PlatformRecordsOfLane.h"

#include <shellapi.h>

#include <tuple>

class CDC;
class CMenu;
class CWnd;

// How each window message is taken apart for its handler, and the rows of message maps that name
// it. A handler bears the message's name and has exactly the parameters that stand beside it in
// WindowHandlers.h.

namespace zmr::crack {

/// The objects that stand for the handles in a message; temporary ones where there is no other.
[[nodiscard]] ZMR_GV_API CWnd* window_of(HWND window);
[[nodiscard]] ZMR_GV_API CDC* dc_of(HDC dc);
[[nodiscard]] ZMR_GV_API CMenu* menu_of(HMENU menu);

inline CWnd* window_of(WPARAM word)
{
    return window_of(reinterpret_cast<HWND>(word));
}
inline CWnd* window_of(LPARAM word)
{
    return window_of(reinterpret_cast<HWND>(word));
}
inline CDC* dc_of(WPARAM word)
{
    return dc_of(reinterpret_cast<HDC>(word));
}
inline CMenu* menu_of(WPARAM word)
{
    return menu_of(reinterpret_cast<HMENU>(word));
}
/// Coordinates are signed: screens lie left of and above the first one, too.
inline int x_of(LPARAM word)
{
    return static_cast<short>(LOWORD(word));
}
inline int y_of(LPARAM word)
{
    return static_cast<short>(HIWORD(word));
}
inline CPoint point_of(LPARAM word)
{
    return {x_of(word), y_of(word)};
}

inline auto whole(WPARAM w, LPARAM l)
{
    return std::tuple<WPARAM, LPARAM>(w, l);
}
inline auto nothing(WPARAM, LPARAM)
{
    return std::tuple<>();
}
inline auto creation(WPARAM, LPARAM l)
{
    return std::tuple<LPCREATESTRUCT>(reinterpret_cast<LPCREATESTRUCT>(l));
}
inline auto size(WPARAM w, LPARAM l)
{
    return std::tuple<UINT, int, int>(static_cast<UINT>(w), x_of(l), y_of(l));
}
inline auto place(WPARAM, LPARAM l)
{
    return std::tuple<int, int>(x_of(l), y_of(l));
}
inline auto sizing(WPARAM w, LPARAM l)
{
    return std::tuple<UINT, LPRECT>(static_cast<UINT>(w), reinterpret_cast<LPRECT>(l));
}
inline auto device_context(WPARAM w, LPARAM)
{
    return std::tuple<CDC*>(dc_of(w));
}
inline auto flag(WPARAM w, LPARAM)
{
    return std::tuple<BOOL>(static_cast<BOOL>(w));
}
inline auto flag_and_number(WPARAM w, LPARAM l)
{
    return std::tuple<BOOL, UINT>(static_cast<BOOL>(w), static_cast<UINT>(l));
}
inline auto window(WPARAM w, LPARAM)
{
    return std::tuple<CWnd*>(window_of(w));
}
inline auto activation(WPARAM w, LPARAM l)
{
    return std::tuple<UINT, CWnd*, BOOL>(LOWORD(w), window_of(l), HIWORD(w));
}
inline auto flag_and_thread(WPARAM w, LPARAM l)
{
    return std::tuple<BOOL, DWORD>(static_cast<BOOL>(w), static_cast<DWORD>(l));
}
inline auto point(WPARAM, LPARAM l)
{
    return std::tuple<CPoint>(point_of(l));
}
inline auto frame_size(WPARAM w, LPARAM l)
{
    return std::tuple<BOOL, NCCALCSIZE_PARAMS*>(static_cast<BOOL>(w),
                                                reinterpret_cast<NCCALCSIZE_PARAMS*>(l));
}
inline auto mouse(WPARAM w, LPARAM l)
{
    return std::tuple<UINT, CPoint>(static_cast<UINT>(w), point_of(l));
}
inline auto wheel(WPARAM w, LPARAM l)
{
    return std::tuple<UINT, short, CPoint>(LOWORD(w), static_cast<short>(HIWORD(w)), point_of(l));
}
inline auto window_and_words(WPARAM w, LPARAM l)
{
    return std::tuple<CWnd*, UINT, UINT>(window_of(w), LOWORD(l), HIWORD(l));
}
inline auto second_window(WPARAM, LPARAM l)
{
    return std::tuple<CWnd*>(window_of(l));
}
inline auto window_and_point(WPARAM w, LPARAM l)
{
    return std::tuple<CWnd*, CPoint>(window_of(w), point_of(l));
}
inline auto key(WPARAM w, LPARAM l)
{
    return std::tuple<UINT, UINT, UINT>(static_cast<UINT>(w), LOWORD(l), HIWORD(l));
}
inline auto number_and_rest(WPARAM w, LPARAM l)
{
    return std::tuple<UINT, LPARAM>(static_cast<UINT>(w), l);
}
inline auto timer(WPARAM w, LPARAM)
{
    return std::tuple<UINT_PTR>(static_cast<UINT_PTR>(w));
}
inline auto scroll(WPARAM w, LPARAM l)
{
    return std::tuple<UINT, UINT, CWnd*>(LOWORD(w), HIWORD(w), window_of(l));
}
inline auto draw_item(WPARAM w, LPARAM l)
{
    return std::tuple<int, LPDRAWITEMSTRUCT>(static_cast<int>(w),
                                             reinterpret_cast<LPDRAWITEMSTRUCT>(l));
}
inline auto measure_item(WPARAM w, LPARAM l)
{
    return std::tuple<int, LPMEASUREITEMSTRUCT>(static_cast<int>(w),
                                                reinterpret_cast<LPMEASUREITEMSTRUCT>(l));
}
inline auto compare_item(WPARAM w, LPARAM l)
{
    return std::tuple<int, LPCOMPAREITEMSTRUCT>(static_cast<int>(w),
                                                reinterpret_cast<LPCOMPAREITEMSTRUCT>(l));
}
inline auto delete_item(WPARAM w, LPARAM l)
{
    return std::tuple<int, LPDELETEITEMSTRUCT>(static_cast<int>(w),
                                               reinterpret_cast<LPDELETEITEMSTRUCT>(l));
}
inline auto menu(WPARAM w, LPARAM)
{
    return std::tuple<CMenu*>(menu_of(w));
}
inline auto popup(WPARAM w, LPARAM l)
{
    return std::tuple<CMenu*, UINT, BOOL>(menu_of(w), LOWORD(l), HIWORD(l));
}
inline auto menu_choice(WPARAM w, LPARAM l)
{
    return std::tuple<UINT, UINT, HMENU>(LOWORD(w), HIWORD(w), reinterpret_cast<HMENU>(l));
}
inline auto number_and_window(WPARAM w, LPARAM l)
{
    return std::tuple<UINT, CWnd*>(static_cast<UINT>(w), window_of(l));
}
inline auto size_limits(WPARAM, LPARAM l)
{
    return std::tuple<MINMAXINFO*>(reinterpret_cast<MINMAXINFO*>(l));
}
inline auto window_place(WPARAM, LPARAM l)
{
    return std::tuple<WINDOWPOS*>(reinterpret_cast<WINDOWPOS*>(l));
}
inline auto style(WPARAM w, LPARAM l)
{
    return std::tuple<int, LPSTYLESTRUCT>(static_cast<int>(w), reinterpret_cast<LPSTYLESTRUCT>(l));
}
inline auto number_and_text(WPARAM w, LPARAM l)
{
    return std::tuple<UINT, LPCTSTR>(static_cast<UINT>(w), reinterpret_cast<LPCTSTR>(l));
}
inline auto drop(WPARAM w, LPARAM)
{
    return std::tuple<HDROP>(reinterpret_cast<HDROP>(w));
}
inline auto help(WPARAM, LPARAM l)
{
    return std::tuple<HELPINFO*>(reinterpret_cast<HELPINFO*>(l));
}

}  // namespace zmr::crack

/// The messages WM_CTLCOLORMSGBOX to WM_CTLCOLORSTATIC as one; the kind is what they differ by.
inline constexpr UINT WM_CTLCOLOR = 0x0019;

namespace zmr {

/// HBRUSH OnCtlColor(CDC*, CWnd*, UINT kind) of the parent.
template <auto Handler>
bool control_color_row(CCmdTarget* target, AFX_MESSAGE_CALL& message)
{
    const HBRUSH brush = call_handler<Handler>(target, crack::dc_of(message.wparam),
                                               crack::window_of(message.lparam), message.id);
    message.result = reinterpret_cast<LRESULT>(brush);
    return true;
}
/// HBRUSH CtlColor(CDC*, UINT kind) of the control itself.
template <auto Handler>
bool control_color_reflect_row(CCmdTarget* target, AFX_MESSAGE_CALL& message)
{
    const HBRUSH brush = call_handler<Handler>(target, crack::dc_of(message.wparam), message.id);
    message.result = reinterpret_cast<LRESULT>(brush);
    return true;
}

}  // namespace zmr

#define ZMR_ON_WINDOW_MESSAGE(message, crack_name, handler) \
    {message, 0, 0, 0, nullptr, &zmr::window_row<&ThisClass::handler, &zmr::crack::crack_name>},
#define ON_WM_CTLCOLOR() \
    {WM_CTLCOLOR, 0, 0, 0, nullptr, &zmr::control_color_row<&ThisClass::OnCtlColor>},
#define ON_WM_CTLCOLOR_REFLECT()    \
    {WM_CTLCOLOR + WM_REFLECT_BASE, \
     0,                             \
     0,                             \
     0,                             \
     nullptr,                       \
     &zmr::control_color_reflect_row<&ThisClass::CtlColor>},
#define ON_WM_CREATE() ZMR_ON_WINDOW_MESSAGE(WM_CREATE, creation, OnCreate)
#define ON_WM_NCCREATE() ZMR_ON_WINDOW_MESSAGE(WM_NCCREATE, creation, OnNcCreate)
#define ON_WM_DESTROY() ZMR_ON_WINDOW_MESSAGE(WM_DESTROY, nothing, OnDestroy)
#define ON_WM_NCDESTROY() ZMR_ON_WINDOW_MESSAGE(WM_NCDESTROY, nothing, OnNcDestroy)
#define ON_WM_CLOSE() ZMR_ON_WINDOW_MESSAGE(WM_CLOSE, nothing, OnClose)
#define ON_WM_SIZE() ZMR_ON_WINDOW_MESSAGE(WM_SIZE, size, OnSize)
#define ON_WM_MOVE() ZMR_ON_WINDOW_MESSAGE(WM_MOVE, place, OnMove)
#define ON_WM_SIZING() ZMR_ON_WINDOW_MESSAGE(WM_SIZING, sizing, OnSizing)
#define ON_WM_PAINT() ZMR_ON_WINDOW_MESSAGE(WM_PAINT, nothing, OnPaint)
#define ON_WM_ERASEBKGND() ZMR_ON_WINDOW_MESSAGE(WM_ERASEBKGND, device_context, OnEraseBkgnd)
#define ON_WM_ENABLE() ZMR_ON_WINDOW_MESSAGE(WM_ENABLE, flag, OnEnable)
#define ON_WM_SHOWWINDOW() ZMR_ON_WINDOW_MESSAGE(WM_SHOWWINDOW, flag_and_number, OnShowWindow)
#define ON_WM_SETFOCUS() ZMR_ON_WINDOW_MESSAGE(WM_SETFOCUS, window, OnSetFocus)
#define ON_WM_KILLFOCUS() ZMR_ON_WINDOW_MESSAGE(WM_KILLFOCUS, window, OnKillFocus)
#define ON_WM_ACTIVATE() ZMR_ON_WINDOW_MESSAGE(WM_ACTIVATE, activation, OnActivate)
#define ON_WM_ACTIVATEAPP() ZMR_ON_WINDOW_MESSAGE(WM_ACTIVATEAPP, flag_and_thread, OnActivateApp)
#define ON_WM_NCACTIVATE() ZMR_ON_WINDOW_MESSAGE(WM_NCACTIVATE, flag, OnNcActivate)
#define ON_WM_NCPAINT() ZMR_ON_WINDOW_MESSAGE(WM_NCPAINT, nothing, OnNcPaint)
#define ON_WM_NCHITTEST() ZMR_ON_WINDOW_MESSAGE(WM_NCHITTEST, point, OnNcHitTest)
#define ON_WM_NCCALCSIZE() ZMR_ON_WINDOW_MESSAGE(WM_NCCALCSIZE, frame_size, OnNcCalcSize)
#define ON_WM_NCLBUTTONDOWN() ZMR_ON_WINDOW_MESSAGE(WM_NCLBUTTONDOWN, mouse, OnNcLButtonDown)
#define ON_WM_NCLBUTTONUP() ZMR_ON_WINDOW_MESSAGE(WM_NCLBUTTONUP, mouse, OnNcLButtonUp)
#define ON_WM_NCLBUTTONDBLCLK() ZMR_ON_WINDOW_MESSAGE(WM_NCLBUTTONDBLCLK, mouse, OnNcLButtonDblClk)
#define ON_WM_NCRBUTTONDOWN() ZMR_ON_WINDOW_MESSAGE(WM_NCRBUTTONDOWN, mouse, OnNcRButtonDown)
#define ON_WM_NCMOUSEMOVE() ZMR_ON_WINDOW_MESSAGE(WM_NCMOUSEMOVE, mouse, OnNcMouseMove)
#define ON_WM_MOUSEMOVE() ZMR_ON_WINDOW_MESSAGE(WM_MOUSEMOVE, mouse, OnMouseMove)
#define ON_WM_LBUTTONDOWN() ZMR_ON_WINDOW_MESSAGE(WM_LBUTTONDOWN, mouse, OnLButtonDown)
#define ON_WM_LBUTTONUP() ZMR_ON_WINDOW_MESSAGE(WM_LBUTTONUP, mouse, OnLButtonUp)
#define ON_WM_LBUTTONDBLCLK() ZMR_ON_WINDOW_MESSAGE(WM_LBUTTONDBLCLK, mouse, OnLButtonDblClk)
#define ON_WM_RBUTTONDOWN() ZMR_ON_WINDOW_MESSAGE(WM_RBUTTONDOWN, mouse, OnRButtonDown)
#define ON_WM_RBUTTONUP() ZMR_ON_WINDOW_MESSAGE(WM_RBUTTONUP, mouse, OnRButtonUp)
#define ON_WM_RBUTTONDBLCLK() ZMR_ON_WINDOW_MESSAGE(WM_RBUTTONDBLCLK, mouse, OnRButtonDblClk)
#define ON_WM_MBUTTONDOWN() ZMR_ON_WINDOW_MESSAGE(WM_MBUTTONDOWN, mouse, OnMButtonDown)
#define ON_WM_MBUTTONUP() ZMR_ON_WINDOW_MESSAGE(WM_MBUTTONUP, mouse, OnMButtonUp)
#define ON_WM_MBUTTONDBLCLK() ZMR_ON_WINDOW_MESSAGE(WM_MBUTTONDBLCLK, mouse, OnMButtonDblClk)
#define ON_WM_MOUSEWHEEL() ZMR_ON_WINDOW_MESSAGE(WM_MOUSEWHEEL, wheel, OnMouseWheel)
#define ON_WM_MOUSELEAVE() ZMR_ON_WINDOW_MESSAGE(WM_MOUSELEAVE, nothing, OnMouseLeave)
#define ON_WM_MOUSEACTIVATE() \
    ZMR_ON_WINDOW_MESSAGE(WM_MOUSEACTIVATE, window_and_words, OnMouseActivate)
#define ON_WM_CAPTURECHANGED() \
    ZMR_ON_WINDOW_MESSAGE(WM_CAPTURECHANGED, second_window, OnCaptureChanged)
#define ON_WM_SETCURSOR() ZMR_ON_WINDOW_MESSAGE(WM_SETCURSOR, window_and_words, OnSetCursor)
#define ON_WM_CONTEXTMENU() ZMR_ON_WINDOW_MESSAGE(WM_CONTEXTMENU, window_and_point, OnContextMenu)
#define ON_WM_KEYDOWN() ZMR_ON_WINDOW_MESSAGE(WM_KEYDOWN, key, OnKeyDown)
#define ON_WM_KEYUP() ZMR_ON_WINDOW_MESSAGE(WM_KEYUP, key, OnKeyUp)
#define ON_WM_CHAR() ZMR_ON_WINDOW_MESSAGE(WM_CHAR, key, OnChar)
#define ON_WM_SYSKEYDOWN() ZMR_ON_WINDOW_MESSAGE(WM_SYSKEYDOWN, key, OnSysKeyDown)
#define ON_WM_SYSKEYUP() ZMR_ON_WINDOW_MESSAGE(WM_SYSKEYUP, key, OnSysKeyUp)
#define ON_WM_SYSCHAR() ZMR_ON_WINDOW_MESSAGE(WM_SYSCHAR, key, OnSysChar)
#define ON_WM_SYSCOMMAND() ZMR_ON_WINDOW_MESSAGE(WM_SYSCOMMAND, number_and_rest, OnSysCommand)
#define ON_WM_GETDLGCODE() ZMR_ON_WINDOW_MESSAGE(WM_GETDLGCODE, nothing, OnGetDlgCode)
#define ON_WM_TIMER() ZMR_ON_WINDOW_MESSAGE(WM_TIMER, timer, OnTimer)
#define ON_WM_HSCROLL() ZMR_ON_WINDOW_MESSAGE(WM_HSCROLL, scroll, OnHScroll)
#define ON_WM_VSCROLL() ZMR_ON_WINDOW_MESSAGE(WM_VSCROLL, scroll, OnVScroll)
#define ON_WM_DRAWITEM() ZMR_ON_WINDOW_MESSAGE(WM_DRAWITEM, draw_item, OnDrawItem)
#define ON_WM_MEASUREITEM() ZMR_ON_WINDOW_MESSAGE(WM_MEASUREITEM, measure_item, OnMeasureItem)
#define ON_WM_COMPAREITEM() ZMR_ON_WINDOW_MESSAGE(WM_COMPAREITEM, compare_item, OnCompareItem)
#define ON_WM_DELETEITEM() ZMR_ON_WINDOW_MESSAGE(WM_DELETEITEM, delete_item, OnDeleteItem)
#define ON_WM_INITMENU() ZMR_ON_WINDOW_MESSAGE(WM_INITMENU, menu, OnInitMenu)
#define ON_WM_INITMENUPOPUP() ZMR_ON_WINDOW_MESSAGE(WM_INITMENUPOPUP, popup, OnInitMenuPopup)
#define ON_WM_MENUSELECT() ZMR_ON_WINDOW_MESSAGE(WM_MENUSELECT, menu_choice, OnMenuSelect)
#define ON_WM_ENTERMENULOOP() ZMR_ON_WINDOW_MESSAGE(WM_ENTERMENULOOP, flag, OnEnterMenuLoop)
#define ON_WM_EXITMENULOOP() ZMR_ON_WINDOW_MESSAGE(WM_EXITMENULOOP, flag, OnExitMenuLoop)
#define ON_WM_ENTERIDLE() ZMR_ON_WINDOW_MESSAGE(WM_ENTERIDLE, number_and_window, OnEnterIdle)
#define ON_WM_GETMINMAXINFO() ZMR_ON_WINDOW_MESSAGE(WM_GETMINMAXINFO, size_limits, OnGetMinMaxInfo)
#define ON_WM_WINDOWPOSCHANGING() \
    ZMR_ON_WINDOW_MESSAGE(WM_WINDOWPOSCHANGING, window_place, OnWindowPosChanging)
#define ON_WM_WINDOWPOSCHANGED() \
    ZMR_ON_WINDOW_MESSAGE(WM_WINDOWPOSCHANGED, window_place, OnWindowPosChanged)
#define ON_WM_CANCELMODE() ZMR_ON_WINDOW_MESSAGE(WM_CANCELMODE, nothing, OnCancelMode)
#define ON_WM_PARENTNOTIFY() ZMR_ON_WINDOW_MESSAGE(WM_PARENTNOTIFY, number_and_rest, OnParentNotify)
#define ON_WM_STYLECHANGED() ZMR_ON_WINDOW_MESSAGE(WM_STYLECHANGED, style, OnStyleChanged)
#define ON_WM_SYSCOLORCHANGE() ZMR_ON_WINDOW_MESSAGE(WM_SYSCOLORCHANGE, nothing, OnSysColorChange)
#define ON_WM_SETTINGCHANGE() \
    ZMR_ON_WINDOW_MESSAGE(WM_SETTINGCHANGE, number_and_text, OnSettingChange)
#define ON_WM_QUERYENDSESSION() \
    ZMR_ON_WINDOW_MESSAGE(WM_QUERYENDSESSION, nothing, OnQueryEndSession)
#define ON_WM_ENDSESSION() ZMR_ON_WINDOW_MESSAGE(WM_ENDSESSION, flag, OnEndSession)
#define ON_WM_DROPFILES() ZMR_ON_WINDOW_MESSAGE(WM_DROPFILES, drop, OnDropFiles)
#define ON_WM_HELPINFO() ZMR_ON_WINDOW_MESSAGE(WM_HELP, help, OnHelpInfo)
