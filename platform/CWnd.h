#pragma once

#include "platform/WindowCalls.h"
#include "platform/WindowHandlers.h"

#include <commctrl.h>

class CDC;
class CFont;
class CFrameWnd;
class CMenu;
class CScrollBar;
class CToolTipCtrl;
namespace zmr {
class WindowAccess;
}

// Flags of CWnd::m_nFlags.
inline constexpr UINT WF_TOOLTIPS = 0x0001;       ///< Tool tips are on.
inline constexpr UINT WF_TEMPHIDE = 0x0002;       ///< Hidden for a while only.
inline constexpr UINT WF_STAYDISABLED = 0x0004;   ///< Not to be enabled when a modal state ends.
inline constexpr UINT WF_MODALLOOP = 0x0008;      ///< In a modal loop,
inline constexpr UINT WF_CONTINUEMODAL = 0x0010;  ///< which goes on.
inline constexpr UINT WF_OLECTLCONTAINER = 0x0100;
inline constexpr UINT WF_TRACKINGTOOLTIPS = 0x0400;

/// A window of the system as an object: ownership of its life, routing of its messages to the
/// handlers in the class's message map, and thin calls on the handle. docs/platform.md tells how a
/// message travels. An object serves the thread that made its window.
///
/// A window made by Create, CreateEx or SubclassWindow belongs to its object: destroying the object
/// destroys the window. The window's own end (WM_NCDESTROY) lets the handle go and calls
/// PostNcDestroy, where an object made with new may delete itself.
class ZMR_GV_API CWnd : public zmr::WindowHandlers, public zmr::WindowCalls {
    DECLARE_DYNCREATE(CWnd)

public:
    CWnd() = default;
    /// Destroys the window if there still is one.
    ~CWnd() override;

    // Life and handles.

    /// A window of the class `class_name` (null: one of the platform's own, with an arrow cursor
    /// and no background), whose every message from WM_NCCREATE on comes to this object. FALSE
    /// when the system refuses or a handler of WM_NCCREATE or WM_CREATE does; throws on what such a
    /// handler threw.
    BOOL CreateEx(DWORD ex_style, LPCTSTR class_name, LPCTSTR title, DWORD style, int x, int y,
                  int width, int height, HWND parent, HMENU id_or_menu, LPVOID parameter = nullptr);
    BOOL CreateEx(DWORD ex_style, LPCTSTR class_name, LPCTSTR title, DWORD style, const RECT& rect,
                  CWnd* parent, UINT id, LPVOID parameter = nullptr);
    /// A child window.
    virtual BOOL Create(LPCTSTR class_name, LPCTSTR title, DWORD style, const RECT& rect,
                        CWnd* parent, UINT id, LPVOID parameter = nullptr);
    /// FALSE when there was no window. Exceptions of handlers wait for the next frame of ours.
    virtual BOOL DestroyWindow();

    /// Takes messages of a window that exists; its former procedure is called by Default. FALSE
    /// when `window` is null, of another process, or already has an object.
    BOOL SubclassWindow(HWND window);
    BOOL SubclassDlgItem(UINT id, CWnd* parent);
    /// Gives the window its former procedure back and lets go of it.
    HWND UnsubclassWindow();
    /// Stands for a window without taking its messages. FALSE for null.
    BOOL Attach(HWND window);
    HWND Detach();

    /// The object of the window: a permanent one, else a temporary one that lives until the
    /// thread's next idle turn. Null for null.
    [[nodiscard]] static CWnd* FromHandle(HWND window);
    /// Null when the window has no permanent object in this thread.
    [[nodiscard]] static CWnd* FromHandlePermanent(HWND window);
    [[nodiscard]] HWND GetSafeHwnd() const { return m_hWnd; }
    /// The handle of an object that may be null.
    [[nodiscard]] static HWND GetSafeHandle(const CWnd* window)
    {
        return window != nullptr ? window->m_hWnd : nullptr;
    }

    // Relatives. Borrowed, perhaps temporary.

