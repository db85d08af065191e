#pragma once

#include "platform/Handles.h"
#include "tests/support/TerminalText.h"

#include <thread>

/// A console without a window: what a person would see on it is gathered as text with the
/// terminal's escape sequences.
class PseudoConsole {
public:
    PseudoConsole() = default;
    ~PseudoConsole() { close(); }
    PseudoConsole(const PseudoConsole&) = delete;
    PseudoConsole& operator=(const PseudoConsole&) = delete;

    /// False when the system refuses.
    [[nodiscard]] bool open();
    /// For PROC_THREAD_ATTRIBUTE_PSEUDOCONSOLE.
    [[nodiscard]] void* handle() const { return console_; }
    /// Ends it, with all programs on it, once all its text is gathered.
    void close();
    [[nodiscard]] std::string text() const { return text_.get(); }

private:
    void* console_ = nullptr;
    zmr::OwnedKernelHandle keys_;    ///< Where a person's keys would come from.
    zmr::OwnedKernelHandle screen_;  ///< What comes out.
    TerminalText text_;
    std::thread gatherer_;
};
