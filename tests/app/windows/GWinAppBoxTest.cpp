#include "app/BoxRequest.h"
#include "app/GWinApp.h"
#include "platform/AfxState.h"
#include "platform/WindowProcedure.h"
#include "tests/app/windows/BoxAnswers.h"
#include "tests/app/windows/TestHost.h"

#include "settings/MsgBox.h"

#include <algorithm>
#include <atomic>
#include <thread>

namespace {

using Strings = std::vector<std::string>;

bool has_own_procedure(const CWnd& window)
{
    return ::GetWindowLongPtrA(window.m_hWnd, GWLP_WNDPROC) ==
           reinterpret_cast<LONG_PTR>(&AfxWndProc);
}

/// Retrieves one message, which is what lets the hook look for the main window.
void retrieve_a_message(HostFrame& frame)
{
    frame.PostMessage(WM_NULL);
    MSG message;
    while (::PeekMessage(&message, nullptr, 0, 0, PM_REMOVE))
        ::DispatchMessage(&message);
}

/// What the box that `ask` shows on a thread of its own gives.
class Asker {
public:
    explicit Asker(std::function<int()> ask)
        : thread_([this, ask = std::move(ask)] {
              answer_ = ask();
              done_ = true;
          })
    {
    }
    [[nodiscard]] bool done() const { return done_; }
    [[nodiscard]] int answer()
    {
        thread_.join();
        return answer_;
    }

private:
    int answer_ = 0;
    std::atomic<bool> done_ = false;
    std::jthread thread_;
};

class GWinAppBoxTest : public Hosted {
protected:
    /// Dispatches messages until all have their answers; many boxes take their time.
    [[nodiscard]] bool pump_until_done(const std::vector<std::unique_ptr<Asker>>& askers)
    {
        for (int patience = 0; patience < 9; ++patience)
            if (host_.pump_until([&] {
                    return std::ranges::all_of(askers, [](const auto& one) { return one->done(); });
                }))
                return true;
        return false;
    }
};

constexpr int kWorkers = 16;

std::string question(int worker, int turn)
{
    return "worker " + std::to_string(worker) + ", box " + std::to_string(turn);
}

/// What the user answers to a question: not the same to all.
int answer_to(const std::string& text)
{
    return std::ranges::count(text, '1') % 2 == 0 ? IDYES : IDNO;
}

/// Has the boxes of the calling thread answered that way.
void answer_questions(BoxAnswers& answers)
{
    answers.press = false;
    answers.in_front = [&answers](HWND box) { press_button(box, answer_to(answers.texts.back())); };
}

}  // namespace

TEST_F(GWinAppBoxTest, Hook_RunsOnlyUntilTheMainWindowExists)
{
    HostFrame other;
    MSG message;
    ::PostThreadMessageA(::GetCurrentThreadId(), WM_NULL, 0, 0);
    while (::PeekMessage(&message, nullptr, 0, 0, PM_REMOVE)) {
    }
    HostFrame& frame = host_.open_frame(SW_HIDE);
    EXPECT_TRUE(has_own_procedure(frame));
    retrieve_a_message(frame);
    EXPECT_FALSE(has_own_procedure(frame));

    // It is gone: another main window is not noticed by a message any more.
    auto* const second = new HostFrame;
    ASSERT_TRUE(second->Create(nullptr, "Second", WS_OVERLAPPEDWINDOW, CRect(0, 0, 50, 50)));
    host_.m_pMainWnd = second;
    retrieve_a_message(*second);
    EXPECT_TRUE(has_own_procedure(*second));
    frame.DestroyWindow();
}