    [[nodiscard]] CWnd* GetParent() const { return FromHandle(::GetParent(m_hWnd)); }
    CWnd* SetParent(CWnd* parent);
    [[nodiscard]] CWnd* GetOwner() const;
    /// Who gets a control's or a bar's notifications instead of its parent.
    void SetOwner(CWnd* owner);
    [[nodiscard]] CWnd* GetDlgItem(int id) const { return FromHandle(::GetDlgItem(m_hWnd, id)); }
    [[nodiscard]] CWnd* GetDescendantWindow(int id, BOOL only_permanent = FALSE) const;
    [[nodiscard]] CWnd* GetWindow(UINT which) const
    {
        return FromHandle(::GetWindow(m_hWnd, which));
    }
    [[nodiscard]] CWnd* GetTopWindow() const { return FromHandle(::GetTopWindow(m_hWnd)); }
    [[nodiscard]] CWnd* GetLastActivePopup() const
    {
        return FromHandle(::GetLastActivePopup(m_hWnd));
    }
    [[nodiscard]] CWnd* ChildWindowFromPoint(POINT point) const
    {
        return FromHandle(::ChildWindowFromPoint(m_hWnd, point));
    }
    /// The nearest frame among the window's parents; null when there is none or there is no window.
    [[nodiscard]] CFrameWnd* GetParentFrame() const;
    /// The outermost window above this one, owners included.
    [[nodiscard]] CWnd* GetTopLevelParent() const;
    /// The outermost frame among this window, its parents and their owners.
    [[nodiscard]] CFrameWnd* GetTopLevelFrame() const;
    [[nodiscard]] virtual BOOL IsFrameWnd() const { return FALSE; }
    /// A scroll bar that stands for one of the window's own; null where there is none.
    [[nodiscard]] virtual CScrollBar* GetScrollBarCtrl(int bar) const;

    [[nodiscard]] static CWnd* GetFocus() { return FromHandle(::GetFocus()); }
    CWnd* SetFocus() { return FromHandle(::SetFocus(m_hWnd)); }
    [[nodiscard]] static CWnd* GetCapture() { return FromHandle(::GetCapture()); }
    CWnd* SetCapture() { return FromHandle(::SetCapture(m_hWnd)); }
    [[nodiscard]] static CWnd* GetActiveWindow() { return FromHandle(::GetActiveWindow()); }
    CWnd* SetActiveWindow() { return FromHandle(::SetActiveWindow(m_hWnd)); }
    [[nodiscard]] static CWnd* GetForegroundWindow() { return FromHandle(::GetForegroundWindow()); }
    BOOL SetForegroundWindow() { return ::SetForegroundWindow(m_hWnd); }
    [[nodiscard]] static CWnd* WindowFromPoint(POINT point)
    {
        return FromHandle(::WindowFromPoint(point));
    }
    [[nodiscard]] static CWnd* GetDesktopWindow() { return FromHandle(::GetDesktopWindow()); }

    [[nodiscard]] CMenu* GetMenu() const;
    BOOL SetMenu(CMenu* menu);
    void DrawMenuBar() { ::DrawMenuBar(m_hWnd); }
    [[nodiscard]] CMenu* GetSystemMenu(BOOL revert) const;
    [[nodiscard]] CFont* GetFont() const;
    void SetFont(CFont* font, BOOL redraw = TRUE);
    /// Draws are paired with ReleaseDC; CClientDC and CWindowDC do both.
    [[nodiscard]] CDC* GetDC() const;
    [[nodiscard]] CDC* GetWindowDC() const;
    int ReleaseDC(CDC* dc) const;

    // Messages.

    /// What goes to all windows below this one, level by level, in their order. `only_permanent`
    /// leaves out windows without an object of ours.
    void SendMessageToDescendants(UINT message, WPARAM wparam = 0, LPARAM lparam = 0,
                                  BOOL deep = TRUE, BOOL only_permanent = FALSE)
    {
        SendMessageToDescendants(m_hWnd, message, wparam, lparam, deep, only_permanent);
    }
    static void SendMessageToDescendants(HWND window, UINT message, WPARAM wparam, LPARAM lparam,
                                         BOOL deep, BOOL only_permanent);
    /// Asks about each child that is a place of a command: buttons and other controls that the
    /// target's route knows. With `disable_if_no_handler` those without a handler are disabled.
    void UpdateDialogControls(CCmdTarget* target, BOOL disable_if_no_handler);

    /// The message now being worked on, null outside of one. Of the thread, not of this window.
    [[nodiscard]] static const MSG* GetCurrentMessage();
    /// Offers the message that this window is being sent on behalf of its child to that child:
    /// true when it dealt with it.
    BOOL SendChildNotifyLastMsg(LRESULT* result = nullptr);
    /// As SendChildNotifyLastMsg, for the child `window` of the current message.
    static BOOL ReflectLastMsg(HWND window, LRESULT* result = nullptr);

    /// Sees a message before it is translated and dispatched; TRUE takes it out.
    virtual BOOL PreTranslateMessage(MSG* message);
    /// Offers the message to the target window and its parents up to `stop`, innermost first.
    static BOOL WalkPreTranslateTree(HWND stop, MSG* message);
    /// Offers a key or mouse message to the window as a dialog.
    BOOL PreTranslateInput(MSG* message);

