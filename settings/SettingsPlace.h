#pragma once

#include "settings/RegistryManager.h"
#include "settings/SettingsStore.h"

#include <memory>
#include <string>

// Where settings of a registry key and a profile name lie; both may be null. Each lane has its own
// answers.

namespace zmr {

/// The full name of the initialisation file that holds them; empty when none does.
///
/// Win lane: without a registry key the file `profile_name`; one without a folder lies in the
/// system's, and null is the system's own "win.ini". Else: a file without a folder lies in the
/// user's folder of settings, and with a registry key the file is "KEY/PROFILE.ini" there.
[[nodiscard]] std::string settings_file(const char* registry_key, const char* profile_name);
/// The registry's part of them; null without a registry key and where there is no registry.
[[nodiscard]] std::shared_ptr<SettingsStore> registry_settings(const char* registry_key,
                                                               const char* profile_name);
/// Their open keys, which the caller closes; null when they cannot be opened.
[[nodiscard]] HKEY open_application_key(const char* registry_key, const char* profile_name,
                                        bool create);
[[nodiscard]] HKEY open_section_key(const char* registry_key, const char* profile_name,
                                    const char* section, bool create);

}  // namespace zmr
