#include "scene_module/TextScanner.h"

#include "foundation/GException.h"

#include <algorithm>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstdarg>
#include <cstdio>

namespace scene {

namespace {

bool is_blank(char c)
{
    return c == ' ' || c == '\t' || c == '\v' || c == '\f';
}

bool is_line_end(char c)
{
    return c == '\n' || c == '\r';
}

// The bytes of the line's end that `text` begins with: 2 for CR LF.
std::size_t line_end_size(std::string_view text)
{
    return text.starts_with("\r\n") ? 2 : 1;
}

}  // namespace

void TextScanner::skip_blanks()
{
    while (!rest_.empty()) {
        if (is_blank(rest_.front())) {
            rest_.remove_prefix(1);
        } else if (rest_.size() > 1 && rest_[0] == '\\' && is_line_end(rest_[1])) {
            rest_.remove_prefix(1);
            rest_.remove_prefix(line_end_size(rest_));
            ++line_;
        } else if (comments_ == Comments::Hash && rest_.front() == '#') {
            const auto end = std::find_if(rest_.begin(), rest_.end(), is_line_end);
            rest_.remove_prefix(static_cast<std::size_t>(end - rest_.begin()));
        } else {
            return;
        }
    }
}

std::string_view TextScanner::word()
{
    in_line_ = true;
    skip_blanks();
    const auto end = std::find_if(rest_.begin(), rest_.end(),
                                  [](char c) { return is_blank(c) || is_line_end(c); });
    auto size = static_cast<std::size_t>(end - rest_.begin());
    if (size > 1 && size < rest_.size() && is_line_end(rest_[size]) && rest_[size - 1] == '\\')
        --size;
    const std::string_view result = rest_.substr(0, size);
    rest_.remove_prefix(size);
    return result;
}

bool TextScanner::next_line()
{
    while (in_line_ && !word().empty()) {
    }
    in_line_ = true;
    while (!rest_.empty()) {
        skip_blanks();
        if (rest_.empty())
            return false;
        if (!is_line_end(rest_.front()))
            return true;
        rest_.remove_prefix(line_end_size(rest_));
        ++line_;
    }
    return false;
}

std::string_view TextScanner::word_of_text()
{
    const std::string_view found = word();
    if (!found.empty())
        return found;
    return next_line() ? word() : std::string_view();
}

std::string_view TextScanner::rest_of_line()
{
    while (!rest_.empty() && is_blank(rest_.front()))
        rest_.remove_prefix(1);
    const auto end = std::find_if(rest_.begin(), rest_.end(), is_line_end);
    std::string_view result = rest_.substr(0, static_cast<std::size_t>(end - rest_.begin()));
    rest_.remove_prefix(result.size());
    while (!result.empty() && is_blank(result.back()))
        result.remove_suffix(1);
    return result;
}

float TextScanner::number(const char* what)
{
    const std::string_view text = word();
    if (text.empty())
        fail("%s is missing", what);
    float value = 0;
    if (!parse_number(text, value))
        fail("\"%s\" is no number that %s can have", Quoted(text).text(), what);
    return value;
}

void TextScanner::fail(const char* format, ...) const
{
    char what[200];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(what, sizeof(what), format, arguments);
    va_end(arguments);
    GLibraryException error;
    error.message("line %llu: %s", static_cast<unsigned long long>(line_), what);
    throw error;
}

bool parse_number(std::string_view word, float& value)
{
    const bool plus = word.starts_with('+');
    if (plus)
        word.remove_prefix(1);
    if (word.empty() || (plus && word.front() == '-'))
        return false;
    double wide = 0;
    const auto [end, code] = std::from_chars(word.data(), word.data() + word.size(), wide);
    if (end != word.data() + word.size())
        return false;
    if (code == std::errc::result_out_of_range) {
        // Too small for a double counts as 0; only a negative exponent gets there.
        if (word.find("e-") == std::string_view::npos && word.find("E-") == std::string_view::npos)
            return false;
        wide = 0;
    } else if (code != std::errc()) {
        return false;
    }
    if (!std::isfinite(wide) || std::fabs(wide) > double{FLT_MAX})
        return false;
    value = static_cast<float>(wide);
    return true;
}

Quoted::Quoted(std::string_view word)
{
    const std::size_t size = std::min<std::size_t>(word.size(), 40);
    for (std::size_t i = 0; i < size; ++i)
        text_[i] = word[i] > ' ' && word[i] < 127 ? word[i] : '?';
    text_[size] = '\0';
}

}  // namespace scene
