#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace zmr {

enum class IniLineKind : std::uint8_t { Blank, Comment, Section, Entry };

/// One line of an initialisation file. Places are counted in bytes from the text's start.
struct IniLine {
    IniLineKind kind = IniLineKind::Blank;
    std::size_t start = 0;
    std::size_t end = 0;     ///< Of what it says, without the line end.
    std::size_t next = 0;    ///< Where the next line starts.
    std::string_view name;   ///< Of a section or an entry, without blanks around it.
    std::string_view value;  ///< Of an entry: behind "=" and without blanks around it.
    bool has_value = false;  ///< Whether there is a "=".
};

/// Blanks as the private-profile functions take them.
[[nodiscard]] constexpr bool is_ini_blank(char byte)
{
    return byte == ' ' || byte == '\t' || byte == '\v' || byte == '\f' || byte == '\x1a';
}
[[nodiscard]] std::string_view trim_ini_blanks(std::string_view text);
/// The value without one pair of equal quotes around it.
[[nodiscard]] std::string_view without_quotes(std::string_view value);

/// Goes over the lines of a text, which must stay as it is meanwhile.
class IniLines {
public:
    explicit IniLines(std::string_view text);
    /// False behind the last line.
    [[nodiscard]] bool next(IniLine& line);

private:
    std::string_view text_;
    std::size_t at_;
    std::size_t feed_ = 0;  ///< Behind the next line feed, once it is looked for.
};

/// The length of the mark that tells a text in UTF-8, when it starts with it.
[[nodiscard]] std::size_t utf8_mark_length(std::string_view text);

}  // namespace zmr
