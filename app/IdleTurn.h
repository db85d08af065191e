#pragma once

namespace zmr {

/// What an idle turn does once it has freed what was destroyed.
enum class IdleTurn {
    work,  ///< The idlers run, and commands are brought up to date.
    wait,  ///< The thread sleeps until there is input.
};

/// The turn for a count: an idle period begins with 0, works once and then waits.
[[nodiscard]] constexpr IdleTurn idle_turn(long count)
{
    return count > 0 ? IdleTurn::wait : IdleTurn::work;
}

}  // namespace zmr
