#pragma once

#include "platform/Export.h"

#include <array>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <mutex>

namespace zmr {

inline constexpr unsigned kStatusLines = 6;
/// Of one line's buffer, with the closing zero.
inline constexpr std::size_t kStatusBytes = 1024;
using StatusText = std::array<char, kStatusBytes>;

/// The texts of the status lines, and which of them wait to be shown. Any thread puts; the one that
/// shows takes. Texts are bounded at 1,023 bytes, cut between two UTF-8 characters. Lines are
/// numbered from 0; numbers beyond the last are ignored. No operation allocates or waits for
/// anything but the short lock, which is never held while a text is formatted.
class ZMR_GV_API StatusLines {
public:
    /// Empty texts, no message on its way.
    StatusLines() = default;

    /// Formats as vprintf does. A null format, or one that cannot be formatted, gives the empty
    /// text. The arguments may point into a line's text only as `copy` gave it.
    void put(unsigned line, const char* format, std::va_list arguments);
    void clear(unsigned line);
    /// All lines empty, none waiting.
    void reset();

    /// The text at this instant, whole. Empty for a line beyond the last.
    void copy(unsigned line, StatusText& text) const;

    /// Asks whether `owner`, a window's handle as a number, is to be sent a message that the line
    /// has a new text, `now_ms` being of any steady clock. True when none is on its way to it, or
    /// one for so long that it must have got lost; the line counts as announced then. So one
    /// message is on its way however often the text changes, and the owner's queue never fills up.
    [[nodiscard]] bool announce(unsigned line, std::uintptr_t owner, std::uint64_t now_ms);
    /// The message could not be sent after all.
    void withdraw(unsigned line);
    /// The owner heard: gives the text that is there now. What is put from here on is announced
    /// again.
    void take(unsigned line, StatusText& text);

    /// How long an announced text is waited for.
    static constexpr std::uint64_t kPatienceMs = 1000;

private:
    struct Line {
        StatusText text{};
        std::size_t length = 0;
        std::uintptr_t announced_to = 0;  ///< 0: no message is on its way.
        std::uint64_t announced_at_ms = 0;
    };

    mutable std::mutex lock_;
    std::array<Line, kStatusLines> lines_{};
};

}  // namespace zmr
