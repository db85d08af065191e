#include "platform/CWinThread.h"

#include "platform/AfxState.h"
#include "platform/CException.h"
#include "platform/CUserException.h"
#include "platform/CWnd.h"
#include "platform/PlatformMessages.h"
#include "platform/ThreadState.h"

#include <process.h>

#include <cstdlib>
#include <memory>
#include <utility>

IMPLEMENT_DYNAMIC(CWinThread, CCmdTarget)

namespace {

constexpr UINT kCaretBlink = 0x0118;  // the system's own timer message

void update_commands_of(CWnd* frame, HWND window)
{
    AfxCallWndProc(frame, window, WM_IDLEUPDATECMDUI, TRUE, 0);
    CWnd::SendMessageToDescendants(window, WM_IDLEUPDATECMDUI, TRUE, 0, TRUE, TRUE);
}

BOOL CALLBACK update_other_frame(HWND window, LPARAM main_window)
{
    return zmr::behind_barrier(
        [&] {
            CWnd* const object = CWnd::FromHandlePermanent(window);
            if (object != nullptr && window != reinterpret_cast<HWND>(main_window) &&
                object->IsFrameWnd() && ::IsWindowVisible(window))
                update_commands_of(object, window);
            return TRUE;
        },
        TRUE);
}

}  // namespace

CWinThread::CWinThread() = default;

CWinThread::CWinThread(AFX_THREADPROC procedure, LPVOID parameter)
    : m_pThreadParams(parameter), m_pfnThreadProc(procedure)
{
}

CWinThread::~CWinThread()
{
    zmr::ThreadState& state = zmr::ThreadState::current();
    if (state.thread == this)
        state.thread = nullptr;
}

BOOL CWinThread::CreateThread(DWORD flags, UINT stack_bytes, LPSECURITY_ATTRIBUTES security)
{
    if (m_hThread != nullptr)
        return FALSE;
    // The thread may be over, and the object gone, before _beginthreadex returns: it starts
    // suspended until the handle is in its place.
    unsigned id = 0;
    const auto handle = reinterpret_cast<HANDLE>(::_beginthreadex(
        security, stack_bytes, &CWinThread::entry, this, flags | CREATE_SUSPENDED, &id));
    if (handle == nullptr)
        return FALSE;
    owned_thread_.reset(handle);
    m_hThread = handle;
    m_nThreadID = id;
    if ((flags & CREATE_SUSPENDED) == 0)
        ::ResumeThread(handle);
    return TRUE;
}

unsigned __stdcall CWinThread::entry(void* thread)
{
    const auto self = static_cast<CWinThread*>(thread);
    zmr::ThreadState::current().thread = self;
    const UINT code = self->run_in_thread();
    zmr::ThreadState::current().thread = nullptr;
    self->Delete();
    return code;
}

UINT CWinThread::run_in_thread()
{
    if (m_pfnThreadProc != nullptr)
        return m_pfnThreadProc(m_pThreadParams);
    if (!InitInstance())
        return static_cast<UINT>(ExitInstance());
    return static_cast<UINT>(Run());
}

BOOL CWinThread::InitInstance()
{
    return FALSE;
}

int CWinThread::Run()
{
    bool idle = true;
    LONG turns = 0;
    for (;;) {
        while (idle && !::PeekMessage(&m_msgCur, nullptr, 0, 0, PM_NOREMOVE))
            if (!OnIdle(turns++))
                idle = false;
        do {
            if (!PumpMessage())
                return ExitInstance();
            if (IsIdleMessage(&m_msgCur)) {
                idle = true;
                turns = 0;
            }
        } while (::PeekMessage(&m_msgCur, nullptr, 0, 0, PM_NOREMOVE));
    }
}

int CWinThread::ExitInstance()
{
    return static_cast<int>(m_msgCur.wParam);
}

BOOL CWinThread::PumpMessage()
{
    if (::GetMessage(&m_msgCur, nullptr, 0, 0) <= 0)
        return FALSE;
    if (!PreTranslateMessage(&m_msgCur)) {
        ::TranslateMessage(&m_msgCur);
        ::DispatchMessage(&m_msgCur);
    }
    zmr::rethrow_pending();
    return TRUE;
}

