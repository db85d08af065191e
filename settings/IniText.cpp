#include "settings/IniText.h"

#include "platform/ByteText.h"
#include "settings/IniLines.h"

#include <algorithm>
#include <bit>
#include <chrono>

namespace zmr {
namespace {

constexpr std::string_view kNewFileLineEnd = "\r\n";

/// Different in each run, so that nobody can write a file whose names all fall together.
std::uint64_t hash_seed()
{
    static const auto seed =
        static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count() | 1);
    return seed;
}

std::uint64_t hash_name(std::string_view name, std::uint64_t hash)
{
    constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15;
    for (const char letter : name) {
        hash = (hash ^ static_cast<unsigned char>(lower_ascii(letter))) * kFactor;
        hash ^= hash >> 29;
    }
    return (hash ^ name.size()) * kFactor;
}

bool same_name(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char one, char other) {
        return one == other || lower_ascii(one) == lower_ascii(other);
    });
}

bool has_line_end(std::string_view text)
{
    return text.find_first_of("\r\n") != std::string_view::npos;
}

/// Whether a line "entry=value" is read as an entry of that name, wherever it stands.
bool can_name_an_entry(std::string_view name)
{
    return !has_line_end(name) && name.find('=') == std::string_view::npos &&
           !name.starts_with(';') && !name.starts_with('[') && utf8_mark_length(name) == 0;
}

/// The line end that the text uses first.
std::string_view line_end_of(std::string_view text)
{
    const std::size_t at = text.find_first_of("\r\n");
    if (at == std::string_view::npos)
        return kNewFileLineEnd;
    if (text[at] == '\n')
        return "\n";
    return at + 1 < text.size() && text[at + 1] == '\n' ? "\r\n" : "\r";
}

/// Where a section and an entry in it stand.
struct Found {
    bool section = false;
    bool entry = false;
    IniLine line;            ///< The entry's.
    std::size_t start = 0;   ///< Of the section, with its head.
    std::size_t append = 0;  ///< Behind the section's last entry, or behind its head.
    std::size_t end = 0;     ///< Behind the section, but for comments right above the next one.
};

Found locate(std::string_view text, std::string_view section, std::string_view entry)
{
    Found found;
    IniLines lines(text);
    IniLine line;
    std::size_t behind_last = utf8_mark_length(text);
    std::size_t comments = 0;  // where those begin that are right above the line; 0: none are
    found.section = section.empty();
    found.start = found.append = behind_last;
    while (lines.next(line)) {
        if (line.kind == IniLineKind::Section) {
            if (found.section) {
                found.end = comments != 0 ? comments : line.start;
                return found;
            }
            if (same_name(line.name, section)) {
                found.section = true;
                found.start = line.start;
                found.append = line.next;
            }
        } else if (found.section && line.kind == IniLineKind::Entry) {
            found.append = line.next;
            if (!found.entry && same_name(line.name, entry)) {
                found.entry = true;
                found.line = line;
            }
        }
        if (line.kind != IniLineKind::Comment)
            comments = 0;
        else if (comments == 0)
            comments = line.start;
    }
    found.end = text.size();
    return found;
}

}  // namespace

std::optional<std::string_view> IniText::find(std::string_view section,
                                              std::string_view entry) const
{
    if (!indexed_)
        index();
    section = trim_ini_blanks(section);
    entry = trim_ini_blanks(entry);
    const Slot* const slot =
        slot_of(hash_name(entry, hash_name(section, hash_seed())), section, entry, false);
    if (slot == nullptr || !slot->has_value)
        return std::nullopt;
    return without_quotes(slot->value);
}

bool IniText::set(std::string_view section, std::string_view entry, std::string_view value)
{
    section = trim_ini_blanks(section);
    entry = trim_ini_blanks(entry);
    value = trim_ini_blanks(value);
    if (has_line_end(section) || has_line_end(value) || !can_name_an_entry(entry))
        return false;
    const Found found = locate(bytes_, section, entry);
    if (found.entry)
        replace_value(found.line, value);
    else
        add_entry(found.section ? found.append : bytes_.size(), found.section ? nullptr : &section,
                  entry, value);
    return true;
}

