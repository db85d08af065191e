#include "foundation/PathSyntax.h"

#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <memory>

namespace zmr {

const char kSeparator = '/';
const LetterCase kPathCase = LetterCase::Matters;

std::size_t root_length(std::string_view path)
{
    return !path.empty() && is_separator(path.front()) ? 1 : 0;
}

std::string full_base(std::string_view root)
{
    if (!root.empty())
        return std::string(1, kSeparator);
    struct Free {
        void operator()(char* block) const { ::free(block); }
    };
    const std::unique_ptr<char, Free> directory(::getcwd(nullptr, 0));
    return directory ? std::string(directory.get()) : std::string();
}

bool is_valid_path(std::string_view path)
{
    if (path.empty() || path.size() >= PATH_MAX || path.find('\0') != std::string_view::npos)
        return false;
    std::size_t length = 0;
    for (const char byte : path) {
        length = is_separator(byte) ? 0 : length + 1;
        if (length > NAME_MAX)
            return false;
    }
    return true;
}

std::string system_path(std::string_view path)
{
    std::string converted(path);
    std::replace(converted.begin(), converted.end(), '\\', '/');
    return converted;
}

}  // namespace zmr
