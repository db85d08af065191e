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

// Long use leaves nothing behind: what the process holds is the same at the end as at the begin.
// ZMR_SOAK_TURNS=10000 is the long form.

namespace {

int soak_turns()
{
    const char* const asked = std::getenv("ZMR_SOAK_TURNS");
    int turns = 0;
    if (asked == nullptr ||
        std::from_chars(asked, asked + std::strlen(asked), turns).ec != std::errc())
        return 500;
    return turns;
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
};

}  // namespace

TEST_F(GWinAppSoakTest, BoxesWorkersFaultsAndRuns_LeaveNothingBehind)
{
    host_.open_frame();
    host_.OnIdle(0);
    BoxAnswers answers(IDYES);
    const int turns = soak_turns();
    EXPECT_EQ(what_leaks(
                  [&] {
                      EXPECT_EQ(MsgBox::message_box("From here.", 0x100), 6u);
                      run_worker();
                      answers.texts.clear();
                  },
                  turns),
              "");
    EXPECT_EQ(what_leaks(
                  [&] {
                      GAccelerators accelerators;
                      EXPECT_TRUE(accelerators.load("KEYS"));
                      host_.later([] { throw GLibraryException("told"); });
                      host_.later(&faults::measure_no_text_with_an_object);
                      host_.finish_later();
                      host_.run_loop();
                      host_.InitInstance();
                      answers.texts.clear();
                      host_.boxes.clear();
                      host_.idle_counts.clear();
                  },
                  turns),
              "");
}
