#pragma once

#include "platform/CRect.h"
#include "platform/CString.h"
#include "platform/Windows.h"

#include <shellapi.h>

namespace zmr {

/// A window's handle with the system's calls on it, each of which does what the function of its
/// name does. Null until there is a window, and again after its end.
class ZMR_GV_API WindowCalls {
public:
    HWND m_hWnd = nullptr;

    [[nodiscard]] operator HWND() const { return m_hWnd; }
    [[nodiscard]] DWORD GetStyle() const;
    [[nodiscard]] DWORD GetExStyle() const;
    /// Takes bits out and puts bits in; with `place_flags` the window is told by SetWindowPos.
    /// FALSE when that changes nothing.
    BOOL ModifyStyle(DWORD remove, DWORD add, UINT place_flags = 0);
    BOOL ModifyStyleEx(DWORD remove, DWORD add, UINT place_flags = 0);
    [[nodiscard]] int GetDlgCtrlID() const { return ::GetDlgCtrlID(m_hWnd); }
    void SetDlgCtrlID(int id) { ::SetWindowLongPtr(m_hWnd, GWLP_ID, id); }

    /// Sends, and then throws on what a handler of ours threw while it ran.
    LRESULT SendMessage(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) const;
    BOOL PostMessage(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) const
    {
        return ::PostMessage(m_hWnd, message, wparam, lparam);
    }

    void SetWindowText(LPCTSTR text) { ::SetWindowText(m_hWnd, text); }
    int GetWindowText(LPSTR text, int size) const { return ::GetWindowText(m_hWnd, text, size); }
    void GetWindowText(CString& text) const;
    [[nodiscard]] int GetWindowTextLength() const { return ::GetWindowTextLength(m_hWnd); }

    void GetWindowRect(LPRECT rect) const { ::GetWindowRect(m_hWnd, rect); }
    void GetClientRect(LPRECT rect) const { ::GetClientRect(m_hWnd, rect); }
    void ClientToScreen(LPPOINT point) const { ::ClientToScreen(m_hWnd, point); }
    void ScreenToClient(LPPOINT point) const { ::ScreenToClient(m_hWnd, point); }
    void ClientToScreen(LPRECT rect) const;
    void ScreenToClient(LPRECT rect) const;
    void MoveWindow(int x, int y, int width, int height, BOOL repaint = TRUE)
    {
        ::MoveWindow(m_hWnd, x, y, width, height, repaint);
    }
    void MoveWindow(LPCRECT rect, BOOL repaint = TRUE)
    {
        MoveWindow(rect->left, rect->top, rect->right - rect->left, rect->bottom - rect->top,
                   repaint);
    }
    BOOL SetWindowPos(HWND after, int x, int y, int width, int height, UINT flags)
    {
        return ::SetWindowPos(m_hWnd, after, x, y, width, height, flags);
    }
    BOOL GetWindowPlacement(WINDOWPLACEMENT* placement) const;
    BOOL SetWindowPlacement(const WINDOWPLACEMENT* placement)
    {
        return ::SetWindowPlacement(m_hWnd, placement);
    }
    [[nodiscard]] BOOL IsIconic() const { return ::IsIconic(m_hWnd); }
    [[nodiscard]] BOOL IsZoomed() const { return ::IsZoomed(m_hWnd); }
    void BringWindowToTop() { ::BringWindowToTop(m_hWnd); }

    BOOL ShowWindow(int how) { return ::ShowWindow(m_hWnd, how); }
    [[nodiscard]] BOOL IsWindowVisible() const { return ::IsWindowVisible(m_hWnd); }
    BOOL EnableWindow(BOOL on = TRUE) { return ::EnableWindow(m_hWnd, on); }
    [[nodiscard]] BOOL IsWindowEnabled() const { return ::IsWindowEnabled(m_hWnd); }
    [[nodiscard]] BOOL IsChild(const WindowCalls* window) const
    {
        return ::IsChild(m_hWnd, window->m_hWnd);
    }

