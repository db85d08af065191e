#include "scene_editor/core/CommandLine.h"

namespace editor {

std::string first_word(std::string_view command_line)
{
    constexpr std::string_view kBlanks = " \t";
    const std::size_t start = command_line.find_first_not_of(kBlanks);
    if (start == std::string_view::npos)
        return {};
    std::string word;
    bool in_quotes = false;
    for (const char letter : command_line.substr(start)) {
        if (letter == '"') {
            in_quotes = !in_quotes;
            continue;
        }
        if (!in_quotes && kBlanks.find(letter) != std::string_view::npos)
            break;
        word += letter;
    }
    return word;
}

std::string_view file_part(std::string_view file)
{
    const std::size_t slash = file.find_last_of("/\\");
    return slash == std::string_view::npos ? file : file.substr(slash + 1);
}

}  // namespace editor
