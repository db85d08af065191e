#pragma once

#include "platform/CWnd.h"
#include "settings/MsgBox.h"

#include <functional>
#include <string>
#include <vector>

/// A window that is told of new texts and answers as a host's frame does, unless `answers` is
/// false.
class StatusOwner : public CWnd {
public:
    bool answers = true;
    std::vector<unsigned> told;  ///< The line of each message.

    [[nodiscard]] bool open();

protected:
    DECLARE_MESSAGE_MAP()

    LRESULT OnStatus(WPARAM line, LPARAM);
};

/// A window that shows a line, and notes what happens to it.
class StatusPane : public CWnd {
public:
    std::vector<std::string> texts;  ///< Each that was set.
    int paints = 0;

    [[nodiscard]] bool open(CWnd* parent, int top);
    [[nodiscard]] std::string text() const;

protected:
    DECLARE_MESSAGE_MAP()

    LRESULT OnSetText(WPARAM, LPARAM text);
    void OnPaint();
};

/// Dispatches messages until the condition holds. False when it does not within `limit_ms`.
[[nodiscard]] bool pump_until(const std::function<bool()>& condition, ULONGLONG limit_ms = 10'000);
/// Dispatches what is in the queue.
void pump_all();
