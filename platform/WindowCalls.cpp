#include "platform/WindowCalls.h"

#include "platform/AfxState.h"

#include <string>

namespace {

BOOL modify(HWND window, int which, DWORD remove, DWORD add, UINT place_flags)
{
    const auto former = static_cast<DWORD>(::GetWindowLongPtr(window, which));
    const DWORD changed = (former & ~remove) | add;
    if (changed == former)
        return FALSE;
    ::SetWindowLongPtr(window, which, static_cast<LONG_PTR>(changed));
    if (place_flags != 0)
        ::SetWindowPos(window, nullptr, 0, 0, 0, 0,
                       SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | place_flags);
    return TRUE;
}

}  // namespace

namespace zmr {

DWORD WindowCalls::GetStyle() const
{
    return static_cast<DWORD>(::GetWindowLongPtr(m_hWnd, GWL_STYLE));
}

DWORD WindowCalls::GetExStyle() const
{
    return static_cast<DWORD>(::GetWindowLongPtr(m_hWnd, GWL_EXSTYLE));
}

BOOL WindowCalls::ModifyStyle(DWORD remove, DWORD add, UINT place_flags)
{
    return modify(m_hWnd, GWL_STYLE, remove, add, place_flags);
}

BOOL WindowCalls::ModifyStyleEx(DWORD remove, DWORD add, UINT place_flags)
{
    return modify(m_hWnd, GWL_EXSTYLE, remove, add, place_flags);
}

LRESULT WindowCalls::SendMessage(UINT message, WPARAM wparam, LPARAM lparam) const
{
    const LRESULT answer = ::SendMessage(m_hWnd, message, wparam, lparam);
    rethrow_pending();
    return answer;
}

void WindowCalls::GetWindowText(CString& text) const
{
    const int length = GetWindowTextLength();
    std::string buffer(static_cast<std::size_t>(length) + 1, '\0');
    const int copied = ::GetWindowText(m_hWnd, buffer.data(), length + 1);
    text = CString(std::string_view(buffer).substr(0, static_cast<std::size_t>(copied)));
}

void WindowCalls::ClientToScreen(LPRECT rect) const
{
    ::MapWindowPoints(m_hWnd, nullptr, reinterpret_cast<LPPOINT>(rect), 2);
}

void WindowCalls::ScreenToClient(LPRECT rect) const
{
    ::MapWindowPoints(nullptr, m_hWnd, reinterpret_cast<LPPOINT>(rect), 2);
}

BOOL WindowCalls::GetWindowPlacement(WINDOWPLACEMENT* placement) const
{
    placement->length = sizeof *placement;
    return ::GetWindowPlacement(m_hWnd, placement);
}

BOOL WindowCalls::GetScrollInfo(int bar, LPSCROLLINFO info, UINT mask) const
{
    info->cbSize = sizeof *info;
    info->fMask = mask;
    return ::GetScrollInfo(m_hWnd, bar, info);
}

int WindowCalls::SetScrollInfo(int bar, LPSCROLLINFO info, BOOL redraw)
{
    info->cbSize = sizeof *info;
    return ::SetScrollInfo(m_hWnd, bar, info, redraw);
}

int WindowCalls::GetDlgItemText(int id, CString& text) const
{
    const HWND control = ::GetDlgItem(m_hWnd, id);
    const int length = control != nullptr ? ::GetWindowTextLength(control) : 0;
    std::string buffer(static_cast<std::size_t>(length) + 1, '\0');
    const int copied = control != nullptr ? ::GetWindowText(control, buffer.data(), length + 1) : 0;
    text = CString(std::string_view(buffer).substr(0, static_cast<std::size_t>(copied)));
    return copied;
}

}  // namespace zmr
