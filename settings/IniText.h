#pragma once

#include "platform/Export.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zmr {

struct IniLine;

/// The text of an initialisation file, read and changed in place by the rules of the system's
/// private-profile functions. What is not changed keeps its bytes: comments, order, blank lines,
/// line ends.
///
/// A line whose first letter is ";" is a comment, one that starts with "[" and holds "]" begins the
/// section named between the two (the last "]" counts), any other line with "=" is an entry. Lines
/// before the first section belong to the section "". Lines end with LF, CR LF or CR. Names are
/// compared without regard to the case of ASCII letters and to blanks around them. Of several
/// sections of one name the first counts, and in it the first of several equal entries.
///
/// One thread, reading included; less than 4 GiB. UTF-8, with or without a mark at its start.
class ZMR_GV_API IniText {
public:
    explicit IniText(std::string bytes) : bytes_(std::move(bytes)) {}
    IniText(const IniText&) = delete;  // the index points into the text
    IniText& operator=(const IniText&) = delete;

    [[nodiscard]] const std::string& bytes() const { return bytes_; }
    /// The value without blanks around it and without one pair of quotes, single or double; a view
    /// that lasts until the text changes. Nothing for an entry that is missing or has no "=". The
    /// first call of all passes over the text, further ones cost the same for any length.
    [[nodiscard]] std::optional<std::string_view> find(std::string_view section,
                                                       std::string_view entry) const;
    /// Changes the value or adds the entry, behind the last one of its section, and the section at
    /// the end. False, with nothing changed, when the names or the value cannot stand there: line
    /// ends anywhere, or an entry that holds "=" or starts with ";" or "[". Blanks around the value
    /// will not be read again. Linear in the text's length.
    [[nodiscard]] bool set(std::string_view section, std::string_view entry,
                           std::string_view value);
    /// Takes the line of the entry out. Nothing happens when it is missing.
    void remove_entry(std::string_view section, std::string_view entry);
    /// Takes the section's lines out, but for comments right above the next section. Of the section
    /// "" the entries only.
    void remove_section(std::string_view section);

private:
    /// A section or an entry that counts; places in bytes_. Small, because there are many.
    struct Slot {
        std::uint64_t hash;
        std::uint32_t section;  ///< In sections_.
        std::uint32_t name_start;
        std::uint32_t name_length;  ///< kNoText for a section itself.
        std::uint32_t value_start;
        std::uint32_t value_length;  ///< kNoText when there is no "=".
    };
    static constexpr std::uint32_t kNoText = 0xFFFFFFFF;

    void replace_value(const IniLine& line, std::string_view value);
    void add_entry(std::size_t at, const std::string_view* section, std::string_view entry,
                   std::string_view value);
    void index() const;
    void forget_index();
    [[nodiscard]] std::string_view text_at(std::uint32_t start, std::uint32_t length) const
    {
        return std::string_view(bytes_).substr(start, length);
    }
    /// The entry of that name, or the section with a `name` of null.
    [[nodiscard]] const Slot* slot_of(std::uint64_t hash, std::string_view section,
                                      const std::string_view* name) const;
    /// True, and current in sections_, when no other section has the name.
    bool add_section(std::string_view section) const;
    void add_entry_of(std::uint64_t section_hash, const IniLine& line) const;
    void add(const Slot& slot) const;
    void enter(std::uint64_t hash, std::uint32_t number) const;

    std::string bytes_;
    mutable bool indexed_ = false;
    mutable std::vector<std::string_view> sections_;  ///< Those that count, in their order.
    mutable std::vector<Slot> slots_;
    mutable std::vector<std::uint32_t> table_;  ///< Open addressing: 1 + place in slots_, or 0.
};

}  // namespace zmr
