#pragma once

#include "platform/Windows.h"

#include <optional>
#include <string>

/// Asks the user for a text in a small dialog.
struct TextRequest {
    const char* title = "";
    const char* prompt = "";
    std::string text;        ///< What stands there at first.
    bool has_lines = false;  ///< The text may have several; Ctrl+Enter begins one.

    /// The text; none when the user thinks better of it.
    [[nodiscard]] std::optional<std::string> ask(HWND owner);
};
