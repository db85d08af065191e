#include "settings/SettingsPlace.h"

#include "settings/SettingsFile.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace zmr {
namespace {

/// The user's folder of settings; empty when nothing tells where it is.
std::string settings_folder()
{
    const char* const configured = std::getenv("XDG_CONFIG_HOME");
    if (configured != nullptr && *configured == '/')
        return configured;
    const char* const home = std::getenv("HOME");
    return home != nullptr && *home == '/' ? std::string(home) + "/.config" : std::string();
}

/// Keys divide by backslashes what is folders here.
std::string as_path(std::string key)
{
    std::replace(key.begin(), key.end(), '\\', '/');
    return key;
}

/// The file behind symbolic links: replacing a link would leave the file that it names.
std::string behind_links(const std::string& name)
{
    std::error_code missing;
    const std::filesystem::path path = std::filesystem::canonical(name, missing);
    return missing ? name : path.string();
}

}  // namespace

std::string settings_file(const char* registry_key, const char* profile_name)
{
    if (profile_name == nullptr || *profile_name == '\0')
        return {};
    std::string name = profile_name;
    if (registry_key != nullptr)
        name = as_path(std::string(registry_key) + "/" + profile_name + ".ini");
    else if (name.find('/') != std::string::npos)
        return behind_links(name);
    const std::string folder = settings_folder();
    return folder.empty() ? std::string() : behind_links(folder + "/" + name);
}

std::shared_ptr<SettingsStore> registry_settings(const char*, const char*)
{
    return nullptr;
}

HKEY open_application_key(const char*, const char*, bool)
{
    return nullptr;
}

HKEY open_section_key(const char*, const char*, const char*, bool)
{
    return nullptr;
}

void keep_rights(const std::string& from, const std::string& to)
{
    std::error_code failed;
    const auto rights = std::filesystem::status(from, failed).permissions();
    if (!failed)
        std::filesystem::permissions(to, rights, failed);
}

bool is_marked_read_only(const std::string& name)
{
    using std::filesystem::perms;
    constexpr perms kWrite = perms::owner_write | perms::group_write | perms::others_write;
    std::error_code failed;
    const auto status = std::filesystem::status(name, failed);
    return !failed && std::filesystem::exists(status) &&
           (status.permissions() & kWrite) == perms::none;
}

bool make_settings_folder(const std::string& name)
{
    const std::string folder = settings_folder();
    if (folder.empty() || !std::string_view(name).starts_with(folder + "/"))
        return false;
    std::error_code failed;
    std::filesystem::create_directories(std::filesystem::path(name).parent_path(), failed);
    return !failed;
}

}  // namespace zmr
