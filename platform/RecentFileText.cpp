#include "platform/RecentFileText.h"

#include "platform/ByteText.h"

#include <algorithm>
#include <cstddef>

namespace zmr {
namespace {

constexpr std::string_view kSeparators = "/\\";

bool is_separator(char letter)
{
    return letter == '/' || letter == '\\';
}

int letters_of(std::string_view text)
{
    return static_cast<int>(
        std::count_if(text.begin(), text.end(), [](char c) { return !continues_character(c); }));
}

/// Behind the separator that follows `from`; the length when there is none.
std::size_t behind_separator(std::string_view path, std::size_t from)
{
    const std::size_t at = path.find_first_of(kSeparators, from);
    return at == std::string_view::npos ? path.size() : at + 1;
}

/// The length of "C:\", "\\server\share\" or "/" in front.
std::size_t root_of(std::string_view path)
{
    if (path.size() >= 2 && is_separator(path[0]) && is_separator(path[1]))
        return behind_separator(path, behind_separator(path, 2));
    if (path.size() >= 2 && path[1] == ':')
        return path.size() > 2 && is_separator(path[2]) ? 3 : 2;
    return !path.empty() && is_separator(path[0]) ? 1 : 0;
}

std::size_t last_name_of(std::string_view path)
{
    const std::size_t root = root_of(path);
    const std::size_t at = path.find_last_of(kSeparators);
    return at == std::string_view::npos ? root : std::max(at + 1, root);
}

bool same_letter(char a, char b)
{
    return lower_ascii(a) == lower_ascii(b) || (is_separator(a) && is_separator(b));
}

bool lies_in(std::string_view path, std::string_view folder)
{
    if (folder.empty())
        return false;
    std::string_view own = path.substr(0, last_name_of(path));
    while (!own.empty() && is_separator(own.back()))
        own.remove_suffix(1);
    while (!folder.empty() && is_separator(folder.back()))
        folder.remove_suffix(1);
    return std::equal(own.begin(), own.end(), folder.begin(), folder.end(), same_letter) &&
           own.size() < path.size();
}

}  // namespace

std::string shortened_path(std::string_view path, int most_letters, LastName last_name)
{
    if (letters_of(path) <= most_letters)
        return std::string(path);
    const std::size_t last = last_name_of(path);
    const std::string_view name = path.substr(last);
    const std::size_t root = root_of(path);
    // The separator before the names that stay stays with them.
    const int kept = letters_of(path.substr(0, root)) + letters_of(kLeftOut);
    for (std::size_t at = root; at < last; at = behind_separator(path, at)) {
        const std::size_t end = behind_separator(path, at) - 1;
        if (kept + letters_of(path.substr(end)) <= most_letters)
            return std::string(path.substr(0, root)).append(kLeftOut).append(path.substr(end));
    }
    if (letters_of(name) <= most_letters || last_name == LastName::Always)
        return std::string(name);
    return {};
}

std::string recent_file_text(std::string_view path, std::string_view current_folder,
                             int most_letters, LastName last_name)
{
    if (lies_in(path, current_folder))
        return std::string(path.substr(last_name_of(path)));
    return most_letters == -1 ? std::string(path) : shortened_path(path, most_letters, last_name);
}

std::string recent_file_item(int number, std::string_view text)
{
    std::string item = std::to_string(number);
    if (number <= 10)
        item.insert(item.size() - 1, 1, '&');
    item += ' ';
    for (const char letter : text)
        item.append(letter == '&' ? 2 : 1, letter);
    return item;
}

}  // namespace zmr