TEST_F(GWinAppBoxTest, MainWindowThatIsReplaced_IsWatchedFromTheNextIdleTurn)
{
    HostFrame& splash = host_.open_frame(SW_HIDE);
    retrieve_a_message(splash);
    HostFrame& frame = host_.open_frame(SW_HIDE);
    host_.OnIdle(0);
    EXPECT_TRUE(has_own_procedure(splash));
    EXPECT_FALSE(has_own_procedure(frame));
    splash.DestroyWindow();

    host_.show_boxes = false;
    Asker asker([] { return AfxMessageBox("to the new one", MB_YESNO); });
    EXPECT_TRUE(host_.pump_until([&] { return asker.done(); }));
    EXPECT_EQ(asker.answer(), IDYES);
}

TEST_F(GWinAppBoxTest, WatchedWindow_GoesWithoutATrace)
{
    HostFrame& frame = host_.open_frame(SW_HIDE);
    retrieve_a_message(frame);
    frame.DestroyWindow();
    EXPECT_EQ(host_.m_pMainWnd, nullptr);
    HostFrame& next = host_.open_frame(SW_HIDE);
    host_.OnIdle(0);
    EXPECT_FALSE(has_own_procedure(next));
}

TEST_F(GWinAppBoxTest, NullMessageWithAnotherTag_GoesToTheFormerProcedure)
{
    HostFrame& frame = host_.open_frame(SW_HIDE);
    retrieve_a_message(frame);
    host_.show_boxes = false;
    std::vector<WPARAM> seen;
    frame.watch = [&](UINT message, WPARAM wparam) {
        if (message == WM_NULL)
            seen.push_back(wparam);
    };
    zmr::BoxRequest request{"asked directly", MB_OK, 0};
    const auto address = reinterpret_cast<LPARAM>(&request);
    ::SendMessageA(frame.m_hWnd, WM_NULL, 1000, address);
    ::SendMessageA(frame.m_hWnd, WM_NULL, 1001, address);
    ::SendMessageA(frame.m_hWnd, WM_NULL, 1002, address);
    ::SendMessageA(frame.m_hWnd, WM_NULL, 1001, 0);
    frame.watch = nullptr;

    EXPECT_EQ(seen, (std::vector<WPARAM>{1000, 1002, 1001}));
    EXPECT_EQ(host_.boxes, Strings{"asked directly"});
    EXPECT_EQ(request.result, IDYES);
}

TEST_F(GWinAppBoxTest, BoxOfAWorker_ShowsInTheMainThreadAndItsAnswerComesBack)
{
    HostFrame& frame = host_.open_frame();
    retrieve_a_message(frame);
    BoxAnswers answers(IDNO);
    DWORD box_thread = 0;
    answers.in_front = [&](HWND box) { box_thread = ::GetWindowThreadProcessId(box, nullptr); };
    Asker asker([] { return AfxMessageBox("Go on?", MB_YESNO); });
    EXPECT_TRUE(host_.pump_until([&] { return asker.done(); }));

    EXPECT_EQ(asker.answer(), IDNO);
    EXPECT_EQ(answers.texts, Strings{"Go on?"});
    EXPECT_EQ(box_thread, ::GetCurrentThreadId());
}

TEST_F(GWinAppBoxTest, BoxOfAWorker_WhileTheLoopSleeps)
{
    host_.open_frame();
    BoxAnswers answers(IDYES);
    std::unique_ptr<Asker> asker;
    host_.on_idle = [&](LONG count) {
        if (count == 0 || asker != nullptr)
            return;
        const HWND window = host_.frame().m_hWnd;
        asker = std::make_unique<Asker>([window] {
            const unsigned long answer = MsgBox::message_box("Sleeping?", 0x100);
            ::PostMessageA(window, WM_CLOSE, 0, 0);
            return static_cast<int>(answer);
        });
    };
    host_.run_loop();

    ASSERT_NE(asker, nullptr);
    EXPECT_EQ(asker->answer(), IDYES);
    EXPECT_EQ(answers.texts, Strings{"Sleeping?"});
}

