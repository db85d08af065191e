#include "graphics/NumberedName.h"

#include <algorithm>

namespace zmr {
namespace {

bool is_digit(char letter)
{
    return letter >= '0' && letter <= '9';
}

}  // namespace

long NumberedName::number() const
{
    long value = 0;
    for (const char digit : digits)
        value = value * 10 + (digit - '0');
    return value;
}

std::optional<NumberedName> split_numbered_name(std::string_view name)
{
    std::size_t end = name.rfind('.');
    if (end == std::string_view::npos || end == 0)
        end = name.size();
    std::size_t start = end;
    while (start > 0 && is_digit(name[start - 1]) && end - start < NumberedName::kMaxDigits)
        --start;
    if (start == end)
        return std::nullopt;
    return NumberedName{name.substr(0, start), name.substr(start, end - start), name.substr(end)};
}

std::string number_text(long number, int digits)
{
    std::string text = std::to_string(number);
    const auto wanted = static_cast<std::size_t>(std::max(digits, 0));
    if (text.size() < wanted)
        text.insert(0, wanted - text.size(), '0');
    return text;
}

}  // namespace zmr
