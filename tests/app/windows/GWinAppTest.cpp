#include "app/GWinApp.h"

#include "app/GAccelerators.h"
#include "app/GWinThread.h"
#include "platform/CMenu.h"
#include "platform/PlatformMessages.h"
#include "tests/app/windows/BoxAnswers.h"
#include "tests/app/windows/TestHost.h"
#include "tests/support/WindowInput.h"

#include "foundation/GException.h"
#include "foundation/GStreamable.h"
#include "foundation/SuspendedDestruction.h"
#include "responder/GIdler.h"

#include <objbase.h>

#include <atomic>
#include <clocale>
#include <iostream>
#include <limits>
#include <memory>
#include <new>
#include <stdexcept>
#include <utility>

namespace {

using Strings = std::vector<std::string>;

class CountingIdler : public GIdler {
public:
    void idle() override
    {
        ++calls;
        if (action)
            action();
    }

    int calls = 0;
    std::function<void()> action;
};

int alive = 0;

class CountedObject : public GStreamable {
public:
    CountedObject() { ++alive; }
    ~CountedObject() override { --alive; }
};

/// How much processor time the calling thread has used, in milliseconds.
double thread_time_ms()
{
    FILETIME unused{};
    FILETIME kernel{};
    FILETIME user{};
    ::GetThreadTimes(::GetCurrentThread(), &unused, &unused, &kernel, &user);
    const auto ticks = [](const FILETIME& time) {
        return static_cast<double>(
            ULARGE_INTEGER{{time.dwLowDateTime, time.dwHighDateTime}}.QuadPart);
    };
    return (ticks(kernel) + ticks(user)) / 10'000;
}

using GWinAppTest = Hosted;

}  // namespace

TEST_F(GWinAppTest, Construction_NumbersAreWrittenAsInC)
{
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
}

TEST_F(GWinAppTest, Construction_FailingAllocationThrowsOutOfMemory)
{
    const volatile std::size_t too_much = std::numeric_limits<std::size_t>::max() / 4;
    EXPECT_THROW(::operator delete(::operator new(too_much)), OutOfMemory_Exception);
    EXPECT_EQ(::operator new(too_much, std::nothrow), nullptr);
}

TEST_F(GWinAppTest, Construction_StringsFindTheTextsOfTheResources)
{
    GString text;
    EXPECT_TRUE(text.loadString(10000));
    EXPECT_STREQ(text.text, "Serious error took place!\n\nZomarra needs to close.");
    ASSERT_TRUE(text.loadString(10001));
    int parts = 1;
    for (const char letter : text.view())
        parts += letter == '|';
    EXPECT_EQ(parts, 15);
}

TEST(GWinAppLife, End_FormerNewHandlerIsBack)
{
    const std::new_handler former = std::get_new_handler();
    {
        const TestHost host;
        EXPECT_NE(std::get_new_handler(), former);
    }
    EXPECT_EQ(std::get_new_handler(), former);
}

