#pragma once

#include "platform/Export.h"

#include <cstddef>
#include <string>
#include <string_view>

// Text as bytes, the same in both lanes, in place of the C run-time's multi-byte calls, which keep
// to a code page of their own. Right for UTF-8, because no ASCII byte occurs inside a longer
// character: ASCII is searched and changed bytewise, and cuts are moved to where a character
// starts.
namespace zmr {

/// Negative, 0 or positive as `a` stands before, with or behind `b`, bytes taken as unsigned. So
/// UTF-8 sorts by code points.
[[nodiscard]] ZMR_GV_API int compare_bytes(std::string_view a, std::string_view b);
/// The same over at most the first `count` bytes of each.
[[nodiscard]] ZMR_GV_API int compare_bytes(std::string_view a, std::string_view b,
                                           std::size_t count);
/// The same with the ASCII letters A to Z taken as a to z; no other letter has a case here.
[[nodiscard]] ZMR_GV_API int compare_no_case(std::string_view a, std::string_view b);

[[nodiscard]] constexpr char lower_ascii(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}
[[nodiscard]] constexpr char upper_ascii(char letter)
{
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}
/// A copy with all ASCII letters in small ones.
[[nodiscard]] ZMR_GV_API std::string lower_ascii(std::string_view text);
/// A copy with all ASCII letters in capitals.
[[nodiscard]] ZMR_GV_API std::string upper_ascii(std::string_view text);

/// True for the bytes that continue a UTF-8 character.
[[nodiscard]] constexpr bool continues_character(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}
/// The greatest length of at most `limit` bytes that cuts `text` between two characters. Bytes that
/// are not UTF-8 count as characters of their own: at most 3 are given up.
[[nodiscard]] ZMR_GV_API std::size_t cut_length(std::string_view text, std::size_t limit);
/// Where the character behind the one at `at` starts; the text's length behind the last one.
[[nodiscard]] ZMR_GV_API std::size_t next_character(std::string_view text, std::size_t at);
/// Where the character before `at` starts; 0 at the start.
[[nodiscard]] ZMR_GV_API std::size_t previous_character(std::string_view text, std::size_t at);
/// Copies as many whole characters of `text` as fit into `size` bytes with the closing zero, and
/// closes them. Nothing when `size` is 0. Returns the length without the zero.
ZMR_GV_API std::size_t copy_cut(char* target, std::size_t size, std::string_view text);

}  // namespace zmr