TEST_F(GWinAppBoxTest, BoxesOfManyWorkersAtOnce_EachGetsItsOwnAnswer)
{
    HostFrame& frame = host_.open_frame();
    retrieve_a_message(frame);
    host_.show_boxes = false;
    std::vector<std::unique_ptr<Asker>> askers;
    for (int i = 0; i < 16; ++i)
        askers.push_back(std::make_unique<Asker>([i] {
            int yes = 0;
            for (int turn = 0; turn < 50; ++turn)
                yes += AfxMessageBox(std::to_string(i).c_str(), MB_YESNO) == IDYES;
            return yes;
        }));
    EXPECT_TRUE(host_.pump_until([&] {
        return std::ranges::all_of(askers, [](const auto& asker) { return asker->done(); });
    }));
    for (const auto& asker : askers)
        EXPECT_EQ(asker->answer(), 50);
    EXPECT_EQ(host_.boxes.size(), 16u * 50u);
}

TEST_F(GWinAppBoxTest, RealBoxesOfManyWorkersAtOnce_EachIsShownOnceWhileTheWindowPaints)
{
    constexpr int kBoxes = 4;
    HostFrame& frame = host_.open_frame();
    retrieve_a_message(frame);
    int paintings = 0;
    frame.watch = [&](UINT message, WPARAM) {
        if (message == WM_TIMER)
            frame.Invalidate();
        if (message == WM_PAINT)
            ++paintings;
    };
    frame.SetTimer(1, 10, nullptr);
    BoxAnswers answers;
    answer_questions(answers);
    std::vector<std::unique_ptr<Asker>> askers;
    for (int worker = 0; worker < kWorkers; ++worker)
        askers.push_back(std::make_unique<Asker>([worker] {
            int right = 0;
            for (int turn = 0; turn < kBoxes; ++turn) {
                const std::string text = question(worker, turn);
                right += AfxMessageBox(text.c_str(), MB_YESNO) == answer_to(text);
            }
            return right;
        }));
    EXPECT_TRUE(pump_until_done(askers));
    frame.watch = nullptr;

    for (const auto& asker : askers)
        EXPECT_EQ(asker->answer(), kBoxes);
    EXPECT_GT(paintings, 0);
    ASSERT_EQ(answers.texts.size(), std::size_t{kWorkers * kBoxes});
    for (int worker = 0; worker < kWorkers; ++worker) {
        auto place = answers.texts.begin();
        for (int turn = 0; turn < kBoxes; ++turn) {
            place = std::find(place, answers.texts.end(), question(worker, turn));
            ASSERT_NE(place, answers.texts.end()) << question(worker, turn);
            EXPECT_EQ(std::ranges::count(answers.texts, *place), 1);
        }
    }
}

TEST_F(GWinAppBoxTest, MainWindowThatClosesUnderBoxesOfManyWorkers_NoneIsLeftWaiting)
{
    constexpr int kBoxes = 6;
    constexpr int kBeforeTheEnd = 20;
    HostFrame& frame = host_.open_frame();
    retrieve_a_message(frame);
    const HWND window = frame.m_hWnd;
    BoxAnswers answers;
    answers.press = false;
    answers.in_front = [&](HWND box) {
        if (answers.texts.size() == kBeforeTheEnd)
            ::PostMessageA(window, WM_CLOSE, 0, 0);  // and this box is not answered
        else
            press_button(box, answer_to(answers.texts.back()));
    };
    std::atomic<int> asked = 0;
    std::atomic<int> cancelled = 0;
    std::atomic<int> elsewhere = 0;  // shown in the thread of a worker that came too late
    std::vector<std::unique_ptr<Asker>> askers;
    for (int worker = 0; worker < kWorkers; ++worker)
        askers.push_back(std::make_unique<Asker>([&, worker] {
            BoxAnswers own;
            own.press = false;
            std::string text;
            own.in_front = [&text](HWND box) { press_button(box, answer_to(text)); };
            int wrong = 0;
            for (int turn = 0; turn < kBoxes && ::IsWindow(window); ++turn) {
                text = question(worker, turn);
                const int answer = static_cast<int>(MsgBox::message_box(text.c_str(), 0x100));
                ++asked;
                cancelled += answer == IDCANCEL;
                wrong += answer != answer_to(text) && answer != IDCANCEL;
            }
            elsewhere += static_cast<int>(own.texts.size());
            return wrong;
        }));
    EXPECT_TRUE(pump_until_done(askers));

    for (const auto& asker : askers)
        EXPECT_EQ(asker->answer(), 0);
    EXPECT_FALSE(::IsWindow(window));
    EXPECT_GE(answers.texts.size(), std::size_t{kBeforeTheEnd});
    EXPECT_GT(cancelled, 0);
    const int shown = static_cast<int>(answers.texts.size()) + elsewhere;
    EXPECT_LE(shown, asked);
    EXPECT_GE(shown + cancelled, asked) << "each was answered or cancelled";
}

