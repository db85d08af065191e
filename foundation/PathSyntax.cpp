#include "foundation/PathSyntax.h"

#include <vector>

namespace zmr {

std::size_t name_start(std::string_view path)
{
    const std::size_t root = root_length(path);
    std::size_t start = path.size();
    while (start > root && !is_separator(path[start - 1]))
        --start;
    return start;
}

std::size_t directory_length(std::string_view path)
{
    const std::size_t root = root_length(path);
    std::size_t length = name_start(path);
    while (length > root && is_separator(path[length - 1]))
        --length;
    return length;
}

std::size_t extension_start(std::string_view name)
{
    const std::size_t first = name.find_first_not_of('.');
    if (first == std::string_view::npos)
        return name.size();  // "." and ".." are no extensions
    const std::size_t dot = name.rfind('.');
    return dot == std::string_view::npos || dot < first ? name.size() : dot;
}

std::string resolve_dots(std::string_view root, std::string_view path)
{
    std::vector<std::string_view> names;
    while (!path.empty()) {
        std::size_t end = 0;
        while (end < path.size() && !is_separator(path[end]))
            ++end;
        const std::string_view name = path.substr(0, end);
        path.remove_prefix(end < path.size() ? end + 1 : end);
        if (name.empty() || name == ".")
            continue;
        if (name != "..")
            names.push_back(name);
        else if (!names.empty())
            names.pop_back();
    }

    std::string resolved(root);
    for (char& byte : resolved)
        if (is_separator(byte))
            byte = kSeparator;
    for (const std::string_view name : names) {
        if (!resolved.empty() && !is_separator(resolved.back()))
            resolved += kSeparator;
        resolved += name;
    }
    return resolved;
}

}  // namespace zmr
