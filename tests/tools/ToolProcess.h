#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// What a finished run of the tool left.
struct ToolResult {
    int code = -1;  ///< The exit code; -1 when the process did not end by itself.
    std::string out;
    std::string err;
    std::uint64_t peak_bytes = 0;  ///< The most memory it had at once; 0 in the win lane.
};

/// Runs the tool with these words behind its name and waits for its end.
[[nodiscard]] ToolResult run_tool(const std::vector<std::string>& words);

/// Limits and signals of a run: what only POSIX systems have.
struct ToolControl {
    std::uint64_t file_limit_bytes = 0;  ///< As a full disk: no file grows beyond; 0 for none.
    std::string interrupt_at_file;       ///< Interrupt (SIGINT) once this file is there.
};
[[nodiscard]] ToolResult run_tool(const std::vector<std::string>& words,
                                  const ToolControl& control);
