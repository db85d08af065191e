// bench_settings [FOLDER]: settings in an initialisation file of 50 sections with 40 entries each,
// beside SimpleIni and what one would write by hand, which do the same work in the same run, taking
// turns. Each figure is the median of its repetitions. Caches are warm; FOLDER (a temporary one
// unless given) tells which disk is written.
//   open + 1000 reads    the file is read anew, then 1000 values by section and name
//   100 durable writes   each value is on the disk, with the file replaced in one step, before the
//                        next one is set; the peers keep the file in memory and take no lock
#include "settings/IniStore.h"
#include "settings/RegistryManager.h"
#include "settings/SettingsBatch.h"
#include "tests/TemporaryFolder.h"

#include <SimpleIni.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace {

constexpr int kSections = 50;
constexpr int kEntries = 40;
constexpr int kReads = 1000;
constexpr int kWrites = 100;

std::string section_name(int number)
{
    return "section " + std::to_string(number % kSections);
}

std::string entry_name(int number)
{
    return "entry " + std::to_string(number % kEntries);
}

std::string value_of(int section, int entry)
{
    return "value " + std::to_string(section * kEntries + entry);
}

std::string file_text()
{
    std::string text;
    for (int section = 0; section < kSections; ++section) {
        text += "[" + section_name(section) + "]\r\n";
        for (int entry = 0; entry < kEntries; ++entry)
            text += entry_name(entry) + "=" + value_of(section, entry) + "\r\n";
    }
    return text;
}

void require(bool holds, const char* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "%s failed\n", what);
    std::exit(1);
}

/// Which values are read and written: names are made beforehand, they are nobody's cost.
struct Names {
    Names()
    {
        for (int i = 0; i < kReads; ++i) {
            const int number = i * 7919;
            sections.push_back(section_name(number / kEntries));
            entries.push_back(entry_name(number));
            values.push_back(value_of(number / kEntries % kSections, number % kEntries));
        }
    }
    std::vector<std::string> sections;
    std::vector<std::string> entries;
    std::vector<std::string> values;
};

