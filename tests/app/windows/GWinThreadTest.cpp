#include "app/GWinThread.h"

#include "platform/CNotSupportedException.h"
#include "tests/app/windows/BoxAnswers.h"
#include "tests/app/windows/TestHost.h"
#include "tests/platform/windows/Faults.h"

#include "foundation/GException.h"

#include <objbase.h>

#include <memory>

namespace {

using Strings = std::vector<std::string>;

constexpr const char* kFaultText = "Serious error took place!\n\nZomarra needs to close.";

class GWinThreadTest : public Hosted {
protected:
    /// Lets a suspended thread run to its end, while this one answers. Its exit code.
    DWORD run(GWinThread& thread)
    {
        thread.m_bAutoDelete = FALSE;
        thread.ResumeThread();
        EXPECT_TRUE(host_.pump_until(
            [&] { return ::WaitForSingleObject(thread.m_hThread, 0) == WAIT_OBJECT_0; }));
        DWORD code = 0;
        ::GetExitCodeThread(thread.m_hThread, &code);
        return code;
    }
};

struct Seen {
    int calls = 0;
    DWORD thread = 0;
    HRESULT apartment_code = E_FAIL;
    APTTYPE apartment{};
    CWinThread* object = nullptr;
};

unsigned look_around(void* parameter)
{
    auto& seen = *static_cast<Seen*>(parameter);
    ++seen.calls;
    seen.thread = ::GetCurrentThreadId();
    APTTYPEQUALIFIER qualifier{};
    seen.apartment_code = ::CoGetApartmentType(&seen.apartment, &qualifier);
    seen.object = AfxGetThread();
    return 37;
}

unsigned nothing(void*)
{
    return 0;
}

}  // namespace

TEST_F(GWinThreadTest, Function_RunsOnceInAnApartmentAndItsResultIsTheExitCode)
{
    Seen seen;
    GWinThread thread(&look_around, &seen, CREATE_SUSPENDED);
    EXPECT_EQ(run(thread), 37u);
    EXPECT_EQ(seen.calls, 1);
    EXPECT_EQ(seen.thread, thread.m_nThreadID);
    EXPECT_NE(seen.thread, ::GetCurrentThreadId());
    EXPECT_EQ(seen.apartment_code, S_OK);
    EXPECT_EQ(seen.apartment, APTTYPE_STA);
    EXPECT_EQ(seen.object, &thread);
    EXPECT_EQ(thread.m_pThreadParams, &seen);
}

TEST_F(GWinThreadTest, CreatedSuspended_StaysSoWithItsPrioritySetUntilResumed)
{
    Seen seen;
    GWinThread thread(&look_around, &seen, CREATE_SUSPENDED, THREAD_PRIORITY_LOWEST);
    EXPECT_EQ(thread.GetThreadPriority(), THREAD_PRIORITY_LOWEST);
    EXPECT_EQ(::WaitForSingleObject(thread.startEvent(), 0), static_cast<DWORD>(WAIT_TIMEOUT));
    EXPECT_EQ(thread.SuspendThread(), 1u);  // it was suspended once
    EXPECT_EQ(thread.ResumeThread(), 2u);
    EXPECT_EQ(seen.calls, 0);

    run(thread);
    EXPECT_EQ(::WaitForSingleObject(thread.startEvent(), 0), static_cast<DWORD>(WAIT_OBJECT_0));
    EXPECT_EQ(seen.calls, 1);
}

