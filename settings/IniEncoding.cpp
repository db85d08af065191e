#include "settings/IniEncoding.h"

#include <utf8cpp/utf8.h>

#include <cstddef>
#include <iterator>
#include <utility>
#include <vector>

namespace zmr {
namespace {

constexpr std::string_view kLittleMark = "\xFF\xFE";
constexpr std::string_view kBigMark = "\xFE\xFF";
constexpr char32_t kReplacement = 0xFFFD;

bool is_half_pair(char16_t unit)
{
    return unit >= 0xD800 && unit <= 0xDFFF;
}

bool is_pair(char16_t first, char16_t second)
{
    return first >= 0xD800 && first <= 0xDBFF && second >= 0xDC00 && second <= 0xDFFF;
}

char16_t unit_at(std::string_view bytes, std::size_t at, IniEncoding encoding)
{
    const auto first = static_cast<unsigned char>(bytes[at]);
    const auto second = static_cast<unsigned char>(bytes[at + 1]);
    return static_cast<char16_t>(encoding == IniEncoding::Utf16Little ? first | second << 8
                                                                      : first << 8 | second);
}

}  // namespace

IniEncoding ini_encoding(std::string_view bytes)
{
    if (bytes.starts_with(kLittleMark))
        return IniEncoding::Utf16Little;
    return bytes.starts_with(kBigMark) ? IniEncoding::Utf16Big : IniEncoding::Bytes;
}

std::string decode_ini(std::string bytes, bool& is_whole)
{
    is_whole = true;
    const IniEncoding encoding = ini_encoding(bytes);
    if (encoding == IniEncoding::Bytes)
        return bytes;
    std::string text;
    text.reserve(bytes.size());
    std::size_t at = kLittleMark.size();
    while (at + 1 < bytes.size()) {
        const char16_t unit = unit_at(bytes, at, encoding);
        at += 2;
        char32_t letter = unit;
        if (is_half_pair(unit)) {
            const char16_t other = at + 1 < bytes.size() ? unit_at(bytes, at, encoding) : u'\0';
            const bool whole = is_pair(unit, other);
            letter = whole ? 0x10000 + ((unit - 0xD800u) << 10) + (other - 0xDC00u) : kReplacement;
            at += whole ? 2 : 0;
            is_whole = is_whole && whole;
        }
        utf8::unchecked::append(letter, std::back_inserter(text));
    }
    is_whole = is_whole && at == bytes.size();
    return text;
}

std::optional<std::string> encode_ini(std::string_view text, IniEncoding encoding)
{
    if (encoding == IniEncoding::Bytes)
        return std::string(text);
    if (!utf8::is_valid(text.begin(), text.end()))
        return std::nullopt;
    std::vector<char16_t> units;
    units.reserve(text.size());
    utf8::unchecked::utf8to16(text.begin(), text.end(), std::back_inserter(units));
    const bool is_little = encoding == IniEncoding::Utf16Little;
    std::string bytes(is_little ? kLittleMark : kBigMark);
    bytes.reserve(bytes.size() + units.size() * 2);
    for (const char16_t unit : units) {
        const auto low = static_cast<char>(unit & 0xFF);
        const auto high = static_cast<char>(unit >> 8);
        bytes.push_back(is_little ? low : high);
        bytes.push_back(is_little ? high : low);
    }
    return bytes;
}

}  // namespace zmr
