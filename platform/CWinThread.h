#pragma once

#include "platform/CCmdTarget.h"
#include "platform/CString.h"
#include "platform/Handles.h"

class CException;
class CWnd;

/// What a worker thread runs; its result is the thread's exit code.
using AFX_THREADPROC = UINT (*)(LPVOID parameter);

/// A thread of the program: a worker that runs one function, or a user-interface thread with a
/// message loop, which heirs shape by InitInstance, OnIdle, PreTranslateMessage and ExitInstance.
/// The object that AfxBeginThread makes deletes itself at the thread's end, unless m_bAutoDelete
/// was cleared in time; who keeps a thread's object creates it suspended.
class ZMR_GV_API CWinThread : public CCmdTarget {
    DECLARE_DYNAMIC(CWinThread)

public:
    CWinThread();
    CWinThread(AFX_THREADPROC procedure, LPVOID parameter);
    /// Closes the handle; the thread goes on.
    ~CWinThread() override;

    /// Starts the thread. `flags` may be CREATE_SUSPENDED. FALSE, with nothing started, when it has
    /// one already or the system refuses.
    BOOL CreateThread(DWORD flags = 0, UINT stack_bytes = 0,
                      LPSECURITY_ATTRIBUTES security = nullptr);
    DWORD ResumeThread() { return ::ResumeThread(m_hThread); }
    DWORD SuspendThread() { return ::SuspendThread(m_hThread); }
    [[nodiscard]] int GetThreadPriority() const { return ::GetThreadPriority(m_hThread); }
    BOOL SetThreadPriority(int priority) { return ::SetThreadPriority(m_hThread, priority); }
    operator HANDLE() const { return m_hThread; }

    // For user-interface threads.

    /// TRUE lets Run begin. The base gives FALSE: a thread without a procedure has nothing to do.
    virtual BOOL InitInstance();
    /// The message loop: idle turns while the queue is empty, then one message. Ends at WM_QUIT.
    virtual int Run();
    /// The exit code of the thread. Deletes nothing.
    virtual int ExitInstance();
    /// One idle turn; `count` grows from 0 until the next message. 0: the main window and all below
    /// it, and the thread's other frames, bring their commands up to date; 1: temporary objects are
    /// freed. FALSE ends the turns until there are messages again.
    virtual BOOL OnIdle(LONG count);
    /// False for messages after which nothing can have changed: paintings, caret blinks, and mouse
    /// moves that do not move.
    virtual BOOL IsIdleMessage(MSG* message);
    /// Takes one message, waiting for it, and dispatches it, unless PreTranslateMessage took it.
    /// FALSE for WM_QUIT. Throws on what a handler threw.
    virtual BOOL PumpMessage();
    virtual BOOL PreTranslateMessage(MSG* message);
    /// Deals with a CException that a handler let out: user exceptions are dropped, others are
    /// reported. `failure` stays the caller's. The answer is the window procedure's.
    virtual LRESULT ProcessWndProcException(CException* failure, const MSG* message);
    [[nodiscard]] virtual CWnd* GetMainWnd();

    /// Deletes the object when m_bAutoDelete says so.
    virtual void Delete();

    CWnd* m_pMainWnd = nullptr;    ///< Its end ends the thread's message loop.
    CWnd* m_pActiveWnd = nullptr;  ///< A container's window that counts as the main one.
    BOOL m_bAutoDelete = TRUE;
    HANDLE m_hThread = nullptr;  ///< Closed with the object.
    DWORD m_nThreadID = 0;
    LPVOID m_pThreadParams = nullptr;
    AFX_THREADPROC m_pfnThreadProc = nullptr;

protected:
    MSG m_msgCur{};

private:
    static unsigned __stdcall entry(void* thread);
    [[nodiscard]] UINT run_in_thread();

    zmr::OwnedKernelHandle owned_thread_;
    POINT last_mouse_place_{-1, -1};
    UINT last_mouse_message_ = 0;
};

/// Starts a worker, which deletes its object at its end. Null when the system refuses.
ZMR_GV_API CWinThread* AfxBeginThread(AFX_THREADPROC procedure, LPVOID parameter,
                                      int priority = THREAD_PRIORITY_NORMAL, UINT stack_bytes = 0,
                                      DWORD flags = 0, LPSECURITY_ATTRIBUTES security = nullptr);
/// Starts a thread of the class, which must be creatable by its record.
ZMR_GV_API CWinThread* AfxBeginThread(const CRuntimeClass* thread_class,
                                      int priority = THREAD_PRIORITY_NORMAL, UINT stack_bytes = 0,
                                      DWORD flags = 0, LPSECURITY_ATTRIBUTES security = nullptr);
/// Ends the calling thread where it stands; objects on its stack are lost. With `delete_object` its
/// object is deleted.
[[noreturn]] ZMR_GV_API void AfxEndThread(UINT exit_code, BOOL delete_object = TRUE);
