#pragma once

#include "app/GWinApp.h"
#include "platform/CFrameWnd.h"

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <string>
#include <vector>

/// The main window of the tests' host: a frame that runs what it is posted.
class HostFrame : public CFrameWnd {
public:
    static constexpr UINT kRun = WM_APP + 7;

    /// Sees each message in front of all handlers.
    std::function<void(UINT message, WPARAM wparam)> watch;
    std::deque<std::function<void()>> posted;

protected:
    DECLARE_MESSAGE_MAP()

    LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;
    LRESULT OnRun(WPARAM, LPARAM);
};

/// A host as its programmer writes it. Each test has one of its own, from its begin to its end.
class TestHost : public GWinApp {
public:
    BOOL InitInstance() override;
    BOOL OnIdle(LONG count) override;
    int DoMessageBox(LPCTSTR text, UINT type, UINT help) override;

    /// Makes the main window, hidden or shown.
    HostFrame& open_frame(int show = SW_SHOWNA);
    [[nodiscard]] HostFrame& frame() { return *static_cast<HostFrame*>(m_pMainWnd); }
    /// Has `action` run as the handler of a message of the main window, once the loop gets there.
    void later(std::function<void()> action);
    /// Has the loop end behind what was asked for until now.
    void finish_later();
    /// The loop as the program runs it, until finish_later's message or the end of the window.
    int run_loop();
    /// Dispatches messages until the condition holds; false when it does not in ten seconds.
    [[nodiscard]] bool pump_until(const std::function<bool()>& condition);

    std::vector<LONG> idle_counts;      ///< Of each OnIdle.
    std::function<void(LONG)> on_idle;  ///< Called in front of the base's.
    std::vector<std::string> boxes;     ///< Texts of all boxes that this thread was asked for.
    bool show_boxes = true;             ///< False: a box answers with IDYES without showing.
};

/// Starts the host, and ends it as the program does.
class Hosted : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(host_.InitInstance()); }
    void TearDown() override;

    TestHost host_;
};
