#include "platform/CEvent.h"
#include "platform/CWinThread.h"
#include "platform/CWnd.h"
#include "platform/PlatformMessages.h"
#include "tests/platform/windows/TestApplication.h"

#include <gtest/gtest.h>

#include <atomic>
#include <vector>

namespace {

std::atomic<int> alive = 0;

/// A thread with a message loop that notes its idle turns.
class LoopThread : public CWinThread {
    DECLARE_DYNCREATE(LoopThread)

public:
    LoopThread() { ++alive; }
    ~LoopThread() override { --alive; }

    BOOL InitInstance() override
    {
        started.SetEvent();
        return TRUE;
    }
    BOOL OnIdle(LONG count) override
    {
        turns.push_back(count);
        if (CWinThread::OnIdle(count))
            return TRUE;
        idle.SetEvent();
        return FALSE;
    }

    CEvent started;
    CEvent idle;
    std::vector<LONG> turns;
};

IMPLEMENT_DYNCREATE(LoopThread, CWinThread)

UINT answer_half(LPVOID parameter)
{
    const auto value = static_cast<int*>(parameter);
    *value /= 2;
    return 12;
}

}  // namespace

TEST(CWinThread, Worker_RunsItsFunctionAndItsResultIsTheExitCode)
{
    int value = 84;
    CWinThread worker(&answer_half, &value);
    worker.m_bAutoDelete = FALSE;

    ASSERT_TRUE(worker.CreateThread());
    ASSERT_EQ(::WaitForSingleObject(worker.m_hThread, 10'000), WAIT_OBJECT_0);
    DWORD code = 0;
    ::GetExitCodeThread(worker.m_hThread, &code);
    EXPECT_EQ(code, 12u);
    EXPECT_EQ(value, 42);
    EXPECT_FALSE(worker.CreateThread());
}

TEST(CWinThread, Worker_MadeSuspended_WaitsForResume)
{
    int value = 10;
    CWinThread* const worker =
        AfxBeginThread(&answer_half, &value, THREAD_PRIORITY_LOWEST, 0, CREATE_SUSPENDED);
    ASSERT_NE(worker, nullptr);
    worker->m_bAutoDelete = FALSE;
    EXPECT_EQ(worker->GetThreadPriority(), THREAD_PRIORITY_LOWEST);
    EXPECT_EQ(value, 10);

    worker->ResumeThread();
    ASSERT_EQ(::WaitForSingleObject(worker->m_hThread, 10'000), WAIT_OBJECT_0);
    EXPECT_EQ(value, 5);
    delete worker;
}

TEST(CWinThread, ObjectDeletesItselfAtTheEndOfItsThread)
{
    auto* const thread = static_cast<LoopThread*>(
        AfxBeginThread(RUNTIME_CLASS(LoopThread), THREAD_PRIORITY_NORMAL, 0, CREATE_SUSPENDED));
    ASSERT_NE(thread, nullptr);
    EXPECT_EQ(alive, 1);
    HANDLE handle = nullptr;
    ::DuplicateHandle(::GetCurrentProcess(), thread->m_hThread, ::GetCurrentProcess(), &handle, 0,
                      FALSE, DUPLICATE_SAME_ACCESS);
    const zmr::OwnedKernelHandle waited(handle);
    const DWORD id = thread->m_nThreadID;
    thread->ResumeThread();

    while (!::PostThreadMessage(id, WM_QUIT, 9, 0))
        ::SwitchToThread();
    ASSERT_EQ(::WaitForSingleObject(waited.get(), 10'000), WAIT_OBJECT_0);
    DWORD code = 0;
    ::GetExitCodeThread(waited.get(), &code);
    EXPECT_EQ(code, 9u);
    EXPECT_EQ(alive, 0);
}

TEST(CWinThread, Loop_IdleTurnsCountFromZeroAgainAfterEachMessage)
{
    LoopThread thread;
    thread.m_bAutoDelete = FALSE;
    ASSERT_TRUE(thread.CreateThread());
    ASSERT_TRUE(thread.started.Lock(10'000));
    ASSERT_TRUE(thread.idle.Lock(10'000));
    ::PostThreadMessage(thread.m_nThreadID, WM_APP, 0, 0);
    ASSERT_TRUE(thread.idle.Lock(10'000));
    ::PostThreadMessage(thread.m_nThreadID, WM_QUIT, 0, 0);
    ASSERT_EQ(::WaitForSingleObject(thread.m_hThread, 10'000), WAIT_OBJECT_0);

    EXPECT_EQ(thread.turns, (std::vector<LONG>{0, 1, 0, 1}));
}

TEST(CWinThread, IdleMessage_PaintAndMouseThatRestsAreNone)
{
    LoopThread thread;
    MSG message{};
    message.message = WM_PAINT;
    EXPECT_FALSE(thread.IsIdleMessage(&message));
    message.message = 0x118;
    EXPECT_FALSE(thread.IsIdleMessage(&message));
    message.message = WM_KEYDOWN;
    EXPECT_TRUE(thread.IsIdleMessage(&message));
    message.message = WM_MOUSEMOVE;
    message.pt = {5, 5};
    EXPECT_TRUE(thread.IsIdleMessage(&message));
    EXPECT_FALSE(thread.IsIdleMessage(&message));
    message.pt = {5, 6};
    EXPECT_TRUE(thread.IsIdleMessage(&message));
}

namespace {

class UpdatedWindow : public CWnd {
public:
    int updates = 0;

protected:
    DECLARE_MESSAGE_MAP()
    LRESULT OnIdleUpdate(WPARAM disable, LPARAM)
    {
        EXPECT_EQ(disable, 1u);
        ++updates;
        return 0;
    }
};

BEGIN_MESSAGE_MAP(UpdatedWindow, CWnd)
    ON_MESSAGE(WM_IDLEUPDATECMDUI, &UpdatedWindow::OnIdleUpdate)
END_MESSAGE_MAP()

}  // namespace

TEST(CWinThread, IdleTurnZero_UpdatesTheVisibleMainWindowAndAllBelowIt)
{
    UpdatedWindow main_window;
    UpdatedWindow child;
    ASSERT_TRUE(main_window.CreateEx(0, nullptr, "", WS_POPUP, CRect(0, 0, 50, 50), nullptr, 0));
    ASSERT_TRUE(child.Create(nullptr, "", WS_VISIBLE, CRect(0, 0, 5, 5), &main_window, 1));
    TestApplication& application = the_application();
    application.m_pMainWnd = &main_window;

    EXPECT_TRUE(application.OnIdle(0));
    EXPECT_EQ(main_window.updates, 0);  // not visible
    main_window.ShowWindow(SW_SHOWNA);
    EXPECT_TRUE(application.OnIdle(0));
    EXPECT_EQ(main_window.updates, 1);
    EXPECT_EQ(child.updates, 1);
    EXPECT_FALSE(application.OnIdle(1));
    application.m_pMainWnd = nullptr;
}

TEST(CWinApp, CaptionIcon_NameAndPathsOfTheProgram)
{
    EXPECT_STREQ(the_application().m_pszAppName, "Test");
    EXPECT_STREQ(the_application().m_pszExeName, "test_platform_windows");
    EXPECT_NE(std::string(the_application().m_pszHelpFilePath).find("test_platform_windows.hlp"),
              std::string::npos);
    EXPECT_EQ(AfxGetApp(), &the_application());
    EXPECT_EQ(AfxGetThread(), &the_application());
}

TEST(CWinApp, MessageBoxFunction_GoesThroughTheApplication)
{
    EXPECT_EQ(AfxMessageBox("Question?", MB_YESNO), the_application().box_answer);
    EXPECT_EQ(the_application().take_boxes(), std::vector<std::string>{"Question?"});
}

TEST(CEvent, ResetsItselfUnlessManual)
{
    CEvent event(TRUE);
    EXPECT_TRUE(event.Lock(0));
    EXPECT_FALSE(event.Lock(0));

    CEvent manual(TRUE, TRUE);
    EXPECT_TRUE(manual.Lock(0));
    EXPECT_TRUE(manual.Lock(0));
    manual.ResetEvent();
    EXPECT_FALSE(manual.Lock(0));
}