    BOOL OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* info) override;

    // Tool tips and help.

    /// Tips for what OnToolHitTest finds. See also TTN_NEEDTEXT.
    BOOL EnableToolTips(BOOL enable = TRUE);
    static void CancelToolTips(BOOL keys = FALSE);
    /// Shows, moves or hides the tip for a mouse message; PreTranslateMessage calls it.
    virtual void FilterToolTipMessage(MSG* message);
    /// The tool at a point of the client area: -1 for none, else a number that tells tools apart,
    /// and `info`, where given, is filled; its text may be allocated by malloc.
    virtual int OnToolHitTest(CPoint point, TOOLINFO* info) const;
    /// Hands a request for help to the application.
    virtual void WinHelp(DWORD_PTR data, UINT command);

    /// Grows a client rectangle to the window's. The second argument is one of the values below.
    virtual void CalcWindowRect(LPRECT client, UINT adjust = adjustBorder);
    enum AdjustType { adjustBorder = 0, adjustOutside = 1 };
    enum RepositionFlags { reposDefault = 0, reposQuery = 1, reposExtra = 2 };
    /// Places the bars among the children `first` to `last` at the edges and the child `left_over`
    /// in the rest. reposQuery gives the rest in `rest` and moves nothing; reposExtra takes `rest`
    /// off it. `client` is the client area unless given.
    void RepositionBars(UINT first, UINT last, UINT left_over, UINT flags = reposDefault,
                        LPRECT rest = nullptr, LPCRECT client = nullptr, BOOL stretch = TRUE);

    UINT m_nFlags = 0;

protected:
    DECLARE_MESSAGE_MAP()

    /// Changes what a window is made with, and its class; FALSE refuses.
    virtual BOOL PreCreateWindow(CREATESTRUCT& creation);
    /// Called before a window that exists comes to this object, and before WM_NCCREATE.
    virtual void PreSubclassWindow() {}
    /// The last call for a window; an object made with new may delete itself here.
    virtual void PostNcDestroy() {}

    /// Where every message of the window arrives.
    virtual LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam);
    /// Looks for a handler. TRUE, with `result` set, when one dealt with the message.
    virtual BOOL OnWndMsg(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result);
    /// What the window did before it had an object.
    virtual LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam);
    LRESULT Default() override;

    /// WM_COMMAND: the control first, then this window's route.
    virtual BOOL OnCommand(WPARAM wparam, LPARAM lparam);
    /// WM_NOTIFY: the control first, then this window's route.
    virtual BOOL OnNotify(WPARAM wparam, LPARAM lparam, LRESULT* result);
    /// A message that the parent was sent on this window's behalf. TRUE keeps it from the parent.
    virtual BOOL OnChildNotify(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result);
    /// The rows for reflected messages; OnChildNotify calls it.
    BOOL ReflectChildNotify(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result);

    HBRUSH OnCtlColor(CDC* dc, CWnd* control, UINT kind);
    void OnDrawItem(int id, LPDRAWITEMSTRUCT item);
    void OnMeasureItem(int id, LPMEASUREITEMSTRUCT item);
    int OnCompareItem(int id, LPCOMPAREITEMSTRUCT items);
    void OnDeleteItem(int id, LPDELETEITEMSTRUCT item);
    void OnHScroll(UINT code, UINT position, CWnd* bar);
    void OnVScroll(UINT code, UINT position, CWnd* bar);
    void OnParentNotify(UINT message, LPARAM lparam);
    void OnNcDestroy();
    LRESULT OnNotifyFormat(WPARAM wparam, LPARAM lparam);

private:
    friend class zmr::WindowAccess;  // the window procedure and the creation hook

    WNDPROC former_procedure_ = nullptr;  ///< Of a window that was subclassed.
    HWND owner_ = nullptr;
};

/// Writes the text only when it differs, so that nothing flickers.
ZMR_GV_API void AfxSetWindowText(HWND control, LPCTSTR text);
/// Closes a drop-down list that is open, before something takes the focus from it.
ZMR_GV_API void AfxCancelModes(HWND window);
/// The name of a class with this style, cursor, background and icon, registered on its first use.
/// Valid for the life of the program.
[[nodiscard]] ZMR_GV_API LPCTSTR AfxRegisterWndClass(UINT style, HCURSOR cursor = nullptr,
                                                     HBRUSH background = nullptr,
                                                     HICON icon = nullptr);
/// Registers a class; it goes when the library does. TRUE also when it is there already.
ZMR_GV_API BOOL AfxRegisterClass(WNDCLASS* window_class);
/// The next window that this thread makes belongs to `window`.
ZMR_GV_API void AfxHookWindowCreate(CWnd* window);
/// Ends what AfxHookWindowCreate began. FALSE when no window was made meanwhile.
ZMR_GV_API BOOL AfxUnhookWindowCreate();
/// The window procedure of every window of ours: the one barrier for exceptions.
ZMR_GV_API LRESULT CALLBACK AfxWndProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
/// Hands a message to an object, with the barrier around it.
ZMR_GV_API LRESULT AfxCallWndProc(CWnd* object, HWND window, UINT message, WPARAM wparam,
                                  LPARAM lparam);
