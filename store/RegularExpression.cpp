#include "store/RegularExpression.h"

#include "foundation/ipstream.h"
#include "foundation/opstream.h"

#include <cctype>
#include <cstring>
#include <regex>

namespace {

constexpr std::size_t kMaxText = 65536;
constexpr int kMaxGroups = 100;  // the compiler of the pattern calls itself for each level
constexpr int kMaxDigits = 9;  // of a group's number or a count: the compiler reads them unchecked

/// False for patterns whose groups nest so deep that compiling them could exhaust the stack.
bool nests_safely(const char* pattern)
{
    int depth = 0;
    for (const char* c = pattern; *c != '\0'; ++c) {
        if (*c == '\\' && c[1] != '\0')
            ++c;
        else if (*c == '(' && ++depth > kMaxGroups)
            return false;
        else if (*c == ')')
            --depth;
    }
    return true;
}

bool is_digit(char c)
{
    return std::isdigit(static_cast<unsigned char>(c)) != 0;
}

/// False for patterns with a number of a group, as \1, or a count, as {2,3}, that no int holds.
bool counts_safely(const char* pattern)
{
    bool in_count = false;
    for (const char* c = pattern; *c != '\0'; ++c) {
        const bool is_escape = *c == '\\' && c[1] != '\0';
        if (is_escape)
            ++c;
        if (!is_digit(*c) || (!is_escape && !in_count)) {
            in_count = !is_escape && (*c == '{' || (in_count && *c != '}'));
            continue;
        }
        int digits = 1;
        for (; is_digit(c[1]); ++c)
            ++digits;
        if (digits > kMaxDigits)
            return false;
    }
    return true;
}

}  // namespace

struct RegularExpression::Compiled {
    // The default matcher takes exponential time, and its stack grows with the text.
    explicit Compiled(const char* pattern)
        : expression(pattern, std::regex_constants::ECMAScript | std::regex_constants::__polynomial)
    {
    }
    std::regex expression;
};

RegularExpression::RegularExpression(const char* pattern) : pattern_(pattern)
{
    if (pattern_.length() > kMaxPattern || !nests_safely(pattern_.text) ||
        !counts_safely(pattern_.text))
        return;
    try {
        compiled_ = std::make_shared<const Compiled>(pattern_.text);
    } catch (const std::regex_error&) {
        compiled_ = nullptr;
    }
}

bool RegularExpression::operator==(const char* text) const
{
    if (compiled_ == nullptr || text == nullptr)
        return false;
    const std::size_t length = std::strlen(text);
    if (length > kMaxText)
        return false;
    try {
        return std::regex_match(text, text + length, compiled_->expression);
    } catch (const std::regex_error&) {
        return false;
    }
}

opstream& operator<<(opstream& out, const RegularExpression& expression)
{
    return out << expression.pattern();
}

ipstream& operator>>(ipstream& in, RegularExpression& expression)
{
    GString pattern;
    in >> pattern;
    expression = RegularExpression(pattern.text);
    return in;
}
