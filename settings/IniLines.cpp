#include "settings/IniLines.h"

#include <cstring>

namespace zmr {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

/// The first `byte` of a range, or its end.
const char* find_byte(const char* from, const char* end, char byte)
{
    const void* found = std::memchr(from, byte, static_cast<std::size_t>(end - from));
    return found != nullptr ? static_cast<const char*>(found) : end;
}

const char* skip_blanks(const char* from, const char* end)
{
    while (from != end && is_ini_blank(*from))
        ++from;
    return from;
}

const char* before_blanks(const char* from, const char* end)
{
    while (end != from && is_ini_blank(end[-1]))
        --end;
    return end;
}

std::string_view between(const char* from, const char* end)
{
    return {from, static_cast<std::size_t>(end - from)};
}

std::string_view trimmed(const char* from, const char* end)
{
    from = skip_blanks(from, end);
    return between(from, before_blanks(from, end));
}

/// Tells what stands in [first, end), which starts with no blank.
void read_line(const char* first, const char* end, IniLine& line)
{
    line.has_value = false;
    line.value = {};
    if (first == end) {
        line.kind = IniLineKind::Blank;
        line.name = {};
        return;
    }
    if (*first == ';') {
        line.kind = IniLineKind::Comment;
        line.name = {};
        return;
    }
    if (*first == '[') {
        const std::size_t close = between(first, end).rfind(']');
        if (close != std::string_view::npos) {
            line.kind = IniLineKind::Section;
            line.name = trimmed(first + 1, first + close);
            return;
        }
    }
    line.kind = IniLineKind::Entry;
    const char* const equals = find_byte(first, end, '=');
    line.name = between(first, before_blanks(first, equals));
    if (equals == end)
        return;
    line.has_value = true;
    line.value = trimmed(equals + 1, end);
}

}  // namespace

std::string_view trim_ini_blanks(std::string_view text)
{
    return trimmed(text.data(), text.data() + text.size());
}

std::string_view without_quotes(std::string_view value)
{
    if (value.size() < 2 || value.front() != value.back() ||
        (value.front() != '"' && value.front() != '\''))
        return value;
    return value.substr(1, value.size() - 2);
}

std::size_t utf8_mark_length(std::string_view text)
{
    return text.starts_with(kUtf8Mark) ? kUtf8Mark.size() : 0;
}

IniLines::IniLines(std::string_view text) : text_(text), at_(utf8_mark_length(text)) {}

bool IniLines::next(IniLine& line)
{
    if (at_ >= text_.size())
        return false;
    const char* const start = text_.data() + at_;
    const char* const text_end = text_.data() + text_.size();
    if (at_ >= feed_) {
        const char* const feed_at = find_byte(start, text_end, '\n');
        feed_ = static_cast<std::size_t>(feed_at - text_.data()) + 1;
    }
    const char* const feed = text_.data() + feed_ - 1;
    const char* const end = find_byte(start, feed, '\r');
    const char* next = end == text_end ? end : end + 1;
    if (end != feed && next == feed && feed != text_end)
        ++next;  // CR LF is one line end
    line.start = at_;
    line.end = static_cast<std::size_t>(end - text_.data());
    line.next = at_ = static_cast<std::size_t>(next - text_.data());
    read_line(skip_blanks(start, end), end, line);
    return true;
}

}  // namespace zmr
