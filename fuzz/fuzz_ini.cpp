// Any bytes as an initialisation file: it is read, a value is written into it and read back, taken
// out again, its section too, and of all other entries none changes; a file that must not be
// written stays as it was. The first bytes choose the names and the value.
#include "MemoryFile.h"
#include "settings/BinaryText.h"
#include "settings/IniEncoding.h"
#include "settings/IniLines.h"
#include "settings/IniStore.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

constexpr const char* kName = "f.ini";

void check(bool holds)
{
    if (!holds)
        std::abort();
}

/// Takes the next bytes of the input, up to a zero byte, as a text.
std::string take_text(std::string_view& input)
{
    const std::size_t end = std::min<std::size_t>(input.find('\0'), input.size());
    std::string text(input.substr(0, end));
    input.remove_prefix(std::min(end + 1, input.size()));
    return text;
}

struct Entry {
    std::string section;
    std::string name;
    auto operator<=>(const Entry&) const = default;
};

std::string lower(std::string_view text)
{
    std::string copy(text);
    for (char& letter : copy)
        if (letter >= 'A' && letter <= 'Z')
            letter = static_cast<char>(letter - 'A' + 'a');
    return copy;
}

/// All entries that count, found by a plain walk over the lines.
std::map<Entry, std::pair<bool, std::string>> entries_of(const std::string& bytes)
{
    bool is_whole = true;
    const std::string text = zmr::decode_ini(bytes, is_whole);
    std::map<Entry, std::pair<bool, std::string>> entries;
    std::map<std::string, int> sections{{"", 1}};
    std::string section;
    bool counts = true;
    zmr::IniLines lines(text);
    for (zmr::IniLine line; lines.next(line);) {
        if (line.kind == zmr::IniLineKind::Section) {
            section = lower(line.name);
            counts = ++sections[section] == 1;
        } else if (line.kind == zmr::IniLineKind::Entry && counts) {
            entries.insert({{section, lower(line.name)},
                            {line.has_value, std::string(zmr::without_quotes(line.value))}});
        }
    }
    return entries;
}

void compare_reads(zmr::IniStore& store, const std::string& bytes)
{
    bool is_whole = true;
    const zmr::IniText text(zmr::decode_ini(bytes, is_whole));
    for (const auto& [entry, value] : entries_of(bytes)) {
        const auto found = text.find(entry.section, entry.name);
        check(found.has_value() == value.first);
        check(!found || *found == value.second);
    }
    std::uint32_t number = 0;
    std::string value;
    zmr::SettingsBytes block;
    unsigned size = 0;
    static_cast<void>(store.read_int("s", "a", number));
    if (store.read_text("s", "a", value))
        check(value.size() <= zmr::IniStore::kMostTextBytes);
    if (store.read_binary("s", "a", block, size))
        check(size > 0 && block != nullptr);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::string section = take_text(input);
    const std::string name = take_text(input);
    const std::string value = take_text(input);
    const std::string before(input);

    MemoryFileSystem files;
    files.bytes(kName) = before;
    zmr::IniStore store(files, kName);
    compare_reads(store, before);

    const Entry key{lower(zmr::trim_ini_blanks(section)), lower(zmr::trim_ini_blanks(name))};
    auto expected = entries_of(before);
    const bool is_written = store.write_text(section.c_str(), name.c_str(), value.c_str());
    if (!is_written) {
        check(files.bytes(kName) == before);
    } else {
        const std::string_view kept = zmr::without_quotes(zmr::trim_ini_blanks(value));
        expected[key] = {true, std::string(kept)};
        check(entries_of(files.bytes(kName)) == expected);
        compare_reads(store, files.bytes(kName));
        const std::string written = files.bytes(kName);
        check(store.write_text(section.c_str(), name.c_str(), value.c_str()));
        check(files.bytes(kName) == written);
    }

    const std::string again = files.bytes(kName);
    if (!store.remove_section(section.c_str())) {
        check(files.bytes(kName) == again);
        return 0;
    }
    // Another section of the name may count now; those of other names must not have changed.
    auto left = entries_of(files.bytes(kName));
    const auto is_of_section = [&](const auto& entry) {
        return entry.first.section == key.section;
    };
    std::erase_if(left, is_of_section);
    std::erase_if(expected, is_of_section);
    check(left == expected);
    return 0;
}
