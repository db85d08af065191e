#pragma once

#include "foundation/GString.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace zmr {

/// What lies before the text of every GString.
struct StringHeader {
    std::uint32_t length;
    std::uint32_t capacity;  ///< Bytes of room without the zero byte; 0 for a static text.
};

/// A text in static storage, laid out as GString wants it. Strings share it: they copy its address
/// and never write to it.
template <std::size_t Size>
struct StaticText {
    consteval StaticText(const char (&source)[Size]) : header{Size - 1, 0}
    {
        std::copy_n(source, Size, text);
    }

    StringHeader header;
    char text[Size] = {};
};

}  // namespace zmr

/// Makes a GString share a static text, without allocating.
class GStaticString {
public:
    template <std::size_t Size>
    static void put(GString& target, const zmr::StaticText<Size>& source) noexcept
    {
        share(target, &source);
    }

private:
    static void share(GString& target, const void* source) noexcept;
};

namespace zmr {

/// A string that shares a static text: it and its copies take no memory of their own.
template <std::size_t Size>
[[nodiscard]] GString shared_text(const StaticText<Size>& source) noexcept
{
    GString shared;
    GStaticString::put(shared, source);
    return shared;
}

}  // namespace zmr