    void Invalidate(BOOL erase = TRUE) { ::InvalidateRect(m_hWnd, nullptr, erase); }
    void InvalidateRect(LPCRECT rect, BOOL erase = TRUE) { ::InvalidateRect(m_hWnd, rect, erase); }
    void ValidateRect(LPCRECT rect) { ::ValidateRect(m_hWnd, rect); }
    void UpdateWindow() { ::UpdateWindow(m_hWnd); }
    BOOL RedrawWindow(LPCRECT rect = nullptr, HRGN region = nullptr,
                      UINT flags = RDW_INVALIDATE | RDW_UPDATENOW | RDW_ERASE)
    {
        return ::RedrawWindow(m_hWnd, rect, region, flags);
    }
    void SetRedraw(BOOL on = TRUE) { SendMessage(WM_SETREDRAW, static_cast<WPARAM>(on)); }
    [[nodiscard]] BOOL GetUpdateRect(LPRECT rect, BOOL erase = FALSE) const
    {
        return ::GetUpdateRect(m_hWnd, rect, erase);
    }
    int ScrollWindowEx(int dx, int dy, LPCRECT scrolled, LPCRECT clip, HRGN region, LPRECT exposed,
                       UINT flags)
    {
        return ::ScrollWindowEx(m_hWnd, dx, dy, scrolled, clip, region, exposed, flags);
    }

    UINT_PTR SetTimer(UINT_PTR id, UINT milliseconds, TIMERPROC procedure = nullptr)
    {
        return ::SetTimer(m_hWnd, id, milliseconds, procedure);
    }
    BOOL KillTimer(UINT_PTR id) { return ::KillTimer(m_hWnd, id); }

    /// `info->cbSize` is set here. `mask` is what of it is wanted.
    BOOL GetScrollInfo(int bar, LPSCROLLINFO info, UINT mask = SIF_ALL) const;
    int SetScrollInfo(int bar, LPSCROLLINFO info, BOOL redraw = TRUE);
    int SetScrollPos(int bar, int position, BOOL redraw = TRUE)
    {
        return ::SetScrollPos(m_hWnd, bar, position, redraw);
    }
    [[nodiscard]] int GetScrollPos(int bar) const { return ::GetScrollPos(m_hWnd, bar); }
    void ShowScrollBar(UINT bar, BOOL show = TRUE)
    {
        ::ShowScrollBar(m_hWnd, static_cast<int>(bar), show);
    }

    [[nodiscard]] HICON GetIcon(BOOL big) const
    {
        return reinterpret_cast<HICON>(SendMessage(WM_GETICON, static_cast<WPARAM>(big)));
    }
    HICON SetIcon(HICON icon, BOOL big)
    {
        return reinterpret_cast<HICON>(
            SendMessage(WM_SETICON, static_cast<WPARAM>(big), reinterpret_cast<LPARAM>(icon)));
    }
    UINT GetDlgItemInt(int id, BOOL* is_number = nullptr, BOOL is_signed = TRUE) const
    {
        return ::GetDlgItemInt(m_hWnd, id, is_number, is_signed);
    }
    void SetDlgItemInt(int id, UINT value, BOOL is_signed = TRUE)
    {
        ::SetDlgItemInt(m_hWnd, id, value, is_signed);
    }
    int GetDlgItemText(int id, LPSTR text, int size) const
    {
        return static_cast<int>(::GetDlgItemText(m_hWnd, id, text, size));
    }
    int GetDlgItemText(int id, CString& text) const;
    void SetDlgItemText(int id, LPCTSTR text) { ::SetDlgItemText(m_hWnd, id, text); }
    LRESULT SendDlgItemMessage(int id, UINT message, WPARAM wparam = 0, LPARAM lparam = 0) const
    {
        return ::SendDlgItemMessage(m_hWnd, id, message, wparam, lparam);
    }
    void DragAcceptFiles(BOOL accept = TRUE) { ::DragAcceptFiles(m_hWnd, accept); }

protected:
    WindowCalls() = default;
    ~WindowCalls() = default;
};

}  // namespace zmr
