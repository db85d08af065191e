#pragma once

#include "platform/Handles.h"
#include "settings/SettingsStore.h"

#include <string>

namespace zmr {

/// Settings in the registry, at HKEY_CURRENT_USER\software\KEY\PROFILE, each section a key and each
/// entry a value of it. Integers are stored as REG_DWORD, texts as REG_SZ with their terminator,
/// binary values as REG_BINARY; reads do not look at the type. No key is kept open.
///
/// The key "software" is never made; without it nothing is read or written. The section "" is the
/// application's own key, and is not removed.
class RegistryStore final : public SettingsStore {
public:
    RegistryStore(const char* key, const char* profile) : key_(key), profile_(profile) {}

    /// With `create`, what is missing below "software" is made. Null on failure.
    [[nodiscard]] OwnedRegistryKey open_application(bool create) const;
    [[nodiscard]] OwnedRegistryKey open_section(const char* section, bool create) const;

    /// The first 4 bytes at most of what is stored, the missing ones 0; false for a longer value.
    [[nodiscard]] bool read_int(const char* section, const char* entry,
                                std::uint32_t& value) override;
    [[nodiscard]] bool read_text(const char* section, const char* entry,
                                 std::string& text) override;
    [[nodiscard]] bool read_binary(const char* section, const char* entry, SettingsBytes& bytes,
                                   unsigned& size) override;
    [[nodiscard]] bool write_int(const char* section, const char* entry,
                                 std::int32_t value) override;
    [[nodiscard]] bool write_text(const char* section, const char* entry,
                                  const char* text) override;
    [[nodiscard]] bool write_binary(const char* section, const char* entry,
                                    std::span<const unsigned char> bytes) override;
    /// False when there is nothing to remove; the section is made all the same.
    [[nodiscard]] bool remove_entry(const char* section, const char* entry) override;
    /// False when there is none, or keys lie below it.
    [[nodiscard]] bool remove_section(const char* section) override;

private:
    [[nodiscard]] bool write(const char* section, const char* entry, DWORD type, const void* data,
                             std::size_t size) const;

    std::string key_;
    std::string profile_;
};

}  // namespace zmr
