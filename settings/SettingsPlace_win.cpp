#include "settings/SettingsPlace.h"

#include "platform/Handles.h"
#include "platform/WideText.h"
#include "settings/RegistryStore.h"
#include "settings/SettingsFile.h"

#include <string_view>

namespace zmr {
namespace {

constexpr const char* kDefaultProfile = "win.ini";

std::string system_folder()
{
    std::wstring wide(MAX_PATH, L'\0');
    const UINT length = ::GetWindowsDirectoryW(wide.data(), static_cast<UINT>(wide.size()));
    if (length == 0 || length >= wide.size())
        return {};
    wide.resize(length);
    return to_utf8(wide);
}

}  // namespace

std::string settings_file(const char* registry_key, const char* profile_name)
{
    if (registry_key != nullptr)
        return {};
    const std::string name = profile_name != nullptr ? profile_name : kDefaultProfile;
    if (name.empty() || name.find_first_of("/\\:") != std::string::npos)
        return name;
    const std::string folder = system_folder();
    return folder.empty() ? folder : folder + "\\" + name;
}

std::shared_ptr<SettingsStore> registry_settings(const char* registry_key, const char* profile_name)
{
    if (registry_key == nullptr || profile_name == nullptr)
        return nullptr;
    return std::make_shared<RegistryStore>(registry_key, profile_name);
}

HKEY open_application_key(const char* registry_key, const char* profile_name, bool create)
{
    if (registry_key == nullptr || profile_name == nullptr)
        return nullptr;
    return RegistryStore(registry_key, profile_name).open_application(create).release();
}

HKEY open_section_key(const char* registry_key, const char* profile_name, const char* section,
                      bool create)
{
    if (registry_key == nullptr || profile_name == nullptr || section == nullptr)
        return nullptr;
    return RegistryStore(registry_key, profile_name).open_section(section, create).release();
}

// A new file has those of its folder, which is the user's own.
void keep_rights(const std::string&, const std::string&) {}

bool is_marked_read_only(const std::string& name)
{
    std::wstring wide;
    if (!to_wide_path(name, wide))
        return false;
    const DWORD attributes = ::GetFileAttributesW(wide.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
}

// The folders of settings are the system's, and there.
bool make_settings_folder(const std::string&)
{
    return false;
}

}  // namespace zmr
