#include "settings/RegistryStore.h"

#include <cstring>
#include <limits>

namespace zmr {
namespace {

constexpr REGSAM kReadAndWrite = 0x2001F;

OwnedRegistryKey open_key(HKEY above, const char* name)
{
    HKEY key = nullptr;
    return OwnedRegistryKey(
        ::RegOpenKeyExA(above, name, 0, kReadAndWrite, &key) == ERROR_SUCCESS ? key : nullptr);
}

OwnedRegistryKey make_key(HKEY above, const char* name)
{
    HKEY key = nullptr;
    return OwnedRegistryKey(::RegCreateKeyExA(above, name, 0, nullptr, REG_OPTION_NON_VOLATILE,
                                              kReadAndWrite, nullptr, &key,
                                              nullptr) == ERROR_SUCCESS
                                ? key
                                : nullptr);
}

OwnedRegistryKey below(const OwnedRegistryKey& above, const char* name, bool create)
{
    if (!above)
        return {};
    return create ? make_key(above.get(), name) : open_key(above.get(), name);
}

}  // namespace

OwnedRegistryKey RegistryStore::open_application(bool create) const
{
    const OwnedRegistryKey software = open_key(HKEY_CURRENT_USER, "software");
    return below(below(software, key_.c_str(), create), profile_.c_str(), create);
}

OwnedRegistryKey RegistryStore::open_section(const char* section, bool create) const
{
    return below(open_application(create), section, create);
}

bool RegistryStore::read_int(const char* section, const char* entry, std::uint32_t& value)
{
    const OwnedRegistryKey key = open_section(section, false);
    std::uint32_t number = 0;
    DWORD size = sizeof number;
    if (!key || ::RegQueryValueExA(key.get(), entry, nullptr, nullptr,
                                   reinterpret_cast<BYTE*>(&number), &size) != ERROR_SUCCESS)
        return false;
    value = number;
    return true;
}

bool RegistryStore::read_text(const char* section, const char* entry, std::string& text)
{
    const OwnedRegistryKey key = open_section(section, false);
    DWORD size = 0;
    if (!key ||
        ::RegQueryValueExA(key.get(), entry, nullptr, nullptr, nullptr, &size) != ERROR_SUCCESS)
        return false;
    std::string value(size, '\0');
    if (::RegQueryValueExA(key.get(), entry, nullptr, nullptr,
                           reinterpret_cast<BYTE*>(value.data()), &size) != ERROR_SUCCESS)
        return false;
    text.assign(value.c_str());  // who stored it may have left the terminator out
    return true;
}

bool RegistryStore::read_binary(const char* section, const char* entry, SettingsBytes& bytes,
                                unsigned& size)
{
    const OwnedRegistryKey key = open_section(section, false);
    DWORD found = 0;
    if (!key ||
        ::RegQueryValueExA(key.get(), entry, nullptr, nullptr, nullptr, &found) != ERROR_SUCCESS)
        return false;
    size = found;
    SettingsBytes value = allocate_settings_bytes(found);
    if (::RegQueryValueExA(key.get(), entry, nullptr, nullptr, value.get(), &found) !=
        ERROR_SUCCESS)
        return false;
    bytes = std::move(value);
    return true;
}

bool RegistryStore::write_int(const char* section, const char* entry, std::int32_t value)
{
    return write(section, entry, REG_DWORD, &value, sizeof value);
}

bool RegistryStore::write_text(const char* section, const char* entry, const char* text)
{
    return write(section, entry, REG_SZ, text, std::strlen(text) + 1);
}

bool RegistryStore::write_binary(const char* section, const char* entry,
                                 std::span<const unsigned char> bytes)
{
    return write(section, entry, REG_BINARY, bytes.data(), bytes.size());
}

bool RegistryStore::remove_entry(const char* section, const char* entry)
{
    const OwnedRegistryKey key = open_section(section, true);
    return key && ::RegDeleteValueA(key.get(), entry) == ERROR_SUCCESS;
}

bool RegistryStore::remove_section(const char* section)
{
    const OwnedRegistryKey key = open_application(true);
    return key && *section != '\0' && ::RegDeleteKeyA(key.get(), section) == ERROR_SUCCESS;
}

bool RegistryStore::write(const char* section, const char* entry, DWORD type, const void* data,
                          std::size_t size) const
{
    if (size > std::numeric_limits<DWORD>::max())
        return false;
    const OwnedRegistryKey key = open_section(section, true);
    return key && ::RegSetValueExA(key.get(), entry, 0, type, static_cast<const BYTE*>(data),
                                   static_cast<DWORD>(size)) == ERROR_SUCCESS;
}

}  // namespace zmr
