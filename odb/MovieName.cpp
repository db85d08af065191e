#include "odb/MovieName.h"

#include "platform/ByteText.h"

#include <string_view>

namespace zmr {

namespace {

constexpr char kSeparator = '+';
constexpr char kLevel = 1;
constexpr char kName = 2;
constexpr char kType = 3;
constexpr char kEnd = 4;

void append_piece(GString& text, char kind, const GString& piece)
{
    text += kind;
    text += piece;
    text += kEnd;
}

}  // namespace

GString build_movie_name(const GFile& file, const GResourceFullName& name)
{
    GString text = file;
    text += kSeparator;
    for (int i = 0; i < name.count; ++i)
        append_piece(text, kLevel, name[i]);
    append_piece(text, kName, name.name);
    append_piece(text, kType, name.type);
    return text;
}

bool parse_movie_name(const char* text, GFile& file, GResourceFullName& name)
{
    if (text == nullptr)
        return false;
    std::string_view rest = text;
    const std::size_t separator = rest.find(kSeparator);
    if (separator == std::string_view::npos)
        return false;
    const GString file_part(rest.substr(0, separator));
    rest.remove_prefix(separator + 1);
    GResourceFullName parsed;
    while (!rest.empty()) {
        const std::size_t end = rest.find(kEnd);
        if (end == std::string_view::npos || end == 0)
            return false;
        const GString piece(rest.substr(1, end - 1));
        if (rest.front() == kLevel)
            parsed += piece;
        else if (rest.front() == kName)
            parsed.name = piece;
        else if (rest.front() == kType)
            parsed.type = piece;
        else
            return false;
        rest.remove_prefix(end + 1);
    }
    file = file_part;
    name = parsed;
    return true;
}

std::uint32_t movie_extension_code(const char* extension)
{
    std::string_view rest = extension == nullptr ? "" : extension;
    std::uint32_t code = 0;
    for (int i = 0; i < 4; ++i) {
        const char letter = rest.empty() ? ' ' : upper_ascii(rest.front());
        code |= static_cast<std::uint32_t>(static_cast<unsigned char>(letter)) << (8 * i);
        rest.remove_prefix(rest.empty() ? 0 : 1);
    }
    return code;
}

}  // namespace zmr
