#include "platform/ByteText.h"

#include <algorithm>
#include <cstring>

namespace zmr {
namespace {

constexpr std::size_t kLongestTail = 3;  // a UTF-8 character has at most four bytes

int sign_of_lengths(std::size_t a, std::size_t b)
{
    if (a == b)
        return 0;
    return a < b ? -1 : 1;
}

/// How many bytes the character that starts with `lead` has; 1 for what starts none.
std::size_t length_by_lead(char lead)
{
    const auto byte = static_cast<unsigned char>(lead);
    if (byte >= 0xF0 && byte < 0xF8)
        return 4;
    if (byte >= 0xE0 && byte < 0xF0)
        return 3;
    return byte >= 0xC0 && byte < 0xE0 ? 2 : 1;
}

}  // namespace

int compare_bytes(std::string_view a, std::string_view b)
{
    const std::size_t common = std::min(a.size(), b.size());
    const int order = common == 0 ? 0 : std::memcmp(a.data(), b.data(), common);
    return order != 0 ? order : sign_of_lengths(a.size(), b.size());
}

int compare_bytes(std::string_view a, std::string_view b, std::size_t count)
{
    return compare_bytes(a.substr(0, count), b.substr(0, count));
}

int compare_no_case(std::string_view a, std::string_view b)
{
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t at = 0; at < common; ++at) {
        const int left = static_cast<unsigned char>(lower_ascii(a[at]));
        const int right = static_cast<unsigned char>(lower_ascii(b[at]));
        if (left != right)
            return left - right;
    }
    return sign_of_lengths(a.size(), b.size());
}

std::string lower_ascii(std::string_view text)
{
    std::string lowered(text);
    for (char& letter : lowered)
        letter = lower_ascii(letter);
    return lowered;
}

std::string upper_ascii(std::string_view text)
{
    std::string raised(text);
    for (char& letter : raised)
        letter = upper_ascii(letter);
    return raised;
}

std::size_t cut_length(std::string_view text, std::size_t limit)
{
    if (text.size() <= limit)
        return text.size();
    std::size_t start = limit;
    while (start > 0 && limit - start < kLongestTail && continues_character(text[start]))
        --start;
    // What starts before the limit and ends behind it is given up.
    return next_character(text, start) > limit ? start : limit;
}

std::size_t next_character(std::string_view text, std::size_t at)
{
    if (at >= text.size())
        return text.size();
    const std::size_t last = std::min(text.size(), at + length_by_lead(text[at]));
    ++at;
    while (at < last && continues_character(text[at]))
        ++at;
    return at;
}

std::size_t previous_character(std::string_view text, std::size_t at)
{
    at = std::min(at, text.size());
    if (at == 0)
        return 0;
    std::size_t start = at - 1;
    while (start > 0 && at - start <= kLongestTail && continues_character(text[start]))
        --start;
    // Only what really reaches to `at` is one character.
    return next_character(text, start) == at ? start : at - 1;
}

std::size_t copy_cut(char* target, std::size_t size, std::string_view text)
{
    if (size == 0)
        return 0;
    const std::size_t length = cut_length(text, size - 1);
    if (length != 0)
        std::memcpy(target, text.data(), length);
    target[length] = '\0';
    return length;
}

}  // namespace zmr
