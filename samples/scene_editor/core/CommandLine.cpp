#include "scene_editor/core/CommandLine.h"

#include "scene_editor/core/EntryRows.h"

#include <algorithm>

namespace editor {

namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kSceneEnd = ".scene";

// Takes the first word off `rest`.
std::string take_word(std::string_view& rest)
{
    rest.remove_prefix(std::min(rest.find_first_not_of(kBlanks), rest.size()));
    std::string word;
    bool in_quotes = false;
    while (!rest.empty()) {
        const char letter = rest.front();
        if (!in_quotes && kBlanks.find(letter) != std::string_view::npos)
            break;
        rest.remove_prefix(1);
        if (letter == '"')
            in_quotes = !in_quotes;
        else
            word += letter;
    }
    return word;
}

}  // namespace

std::string first_word(std::string_view command_line)
{
    return take_word(command_line);
}

NamedFiles named_files(std::string_view command_line)
{
    NamedFiles files;
    while (command_line.find_first_not_of(kBlanks) != std::string_view::npos) {
        const std::string word = take_word(command_line);
        std::string& file = is_scene_file(word) ? files.scene : files.library;
        if (file.empty())
            file = word;
    }
    return files;
}

bool is_scene_file(std::string_view file)
{
    if (file.size() < kSceneEnd.size())
        return false;
    return folded(file.substr(file.size() - kSceneEnd.size())) == kSceneEnd;
}

std::string_view file_part(std::string_view file)
{
    const std::size_t slash = file.find_last_of("/\\");
    return slash == std::string_view::npos ? file : file.substr(slash + 1);
}

}  // namespace editor