TEST_F(GWinAppBoxTest, BoxOfAWorkerWhileABoxIsOpen_ShowsAboveIt)
{
    HostFrame& frame = host_.open_frame();
    retrieve_a_message(frame);
    BoxAnswers answers;
    answers.press = false;
    std::unique_ptr<Asker> asker;
    HWND first = nullptr;
    answers.in_front = [&](HWND box) {
        if (first == nullptr) {
            first = box;
            asker = std::make_unique<Asker>([] { return AfxMessageBox("second", MB_YESNO); });
            return;
        }
        press_button(box, IDNO);
        press_button(first, IDOK);
    };
    EXPECT_EQ(AfxMessageBox("first"), IDOK);
    EXPECT_TRUE(host_.pump_until([&] { return asker->done(); }));
    EXPECT_EQ(asker->answer(), IDNO);
    EXPECT_EQ(answers.texts, (Strings{"first", "second"}));
}

TEST_F(GWinAppBoxTest, MainWindowWhoseProcedureWasNotReplaced_LeavesTheAnswerAtCancel)
{
    HostFrame& frame = host_.open_frame(SW_HIDE);
    ASSERT_TRUE(has_own_procedure(frame));
    Asker asker([] { return AfxMessageBox("Anybody there?", MB_YESNO); });
    const ULONGLONG last = ::GetTickCount64() + 10'000;
    // Answers what is sent, and retrieves nothing.
    while (!asker.done() && ::GetTickCount64() < last) {
        MSG message;
        ::MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_SENDMESSAGE);
        ::PeekMessage(&message, nullptr, WM_APP + 100, WM_APP + 100, PM_NOREMOVE);
    }
    EXPECT_EQ(asker.answer(), IDCANCEL);
    EXPECT_TRUE(host_.boxes.empty());
}

TEST_F(GWinAppBoxTest, BoxOfAWorkerWithoutAMainWindow_ShowsInTheWorkersThread)
{
    std::string text;
    DWORD box_thread = 0;
    Asker asker([&] {
        BoxAnswers answers(IDYES);
        answers.in_front = [&](HWND box) { box_thread = ::GetWindowThreadProcessId(box, nullptr); };
        const int answer = AfxMessageBox("Nobody else here?", MB_YESNO);
        text = answers.texts.empty() ? "" : answers.texts.front();
        return answer;
    });
    EXPECT_TRUE(host_.pump_until([&] { return asker.done(); }));
    EXPECT_EQ(asker.answer(), IDYES);
    EXPECT_EQ(text, "Nobody else here?");
    EXPECT_NE(box_thread, 0u);
    EXPECT_NE(box_thread, ::GetCurrentThreadId());
    EXPECT_TRUE(host_.boxes.empty());
}

TEST_F(GWinAppBoxTest, EndOfTheMainWindowUnderARequest_GivesCancel)
{
    HostFrame& frame = host_.open_frame(SW_HIDE);
    retrieve_a_message(frame);
    // The request comes while the window is being destroyed: nobody answers any more.
    const HWND window = frame.m_hWnd;
    zmr::BoxRequest request{"late", MB_YESNO, 0};
    frame.DestroyWindow();
    ::SendMessageA(window, WM_NULL, zmr::kBoxRequest, reinterpret_cast<LPARAM>(&request));
    EXPECT_EQ(request.result, IDCANCEL);
}

