#include "scene_editor/core/MovieClock.h"

#include <algorithm>
#include <cstdio>

namespace editor {

namespace {

constexpr std::uint32_t kMostRate = 10'000'000;  // keeps products within 64 bits
constexpr double kMostFramesASecond = 1'000.0;
constexpr double kLeastFramesASecond = 0.001;

std::string time_text(MovieClock::Span time)
{
    const long long hundredths = time.count() / 10'000;
    char text[48];
    std::snprintf(text, sizeof text, "%lld:%02lld.%02lld", hundredths / 6000, hundredths / 100 % 60,
                  hundredths % 100);
    return text;
}

}  // namespace

MovieClock::MovieClock(std::int32_t frames, std::uint32_t rate, std::uint32_t scale)
    : frames_(std::max(0, frames))
{
    if (rate == 0 || scale == 0 || rate > kMostRate || scale > kMostRate)
        return;
    const double frames_a_second = static_cast<double>(rate) / scale;
    if (frames_a_second > kMostFramesASecond || frames_a_second < kLeastFramesASecond)
        return;
    rate_ = rate;
    scale_ = scale;
}

MovieClock::Span MovieClock::time_of(std::int64_t frame) const
{
    const double seconds = static_cast<double>(frame) * scale_ / rate_;
    return Span(static_cast<std::int64_t>(seconds * 1e6 + 0.5));
}

std::int64_t MovieClock::frames_since_start(Time now) const
{
    const auto passed = std::chrono::duration_cast<Span>(now - start_).count();
    if (passed <= 0)
        return 0;
    // Rounding must not leave a frame before its own time.
    auto count = static_cast<std::int64_t>(static_cast<double>(passed) / 1e6 * rate_ / scale_);
    while (time_of(count + 1).count() <= passed)
        ++count;
    while (count > 0 && time_of(count).count() > passed)
        --count;
    return count;
}

std::int32_t MovieClock::frame(Time now) const
{
    if (!plays_ || frames_ == 0)
        return start_frame_;
    return static_cast<std::int32_t>((start_frame_ + frames_since_start(now)) % frames_);
}

MovieClock::Time MovieClock::next(Time now) const
{
    return start_ + time_of(frames_since_start(now) + 1);
}

void MovieClock::play(Time now)
{
    if (plays_ || frames_ == 0)
        return;
    plays_ = true;
    start_ = now;
}

void MovieClock::pause(Time now)
{
    start_frame_ = frame(now);
    plays_ = false;
}

void MovieClock::go_to(std::int32_t frame, Time now)
{
    start_frame_ = std::clamp(frame, 0, std::max(0, frames_ - 1));
    start_ = now;
}

std::string MovieClock::text(std::int32_t frame) const
{
    return "Frame " + std::to_string(frame + 1) + " of " + std::to_string(frames_) + ", " +
           time_text(time_of(frame)) + " of " + time_text(time_of(frames_));
}

}  // namespace editor
