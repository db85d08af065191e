#pragma once

#include "foundation/GString.h"
#include "platform/CString.h"

#include <memory>

struct HKEY__;
using HKEY = HKEY__*;  // the very type of <windows.h>

namespace zmr {
class SettingsBatch;
class SettingsStore;
}  // namespace zmr

/// The user's settings: named values in sections, kept between runs. With a registry key name they
/// lie below the current user in the registry, at "software", that key, the application's name, the
/// section; without one in an initialisation file whose name is the application's. Where there is
/// no registry, a file of the user takes its place. docs/settings.md tells more.
///
/// Reads answer with the default or false when there is no such value, and create nothing; writes
/// answer whether the value is on the disk. Nothing throws but for want of memory. Names are found
/// whatever the case of their letters; a null name reads as missing and writes as false. Each call
/// opens what it needs anew, so it sees what other processes have written; zmr::SettingsBatch makes
/// one of many. User-interface thread.
class ZMR_GV_API RegistryManager {
public:
    RegistryManager() = default;
    /// Copies share their texts, and nothing else: batches stay with the object they were begun on.
    RegistryManager(const RegistryManager& other);
    RegistryManager& operator=(const RegistryManager& other);

    /// The one through which the library reads and writes. Never destroyed.
    [[nodiscard]] static RegistryManager* get();

    /// Names what the settings belong to; the host calls it once, before it uses them. The current
    /// section becomes "tmp". A null `registryKey` chooses an initialisation file named `appName`.
    void Initialize(const char* registryKey, const char* appName);
    /// Changes the registry key name, null for none, and takes the application's name anew.
    void SetRegistryKey(const char* key);
    /// The same with text number `stringId` of the program, cut to 255 bytes.
    void SetRegistryKey(unsigned int stringId);
    /// Changes the section of the short forms. Null makes it unset.
    void SetSection(const char* section);
    /// The same with text number `stringId` of the library itself.
    void SetSection(unsigned int stringId);
    /// The section of the short forms; null before the first one is set. The text stays valid for
    /// the life of the process.
    [[nodiscard]] const char* GetSection() const { return section_; }
    [[nodiscard]] GString GetRegistryKey() const;
    [[nodiscard]] GString GetProfileName() const;
    /// "software\KEY\PROFILE", without the section.
    [[nodiscard]] GString GetRootKey() const;

    /// Takes over the settings of an older installation, one by one as they are read during the
    /// first run, when the section "RegistryImport" has no "Imported" yet. While it does, what the
    /// older one has wins: an integer that differs from the default, a text that is not empty, any
    /// binary value; each is written to the current place too. Writes never go to the older one.
    void ImportRegistry(const char* oldRegistryKey, const char* oldAppName);

    /// An open key, which the caller closes with RegCloseKey; null when it cannot be opened, and
    /// always where there is no registry. `create` makes what is missing below "software".
    [[nodiscard]] HKEY GetAppRegistryKey(bool create) const;
    [[nodiscard]] HKEY GetSectionKey(const char* section, bool create) const;

    /// An integer as the 32 bits that are stored: convert the result to std::int32_t where it may
    /// be negative.
    [[nodiscard]] unsigned int GetProfileIntA(const char* section, const char* entry,
                                              int default_value);
    [[nodiscard]] unsigned int GetProfileIntA(const char* entry, int default_value);
    int WriteProfileInt(const char* section, const char* entry, int value);
    int WriteProfileInt(const char* entry, int value);

    /// A null default counts as empty. From an initialisation file at most 4,095 bytes.
    [[nodiscard]] CString GetProfileStringA(const char* section, const char* entry,
                                            const char* default_text = nullptr);
    /// A null `value` removes the entry, a null `entry` the whole section. An initialisation file
    /// keeps no blanks around a value, and takes no line ends in it: false.
    int WriteProfileStringA(const char* section, const char* entry, const char* value);
    int WriteProfileStringA(const char* entry, const char* value);

    /// On success `*data` is a block of `*bytes` bytes that the caller frees with operator delete.
    /// On failure `*data` is null. An initialisation file has no binary value of 0 bytes.
    [[nodiscard]] int GetProfileBinary(const char* section, const char* entry, unsigned char** data,
                                       unsigned int* bytes);
    [[nodiscard]] int GetProfileBinary(const char* entry, unsigned char** data,
                                       unsigned int* bytes);
    int WriteProfileBinary(const char* section, const char* entry, const unsigned char* data,
                           unsigned int bytes);
    int WriteProfileBinary(const char* entry, const unsigned char* data, unsigned int bytes);

private:
    friend class zmr::SettingsBatch;
    using Text = std::shared_ptr<char[]>;
    /// Where settings lie; swapped as a whole while an older installation is read.
    struct Place {
        Text registry_key;  ///< Null: an initialisation file.
        Text profile_name;
        Text app_name;
    };
    class OlderPlace;

    [[nodiscard]] bool reads_older_first() const;
    /// Null when a name is, and where there is no place for settings.
    [[nodiscard]] std::shared_ptr<zmr::SettingsStore> store_for(const char* section,
                                                                const char* entry) const;

    const char* section_ = nullptr;
    Place place_;
    bool importing_ = false;
    Place import_place_;
    zmr::SettingsBatch* batch_ = nullptr;
};
