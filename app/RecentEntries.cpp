#include "app/RecentEntries.h"

#include "settings/SettingsBatch.h"

namespace zmr {

std::string recent_entry(const char* format, int number)
{
    CString entry;
    entry.Format(format, number);
    return std::string(entry.view());
}

bool write_recent_entries(RegistryManager& settings, const char* section, const char* format,
                          std::span<const CString> names)
{
    SettingsBatch batch(settings);
    settings.WriteProfileStringA(section, nullptr, nullptr);  // false when there was none
    bool are_kept = true;
    int number = 0;
    for (const CString& name : names) {
        ++number;
        if (name.IsEmpty())
            continue;
        const std::string entry = recent_entry(format, number);
        if (!settings.WriteProfileStringA(section, entry.c_str(), name))
            are_kept = false;
    }
    return batch.commit() && are_kept;
}

void read_recent_entries(RegistryManager& settings, const char* section, const char* format,
                         std::span<CString> names)
{
    const SettingsBatch batch(settings);
    int number = 0;
    for (CString& name : names)
        name = settings.GetProfileStringA(section, recent_entry(format, ++number).c_str(), "");
}

}  // namespace zmr
