#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace editor {

/// Which frame of a movie is due. Frames count from 0, and come at `rate` of them in `scale`
/// seconds. A value; times are given, none is read here.
class MovieClock {
public:
    using Time = std::chrono::steady_clock::time_point;
    using Span = std::chrono::microseconds;

    MovieClock() = default;
    /// Rates that no movie has become one frame a second.
    MovieClock(std::int32_t frames, std::uint32_t rate, std::uint32_t scale);

    [[nodiscard]] std::int32_t frames() const { return frames_; }
    [[nodiscard]] bool plays() const { return plays_; }
    /// The frame to show now: behind the last one it begins anew.
    [[nodiscard]] std::int32_t frame(Time now) const;
    /// When the next frame is due; meaningless while it stands.
    [[nodiscard]] Time next(Time now) const;

    void play(Time now);
    void pause(Time now);
    /// Goes to a frame, from the first to the last, and plays on if it played.
    void go_to(std::int32_t frame, Time now);

    /// From the movie's beginning to a frame.
    [[nodiscard]] Span time_of(std::int64_t frame) const;
    /// "Frame 8 of 25, 0:00.28 of 0:01.00": frames for people count from 1.
    [[nodiscard]] std::string text(std::int32_t frame) const;

private:
    [[nodiscard]] std::int64_t frames_since_start(Time now) const;

    std::int32_t frames_ = 0;
    std::uint32_t rate_ = 1;
    std::uint32_t scale_ = 1;
    bool plays_ = false;
    std::int32_t start_frame_ = 0;  ///< Shown at `start_`, and while it stands.
    Time start_{};
};

}  // namespace editor
