#pragma once

#include "platform/Windows.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Asks the user for the name of a file.
struct FileChoice {
    /// A file to open, one to write in place of an old one, one to add to or to make.
    enum class For : std::uint8_t { Opening, Saving, Adding };

    For what = For::Opening;
    const char* filter = nullptr;     ///< Pairs of texts and patterns, as the system's dialog has
                                      ///< them.
    const char* extension = nullptr;  ///< Given to names that are typed without one, or null.

    /// The name; none when the user thinks better of it. `suggested` may be empty.
    [[nodiscard]] std::optional<std::string> ask(HWND owner, const std::string& suggested) const;
    /// The names of files to open; none when the user thinks better of it.
    [[nodiscard]] std::vector<std::string> ask_for_several(HWND owner) const;
};