std::string read_file(const std::string& name)
{
    std::ifstream in(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// Replaces the file in one step that is on the disk afterwards.
void replace_durably(const std::string& name, std::string_view bytes)
{
    const std::string beside = name + ".beside";
    const int file = ::open(beside.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    require(file >= 0 &&
                ::write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()) &&
                ::fdatasync(file) == 0,
            "write");
    ::close(file);
    require(::rename(beside.c_str(), name.c_str()) == 0, "rename");
    const std::string folder = std::filesystem::path(name).parent_path().string();
    const int directory = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    require(directory >= 0 && ::fsync(directory) == 0, "fsync");
    ::close(directory);
}

// Contestants: read all the names, or write the first of them.

void read_by_manager(const std::string& file, const Names& names)
{
    RegistryManager manager;
    manager.Initialize(nullptr, file.c_str());
    const zmr::SettingsBatch batch(manager);
    for (int i = 0; i < kReads; ++i) {
        const CString value =
            manager.GetProfileStringA(names.sections[i].c_str(), names.entries[i].c_str(), "");
        require(value.view() == names.values[i], "read");
    }
}

void read_by_views(const std::string& file, const Names& names)
{
    const zmr::IniText text(zmr::SettingsFile(zmr::FileSystemDevice::Real(), file).load().bytes);
    for (int i = 0; i < kReads; ++i)
        require(text.find(names.sections[i], names.entries[i]) == names.values[i], "read");
}

void read_by_simpleini(const std::string& file, const Names& names)
{
    CSimpleIniA ini(true);
    require(ini.LoadFile(file.c_str()) == SI_OK, "LoadFile");
    for (int i = 0; i < kReads; ++i)
        require(names.values[i] ==
                    ini.GetValue(names.sections[i].c_str(), names.entries[i].c_str(), ""),
                "read");
}

/// A line at a time into a map of copies; nothing but what the file needs.
void read_by_hand(const std::string& file, const Names& names)
{
    std::unordered_map<std::string, std::unordered_map<std::string, std::string>> values;
    std::istringstream in(read_file(file));
    std::string line;
    auto* section = &values[""];
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (line.empty() || line[0] == ';')
            continue;
        if (line[0] == '[') {
            section = &values[line.substr(1, line.size() - 2)];
            continue;
        }
        const std::size_t equals = line.find('=');
        if (equals != std::string::npos)
            section->emplace(line.substr(0, equals), line.substr(equals + 1));
    }
    for (int i = 0; i < kReads; ++i)
        require(values[names.sections[i]][names.entries[i]] == names.values[i], "read");
}

void write_by_store(const std::string& file, const Names& names, int round)
{
    zmr::IniStore store(zmr::FileSystemDevice::Real(), file);
    for (int i = 0; i < kWrites; ++i)
        require(store.write_int(names.sections[i].c_str(), names.entries[i].c_str(), round + i),
                "write");
}

void write_by_simpleini(const std::string& file, const Names& names, int round)
{
    CSimpleIniA ini(true);
    require(ini.LoadFile(file.c_str()) == SI_OK, "LoadFile");
    for (int i = 0; i < kWrites; ++i) {
        ini.SetValue(names.sections[i].c_str(), names.entries[i].c_str(),
                     std::to_string(round + i).c_str());
        std::string bytes;
        require(ini.Save(bytes) == SI_OK, "Save");
        replace_durably(file, bytes);
    }
}

/// The text stays in memory, and the value's place is looked for in it.
void write_by_hand(const std::string& file, const Names& names, int round)
{
    std::string text = read_file(file);
    for (int i = 0; i < kWrites; ++i) {
        const std::size_t section = text.find("[" + names.sections[i] + "]");
        const std::string entry = "\n" + names.entries[i] + "=";
        const std::size_t at = text.find(entry, section) + entry.size();
        text.replace(at, text.find('\r', at) - at, std::to_string(round + i));
        replace_durably(file, text);
    }
}

/// All of the values in one update, as a dialog's are written.
void write_by_batch(const std::string& file, const Names& names, int round)
{
    RegistryManager manager;
    manager.Initialize(nullptr, file.c_str());
    zmr::SettingsBatch batch(manager);
    for (int i = 0; i < kWrites; ++i)
        require(manager.WriteProfileInt(names.sections[i].c_str(), names.entries[i].c_str(),
                                        round + i) != 0,
                "write");
    require(batch.commit(), "commit");
}

struct Contestant {
    const char* name;
    std::function<void(int repetition)> work;
    std::vector<double> microseconds{};
};

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// Runs the contestants by turns and prints how many times the first one's time each of them took.
void contest(const char* title, int repetitions, std::vector<Contestant> contestants)
{
    for (int repetition = -1; repetition < repetitions; ++repetition)
        for (Contestant& contestant : contestants) {
            const auto start = std::chrono::steady_clock::now();
            contestant.work(repetition);
            const std::chrono::duration<double, std::micro> took =
                std::chrono::steady_clock::now() - start;
            if (repetition >= 0)  // the first one warms up
                contestant.microseconds.push_back(took.count());
        }
    std::printf("%s\n", title);
    const double ours = median(contestants.front().microseconds);
    for (const Contestant& contestant : contestants) {
        const double own = median(contestant.microseconds);
        std::printf("  %-28s %10.0f us   %6.2f x\n", contestant.name, own, own / ours);
    }
}

}  // namespace

int main(int count, char** arguments)
{
    const Names names;
    const TemporaryFolder temporary;
    const std::filesystem::path folder =
        count > 1 && arguments[1][0] != '-' ? arguments[1] : temporary.path();
    const auto new_file = [&](const char* name) {
        const std::string file = (folder / (std::string("bench_settings ") + name)).string();
        std::ofstream(file, std::ios::binary) << file_text();
        return file;
    };
    const std::string read = new_file("read.ini");
    contest("open + 1000 reads", 101,
            {{"library, RegistryManager", [&](int) { read_by_manager(read, names); }},
             {"library, IniText", [&](int) { read_by_views(read, names); }},
             {"SimpleIni", [&](int) { read_by_simpleini(read, names); }},
             {"by hand, maps", [&](int) { read_by_hand(read, names); }}});

    const std::string ours = new_file("ours.ini");
    const std::string simpleini = new_file("simpleini.ini");
    const std::string by_hand = new_file("by hand.ini");
    const std::string batch = new_file("batch.ini");
    contest(
        "100 durable writes", 9,
        {{"library", [&](int i) { write_by_store(ours, names, i * 1000 + 1000); }},
         {"SimpleIni", [&](int i) { write_by_simpleini(simpleini, names, i * 1000 + 1000); }},
         {"by hand, replaced", [&](int i) { write_by_hand(by_hand, names, i * 1000 + 1000); }},
         {"library, one batch", [&](int i) { write_by_batch(batch, names, i * 1000 + 1000); }}});
    for (const std::string& file : {read, ours, simpleini, by_hand, batch}) {
        std::filesystem::remove(file);
        std::filesystem::remove(file + ".lock");
    }
    return 0;
}
