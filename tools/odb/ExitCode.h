#pragma once

/// What the tool's process ends with.
enum class ExitCode : int {
    Done = 0,
    Refused = 1,     ///< Not found, refused, or something was skipped or could not be written.
    WrongUsage = 2,  ///< The command line is wrong.
    Damaged = 3      ///< The library is damaged.
};

/// The graver one of two.
[[nodiscard]] inline ExitCode graver(ExitCode a, ExitCode b)
{
    return static_cast<int>(a) > static_cast<int>(b) ? a : b;
}
