#include "app/GWinApp.h"

#include "app/GWinThread.h"
#include "tests/app/windows/BoxAnswers.h"
#include "tests/app/windows/TestHost.h"
#include "tests/platform/windows/Faults.h"

#include "foundation/GException.h"

#include <thread>

// Faults of each kind end as a GLibraryException with text 10000, and the loop goes on with the
// next message.

namespace {

using Strings = std::vector<std::string>;

constexpr const char* kFaultText = "Serious error took place!\n\nZomarra needs to close.";
constexpr int kTimes = 1'000;

struct Kind {
    const char* name;
    void (*run)();
};

const std::vector<Kind>& kinds()
{
    static const std::vector<Kind> all = {
        {"read", &faults::read_null},
        {"write", &faults::write_null},
        {"division", &faults::divide_by_zero},
        {"call", &faults::call_null},
        {"virtual call", &faults::call_virtual_of_null},
        {"instruction", &faults::run_illegal_instruction},
        {"strlen", &faults::measure_no_text},
        {"strlen, object", &faults::measure_no_text_with_an_object},
        {"noexcept", [] { faults::read_in_noexcept(); }},
        {"destructor", &faults::read_in_destructor},
    };
    return all;
}

class WindowFaultingAtBirth : public CWnd {
public:
    explicit WindowFaultingAtBirth(void (*fault)()) : fault_(fault) {}

protected:
    DECLARE_MESSAGE_MAP()
    int OnCreate(LPCREATESTRUCT)
    {
        fault_();
        return 0;
    }

private:
    void (*fault_)();
};

BEGIN_MESSAGE_MAP(WindowFaultingAtBirth, CWnd)
    ON_WM_CREATE()
END_MESSAGE_MAP()

class GWinAppFaultTest : public Hosted {
protected:
    /// Runs the loop with `action` as a handler, and one more behind it, which must run, too.
    void run_with(const std::function<void()>& action)
    {
        bool next = false;
        host_.boxes.clear();
        host_.later(action);
        host_.later([&] { next = true; });
        host_.finish_later();
        host_.run_loop();
        EXPECT_TRUE(next);
    }
};

}  // namespace

TEST_F(GWinAppFaultTest, DivisionAndAccess_GiveTheSameTextInABoxAndTheLoopGoesOn)
{
    host_.open_frame();
    BoxAnswers answers;
    run_with(&faults::divide_by_zero);
    run_with(&faults::read_null);

    EXPECT_EQ(answers.texts, (Strings{kFaultText, kFaultText}));
}

TEST_F(GWinAppFaultTest, EachKindInAHandler_IsTold)
{
    host_.open_frame();
    host_.show_boxes = false;
    for (const Kind& kind : kinds()) {
        run_with(kind.run);
        EXPECT_EQ(host_.boxes, Strings{kFaultText}) << kind.name;
    }
}

TEST_F(GWinAppFaultTest, EachKindAThousandTimesInOneRun_EachIsTold)
{
    host_.open_frame(SW_HIDE);
    host_.show_boxes = false;
    for (int i = 0; i < kTimes; ++i)
        host_.later(kinds()[static_cast<std::size_t>(i) % kinds().size()].run);
    host_.finish_later();
    host_.run_loop();

    EXPECT_EQ(host_.boxes, Strings(kTimes, kFaultText));
}

TEST_F(GWinAppFaultTest, EachKindInWmCreate_NoWindowComesToBeAndItIsTold)
{
    host_.open_frame(SW_HIDE);
    host_.show_boxes = false;
    for (const Kind& kind : kinds()) {
        HWND made = nullptr;
        run_with([&] {
            WindowFaultingAtBirth window(kind.run);
            window.CreateEx(0, nullptr, "", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr);
            made = window.m_hWnd;
        });
        EXPECT_EQ(made, nullptr) << kind.name;
        EXPECT_EQ(host_.boxes, Strings{kFaultText}) << kind.name;
    }
}

