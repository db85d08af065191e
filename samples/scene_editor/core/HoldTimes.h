#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace editor {

/// How long the program's turns (one message, or one idle turn) held its window, in which it could
/// neither draw nor take input. The caller gives the clock's readings.
class HoldTimes {
public:
    using Clock = std::chrono::steady_clock;
    using Time = Clock::time_point;
    using Span = std::chrono::microseconds;

    /// A turn longer than this counts as noticed by a person.
    static constexpr Span kLimit = std::chrono::milliseconds(100);

    /// A turn begins; `what` tells turns apart, e.g. its message.
    void begin(Time now, std::uint32_t what);
    void end(Time now);
    /// A loop of the system's own runs inside the turn (a menu, a message box, a border that is
    /// dragged) and takes messages: the turn's time stands still. Nests.
    void pause(Time now);
    /// The loop is over. What follows is a turn of its own.
    void resume(Time now);
    [[nodiscard]] bool is_paused() const { return runs_ && pauses_ > 0; }
    /// Forgets all but the turn that is under way.
    void reset();

    [[nodiscard]] std::uint64_t turns() const { return turns_; }
    [[nodiscard]] std::uint64_t over_limit() const { return over_limit_; }
    [[nodiscard]] Span last() const { return last_; }
    [[nodiscard]] Span longest() const { return longest_; }
    /// The `what` of the longest turn.
    [[nodiscard]] std::uint32_t longest_what() const { return longest_what_; }

private:
    void count(Time now);

    Time began_{};
    bool runs_ = false;
    int pauses_ = 0;
    std::uint32_t what_ = 0;
    std::uint64_t turns_ = 0;
    std::uint64_t over_limit_ = 0;
    Span last_{0};
    Span longest_{0};
    std::uint32_t longest_what_ = 0;
};

/// "0.4 ms", "12 ms".
[[nodiscard]] std::string span_text(HoldTimes::Span span);

}  // namespace editor
