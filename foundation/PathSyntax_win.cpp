#include "foundation/PathSyntax.h"

#include "platform/WideText.h"
#include "platform/Windows.h"

#include <algorithm>
#include <iterator>

namespace zmr {

const char kSeparator = '\\';
const LetterCase kPathCase = LetterCase::Ignored;

namespace {

constexpr std::size_t kLongestName = 255;    // in UTF-16 units, as below
constexpr std::size_t kLongestPath = 32000;  // the system's 32767 less room for a longer root

bool is_drive(std::string_view path)
{
    return path.size() >= 2 && path[1] == ':' && fold_ascii(path[0]) >= 'a' &&
           fold_ascii(path[0]) <= 'z';
}

/// The place behind the name that begins at `place`, and behind its separator.
std::size_t behind_name(std::string_view path, std::size_t place)
{
    while (place < path.size() && !is_separator(path[place]))
        ++place;
    return place < path.size() ? place + 1 : place;
}

/// The current directory of the process for "", of a drive for "C:".
std::string current_directory(const wchar_t* of)
{
    std::wstring directory;
    DWORD size = 512;
    for (;;) {
        directory.resize(size);
        const DWORD count = ::GetFullPathNameW(of, size, directory.data(), nullptr);
        if (count == 0)
            return {};
        if (count < size) {
            directory.resize(count);
            return to_utf8(directory);
        }
        size = count + 1;
    }
}

/// True for the names that the system takes for devices, whatever follows behind a dot.
bool is_device_name(std::wstring_view name)
{
    std::string base;
    for (const wchar_t unit : name.substr(0, name.find_first_of(L". ")))
        base += unit < 0x80 ? fold_ascii(static_cast<char>(unit)) : '?';
    constexpr std::string_view kDevices[] = {"con", "prn", "aux", "nul", "conin$", "conout$"};
    if (std::find(std::begin(kDevices), std::end(kDevices), base) != std::end(kDevices))
        return true;
    return base.size() == 4 && (base.starts_with("com") || base.starts_with("lpt")) &&
           base[3] >= '1' && base[3] <= '9';
}

bool is_valid_name(std::wstring_view name)
{
    if (name.size() > kLongestName)
        return false;
    // The system drops a dot or a space at the end: another name would be meant.
    const bool is_dots = name.find_first_not_of(L'.') == std::wstring_view::npos && name.size() < 3;
    if (!is_dots && (name.back() == L'.' || name.back() == L' ' || is_device_name(name)))
        return false;
    return std::all_of(name.begin(), name.end(), [](wchar_t unit) {
        return unit >= L' ' && unit != L'<' && unit != L'>' && unit != L':' && unit != L'"' &&
               unit != L'|';
    });
}

}  // namespace

std::size_t root_length(std::string_view path)
{
    if (is_drive(path))
        return path.size() > 2 && is_separator(path[2]) ? 3 : 2;
    if (path.empty() || !is_separator(path[0]))
        return 0;
    if (path.size() < 2 || !is_separator(path[1]))
        return 1;
    return behind_name(path, behind_name(path, 2));  // a server and what it shares
}

std::string full_base(std::string_view root)
{
    if (root.empty())
        return current_directory(L".");
    if (root.size() == 2 && is_drive(root))
        return current_directory(std::wstring{static_cast<wchar_t>(root[0]), L':'}.c_str());
    if (root.size() == 1) {
        const std::string current = current_directory(L".");
        return current.substr(0, root_length(current));
    }
    return std::string(root);
}

bool is_valid_path(std::string_view path)
{
    std::wstring wide;
    if (path.empty() || !to_wide(path, wide) || wide.size() > kLongestPath)
        return false;
    // The marks of a root are ASCII, as long in UTF-16; the names in it are looked at as all
    // others.
    constexpr std::string_view kLongMark = "\\\\?\\";
    const std::size_t mark = path.starts_with(kLongMark) ? kLongMark.size() : 0;
    std::wstring_view rest = wide;
    rest.remove_prefix(is_drive(path.substr(mark)) ? mark + 2 : mark);
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find_first_of(L"/\\"), rest.size());
        if (!is_valid_name(rest.substr(0, end)))
            return false;
        rest.remove_prefix(end < rest.size() ? end + 1 : end);
    }
    return true;
}

std::string system_path(std::string_view path)
{
    return std::string(path);
}

}  // namespace zmr
