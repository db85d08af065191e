#include "platform/WideText.h"

#include "platform/Windows.h"

#include <utf8cpp/utf8.h>

#include <iterator>

namespace zmr {

bool to_wide(std::string_view text, std::wstring& wide)
{
    if (text.find('\0') != std::string_view::npos || !utf8::is_valid(text.begin(), text.end()))
        return false;
    std::wstring converted;
    converted.reserve(text.size());
    utf8::utf8to16(text.begin(), text.end(), std::back_inserter(converted));
    wide = std::move(converted);
    return true;
}

bool to_wide_path(std::string_view name, std::wstring& wide)
{
    constexpr std::size_t kLongestPlain = 247;
    if (!to_wide(name, wide))
        return false;
    if (wide.size() <= kLongestPlain || wide.starts_with(L"\\\\?\\"))
        return true;
    const DWORD needed = ::GetFullPathNameW(wide.c_str(), 0, nullptr, nullptr);
    if (needed == 0)
        return false;
    std::wstring full(needed, L'\0');
    const DWORD count = ::GetFullPathNameW(wide.c_str(), needed, full.data(), nullptr);
    if (count == 0 || count >= needed)
        return false;
    full.resize(count);
    wide = full.starts_with(L"\\\\") ? L"\\\\?\\UNC\\" + full.substr(2) : L"\\\\?\\" + full;
    return true;
}

std::string to_utf8(std::wstring_view wide)
{
    constexpr wchar_t kReplacement = 0xFFFD;
    std::string text;
    text.reserve(wide.size());
    for (std::size_t at = 0; at < wide.size(); ++at) {
        const wchar_t unit = wide[at];
        const bool lead = unit >= 0xD800 && unit < 0xDC00;
        const bool trail = unit >= 0xDC00 && unit < 0xE000;
        if (lead && at + 1 < wide.size() && wide[at + 1] >= 0xDC00 && wide[at + 1] < 0xE000) {
            utf8::utf16to8(wide.begin() + static_cast<std::ptrdiff_t>(at),
                           wide.begin() + static_cast<std::ptrdiff_t>(at) + 2,
                           std::back_inserter(text));
            ++at;
        } else {
            utf8::append(static_cast<char32_t>(lead || trail ? kReplacement : unit),
                         std::back_inserter(text));
        }
    }
    return text;
}

}  // namespace zmr
