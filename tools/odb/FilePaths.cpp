#include "tools/odb/FilePaths.h"

#include <system_error>

namespace odb {

std::optional<std::filesystem::path> to_path(const std::string& name)
{
    try {
        return std::filesystem::path(std::u8string(name.begin(), name.end()));
    } catch (const std::system_error&) {
        return std::nullopt;
    } catch (const std::range_error&) {
        return std::nullopt;
    }
}

std::string to_name(const std::filesystem::path& path)
{
    try {
        const std::u8string text = path.u8string();
        return {text.begin(), text.end()};
    } catch (const std::system_error&) {
        return "?";  // half a pair of UTF-16, which no function here could open either
    }
}

}  // namespace odb
