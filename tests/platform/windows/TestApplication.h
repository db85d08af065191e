#pragma once

#include "platform/CWinApp.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

/// The test program's one application: message boxes are kept instead of shown.
class TestApplication : public CWinApp {
public:
    TestApplication() : CWinApp("Test") {}

    int DoMessageBox(LPCTSTR text, UINT type, UINT help) override;

    /// The texts of the boxes since the last call.
    [[nodiscard]] std::vector<std::string> take_boxes();
    void WinHelp(DWORD_PTR, UINT command) override { helps_.push_back(command); }
    /// The commands that help was asked for with since the last call.
    std::vector<UINT> take_helps() { return std::exchange(helps_, {}); }
    BOOL OpenDocumentFile(LPCTSTR path) override
    {
        opened.emplace_back(path);
        return opens_files;
    }
    /// Dispatches messages until the condition holds. False when it does not within ten seconds.
    [[nodiscard]] bool pump_until(const std::function<bool()>& condition);
    /// Dispatches what is in the queue.
    void pump_all();
    /// Idle turns until OnIdle wants no more.
    void idle();

    int box_answer = IDOK;
    std::vector<std::string> opened;  ///< Recent files that were chosen.
    BOOL opens_files = TRUE;

private:
    std::vector<std::string> boxes_;
    std::vector<UINT> helps_;
};

[[nodiscard]] TestApplication& the_application();
