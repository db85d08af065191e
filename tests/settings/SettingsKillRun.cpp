#include "SettingsKillRun.h"

#include "settings/IniStore.h"
#include "tests/store/Random.h"
#include "tests/support/ChildProcess.h"

#include <chrono>
#include <thread>

namespace zmr {
namespace {

constexpr int kKept = 400;  ///< Entries that no update touches: a file of some 10 KB.
constexpr int kEntries = 20;

std::string kept_text(int i)
{
    return "kept text number " + std::to_string(i);
}

bool fill(IniStore& store)
{
    store.begin();
    for (int i = 0; i < kKept; ++i)
        if (!store.write_text("kept", std::to_string(i).c_str(), kept_text(i).c_str()))
            return false;
    return store.commit();
}

/// What is wrong with the file after a kill; `last` becomes the number that it holds.
std::string check(IniStore& store, std::uint64_t acknowledged, std::uint64_t& last)
{
    store.begin();
    std::string text;
    for (int i = 0; i < kKept; ++i)
        if (!store.read_text("kept", std::to_string(i).c_str(), text) || text != kept_text(i))
            return "entry " + std::to_string(i) + " is lost";
    for (int i = 0; i < kEntries; ++i) {
        std::uint32_t number = 0;
        if (!store.read_int("numbers", ("entry " + std::to_string(i)).c_str(), number) &&
            acknowledged != 0)
            return "number " + std::to_string(i) + " is lost";
        if (i == 0)
            last = number;
        if (number != last)
            return "half of update " + std::to_string(last) + " is there";
    }
    static_cast<void>(store.commit());  // nothing was written
    if (last < acknowledged || last > acknowledged + 1)
        return "update " + std::to_string(acknowledged) + " was acknowledged, " +
               std::to_string(last) + " is there";
    return {};
}

void kill_one(const std::string& name, Random& random, std::uint64_t& acknowledged,
              SettingsKillFigures& figures)
{
    ChildStart start;
    start.program = ZMR_SETTINGS_CHILD;
    start.words = {"write", name};
    const auto writer = ChildProcess::Start(start, figures.failure);
    std::string line;
    if (writer == nullptr || !writer->read_line(line)) {
        figures.failure = "the writer is not started: " + figures.failure;
        return;
    }
    const auto acknowledge = [&] {
        if (line.empty() || line.find_first_not_of("0123456789") != std::string::npos) {
            figures.failure = line;
            return;
        }
        acknowledged = std::stoull(line);
        ++figures.updates;
    };
    // Every other one is let come to its first update, however slow the machine is.
    if (figures.kills % 2 == 0 && writer->read_line(line))
        acknowledge();
    constexpr unsigned kLongest_us = 6'000;
    std::this_thread::sleep_for(std::chrono::microseconds(random() % kLongest_us));
    writer->kill();
    while (writer->read_line(line))
        acknowledge();
    ++figures.kills;
}

}  // namespace

SettingsKillFigures run_settings_kills(const std::string& name, int kills, std::uint32_t seed)
{
    SettingsKillFigures figures;
    Random random(seed);
    IniStore store(FileSystemDevice::Real(), name);
    if (!fill(store))
        figures.failure = "the file is not written";
    std::uint64_t acknowledged = 0;
    if (figures.failure.empty())
        figures.failure = check(store, 0, acknowledged);
    while (figures.kills < kills && figures.failure.empty()) {
        kill_one(name, random, acknowledged, figures);
        std::uint64_t last = acknowledged;
        if (figures.failure.empty())
            figures.failure = check(store, acknowledged, last);
        acknowledged = last;
    }
    return figures;
}

}  // namespace zmr
