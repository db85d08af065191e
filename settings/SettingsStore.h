#pragma once

#include "platform/Export.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <span>
#include <string>

namespace zmr {

struct DeleteBytes {
    void operator()(unsigned char* bytes) const noexcept { ::operator delete(bytes); }
};
/// A block of the global operator new.
using SettingsBytes = std::unique_ptr<unsigned char, DeleteBytes>;

[[nodiscard]] inline SettingsBytes allocate_settings_bytes(std::size_t size)
{
    return SettingsBytes(static_cast<unsigned char*>(::operator new(size)));
}

/// What keeps values under a section and an entry. Names are never null; they are found whatever
/// the case of their letters. Reads create nothing; they answer false, with the result unchanged
/// unless told, when there is no such value. Writes answer whether the value is kept now. One
/// thread.
class ZMR_GV_API SettingsStore {
public:
    virtual ~SettingsStore() = default;

    [[nodiscard]] virtual bool read_int(const char* section, const char* entry,
                                        std::uint32_t& value) = 0;
    [[nodiscard]] virtual bool read_text(const char* section, const char* entry,
                                         std::string& text) = 0;
    /// `size` may be set even when the value then cannot be read.
    [[nodiscard]] virtual bool read_binary(const char* section, const char* entry,
                                           SettingsBytes& bytes, unsigned& size) = 0;
    [[nodiscard]] virtual bool write_int(const char* section, const char* entry,
                                         std::int32_t value) = 0;
    [[nodiscard]] virtual bool write_text(const char* section, const char* entry,
                                          const char* text) = 0;
    [[nodiscard]] virtual bool write_binary(const char* section, const char* entry,
                                            std::span<const unsigned char> bytes) = 0;
    [[nodiscard]] virtual bool remove_entry(const char* section, const char* entry) = 0;
    [[nodiscard]] virtual bool remove_section(const char* section) = 0;
};

}  // namespace zmr