BOOL CWinThread::IsIdleMessage(MSG* message)
{
    if (message->message == WM_MOUSEMOVE || message->message == WM_NCMOUSEMOVE) {
        const bool moved = message->message != last_mouse_message_ ||
                           message->pt.x != last_mouse_place_.x ||
                           message->pt.y != last_mouse_place_.y;
        last_mouse_message_ = message->message;
        last_mouse_place_ = message->pt;
        return moved;
    }
    return message->message != WM_PAINT && message->message != kCaretBlink;
}

BOOL CWinThread::PreTranslateMessage(MSG* message)
{
    CWnd* const main_window = GetMainWnd();
    if (CWnd::WalkPreTranslateTree(CWnd::GetSafeHandle(main_window), message))
        return TRUE;
    // A window that is not below the main one, a floating one for instance: the main window's keys
    // serve it, too.
    if (main_window == nullptr || message->hwnd == nullptr)
        return FALSE;
    const CWnd* const top = CWnd::FromHandle(message->hwnd)->GetTopLevelParent();
    if (top != main_window)
        return main_window->PreTranslateMessage(message);
    return FALSE;
}

BOOL CWinThread::OnIdle(LONG count)
{
    if (count <= 0) {
        CWnd* const main_window = m_pMainWnd;
        const HWND handle = CWnd::GetSafeHandle(main_window);
        if (handle != nullptr && ::IsWindowVisible(handle))
            update_commands_of(main_window, handle);
        ::EnumThreadWindows(::GetCurrentThreadId(), &update_other_frame,
                            reinterpret_cast<LPARAM>(handle));
        zmr::rethrow_pending();
        return TRUE;
    }
    zmr::ThreadState::current().drop_temporaries();
    return FALSE;
}

LRESULT CWinThread::ProcessWndProcException(CException* failure, const MSG*)
{
    if (!failure->IsKindOf(RUNTIME_CLASS(CUserException)))
        failure->ReportError(MB_ICONEXCLAMATION | MB_SYSTEMMODAL);
    return 0;
}

CWnd* CWinThread::GetMainWnd()
{
    return m_pActiveWnd != nullptr ? m_pActiveWnd : m_pMainWnd;
}

void CWinThread::Delete()
{
    if (m_bAutoDelete)
        delete this;
}

CWinThread* AfxBeginThread(AFX_THREADPROC procedure, LPVOID parameter, int priority,
                           UINT stack_bytes, DWORD flags, LPSECURITY_ATTRIBUTES security)
{
    auto thread = std::make_unique<CWinThread>(procedure, parameter);
    if (!thread->CreateThread(flags | CREATE_SUSPENDED, stack_bytes, security))
        return nullptr;
    thread->SetThreadPriority(priority);
    CWinThread* const started = thread.release();
    if ((flags & CREATE_SUSPENDED) == 0)
        started->ResumeThread();
    return started;
}

CWinThread* AfxBeginThread(const CRuntimeClass* thread_class, int priority, UINT stack_bytes,
                           DWORD flags, LPSECURITY_ATTRIBUTES security)
{
    std::unique_ptr<CObject> made(thread_class->CreateObject());
    auto* const thread = DYNAMIC_DOWNCAST(CWinThread, made.get());
    if (thread == nullptr || !thread->CreateThread(flags | CREATE_SUSPENDED, stack_bytes, security))
        return nullptr;
    thread->SetThreadPriority(priority);
    static_cast<void>(made.release());
    if ((flags & CREATE_SUSPENDED) == 0)
        thread->ResumeThread();
    return thread;
}

void AfxEndThread(UINT exit_code, BOOL delete_object)
{
    zmr::ThreadState& state = zmr::ThreadState::current();
    if (CWinThread* const thread = std::exchange(state.thread, nullptr);
        thread != nullptr && delete_object)
        thread->Delete();
    ::_endthreadex(exit_code);
    std::abort();  // not reached: _endthreadex is not declared so
}