TEST_F(GWinAppFaultTest, EachKindInAMessageSentByAnotherThread_ItsSenderGoesOn)
{
    HostFrame& frame = host_.open_frame(SW_HIDE);
    host_.show_boxes = false;
    const HWND window = frame.m_hWnd;
    for (const Kind& kind : kinds()) {
        host_.boxes.clear();
        frame.posted.emplace_back(kind.run);
        LRESULT answer = -1;
        std::thread sender([&] {
            answer = ::SendMessageA(window, HostFrame::kRun, 0, 0);
            ::PostMessageA(window, WM_NULL, 0, 0);
            ::PostMessageA(window, HostFrame::kRun, 0, 0);
        });
        bool next = false;
        // Taken by the posted one, behind the fault.
        frame.posted.emplace_back([&] {
            next = true;
            ::PostQuitMessage(0);
        });
        host_.run_loop();
        sender.join();
        EXPECT_EQ(answer, 0) << kind.name;
        EXPECT_TRUE(next) << kind.name;
        EXPECT_EQ(host_.boxes, Strings{kFaultText}) << kind.name;
    }
}

TEST_F(GWinAppFaultTest, EachKindInAnIdleTurn_IsTold)
{
    host_.open_frame(SW_HIDE);
    host_.show_boxes = false;
    for (const Kind& kind : kinds()) {
        host_.boxes.clear();
        bool done = false;
        host_.on_idle = [&](LONG count) {
            if (count == 0 && !std::exchange(done, true)) {
                host_.finish_later();
                kind.run();
            }
        };
        host_.run_loop();
        host_.on_idle = nullptr;
        EXPECT_EQ(host_.boxes, Strings{kFaultText}) << kind.name;
    }
}

TEST_F(GWinAppFaultTest, EachKindInAPreTranslation_IsTold)
{
    HostFrame& frame = host_.open_frame(SW_HIDE);
    host_.show_boxes = false;
    class Faulting : public CWnd {
    public:
        BOOL PreTranslateMessage(MSG* message) override
        {
            if (message->message == WM_APP + 20)
                fault();
            return CWnd::PreTranslateMessage(message);
        }
        void (*fault)() = nullptr;
    } child;
    ASSERT_TRUE(child.Create(nullptr, "", WS_CHILD, CRect(0, 0, 5, 5), &frame, 1));
    for (const Kind& kind : kinds()) {
        child.fault = kind.run;
        run_with([&] { child.PostMessage(WM_APP + 20); });
        run_with([] {});
        // The fault came in one of the two runs.
        EXPECT_LE(host_.boxes.size(), 1u) << kind.name;
    }
    child.DestroyWindow();
}

TEST_F(GWinAppFaultTest, EachKindOnAWorker_IsToldAndEndsItWithMinusOne)
{
    host_.open_frame(SW_HIDE);
    host_.OnIdle(0);  // the main window is watched from here on
    host_.show_boxes = false;
    for (const Kind& kind : kinds()) {
        host_.boxes.clear();
        const auto run = [](void* fault) -> unsigned {
            reinterpret_cast<void (*)()>(fault)();
            return 5;
        };
        GWinThread worker(run, reinterpret_cast<void*>(kind.run), CREATE_SUSPENDED);
        worker.m_bAutoDelete = FALSE;
        worker.ResumeThread();
        EXPECT_TRUE(host_.pump_until(
            [&] { return ::WaitForSingleObject(worker.m_hThread, 0) == WAIT_OBJECT_0; }));
        DWORD code = 0;
        ::GetExitCodeThread(worker.m_hThread, &code);
        EXPECT_EQ(code, static_cast<DWORD>(-1)) << kind.name;
        EXPECT_EQ(host_.boxes, Strings{kFaultText}) << kind.name;
    }
}

TEST(SeTranslatorFunc, AnyCode_ThrowsTheLibraryExceptionWithTheText)
{
    const TestHost host;
    for (const unsigned code : {0U, 0xC0000005U, 0xC0000094U, 0xFFFFFFFFU}) {
        try {
            GWinApp::SeTranslatorFunc(code, nullptr);
            FAIL();
        } catch (const GLibraryException& failure) {
            EXPECT_STREQ(failure.what(), kFaultText);
        }
    }
}
