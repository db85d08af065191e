#pragma once

#include <string_view>

namespace zmr {

/// Whether ASCII letters that differ in case only count as equal.
enum class LetterCase { Matters, Ignored };

/// True when `name` fits `mask`, where "*" stands for any bytes, none included, and "?" for one
/// UTF-8 character; "*.*" fits every name. Time at most in proportion to the product of the
/// lengths.
[[nodiscard]] bool matches_mask(std::string_view name, std::string_view mask, LetterCase letters);

/// `byte` as a lower-case letter when it is an ASCII letter.
[[nodiscard]] constexpr char fold_ascii(char byte)
{
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

}  // namespace zmr