TEST_F(GWinAppBoxTest, AnswerThatThrows_GivesTheWorkerCancelAndTheLoopTheException)
{
    class Throwing : public TestHost {
    public:
        int DoMessageBox(LPCTSTR text, UINT type, UINT help) override
        {
            if (::GetCurrentThreadId() == m_nThreadID && *text == 't')
                throw std::runtime_error("no box today");
            return TestHost::DoMessageBox(text, type, help);
        }
    } host;
    ASSERT_TRUE(host.InitInstance());
    host.open_frame(SW_HIDE);
    host.OnIdle(0);
    Asker asker([] { return AfxMessageBox("throw", MB_YESNO); });
    EXPECT_TRUE(host.pump_until([&] { return asker.done(); }));
    EXPECT_THROW(host.OnIdle(1), std::runtime_error);  // which is what the loop does next
    EXPECT_EQ(asker.answer(), IDCANCEL);
    host.m_pMainWnd->DestroyWindow();
    host.ExitInstance();
}

TEST_F(GWinAppBoxTest, Box_DisablesTheThreadsWindowsMeanwhileAndGivesThemBack)
{
    HostFrame& frame = host_.open_frame();
    HostFrame other;
    auto* const second = new HostFrame;
    ASSERT_TRUE(second->Create(nullptr, "Second", WS_OVERLAPPEDWINDOW, CRect(0, 0, 50, 50)));
    auto* const asleep = new HostFrame;
    ASSERT_TRUE(asleep->Create(nullptr, "Asleep", WS_OVERLAPPEDWINDOW, CRect(0, 0, 50, 50)));
    asleep->EnableWindow(FALSE);
    BoxAnswers answers;
    std::vector<bool> enabled;
    answers.in_front = [&](HWND) {
        for (const CWnd* window : {static_cast<CWnd*>(&frame), static_cast<CWnd*>(second)})
            enabled.push_back(::IsWindowEnabled(window->m_hWnd) != FALSE);
    };
    AfxMessageBox("modal");

    EXPECT_EQ(enabled, (std::vector<bool>{false, false}));
    EXPECT_TRUE(frame.IsWindowEnabled());
    EXPECT_TRUE(second->IsWindowEnabled());
    EXPECT_FALSE(asleep->IsWindowEnabled());
    second->DestroyWindow();
    asleep->DestroyWindow();
}

TEST_F(GWinAppBoxTest, BehindABox_TheMainWindowIsActiveAgain)
{
    HostFrame& frame = host_.open_frame();
    frame.ShowWindow(SW_SHOW);
    frame.SetForegroundWindow();
    ASSERT_TRUE(host_.pump_until([&] { return ::GetActiveWindow() == frame.m_hWnd; }));
    {
        BoxAnswers answers;
        AfxMessageBox("in between");
    }
    EXPECT_EQ(::GetActiveWindow(), frame.m_hWnd);
    EXPECT_EQ(::GetForegroundWindow(), frame.m_hWnd);
}

TEST_F(GWinAppBoxTest, BehindABox_TheControlThatHadTheKeyboardHasItAgain)
{
    HostFrame& frame = host_.open_frame();
    CWnd control;
    ASSERT_TRUE(control.Create("EDIT", "", WS_CHILD | WS_VISIBLE, CRect(0, 0, 50, 20), &frame, 5));
    frame.ShowWindow(SW_SHOW);
    frame.SetForegroundWindow();
    ASSERT_TRUE(host_.pump_until([&] { return ::GetActiveWindow() == frame.m_hWnd; }));
    control.SetFocus();
    {
        BoxAnswers answers;
        AfxMessageBox("in between");
    }
    EXPECT_EQ(::GetFocus(), control.m_hWnd);
    control.DestroyWindow();
}
