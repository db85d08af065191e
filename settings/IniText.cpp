#include "settings/IniText.h"

#include "platform/ByteText.h"
#include "settings/IniLines.h"

#include <algorithm>
#include <bit>
#include <chrono>
#include <cstring>

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

/// The ASCII letters among eight bytes to lower case. The sums reach the highest bit of a byte
/// exactly for what is at least "A" and above "Z".
std::uint64_t lower_eight(std::uint64_t letters)
{
    constexpr std::uint64_t kEach = 0x0101010101010101;
    const std::uint64_t low = letters & kEach * 0x7F;
    const std::uint64_t from_a = low + kEach * (0x80 - 'A');
    const std::uint64_t above_z = low + kEach * (0x7F - 'Z');
    const std::uint64_t capitals = (from_a ^ above_z) & ~letters & kEach * 0x80;
    return letters | capitals >> 2;
}

/// The first `size` bytes, at most 8, and zeros.
std::uint64_t load(const char* bytes, std::size_t size)
{
    std::uint64_t letters = 0;
    if (size >= 8) {
        std::memcpy(&letters, bytes, 8);
        return letters;
    }
    for (std::size_t i = 0; i < size; ++i)
        letters |= std::uint64_t{static_cast<unsigned char>(bytes[i])} << 8 * i;
    return letters;
}

std::uint64_t hash_name(std::string_view name, std::uint64_t hash)
{
    constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15;
    const auto mix = [&hash](std::uint64_t part) {
        hash = (hash ^ part) * kFactor;
        hash ^= hash >> 32;
    };
    for (std::size_t at = 0; at < name.size(); at += 8)
        mix(lower_eight(load(name.data() + at, name.size() - at)));
    // The last letters have reached the upper half only: another turn brings them down.
    mix(name.size());
    return hash;
}

bool same_name(std::string_view a, std::string_view b)
{
    if (a == b)
        return true;
    if (a.size() != b.size())
        return false;
    return std::equal(a.begin(), a.end(), b.begin(),
                      [](char one, char other) { return lower_ascii(one) == lower_ascii(other); });
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
        slot_of(hash_name(entry, hash_name(section, hash_seed())), section, &entry);
    if (slot == nullptr || slot->value_length == kNoText)
        return std::nullopt;
    return without_quotes(text_at(slot->value_start, slot->value_length));
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
    sections_.clear();
    slots_.clear();
    table_.clear();
}

void IniText::index() const
{
    constexpr std::size_t kUsualLineBytes = 24;
    slots_.reserve(bytes_.size() / kUsualLineBytes);
    table_.assign(std::bit_ceil(slots_.capacity() * 2 + 16), 0);
    bool counts = add_section({});
    std::uint64_t section_hash = hash_name({}, hash_seed());
    IniLines lines(bytes_);
    for (IniLine line; lines.next(line);) {
        if (line.kind == IniLineKind::Section) {
            counts = add_section(line.name);
            section_hash = hash_name(line.name, hash_seed());
        } else if (line.kind == IniLineKind::Entry && counts) {
            add_entry_of(section_hash, line);
        }
    }
    indexed_ = true;
}

const IniText::Slot* IniText::slot_of(std::uint64_t hash, std::string_view section,
                                      const std::string_view* name) const
{
    const std::size_t mask = table_.size() - 1;
    for (std::size_t at = hash & mask; table_[at] != 0; at = (at + 1) & mask) {
        const Slot& slot = slots_[table_[at] - 1];
        if (slot.hash != hash || (slot.name_length == kNoText) != (name == nullptr))
            continue;
        if ((name == nullptr || same_name(text_at(slot.name_start, slot.name_length), *name)) &&
            same_name(sections_[slot.section], section))
            return &slot;
    }
    return nullptr;
}

bool IniText::add_section(std::string_view section) const
{
    const std::uint64_t hash = hash_name(section, hash_seed());
    if (slot_of(hash, section, nullptr) != nullptr)
        return false;
    sections_.push_back(section);
    add({hash, static_cast<std::uint32_t>(sections_.size() - 1), 0, kNoText, 0, kNoText});
    return true;
}

void IniText::add_entry_of(std::uint64_t section_hash, const IniLine& line) const
{
    const std::uint64_t hash = hash_name(line.name, section_hash);
    if (slot_of(hash, sections_.back(), &line.name) != nullptr)
        return;
    const auto place = [this](std::string_view text) {
        return static_cast<std::uint32_t>(text.data() - bytes_.data());
    };
    const auto length = [](std::string_view text) {
        return static_cast<std::uint32_t>(text.size());
    };
    const auto section = static_cast<std::uint32_t>(sections_.size() - 1);
    if (line.has_value)
        add({hash, section, place(line.name), length(line.name), place(line.value),
             length(line.value)});
    else
        add({hash, section, place(line.name), length(line.name), 0, kNoText});
}

void IniText::add(const Slot& slot) const
{
    slots_.push_back(slot);
    if (slots_.size() * 2 <= table_.size()) {
        enter(slot.hash, static_cast<std::uint32_t>(slots_.size() - 1));
        return;
    }
    table_.assign(table_.size() * 2, 0);
    for (std::uint32_t i = 0; i < slots_.size(); ++i)
        enter(slots_[i].hash, i);
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