TEST_F(GWinThreadTest, StartEvent_IsSetWhileTheFunctionRuns)
{
    struct Waits {
        HANDLE may_end;
    } waits{::CreateEventA(nullptr, TRUE, FALSE, nullptr)};
    const zmr::OwnedKernelHandle owned(waits.may_end);
    GWinThread thread(
        [](void* parameter) -> unsigned {
            ::WaitForSingleObject(static_cast<Waits*>(parameter)->may_end, 10'000);
            return 1;
        },
        &waits, CREATE_SUSPENDED);
    thread.m_bAutoDelete = FALSE;
    thread.ResumeThread();
    EXPECT_EQ(::WaitForSingleObject(thread.startEvent(), 10'000),
              static_cast<DWORD>(WAIT_OBJECT_0));
    EXPECT_EQ(::WaitForSingleObject(thread.m_hThread, 0), static_cast<DWORD>(WAIT_TIMEOUT));
    ::SetEvent(waits.may_end);
    EXPECT_EQ(run(thread), 1u);
}

TEST_F(GWinThreadTest, LibraryException_EndsTheThreadWithMinusOneBehindABoxOfTheMainThread)
{
    host_.open_frame();
    host_.OnIdle(0);
    BoxAnswers answers;
    GWinThread thread([](void*) -> unsigned { throw GLibraryException("The worker gave up."); },
                      nullptr, CREATE_SUSPENDED);
    EXPECT_EQ(run(thread), static_cast<DWORD>(-1));
    EXPECT_EQ(answers.texts, Strings{"The worker gave up."});
}

TEST_F(GWinThreadTest, AccessViolation_GivesTheFaultsTextInABoxAndEndsTheThread)
{
    host_.open_frame();
    host_.OnIdle(0);
    BoxAnswers answers;
    GWinThread thread(
        [](void*) -> unsigned {
            faults::write_null();
            return 4;
        },
        nullptr, CREATE_SUSPENDED);
    EXPECT_EQ(run(thread), static_cast<DWORD>(-1));
    EXPECT_EQ(answers.texts, Strings{kFaultText});
}

TEST_F(GWinThreadTest, PlatformException_IsReportedAndEndsTheThreadWithMinusOne)
{
    host_.open_frame();
    host_.OnIdle(0);
    BoxAnswers answers;
    GWinThread thread(
        [](void*) -> unsigned {
            AfxThrowNotSupportedException();
            return 4;
        },
        nullptr, CREATE_SUSPENDED);
    EXPECT_EQ(run(thread), static_cast<DWORD>(-1));
    EXPECT_EQ(answers.texts, Strings{"The operation is not supported."});
}

TEST_F(GWinThreadTest, ThreadThatTheSystemRefuses_SetsTheEventAndTheObjectIsTheCallers)
{
    SECURITY_DESCRIPTOR bad{};
    SECURITY_ATTRIBUTES refused{sizeof refused, &bad, FALSE};
    GWinThread thread(&nothing, nullptr, 0, THREAD_PRIORITY_NORMAL, 0, &refused);
    EXPECT_EQ(thread.m_hThread, nullptr);
    EXPECT_EQ(::WaitForSingleObject(thread.startEvent(), 0), static_cast<DWORD>(WAIT_OBJECT_0));
}

TEST_F(GWinThreadTest, MadeByItsRecord_HasNoThreadAndNoFunction)
{
    const std::unique_ptr<CObject> made(RUNTIME_CLASS(GWinThread)->CreateObject());
    auto* const thread = DYNAMIC_DOWNCAST(GWinThread, made.get());
    ASSERT_NE(thread, nullptr);
    EXPECT_EQ(thread->m_hThread, nullptr);
    EXPECT_EQ(::WaitForSingleObject(thread->startEvent(), 0), static_cast<DWORD>(WAIT_TIMEOUT));
    EXPECT_TRUE(thread->InitInstance());
    EXPECT_EQ(thread->Run(), -1);
    EXPECT_EQ(::WaitForSingleObject(thread->startEvent(), 0), static_cast<DWORD>(WAIT_OBJECT_0));
}

TEST_F(GWinThreadTest, HeirThatRefusesToStart_SetsTheEventAllTheSame)
{
    class Refusing : public GWinThread {
    public:
        Refusing() : GWinThread(&nothing, nullptr, CREATE_SUSPENDED) {}
        BOOL InitInstance() override { return FALSE; }
    } thread;
    EXPECT_EQ(run(thread), 0u);
    EXPECT_EQ(::WaitForSingleObject(thread.startEvent(), 0), static_cast<DWORD>(WAIT_OBJECT_0));
}

TEST_F(GWinThreadTest, ObjectThatIsNotKept_DeletesItself)
{
    static std::atomic<int> alive = 0;
    class Counted : public GWinThread {
    public:
        Counted() : GWinThread(&nothing, nullptr, CREATE_SUSPENDED) { ++alive; }
        ~Counted() override { --alive; }
    };
    (new Counted)->ResumeThread();
    EXPECT_TRUE(host_.pump_until([] { return alive == 0; }));
}
