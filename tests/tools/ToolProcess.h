#pragma once

#include "tests/support/ChildProcess.h"

#include <cstdint>
#include <string>
#include <vector>

/// What a finished run of the tool left.
struct ToolResult {
    int code = -1;  ///< The exit code; -1 when the process did not end by itself.
    std::string out;
    std::string err;
    std::string terminal;          ///< What its terminal was sent.
    std::uint64_t peak_bytes = 0;  ///< The most memory it had at once; 0 in the win lane.
};

/// How a person runs it.
struct ToolControl {
    ChildTerminal terminal = ChildTerminal::None;
    std::string interrupt_at_file;  ///< Press Ctrl-C on the terminal once this file is there.
};

/// Runs the tool with these words behind its name and waits for its end.
[[nodiscard]] ToolResult run_tool(const std::vector<std::string>& words,
                                  const ToolControl& control = {});
