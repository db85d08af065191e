#include "tools/odb/FileNames.h"

#include <algorithm>
#include <array>

namespace odb {

namespace {

char upper(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

// Names that Windows gives to devices in every directory, also with an extension.
bool is_device_name(std::string_view name)
{
    std::string stem(name.substr(0, name.find('.')));
    while (!stem.empty() && stem.back() == ' ')
        stem.pop_back();
    std::transform(stem.begin(), stem.end(), stem.begin(), upper);
    static constexpr std::array<std::string_view, 6> kDevices = {"CON", "PRN",    "AUX",
                                                                 "NUL", "CONIN$", "CONOUT$"};
    if (std::find(kDevices.begin(), kDevices.end(), stem) != kDevices.end())
        return true;
    return stem.size() == 4 && (stem.starts_with("COM") || stem.starts_with("LPT")) &&
           stem[3] >= '0' && stem[3] <= '9';
}

void cut(std::string& name, std::size_t size)
{
    if (name.size() <= size)
        return;
    while (size > 0 && (static_cast<unsigned char>(name[size]) & 0xc0) == 0x80)
        --size;
    name.resize(size);
}

}  // namespace

std::string safe_file_name(std::string_view name)
{
    std::string result(name);
    for (char& c : result) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7f ||
            std::string_view("/\\:*?\"<>|").find(c) != std::string_view::npos)
            c = '_';
    }
    cut(result, kMaxFileNameBytes);
    // Windows drops dots and blanks at the end, which would make "..." the directory above.
    while (!result.empty() && (result.back() == '.' || result.back() == ' '))
        result.back() = '_';
    if (result.empty() || is_device_name(result))
        result.insert(result.begin(), '_');
    return result;
}

bool has_extension(std::string_view name, std::string_view extension)
{
    if (name.size() <= extension.size() + 1 || name[name.size() - extension.size() - 1] != '.')
        return false;
    return std::equal(extension.begin(), extension.end(),
                      name.end() - static_cast<std::ptrdiff_t>(extension.size()),
                      [](char a, char b) { return upper(a) == upper(b); });
}

}  // namespace odb
