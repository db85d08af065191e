#include "settings/RegistryManager.h"

#include "foundation/GModuleHooks.h"
#include "foundation/Immortal.h"
#include "platform/ByteText.h"
#include "platform/StringTable.h"
#include "settings/IniStore.h"
#include "settings/SettingsBatch.h"
#include "settings/SettingsPlace.h"

#include <cstring>
#include <set>
#include <span>
#include <string>

namespace {

constinit zmr::Immortal<RegistryManager> only_manager;

constexpr const char* kFirstSection = "tmp";
constexpr const char* kImportSection = "RegistryImport";
constexpr const char* kImportEntry = "Imported";

/// A copy of its own: two equal names are still two.
std::shared_ptr<char[]> copy_of(const char* text)
{
    if (text == nullptr)
        return nullptr;
    const std::size_t size = std::strlen(text) + 1;
    auto copy = std::make_shared<char[]>(size);
    std::memcpy(copy.get(), text, size);
    return copy;
}

/// The same text for the life of the process: callers keep GetSection's answer over a change of the
/// section, and set it again.
const char* lasting_text(const char* text)
{
    static zmr::Immortal<std::set<std::string, std::less<>>> texts;
    return text != nullptr ? texts->emplace(text).first->c_str() : nullptr;
}

}  // namespace

/// Puts the older installation's place in for its life.
class RegistryManager::OlderPlace {
public:
    explicit OlderPlace(RegistryManager& manager) : manager_(manager), place_(manager.place_)
    {
        manager.place_ = manager.import_place_;
    }
    ~OlderPlace() { manager_.place_ = std::move(place_); }
    OlderPlace(const OlderPlace&) = delete;
    OlderPlace& operator=(const OlderPlace&) = delete;

private:
    RegistryManager& manager_;
    Place place_;
};

RegistryManager::RegistryManager(const RegistryManager& other)
    : section_(other.section_),
      place_(other.place_),
      importing_(other.importing_),
      import_place_(other.import_place_)
{
}

RegistryManager& RegistryManager::operator=(const RegistryManager& other)
{
    section_ = other.section_;
    place_ = other.place_;
    importing_ = other.importing_;
    import_place_ = other.import_place_;
    return *this;
}

RegistryManager* RegistryManager::get()
{
    return &*only_manager;
}

void RegistryManager::Initialize(const char* registryKey, const char* appName)
{
    place_.app_name = copy_of(appName);
    SetRegistryKey(registryKey);
    SetSection(kFirstSection);
}

void RegistryManager::SetRegistryKey(const char* key)
{
    place_.registry_key = copy_of(key);
    place_.profile_name = copy_of(place_.app_name.get());
}

void RegistryManager::SetRegistryKey(unsigned int stringId)
{
    std::string found;
    static_cast<void>(zmr::find_string(stringId, found));  // a missing text is the empty one
    char text[256];
    zmr::copy_cut(text, sizeof text, found);
    SetRegistryKey(text);
}

void RegistryManager::SetSection(const char* section)
{
    section_ = lasting_text(section);
}

void RegistryManager::SetSection(unsigned int stringId)
{
    SetSection(GString(zmr::module_of_address(&only_manager), stringId).text);
}

GString RegistryManager::GetRegistryKey() const
{
    return GString(place_.registry_key.get());
}

GString RegistryManager::GetProfileName() const
{
    return GString(place_.profile_name.get());
}

GString RegistryManager::GetRootKey() const
{
    return GString("software") + "\\" + GetRegistryKey() + "\\" + GetProfileName();
}

void RegistryManager::ImportRegistry(const char* oldRegistryKey, const char* oldAppName)
{
    importing_ = false;  // this read is of the current place
    importing_ = GetProfileIntA(kImportSection, kImportEntry, 0) == 0;
    WriteProfileInt(kImportSection, kImportEntry, 1);
    import_place_ = {copy_of(oldRegistryKey), copy_of(oldAppName), copy_of(oldAppName)};
}

HKEY RegistryManager::GetAppRegistryKey(bool create) const
{
    return zmr::open_application_key(place_.registry_key.get(), place_.profile_name.get(), create);
}

HKEY RegistryManager::GetSectionKey(const char* section, bool create) const
{
    return zmr::open_section_key(place_.registry_key.get(), place_.profile_name.get(), section,
                                 create);
}

