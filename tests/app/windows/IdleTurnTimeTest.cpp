#include "platform/CCmdUI.h"
#include "platform/PlatformMessages.h"
#include "tests/app/windows/TestHost.h"

#include "responder/GIdler.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <memory>

// How long an idle turn takes in a large program, beside the platform's own turn in the same run.

namespace {

constexpr int kIdlers = 1'000;
constexpr UINT kCommands = 200;
constexpr UINT kFirstCommand = 2'000;
constexpr int kTurns = 101;

int idle_calls = 0;
int updated = 0;

class Idler : public GIdler {
public:
    void idle() override { ++idle_calls; }
};

/// The host's main window: it knows the state of its commands.
class CommandFrame : public HostFrame {
protected:
    DECLARE_MESSAGE_MAP()
    void OnUpdateCommand(CCmdUI* command)
    {
        command->Enable(command->m_nID % 2 != 0);
        ++updated;
    }
};

BEGIN_MESSAGE_MAP(CommandFrame, HostFrame)
    ON_UPDATE_COMMAND_UI_RANGE(kFirstCommand, kFirstCommand + kCommands - 1,
                               &CommandFrame::OnUpdateCommand)
END_MESSAGE_MAP()

/// A button of a bar, without the bar's drawing.
class ButtonState : public CCmdUI {
public:
    void Enable(BOOL on) override
    {
        m_bEnableChanged = TRUE;
        enabled = on;
    }
    BOOL enabled = FALSE;
};

/// Brings its buttons up to date in each idle turn, as a tool bar does.
class Bar : public CWnd {
protected:
    DECLARE_MESSAGE_MAP()
    LRESULT OnIdleUpdateCmdUI(WPARAM disable, LPARAM)
    {
        ButtonState state;
        for (UINT i = 0; i < kCommands; ++i) {
            state.m_nID = kFirstCommand + i;
            state.m_nIndex = i;
            state.m_nIndexMax = kCommands;
            state.DoUpdate(GetParentFrame(), static_cast<BOOL>(disable));
        }
        return 0;
    }
};

BEGIN_MESSAGE_MAP(Bar, CWnd)
    ON_MESSAGE(WM_IDLEUPDATECMDUI, &Bar::OnIdleUpdateCmdUI)
END_MESSAGE_MAP()

/// The median of the turns' times, in microseconds.
double median_us(const std::function<void()>& turn)
{
    LARGE_INTEGER second{};
    ::QueryPerformanceFrequency(&second);
    std::array<double, kTurns> times{};
    for (double& time : times) {
        LARGE_INTEGER begin{};
        LARGE_INTEGER end{};
        ::QueryPerformanceCounter(&begin);
        turn();
        ::QueryPerformanceCounter(&end);
        time = 1e6 * static_cast<double>(end.QuadPart - begin.QuadPart) /
               static_cast<double>(second.QuadPart);
    }
    std::ranges::sort(times);
    return times[kTurns / 2];
}

class IdleTurnTime : public Hosted {};

}  // namespace

TEST_F(IdleTurnTime, ThousandIdlersAndTwoHundredCommands_AreATurnOfLittleTime)
{
    auto* const frame = new CommandFrame;
    host_.m_pMainWnd = frame;
    ASSERT_TRUE(frame->Create(nullptr, "Host", WS_OVERLAPPEDWINDOW, CRect(10, 10, 310, 210)));
    frame->ShowWindow(SW_SHOWNA);
    Bar bar;
    ASSERT_TRUE(bar.Create(nullptr, "", WS_CHILD | WS_VISIBLE, CRect(0, 0, 300, 30), frame, 1));
    const std::vector<Idler> idlers(kIdlers);  // each registers itself
    idle_calls = 0;
    updated = 0;

    const double platform = median_us([&] { host_.CWinApp::OnIdle(0); });
    EXPECT_EQ(updated, kTurns * static_cast<int>(kCommands));
    EXPECT_EQ(idle_calls, 0);
    const double ours = median_us([&] { host_.GWinApp::OnIdle(0); });
    EXPECT_EQ(updated, 2 * kTurns * static_cast<int>(kCommands));
    EXPECT_EQ(idle_calls, kTurns * kIdlers);
    std::cout << "An idle turn with " << kCommands << " command updates takes " << platform
              << " us by the platform alone, " << ours << " us with " << kIdlers
              << " idlers in front (medians of " << kTurns << ").\n";

    EXPECT_LT(ours - platform, 1'000);
    bar.DestroyWindow();
}
