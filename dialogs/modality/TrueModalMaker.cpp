#include "dialogs/modality/TrueModalMaker.h"

#include "platform/AfxState.h"
#include "platform/CWnd.h"

#include <vector>

namespace {

BOOL CALLBACK collect_window(HWND window, LPARAM windows)
{
    return zmr::behind_barrier(
        [&] {
            reinterpret_cast<std::vector<HWND>*>(windows)->push_back(window);
            return TRUE;
        },
        FALSE);
}

/// The thread's windows at the top level, from the front to the back; none when it has no main
/// window.
std::vector<HWND> windows_of_thread()
{
    std::vector<HWND> windows;
    if (CWnd::GetSafeHandle(AfxGetMainWnd()) == nullptr)
        return windows;
    ::EnumThreadWindows(::GetCurrentThreadId(), &collect_window,
                        reinterpret_cast<LPARAM>(&windows));
    return windows;
}

/// Gives the keyboard to `focus`, unless another window of the thread has become active meanwhile.
void give_focus_back(HWND focus)
{
    const HWND frame = ::IsWindow(focus) ? ::GetAncestor(focus, GA_ROOT) : nullptr;
    if (frame == nullptr || !::IsWindowEnabled(frame) || ::GetFocus() == focus)
        return;
    const HWND active = ::GetActiveWindow();
    if (active == nullptr || active == frame)
        ::SetFocus(focus);
}

}  // namespace

TrueModalMaker::TrueModalMaker()
    : focus_(::GetFocus()),
      windows_(
          windows_of_thread(), [](HWND window) { return ::IsWindowEnabled(window) != FALSE; },
          [](HWND window) { ::EnableWindow(window, FALSE); })
{
}

TrueModalMaker::~TrueModalMaker()
{
    windows_.end([](HWND window) {
        if (::IsWindow(window))
            ::EnableWindow(window, TRUE);
    });
    give_focus_back(focus_);
}
