#include "foundation/GModuleHooks.h"
#include "foundation/Immortal.h"
#include "platform/AfxResources.h"
#include "platform/AfxState.h"
#include "platform/CString.h"
#include "platform/CWinThread.h"
#include "platform/CWnd.h"
#include "settings/LibraryIds.h"
#include "settings/MsgBox.h"
#include "settings/StatusLines.h"

#include <array>
#include <cstring>
#include <mutex>

// The status lines of MsgBox: who shows them, and how new texts get there.

namespace {

/// The host's windows. The lock keeps the owner in place while a thread reads its handle.
struct StatusWindows {
    std::mutex lock;
    std::array<CWnd*, zmr::kStatusLines> lines{};
    CWnd* owner = nullptr;
};

// Made at their first use and never destroyed: any module may put a text while it loads or unloads.
zmr::StatusLines& status_lines()
{
    static zmr::Immortal<zmr::StatusLines> lines;
    return *lines;
}

StatusWindows& status_windows()
{
    static zmr::Immortal<StatusWindows> windows;
    return *windows;
}

void clear_status_state()
{
    status_lines().reset();
    const std::lock_guard hold(status_windows().lock);
    status_windows().lines = {};
    status_windows().owner = nullptr;
}

const GModuleCtor clear_at_load(&clear_status_state);

CWnd* main_window_of_thread()
{
    CWinThread* const thread = AfxGetThread();
    return thread != nullptr ? thread->GetMainWnd() : nullptr;
}

/// The owner's handle; null when there is none to tell.
HWND owner_handle()
{
    {
        const std::lock_guard hold(status_windows().lock);
        if (status_windows().owner != nullptr)
            return status_windows().owner->m_hWnd;
    }
    return CWnd::GetSafeHandle(main_window_of_thread());
}

bool belongs_to_this_thread(HWND window)
{
    return ::GetWindowThreadProcessId(window, nullptr) == ::GetCurrentThreadId();
}

void tell_owner(unsigned line)
{
    if (line >= zmr::kStatusLines)
        return;
    const HWND owner = owner_handle();
    if (owner == nullptr)
        return;
    if (belongs_to_this_thread(owner)) {
        ::SendMessageA(owner, MsgBox::kUpdateMessage, line, 0);
        return;
    }
    const auto key = reinterpret_cast<std::uintptr_t>(owner);
    if (!status_lines().announce(line, key, ::GetTickCount64()))
        return;
    if (!::PostMessageA(owner, MsgBox::kUpdateMessage, line, 0))
        status_lines().withdraw(line);  // a full queue, or a window that has gone
}

void put(unsigned line, const char* format, std::va_list arguments)
{
    status_lines().put(line, format, arguments);
    tell_owner(line);
}

void put(unsigned line, unsigned format_id, std::va_list arguments)
{
    CString format;
    format.LoadString(format_id);
    put(line, format.GetString(), arguments);
}

}  // namespace

void MsgBox::SetInfoLine(InfoLineType type, CWnd* window)
{
    if (type >= zmr::kStatusLines)
        return;
    const std::lock_guard hold(status_windows().lock);
    status_windows().lines[type] = window;
}

CWnd* MsgBox::GetInfoLine(InfoLineType type)
{
    if (type >= zmr::kStatusLines)
        return nullptr;
    const std::lock_guard hold(status_windows().lock);
    return status_windows().lines[type];
}

void MsgBox::SetStatusBarOwner(CWnd* owner)
{
    const std::lock_guard hold(status_windows().lock);
    status_windows().owner = owner;
}

CWnd* MsgBox::GetStatusBarOwner()
{
    {
        const std::lock_guard hold(status_windows().lock);
        if (status_windows().owner != nullptr)
            return status_windows().owner;
    }
    return main_window_of_thread();
}

const char* MsgBox::GetStatusInfo(InfoLineType type)
{
    thread_local std::array<zmr::StatusText, zmr::kStatusLines> lent;
    if (type >= zmr::kStatusLines)
        return "";
    status_lines().copy(type, lent[type]);
    return lent[type].data();
}

void MsgBox::PutInfo(const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    put(InfoGeneral, format, arguments);
    va_end(arguments);
}

void MsgBox::PutInfo(unsigned int formatId, ...)
{
    std::va_list arguments;
    va_start(arguments, formatId);
    put(InfoGeneral, formatId, arguments);
    va_end(arguments);
}

void MsgBox::PutInfo()
{
    PutInfoSpecial(InfoGeneral);
}

void MsgBox::PutInfoSpecial(InfoLineType type, const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    put(type, format, arguments);
    va_end(arguments);
}

void MsgBox::PutInfoSpecial(InfoLineType type, unsigned int formatId, ...)
{
    std::va_list arguments;
    va_start(arguments, formatId);
    put(type, formatId, arguments);
    va_end(arguments);
}

void MsgBox::PutInfoSpecial(InfoLineType type)
{
    status_lines().clear(type);
    tell_owner(type);
}

void MsgBox::put_information(const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    put(InfoGeneral, format, arguments);
    va_end(arguments);
}

void MsgBox::put_information()
{
    PutInfo();
}

void MsgBox::PutVectorInfo(const Vector3D& v)
{
    PutInfoSpecial(InfoX, "X: %7.2f", v.x);
    PutInfoSpecial(InfoY, "Y: %7.2f", v.y);
    PutInfoSpecial(InfoZ, "Z: %7.2f", v.z);
}

void MsgBox::PutVectorInfo()
{
    PutInfoSpecial(InfoX);
    PutInfoSpecial(InfoY);
    PutInfoSpecial(InfoZ);
}

void MsgBox::PutGridInfo(double grid)
{
    PutInfoSpecial(InfoGrid, static_cast<unsigned>(ZMR_IDS_GRID), grid);
}

void MsgBox::PutGridInfo()
{
    PutInfoSpecial(InfoGrid);
}

long MsgBox::ProseedUpdateSBMessage(unsigned int type)
{
    if (type >= zmr::kStatusLines)
        return 0;
    // Taken even where it is not shown: the message has arrived.
    zmr::StatusText wanted;
    status_lines().take(type, wanted);
    const HWND window = CWnd::GetSafeHandle(GetInfoLine(static_cast<InfoLineType>(type)));
    if (window == nullptr || !belongs_to_this_thread(window))
        return 0;
    zmr::StatusText shown{};
    ::GetWindowTextA(window, shown.data(), static_cast<int>(shown.size()));
    shown.back() = '\0';
    if (std::strcmp(shown.data(), wanted.data()) != 0) {
        ::SetWindowTextA(window, wanted.data());
        ::UpdateWindow(window);  // at once, even during a long operation
    }
    return 1;
}
