#pragma once

#include "settings/IniText.h"
#include "settings/SettingsFile.h"
#include "settings/SettingsStore.h"

#include <optional>
#include <vector>

namespace zmr {

/// Settings in an initialisation file. What the system's private-profile functions wrote is read,
/// and they read what this writes; other than theirs, an update is durable, is never halved and
/// never undoes that of another process. Each call reads the file anew, and each write replaces it
/// (docs/settings.md has the costs); between begin() and commit() there is one of each.
///
/// A file that holds zero bytes, as after a power cut, counts as damaged: it is read as far as it
/// makes sense and never written.
class ZMR_GV_API IniStore final : public SettingsStore {
public:
    /// Longer texts are cut, between two characters.
    static constexpr std::size_t kMostTextBytes = 4095;

    /// `device` is borrowed, `name` the full name of the file.
    IniStore(FileSystemDevice& device, std::string name) : file_(device, std::move(name)) {}

    [[nodiscard]] const std::string& name() const { return file_.name(); }

    /// From here on reads answer from the file's state of now and from what is written, and writes
    /// wait for commit(). Not nested.
    void begin();
    /// Writes all that was written since begin() in one update, into what the file has become
    /// meanwhile. False when none of it is in the file; then, too, the store works as before
    /// begin().
    [[nodiscard]] bool commit();

    /// Decimal digits, or others behind "0x", "0o" or "0b", with a sign or without, up to the first
    /// other letter; cut to 32 bits. 0 for a text without digits, false for an empty one.
    [[nodiscard]] bool read_int(const char* section, const char* entry,
                                std::uint32_t& value) override;
    [[nodiscard]] bool read_text(const char* section, const char* entry,
                                 std::string& text) override;
    /// False for an empty text and for one that binary_to_text does not make.
    [[nodiscard]] bool read_binary(const char* section, const char* entry, SettingsBytes& bytes,
                                   unsigned& size) override;
    [[nodiscard]] bool write_int(const char* section, const char* entry,
                                 std::int32_t value) override;
    [[nodiscard]] bool write_text(const char* section, const char* entry,
                                  const char* text) override;
    [[nodiscard]] bool write_binary(const char* section, const char* entry,
                                    std::span<const unsigned char> bytes) override;
    /// True also when there is nothing to remove.
    [[nodiscard]] bool remove_entry(const char* section, const char* entry) override;
    [[nodiscard]] bool remove_section(const char* section) override;

private:
    /// One change; without an entry it removes the section, without a value the entry.
    struct Change {
        std::string section;
        std::optional<std::string> entry;
        std::optional<std::string> value;
        [[nodiscard]] bool apply(IniText& text) const;
    };
    struct Batch {
        Batch(std::string utf8, bool may_be_written);
        IniText text;
        bool is_writable;
        std::vector<Change> changes;
    };

    /// The value, without a copy: `use` is called with it when there is one.
    template <class Use>
    bool with_value(const char* section, const char* entry, Use use) const;
    [[nodiscard]] bool change(Change change);
    [[nodiscard]] bool apply(std::span<const Change> changes) const;

    SettingsFile file_;
    std::unique_ptr<Batch> batch_;
};

/// The number that a text of an initialisation file starts with, as IniStore reads it.
[[nodiscard]] ZMR_GV_API std::uint32_t ini_number(std::string_view text);

}  // namespace zmr
