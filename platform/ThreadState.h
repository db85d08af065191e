#pragma once

#include "platform/FaultTranslation.h"
#include "platform/HandleMap.h"
#include "platform/Windows.h"

#include <commctrl.h>

#include <exception>
#include <memory>

class CDC;
class CGdiObject;
class CImageList;
class CMenu;
class CWinThread;
class CWnd;

namespace zmr {

struct FaultGuard;
struct ToolTips;

/// What the platform keeps for each thread that it runs in. Made at the thread's first use of it,
/// freed at its end.
class ThreadState {
public:
    /// The calling thread's. Never null; a look-up of a few nanoseconds.
    [[nodiscard]] static ThreadState& current();
    /// The calling thread's, or null when it has not used it yet. Allocates nothing.
    [[nodiscard]] static ThreadState* known() noexcept;

    ThreadState();
    ~ThreadState();
    ThreadState(const ThreadState&) = delete;
    ThreadState& operator=(const ThreadState&) = delete;

    /// Frees all temporary objects, unless they are locked.
    void drop_temporaries();

    HandleMap<CWnd, HWND> windows;
    HandleMap<CMenu, HMENU> menus;
    HandleMap<CDC, HDC> device_contexts;
    HandleMap<CGdiObject, HGDIOBJ> drawing_objects;
    HandleMap<CImageList, HIMAGELIST> image_lists;
    int temporary_locks = 0;  ///< While above 0, temporary objects stay.

    CWinThread* thread = nullptr;  ///< The thread's object, when it has one.

    MSG last_message{};  ///< The message that the innermost window procedure works on.

    CWnd* window_in_creation = nullptr;  ///< Takes the next window that is made.
    HHOOK creation_hook = nullptr;

    HMENU tracked_menu = nullptr;  ///< The menu of the popup that is being tracked.
    HWND tracking_window = nullptr;

    std::shared_ptr<ToolTips> tool_tips;  ///< Null until a window of the thread needs tips.

    /// What a callback of the system threw, until a frame of our own can throw it on.
    std::exception_ptr pending;

    FaultTranslator fault_translator = nullptr;  ///< Null: the thread's faults are the system's.
    EXCEPTION_RECORD fault_record{};             ///< Of the fault that is being translated.
    CONTEXT fault_context{};
    std::exception_ptr last_fault;      ///< What the translator made of the last fault.
    FaultGuard* fault_guard = nullptr;  ///< The innermost guard that this thread is in.

    bool ole_started = false;  ///< By AfxOleInit, which this thread has to match.
};

}  // namespace zmr