void IniText::remove_entry(std::string_view section, std::string_view entry)
{
    const Found found = locate(bytes_, trim_ini_blanks(section), trim_ini_blanks(entry));
    if (!found.entry)
        return;
    bytes_.erase(found.line.start, found.line.next - found.line.start);
    forget_index();
}

void IniText::remove_section(std::string_view section)
{
    section = trim_ini_blanks(section);
    const Found found = locate(bytes_, section, {});
    if (!found.section)
        return;
    if (!section.empty()) {
        bytes_.erase(found.start, found.end - found.start);
    } else {
        // The section has no head, and comments in front of the file are not its own.
        std::string kept = bytes_.substr(0, found.start);
        IniLines lines(bytes_);
        for (IniLine line; lines.next(line) && line.next <= found.end;)
            if (line.kind != IniLineKind::Entry)
                kept.append(bytes_, line.start, line.next - line.start);
        bytes_.replace(0, found.end, kept);
    }
    forget_index();
}

void IniText::replace_value(const IniLine& line, std::string_view value)
{
    if (line.has_value && line.value == value)
        return;
    // What stands before the value stays as it was written.
    const char* const start =
        line.has_value ? line.value.data() : line.name.data() + line.name.size();
    const auto at = static_cast<std::size_t>(start - bytes_.data());
    const std::string text = (line.has_value ? "" : "=") + std::string(value);
    bytes_.replace(at, line.end - at, text);
    forget_index();
}

void IniText::add_entry(std::size_t at, const std::string_view* section, std::string_view entry,
                        std::string_view value)
{
    const std::string_view line_end = line_end_of(bytes_);
    std::string text;
    const bool line_is_open =
        at > utf8_mark_length(bytes_) && bytes_[at - 1] != '\n' && bytes_[at - 1] != '\r';
    if (line_is_open)
        text = line_end;
    if (section != nullptr)
        text.append("[").append(*section).append("]").append(line_end);
    text.append(entry).append("=").append(value).append(line_end);
    bytes_.insert(at, text);
    forget_index();
}

void IniText::forget_index()
{
    indexed_ = false;
    slots_.clear();
    table_.clear();
}

void IniText::index() const
{
    constexpr std::size_t kUsualLineBytes = 24;
    slots_.reserve(bytes_.size() / kUsualLineBytes);
    table_.assign(std::bit_ceil(slots_.capacity() * 2 + 16), 0);
    std::string_view section;
    std::uint64_t section_hash = hash_name(section, hash_seed());
    bool is_first = add({section_hash, section, {}, {}, false, true});
    IniLines lines(bytes_);
    for (IniLine line; lines.next(line);) {
        if (line.kind == IniLineKind::Section) {
            section = line.name;
            section_hash = hash_name(section, hash_seed());
            is_first = add({section_hash, section, {}, {}, false, true});
        } else if (line.kind == IniLineKind::Entry && is_first) {
            add({hash_name(line.name, section_hash), section, line.name, line.value, line.has_value,
                 false});
        }
    }
    indexed_ = true;
}

const IniText::Slot* IniText::slot_of(std::uint64_t hash, std::string_view section,
                                      std::string_view entry, bool is_section) const
{
    const std::size_t mask = table_.size() - 1;
    for (std::size_t at = hash & mask; table_[at] != 0; at = (at + 1) & mask) {
        const Slot& slot = slots_[table_[at] - 1];
        if (slot.hash == hash && slot.is_section == is_section && same_name(slot.entry, entry) &&
            same_name(slot.section, section))
            return &slot;
    }
    return nullptr;
}

bool IniText::add(const Slot& slot) const
{
    if (slot_of(slot.hash, slot.section, slot.entry, slot.is_section) != nullptr)
        return false;
    slots_.push_back(slot);
    if (slots_.size() * 2 > table_.size()) {
        table_.assign(table_.size() * 2, 0);
        for (std::uint32_t i = 0; i < slots_.size(); ++i)
            enter(slots_[i].hash, i);
    } else {
        enter(slot.hash, static_cast<std::uint32_t>(slots_.size() - 1));
    }
    return true;
}

void IniText::enter(std::uint64_t hash, std::uint32_t number) const
{
    const std::size_t mask = table_.size() - 1;
    std::size_t at = hash & mask;
    while (table_[at] != 0)
        at = (at + 1) & mask;
    table_[at] = number + 1;
}

}  // namespace zmr
