#pragma once

#include "platform/Export.h"
#include "platform/FaultGuard.h"
#include "platform/Windows.h"

class CWinApp;
class CWinThread;
class CWnd;

// What the whole process and each thread of it has one of.

/// The program's application object; null before it is made and behind its end.
[[nodiscard]] ZMR_GV_API CWinApp* AfxGetApp();
/// The calling thread's object: the application in its first thread, null in a thread that nobody
/// made an object for.
[[nodiscard]] ZMR_GV_API CWinThread* AfxGetThread();
/// The thread's main window; null when there is none.
[[nodiscard]] ZMR_GV_API CWnd* AfxGetMainWnd();
/// The program's own module.
[[nodiscard]] ZMR_GV_API HINSTANCE AfxGetInstanceHandle();
/// Where resources are looked for first: the program, unless changed. Set it before other threads
/// run.
[[nodiscard]] ZMR_GV_API HINSTANCE AfxGetResourceHandle();
ZMR_GV_API void AfxSetResourceHandle(HINSTANCE module);

/// While locked, the thread's temporary objects live on through its idle turns. Counts.
ZMR_GV_API void AfxLockTempMaps();
/// Frees the temporary objects when the last lock goes. True then.
ZMR_GV_API bool AfxUnlockTempMaps();

namespace zmr {

/// Throws on what a callback of the system threw on this thread and no frame of ours has met yet:
/// for the frames that called the system. A look-up of a few nanoseconds when there is nothing.
ZMR_GV_API void rethrow_pending();
/// To be called in the catch-all of a callback that the system calls: reports a CException by the
/// thread's object, and keeps any other for rethrow_pending. While one is kept, later ones are
/// dropped.
ZMR_GV_API void keep_exception() noexcept;
/// What `body` gives, or `otherwise` when it throws: for everything that the system calls back,
/// hooks, timers and enumerations among them.
template <class Body, class Result>
Result behind_barrier(const Body& body, Result otherwise) noexcept
{
    try {
        return guarded(body);
    } catch (...) {
        keep_exception();
        return otherwise;
    }
}

}  // namespace zmr
