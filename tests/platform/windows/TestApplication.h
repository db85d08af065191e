#pragma once

#include "platform/CWinApp.h"

#include <functional>
#include <string>
#include <vector>

/// The test program's one application: message boxes are kept instead of shown.
class TestApplication : public CWinApp {
public:
    TestApplication() : CWinApp("Test") {}

    int DoMessageBox(LPCTSTR text, UINT type, UINT help) override;

    /// The texts of the boxes since the last call.
    [[nodiscard]] std::vector<std::string> take_boxes();
    /// Dispatches messages until the condition holds. False when it does not within ten seconds.
    [[nodiscard]] bool pump_until(const std::function<bool()>& condition);
    /// Dispatches what is in the queue.
    void pump_all();
    /// Idle turns until OnIdle wants no more.
    void idle();

    int box_answer = IDOK;

private:
    std::vector<std::string> boxes_;
};

[[nodiscard]] TestApplication& the_application();