TEST(GWinAppLife, OleThatDoesNotStart_IsToldAndEndsTheStart)
{
    ASSERT_EQ(::CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
    {
        TestHost host;
        host.show_boxes = false;
        EXPECT_FALSE(host.InitInstance());
        EXPECT_EQ(host.boxes, Strings{"OLE initialization failed"});
        EXPECT_FALSE(SuspendedDestruction::IsEnabled());
    }
    ::CoUninitialize();
}

TEST(GWinAppLife, Ole_StartsWithTheInstanceAndEndsWithIt)
{
    TestHost host;
    APTTYPE type{};
    APTTYPEQUALIFIER qualifier{};
    ASSERT_TRUE(host.InitInstance());
    EXPECT_EQ(::CoGetApartmentType(&type, &qualifier), S_OK);
    host.ExitInstance();
    EXPECT_EQ(::CoGetApartmentType(&type, &qualifier), CO_E_NOTINITIALIZED);
}

TEST(GWinAppLife, DestructionIsDeferredFromInitInstanceToExitInstance)
{
    TestHost host;
    EXPECT_FALSE(SuspendedDestruction::IsEnabled());
    ASSERT_TRUE(host.InitInstance());
    EXPECT_TRUE(SuspendedDestruction::IsEnabled());

    GStreamable::destroy(new CountedObject);
    EXPECT_EQ(alive, 1);
    host.ExitInstance();
    EXPECT_EQ(alive, 0);
    GStreamable::destroy(new CountedObject);
    EXPECT_EQ(alive, 0);
}

TEST(GWinAppLife, Run_WithoutAMainWindowEndsAtOnce)
{
    TestHost host;
    ASSERT_TRUE(host.InitInstance());
    EXPECT_EQ(host.run_loop(), 0);
    EXPECT_FALSE(SuspendedDestruction::IsEnabled());
}

TEST_F(GWinAppTest, Run_EndOfTheMainWindowEndsTheLoop)
{
    host_.open_frame();
    host_.later([this] { host_.frame().PostMessage(WM_CLOSE); });
    EXPECT_EQ(host_.run_loop(), 0);
    EXPECT_EQ(host_.m_pMainWnd, nullptr);
}

TEST_F(GWinAppTest, LibraryExceptionInAHandler_IsShownAndTheLoopGoesOnWithTheNextMessage)
{
    host_.open_frame();
    BoxAnswers answers;
    Strings order;
    host_.later([&] {
        order.emplace_back("first");
        throw GLibraryException("The disk is full.");
    });
    host_.later([&] { order.emplace_back("second"); });
    host_.finish_later();
    host_.run_loop();

    EXPECT_EQ(answers.texts, Strings{"The disk is full."});
    EXPECT_EQ(order, (Strings{"first", "second"}));
}

TEST_F(GWinAppTest, OutOfMemoryInAHandler_IsShownToo)
{
    host_.open_frame();
    host_.show_boxes = false;
    host_.later([] {
        const volatile std::size_t too_much = std::numeric_limits<std::size_t>::max() / 4;
        ::operator delete(::operator new(too_much));
    });
    host_.finish_later();
    host_.run_loop();

    ASSERT_EQ(host_.boxes.size(), 1u);
    EXPECT_EQ(host_.boxes.front(), OutOfMemory_Exception().what());
}

TEST_F(GWinAppTest, OtherExceptionInAHandler_LeavesRun)
{
    host_.open_frame();
    host_.show_boxes = false;
    host_.later([] { throw std::runtime_error("not ours"); });

    EXPECT_THROW(host_.run_loop(), std::runtime_error);
    EXPECT_TRUE(host_.boxes.empty());
}

namespace {

class FailingEnd : public TestHost {
public:
    int ExitInstance() override
    {
        TestHost::ExitInstance();
        if (++ends == 1)
            throw GLibraryException("at the end");
        return 5;
    }
    int ends = 0;
};

}  // namespace

TEST(GWinAppLife, LibraryExceptionAtTheEnd_IsShownAndTheRunIsOver)
{
    FailingEnd host;
    host.show_boxes = false;
    ASSERT_TRUE(host.InitInstance());
    host.open_frame();
    host.later([] { ::PostQuitMessage(9); });
    EXPECT_EQ(host.run_loop(), 9);
    EXPECT_EQ(host.boxes, Strings{"at the end"});
    EXPECT_EQ(host.ends, 1);
    host.m_pMainWnd->DestroyWindow();
}

TEST_F(GWinAppTest, OnIdle_BothTurnsGiveTrueAndIdlersRunInTheFirstOnly)
{
    CountingIdler idler;
    host_.open_frame();
    EXPECT_EQ(host_.OnIdle(0), TRUE);
    EXPECT_EQ(idler.calls, 1);
    host_.frame().PostMessage(WM_NULL);
    EXPECT_EQ(host_.OnIdle(1), TRUE);
    EXPECT_EQ(idler.calls, 1);
    EXPECT_EQ(host_.OnIdle(-1), TRUE);
    EXPECT_EQ(idler.calls, 2);
}

TEST_F(GWinAppTest, OnIdle_InputThatWasSeenButNotTakenEndsTheSleep)
{
    host_.open_frame();
    host_.frame().PostMessage(WM_NULL);
    MSG message;
    ASSERT_TRUE(::PeekMessage(&message, nullptr, 0, 0, PM_NOREMOVE));
    EXPECT_EQ(host_.OnIdle(1), TRUE);
}

TEST_F(GWinAppTest, OnIdle_OrderIsDestructionThenIdlersThenCommandUpdate)
{
    Strings order;
    HostFrame& frame = host_.open_frame();
    frame.watch = [&](UINT message, WPARAM) {
        if (message == WM_IDLEUPDATECMDUI)
            order.emplace_back("update");
    };
    CountingIdler idler;
    idler.action = [&] { order.push_back(alive == 0 ? "idler" : "idler before destruction"); };
    GStreamable::destroy(new CountedObject);
    host_.OnIdle(0);
    frame.watch = nullptr;

    EXPECT_EQ(order, (Strings{"idler", "update"}));
}

TEST_F(GWinAppTest, ObjectDestroyedInAHandler_IsFreedInTheNextIdleStep)
{
    host_.open_frame();
    int in_handler = -1;
    host_.later([&] {
        GStreamable::destroy(new CountedObject);
        in_handler = alive;
    });
    int behind_idle = -1;
    CountingIdler idler;
    idler.action = [&] {
        if (in_handler != -1 && behind_idle == -1) {
            behind_idle = alive;
            host_.finish_later();
        }
    };
    host_.run_loop();

    EXPECT_EQ(in_handler, 1);
    EXPECT_EQ(behind_idle, 0);
}

TEST_F(GWinAppTest, IdlePeriod_HasTwoTurnsAndNoMoreUntilThereIsInput)
{
    HostFrame& frame = host_.open_frame(SW_HIDE);
    int waits = 0;
    host_.on_idle = [&](LONG count) {
        if (count == 0)
            return;
        EXPECT_EQ(count, 1);
        if (++waits < 5)
            frame.PostMessage(WM_NULL);
        else
            ::PostQuitMessage(0);
    };
    host_.run_loop();

    EXPECT_EQ(host_.idle_counts, (std::vector<LONG>{0, 1, 0, 1, 0, 1, 0, 1, 0, 1}));
}

TEST_F(GWinAppTest, MessagesSentByOthers_AreAnsweredInTheSleepWithoutNewWork)
{
    HostFrame& frame = host_.open_frame(SW_HIDE);
    const HWND window = frame.m_hWnd;
    CountingIdler idler;
    int sent = 0;
    frame.watch = [&](UINT message, WPARAM) { sent += message == WM_APP; };
    zmr::OwnedKernelHandle sender;
    bool started = false;
    host_.on_idle = [&](LONG count) {
        if (count == 0 || std::exchange(started, true))
            return;
        sender.reset(::CreateThread(
            nullptr, 0,
            [](void* to) -> DWORD {
                for (int i = 0; i < 10; ++i)
                    ::SendMessageA(static_cast<HWND>(to), WM_APP, 0, 0);
                ::PostMessageA(static_cast<HWND>(to), WM_CLOSE, 0, 0);
                return 0;
            },
            window, 0, nullptr));
    };
    host_.run_loop();
    ::WaitForSingleObject(sender.get(), INFINITE);

    EXPECT_EQ(sent, 10);
    EXPECT_LE(idler.calls, 2);
}

TEST_F(GWinAppTest, IdleProgram_UsesNoProcessorTime)
{
    HostFrame& frame = host_.open_frame();
    CountingIdler idler;
    double begin = -1;
    double used = -1;
    int idle_turns = 0;
    host_.later([&] { frame.SetTimer(1, 1'000); });
    frame.watch = [&](UINT message, WPARAM) {
        if (message == WM_TIMER && used < 0) {
            used = thread_time_ms() - begin;
            idle_turns = idler.calls;
            ::PostQuitMessage(0);
        }
    };
    host_.on_idle = [&](LONG count) {
        if (count > 0)
            begin = thread_time_ms();
    };
    host_.run_loop();
    std::cout << "A second of idling takes " << used << " ms of the processor.\n";

    EXPECT_GE(begin, 0);
    EXPECT_LT(used, 20);
    EXPECT_LT(idle_turns, 50);
}

TEST_F(GWinAppTest, IdlerThatThrows_IsToldOncePerInputAndTheLoopGoesOn)
{
    HostFrame& frame = host_.open_frame(SW_HIDE);
    host_.show_boxes = false;
    CountingIdler idler;
    idler.action = [] { throw GLibraryException("idler"); };
    // Input comes from elsewhere, one by one.
    frame.SetTimer(1, USER_TIMER_MINIMUM);
    int ticks = 0;
    frame.watch = [&](UINT message, WPARAM) {
        if (message == WM_TIMER && ++ticks == 5)
            ::PostQuitMessage(0);
    };
    host_.run_loop();

    EXPECT_EQ(ticks, 5);
    EXPECT_GE(host_.boxes.size(), 1u);
    EXPECT_LE(host_.boxes.size(), 7u);
}

TEST_F(GWinAppTest, TemporaryObjects_AreFreedBetweenMessages)
{
    host_.open_frame();
    const HWND desktop = ::GetDesktopWindow();
    static_cast<void>(CWnd::FromHandle(desktop));
    host_.later([] {});
    bool freed = false;
    host_.on_idle = [&](LONG count) {
        if (count > 0)
            host_.later([&] {
                freed = CWnd::FromHandlePermanent(desktop) == nullptr;
                ::PostQuitMessage(0);
            });
    };
    host_.run_loop();
    EXPECT_TRUE(freed);
}

TEST_F(GWinAppTest, PreTranslate_AcceleratorsOfTheListComeBeforeTheFramesOwnKeys)
{
    HostFrame& frame = host_.open_frame();
    ACCEL own{FVIRTKEY, VK_F5, 200};
    ACCEL listed{FVIRTKEY, VK_F5, 100};
    const zmr::OwnedAccelerators own_table(::CreateAcceleratorTableA(&own, 1));
    frame.m_hAccelTable = own_table.get();
    GAccelerators accelerators;
    accelerators.assign_to(frame.m_hWnd);
    ASSERT_TRUE(accelerators.load("PRECEDENCE"));
    std::vector<WPARAM> commands;
    frame.watch = [&](UINT message, WPARAM wparam) {
        if (message == WM_COMMAND)
            commands.push_back(LOWORD(wparam));
    };
    MSG key{frame.m_hWnd, WM_KEYDOWN, VK_F5, 1, 0, {}};
    EXPECT_TRUE(host_.PreTranslateMessage(&key));
    EXPECT_EQ(commands, (std::vector<WPARAM>{listed.cmd}));

    accelerators.assign_to(nullptr);
    EXPECT_TRUE(host_.PreTranslateMessage(&key));
    EXPECT_EQ(commands, (std::vector<WPARAM>{listed.cmd, own.cmd}));
    frame.watch = nullptr;
    frame.m_hAccelTable = nullptr;
}

TEST_F(GWinAppTest, OpenMenu_IdlersUpdatesAndDestructionGoOn)
{
    HostFrame& frame = host_.open_frame();
    CountingIdler idler;
    int updates = 0;
    int at_open = -1;
    int calls_at_open = -1;
    bool entered = false;
    frame.watch = [&](UINT message, WPARAM wparam) {
        updates += message == WM_IDLEUPDATECMDUI && calls_at_open >= 0;
        entered |= message == WM_ENTERIDLE && wparam == MSGF_MENU;
    };
    CMenu menu;
    ASSERT_TRUE(menu.CreatePopupMenu());
    menu.AppendMenu(MF_STRING, 300, "Item");
    frame.ShowWindow(SW_SHOW);
    frame.SetForegroundWindow();
    ASSERT_TRUE(host_.pump_until([&] { return ::GetForegroundWindow() == frame.m_hWnd; }));
    static_cast<void>(host_.OnIdle(0));  // the main window is watched from here on
    bool closed = false;
    host_.later([&] {
        GStreamable::destroy(new CountedObject);
        at_open = alive;
        calls_at_open = idler.calls;
        menu.TrackPopupMenu(TPM_LEFTALIGN, 100, 100, &frame);
        closed = true;
    });
    EXPECT_TRUE(WindowInput().wait_until([&] { return entered; }).key(VK_ESCAPE).play_until([&] {
        return closed;
    }));
    frame.watch = nullptr;

    EXPECT_EQ(at_open, 1);
    EXPECT_EQ(alive, 0);
    EXPECT_GT(idler.calls, calls_at_open);
    EXPECT_GT(updates, 0);
}

TEST_F(GWinAppTest, OpenMessageBox_IdlersUpdatesAndDestructionGoOn)
{
    HostFrame& frame = host_.open_frame();
    CountingIdler idler;
    HWND box = nullptr;
    int updates = 0;
    // The last thing of an idle turn closes the box.
    frame.watch = [&](UINT message, WPARAM) {
        if (message != WM_IDLEUPDATECMDUI || box == nullptr)
            return;
        ++updates;
        press_button(box, IDOK);
    };
    BoxAnswers answers;
    answers.press = false;
    answers.in_front = [&](HWND shown) {
        box = shown;
        idler.calls = 0;
    };
    GStreamable::destroy(new CountedObject);
    ASSERT_EQ(alive, 1);
    EXPECT_EQ(AfxMessageBox("Are the bars alive?"), IDOK);
    frame.watch = nullptr;

    EXPECT_EQ(alive, 0);
    EXPECT_GT(idler.calls, 0);
    EXPECT_GT(updates, 0);
}

TEST_F(GWinAppTest, ExceptionOfAnIdlerWhileABoxIsOpen_ComesWhenTheBoxIsClosed)
{
    host_.open_frame();
    CountingIdler idler;
    HWND box = nullptr;
    bool thrown = false;
    idler.action = [&] {
        if (box == nullptr || std::exchange(thrown, true))
            return;
        press_button(box, IDOK);
        throw GLibraryException("from below the box");
    };
    Strings order;
    {
        BoxAnswers answers;
        answers.press = false;
        answers.in_front = [&](HWND shown) { box = shown; };
        host_.later([&] {
            AfxMessageBox("question");
            answers.press = true;
            order.emplace_back("closed");
            host_.finish_later();
        });
        host_.run_loop();
        EXPECT_EQ(answers.texts, (Strings{"question", "from below the box"}));
    }
    EXPECT_EQ(order, Strings{"closed"});
}
