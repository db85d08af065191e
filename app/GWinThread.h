#pragma once

#include "platform/CEvent.h"
#include "platform/CWinThread.h"

/// A thread that runs one function, without a message loop: its processor faults become
/// exceptions, it has the system's object services in an apartment of its own, and it tells its
/// creator when it runs. A GLibraryException or CException* that leaves the function is shown, and
/// the thread ends with exit code -1; any other ends the program.
///
/// The object deletes itself at the thread's end, which may come before the constructor returns:
/// who wants to keep it, to wait on startEvent() or to derive from it creates the thread suspended,
/// and clears m_bAutoDelete where it stays his.
class ZMR_GV_API GWinThread : public CWinThread {
    DECLARE_DYNCREATE(GWinThread)

public:
    /// Starts the thread. `flags` may be CREATE_SUSPENDED: then ResumeThread lets it run; its
    /// priority is set in either case. When the system refuses, m_hThread is null, startEvent() is
    /// set, and the object is the caller's.
    explicit GWinThread(unsigned (*function)(void*), void* parameter, unsigned long flags = 0,
                        int priority = THREAD_PRIORITY_NORMAL, unsigned int stack_size = 0,
                        SECURITY_ATTRIBUTES* security = nullptr);

    /// Set once the thread runs, and when it will never run. Valid as long as the object.
    [[nodiscard]] HANDLE startEvent() const { return started_; }

    BOOL InitInstance() override;
    /// Runs the function. Its result is the thread's exit code.
    int Run() override;
    int ExitInstance() override;

protected:
    GWinThread();
    DECLARE_MESSAGE_MAP()

private:
    class Surroundings;

    unsigned (*function_)(void*) = nullptr;
    CEvent started_{FALSE, TRUE};
};
