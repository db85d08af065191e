#include "settings/GHelpObject.h"

#include "settings/HelpCommands.h"

#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

namespace {

/// The module's file; empty when there is none.
std::string file_of_module(HINSTANCE module)
{
    constexpr std::size_t kLongest = 3 * 32768;  // as UTF-8
    std::string path(MAX_PATH, '\0');
    for (;;) {
        const DWORD length =
            ::GetModuleFileNameA(module, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        if (path.size() >= kLongest)
            return {};
        path.resize(path.size() * 2);
    }
}

/// The text "SpecialBuild" in a file's version resource, in the resource's first language; null
/// when there is none. Points into `version`.
const char* special_build_in(const std::vector<std::byte>& version)
{
    void* found = nullptr;
    UINT size = 0;
    if (!::VerQueryValueA(version.data(), "\\VarFileInfo\\Translation", &found, &size) ||
        size < sizeof(DWORD))
        return nullptr;
    const DWORD translation = *static_cast<const DWORD*>(found);
    char name[64];
    std::snprintf(name, sizeof name, "\\StringFileInfo\\%04x%04x\\SpecialBuild",
                  static_cast<unsigned>(LOWORD(translation)),
                  static_cast<unsigned>(HIWORD(translation)));
    if (!::VerQueryValueA(version.data(), name, &found, &size) || size == 0)
        return nullptr;
    return static_cast<const char*>(found);
}

}  // namespace

unsigned long GHelpObject::GetHelpID() const
{
    return zmr::module_help_id(static_cast<std::uint32_t>(helpID()), get_special_build());
}

std::optional<std::uint32_t> GHelpObject::get_special_build() const
{
    const HINSTANCE module = getHInst();
    if (module == nullptr)
        return std::nullopt;
    const std::string file = file_of_module(module);
    const DWORD size = ::GetFileVersionInfoSizeA(file.c_str(), nullptr);
    if (size == 0)
        return std::nullopt;
    std::vector<std::byte> version(size);
    if (!::GetFileVersionInfoA(file.c_str(), 0, size, version.data()))
        return std::nullopt;
    return zmr::parse_special_build(special_build_in(version));
}
