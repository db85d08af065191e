#include "app/GWinApp.h"

#include "app/GAccelerators.h"
#include "app/GWinThread.h"
#include "tests/app/windows/BoxAnswers.h"
#include "tests/app/windows/TestHost.h"
#include "tests/platform/windows/Faults.h"
#include "tests/support/ResourceLedger.h"

#include "foundation/GException.h"
#include "settings/MsgBox.h"

#include <charconv>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <iostream>

// Long use leaves nothing behind: what the process holds is the same at the end as at the begin.
// A turn is two boxes; ZMR_SOAK_TURNS=5000 is the long form.

namespace {

int soak_turns()
{
    const char* const asked = std::getenv("ZMR_SOAK_TURNS");
    int turns = 0;
    if (asked == nullptr ||
        std::from_chars(asked, asked + std::strlen(asked), turns).ec != std::errc())
        return 250;
    return turns;
}

/// How much more the process holds behind some turns of an action than in front of them.
ResourceCounts growth(const std::function<void()>& action, int turns)
{
    constexpr int kFirstTurns = 20;  // fill what the system keeps for good
    for (int turn = 0; turn < kFirstTurns; ++turn)
        action();
    const ResourceCounts before = count_resources();
    for (int turn = 0; turn < turns; ++turn)
        action();
    const ResourceCounts after = count_resources();
    return {.windows = after.windows - before.windows,
            .menus = after.menus - before.menus,
            .icons = after.icons - before.icons,
            .drawing_objects = after.drawing_objects - before.drawing_objects,
            .kernel_handles = after.kernel_handles - before.kernel_handles,
            .heap_bytes =
                after.heap_bytes > before.heap_bytes ? after.heap_bytes - before.heap_bytes : 0};
}

/// The bytes that the system itself keeps of each message box.
double bytes_kept_of_a_box()
{
    constexpr int kBoxes = 100;
    const ResourceCounts kept =
        growth([] { ::MessageBoxA(nullptr, "The system's own.", "Host", MB_YESNO); }, kBoxes);
    return static_cast<double>(kept.heap_bytes) / kBoxes;
}

unsigned ask_from_a_worker(void*)
{
    return static_cast<unsigned>(MsgBox::message_box("From a worker.", 0x100));
}

class GWinAppSoakTest : public Hosted {
protected:
    /// A worker that lives while the loop of this thread answers it.
    void run_worker()
    {
        GWinThread worker(&ask_from_a_worker, nullptr, CREATE_SUSPENDED);
        worker.m_bAutoDelete = FALSE;
        worker.ResumeThread();
        while (::MsgWaitForMultipleObjectsEx(1, &worker.m_hThread, INFINITE, QS_ALLINPUT,
                                             MWMO_INPUTAVAILABLE) != WAIT_OBJECT_0)
            dispatch();
        DWORD code = 0;
        ::GetExitCodeThread(worker.m_hThread, &code);
        EXPECT_EQ(code, static_cast<DWORD>(IDYES));
    }
    static void dispatch()
    {
        MSG message;
        while (::PeekMessage(&message, nullptr, 0, 0, PM_REMOVE))
            ::DispatchMessage(&message);
    }
    /// Nothing but what the system keeps of its boxes, two for each turn.
    static void expect_no_growth(const std::function<void()>& action)
    {
        const int turns = soak_turns();
        const double box = bytes_kept_of_a_box();
        const ResourceCounts grown = growth(action, turns);
        const double bytes = static_cast<double>(grown.heap_bytes) / turns;
        std::cout << turns << " turns: " << bytes << " bytes kept of each, where the system keeps "
                  << box << " of a box.\n";
        EXPECT_LE(grown.windows, 0);
        EXPECT_LE(grown.menus, 0);
        EXPECT_LE(grown.icons, 0);
        EXPECT_LE(grown.drawing_objects, 0);
        EXPECT_LE(grown.kernel_handles, 0);
        EXPECT_LE(bytes, 2 * box + 40);
    }
};

}  // namespace

TEST_F(GWinAppSoakTest, BoxesOfTheMainThreadAndOfWorkers_LeaveNothingBehind)
{
    host_.open_frame();
    host_.OnIdle(0);
    BoxAnswers answers(IDYES);
    expect_no_growth([&] {
        EXPECT_EQ(MsgBox::message_box("From here.", 0x100), 6u);
        run_worker();
        answers.texts.clear();
        host_.boxes.clear();
        host_.idle_counts.clear();
    });
}

TEST_F(GWinAppSoakTest, RunsWithExceptionsAndFaults_LeaveNothingBehind)
{
    host_.open_frame();
    BoxAnswers answers(IDYES);
    expect_no_growth([&] {
        answers.texts.clear();
        GAccelerators accelerators;
        EXPECT_TRUE(accelerators.load("KEYS"));
        host_.later([] { throw GLibraryException("told"); });
        host_.later(&faults::measure_no_text_with_an_object);
        host_.later([&] { host_.finish_later(); });
        host_.run_loop();
        EXPECT_EQ(answers.texts.size(), 2u);
        host_.InitInstance();
        host_.boxes.clear();
        host_.idle_counts.clear();
    });
}