unsigned int RegistryManager::GetProfileIntA(const char* section, const char* entry,
                                             int default_value)
{
    const auto otherwise = static_cast<unsigned>(default_value);
    if (reads_older_first()) {
        unsigned older = otherwise;
        {
            const OlderPlace swapped(*this);
            older = GetProfileIntA(section, entry, default_value);
        }
        if (older != otherwise) {
            WriteProfileInt(section, entry, static_cast<int>(older));
            return older;
        }
    }
    const auto settings = store_for(section, entry);
    std::uint32_t value = 0;
    return settings != nullptr && settings->read_int(section, entry, value) ? value : otherwise;
}

int RegistryManager::WriteProfileInt(const char* section, const char* entry, int value)
{
    const auto settings = store_for(section, entry);
    return settings != nullptr && settings->write_int(section, entry, value);
}

CString RegistryManager::GetProfileStringA(const char* section, const char* entry,
                                           const char* default_text)
{
    if (reads_older_first()) {
        CString older;
        {
            const OlderPlace swapped(*this);
            older = GetProfileStringA(section, entry, default_text);
        }
        if (!older.IsEmpty()) {
            WriteProfileStringA(section, entry, older);
            return older;
        }
    }
    const auto settings = store_for(section, entry);
    std::string text;
    if (settings != nullptr && settings->read_text(section, entry, text))
        return CString(std::string_view(text));
    return CString(default_text);
}

int RegistryManager::WriteProfileStringA(const char* section, const char* entry, const char* value)
{
    const auto settings = store_for(section, section);
    if (settings == nullptr)
        return false;
    if (entry == nullptr)
        return settings->remove_section(section);
    if (value == nullptr)
        return settings->remove_entry(section, entry);
    return settings->write_text(section, entry, value);
}

int RegistryManager::GetProfileBinary(const char* section, const char* entry, unsigned char** data,
                                      unsigned int* bytes)
{
    if (data == nullptr || bytes == nullptr)
        return false;
    if (reads_older_first()) {
        bool is_found = false;
        {
            const OlderPlace swapped(*this);
            is_found = GetProfileBinary(section, entry, data, bytes) != 0;
        }
        if (is_found) {
            WriteProfileBinary(section, entry, *data, *bytes);
            return true;
        }
    }
    *data = nullptr;
    *bytes = 0;
    const auto settings = store_for(section, entry);
    zmr::SettingsBytes block;
    if (settings == nullptr || !settings->read_binary(section, entry, block, *bytes))
        return false;
    *data = block.release();
    return true;
}

int RegistryManager::WriteProfileBinary(const char* section, const char* entry,
                                        const unsigned char* data, unsigned int bytes)
{
    if (data == nullptr && bytes != 0)
        return false;
    const auto settings = store_for(section, entry);
    return settings != nullptr && settings->write_binary(section, entry, {data, bytes});
}

unsigned int RegistryManager::GetProfileIntA(const char* entry, int default_value)
{
    return GetProfileIntA(GetSection(), entry, default_value);
}

int RegistryManager::WriteProfileInt(const char* entry, int value)
{
    return WriteProfileInt(GetSection(), entry, value);
}

int RegistryManager::WriteProfileStringA(const char* entry, const char* value)
{
    return WriteProfileStringA(GetSection(), entry, value);
}

int RegistryManager::GetProfileBinary(const char* entry, unsigned char** data, unsigned int* bytes)
{
    return GetProfileBinary(GetSection(), entry, data, bytes);
}

int RegistryManager::WriteProfileBinary(const char* entry, const unsigned char* data,
                                        unsigned int bytes)
{
    return WriteProfileBinary(GetSection(), entry, data, bytes);
}

bool RegistryManager::reads_older_first() const
{
    // The very names, not their texts: while the older place is in, they are one.
    return importing_ && place_.app_name != import_place_.app_name;
}

std::shared_ptr<zmr::SettingsStore> RegistryManager::store_for(const char* section,
                                                               const char* entry) const
{
    if (section == nullptr || entry == nullptr)
        return nullptr;
    if (batch_ != nullptr && batch_->is_of(place_.registry_key.get(), place_.profile_name.get()))
        return batch_->store_;
    const char* const key = place_.registry_key.get();
    const char* const profile = place_.profile_name.get();
    const std::string file = zmr::settings_file(key, profile);
    if (file.empty())
        return zmr::registry_settings(key, profile);
    if (batch_ != nullptr && batch_->store_->name() == file)
        return batch_->store_;
    return std::make_shared<zmr::IniStore>(zmr::FileSystemDevice::Real(), file);
}
