#include "SettingsKillRun.h"

#include "settings/IniStore.h"

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
    return compare_commits(acknowledged, last);
}

}  // namespace

KillFigures run_settings_kills(const std::string& name, int kills, std::uint32_t seed)
{
    constexpr unsigned kLongest_us = 6'000;
    IniStore store(FileSystemDevice::Real(), name);
    std::uint64_t last = 0;
    KillFigures figures;
    figures.failure = fill(store) ? check(store, 0, last) : "the file is not written";
    if (!figures.failure.empty())
        return figures;
    KillLoop loop;
    loop.writer.program = ZMR_SETTINGS_CHILD;
    loop.writer.words = {"write", name};
    loop.longest_us = kLongest_us;
    loop.look = [&](std::uint64_t acknowledged, std::uint64_t& found) {
        return check(store, acknowledged, found);
    };
    return loop.run(kills, seed, last);
}

}  // namespace zmr
