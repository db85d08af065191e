#include "scene_editor/core/HoldTimes.h"

namespace editor {

void HoldTimes::begin(Time now, std::uint32_t what)
{
    began_ = now;
    runs_ = true;
    pauses_ = 0;
    what_ = what;
}

void HoldTimes::end(Time now)
{
    if (runs_ && pauses_ == 0)
        count(now);
    runs_ = false;
    pauses_ = 0;
}

void HoldTimes::pause(Time now)
{
    if (runs_ && pauses_++ == 0)
        count(now);
}

void HoldTimes::resume(Time now)
{
    if (runs_ && pauses_ > 0 && --pauses_ == 0)
        began_ = now;
}

void HoldTimes::reset()
{
    turns_ = 0;
    over_limit_ = 0;
    last_ = Span(0);
    longest_ = Span(0);
    longest_what_ = 0;
}

void HoldTimes::count(Time now)
{
    last_ = std::chrono::duration_cast<Span>(now - began_);
    ++turns_;
    if (last_ > kLimit)
        ++over_limit_;
    if (last_ > longest_) {
        longest_ = last_;
        longest_what_ = what_;
    }
}

std::string span_text(HoldTimes::Span span)
{
    const auto tenths = (span.count() + 50) / 100;
    if (tenths >= 100)
        return std::to_string((tenths + 5) / 10) + " ms";
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " ms";
}

}  // namespace editor
