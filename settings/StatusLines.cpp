#include "settings/StatusLines.h"

#include "platform/ByteText.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string_view>

namespace zmr {

void StatusLines::put(unsigned line, const char* format, std::va_list arguments)
{
    if (line >= kStatusLines)
        return;
    // One byte more than a line holds: so a text that fills it is told from one that goes on, and
    // the cut sees what follows.
    std::array<char, kStatusBytes + 1> formatted;
    const int wanted = format != nullptr
                           ? std::vsnprintf(formatted.data(), formatted.size(), format, arguments)
                           : 0;
    const std::size_t there =
        wanted > 0 ? std::min(static_cast<std::size_t>(wanted), kStatusBytes) : 0;
    const std::size_t length =
        there < kStatusBytes
            ? there
            : cut_length(std::string_view(formatted.data(), there), kStatusBytes - 1);

    const std::lock_guard hold(lock_);
    Line& target = lines_[line];
    std::memcpy(target.text.data(), formatted.data(), length);
    target.text[length] = '\0';
    target.length = length;
}

void StatusLines::clear(unsigned line)
{
    if (line >= kStatusLines)
        return;
    const std::lock_guard hold(lock_);
    lines_[line].text[0] = '\0';
    lines_[line].length = 0;
}

void StatusLines::reset()
{
    const std::lock_guard hold(lock_);
    for (Line& line : lines_) {
        line.text[0] = '\0';
        line.length = 0;
        line.announced_to = 0;
    }
}

void StatusLines::copy(unsigned line, StatusText& text) const
{
    text[0] = '\0';
    if (line >= kStatusLines)
        return;
    const std::lock_guard hold(lock_);
    std::memcpy(text.data(), lines_[line].text.data(), lines_[line].length + 1);
}

bool StatusLines::announce(unsigned line, std::uintptr_t owner, std::uint64_t now_ms)
{
    if (line >= kStatusLines)
        return false;
    const std::lock_guard hold(lock_);
    Line& told = lines_[line];
    if (told.announced_to == owner && now_ms - told.announced_at_ms < kPatienceMs)
        return false;
    told.announced_to = owner;
    told.announced_at_ms = now_ms;
    return true;
}

void StatusLines::withdraw(unsigned line)
{
    if (line >= kStatusLines)
        return;
    const std::lock_guard hold(lock_);
    lines_[line].announced_to = 0;
}

void StatusLines::take(unsigned line, StatusText& text)
{
    text[0] = '\0';
    if (line >= kStatusLines)
        return;
    const std::lock_guard hold(lock_);
    lines_[line].announced_to = 0;
    std::memcpy(text.data(), lines_[line].text.data(), lines_[line].length + 1);
}

}  // namespace zmr
