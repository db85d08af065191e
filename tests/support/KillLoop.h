#pragma once

#include "tests/support/ChildProcess.h"

#include <cstdint>
#include <functional>
#include <string>

namespace zmr {

/// What a run of kills has seen.
struct KillFigures {
    int kills = 0;
    std::uint64_t commits = 0;  ///< That were acknowledged before a kill.
    std::string failure;        ///< Empty when nothing was lost and all was readable.
};

/// A program that writes a file again and again is started, killed after a random time, and the
/// file is looked at, as often as asked. It prints a line when it is ready, and then the number of
/// each commit once that is done, counted on from what the file held; any other line tells what
/// went wrong.
struct KillLoop {
    ChildStart writer;
    unsigned longest_us;  ///< From its first sign of life to its kill.
    /// Given the number of the last commit that was acknowledged, says what is wrong with the file,
    /// or nothing. `last` becomes the number of the commit that the file holds.
    std::function<std::string(std::uint64_t acknowledged, std::uint64_t& last)> look;

    /// Ends early when something is wrong. The file holds commit `last` at its begin.
    [[nodiscard]] KillFigures run(int kills, std::uint32_t seed, std::uint64_t last = 0) const;
};

/// What is wrong when `last` is the number of the commit in the file, else empty: an acknowledged
/// commit is lost, or there is one that was not even begun.
[[nodiscard]] std::string compare_commits(std::uint64_t acknowledged, std::uint64_t last);

}  // namespace zmr
