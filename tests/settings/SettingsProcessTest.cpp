#include "SettingsKillRun.h"
#include "settings/IniStore.h"

#include "tests/TemporaryFolder.h"
#include "tests/support/ChildProcess.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

std::unique_ptr<ChildProcess> start_child(std::vector<std::string> words)
{
    ChildStart start;
    start.program = ZMR_SETTINGS_CHILD;
    start.words = std::move(words);
    std::string reason;
    auto child = ChildProcess::Start(start, reason);
    std::string line;
    if (child == nullptr || !child->read_line(line) || line != "ready") {
        ADD_FAILURE() << reason << line;
        return nullptr;
    }
    return child;
}

std::string last_line(ChildProcess& child)
{
    std::string last;
    std::string line;
    while (child.read_line(line))
        last = line;
    return last;
}

/// How many updates each of the writers makes: few, or the number in the environment.
int updates()
{
    const char* const wanted = std::getenv("ZMR_SETTINGS_LONG_UPDATES");
    return wanted != nullptr ? std::atoi(wanted) : ZMR_SETTINGS_UPDATES;
}

}  // namespace

TEST(SettingsProcess, KillsDuringUpdates_LeaveTheFormerOrTheNewFile)
{
    const TemporaryFolder folder;

    const auto figures =
        zmr::run_settings_kills(folder.file("settings.ini"), ZMR_SETTINGS_KILLS, 1);
    EXPECT_EQ(figures.failure, "");
    EXPECT_EQ(figures.kills, ZMR_SETTINGS_KILLS);
    EXPECT_GE(figures.commits, static_cast<std::uint64_t>(ZMR_SETTINGS_KILLS) / 2);
}

TEST(SettingsProcess, FourWritersOfDifferentEntries_LoseNoUpdate)
{
    const TemporaryFolder folder;
    const std::string name = folder.file("settings.ini");
    std::vector<std::unique_ptr<ChildProcess>> writers;
    for (const char* const key : {"a", "b", "c", "d"})
        writers.push_back(start_child({"count", name, key, std::to_string(updates())}));
    for (const auto& writer : writers) {
        ASSERT_NE(writer, nullptr);
        EXPECT_EQ(last_line(*writer), "done");
    }

    zmr::IniStore store(zmr::FileSystemDevice::Real(), name);
    store.begin();
    int lost = 4 * updates();
    for (const std::string key : {"a", "b", "c", "d"})
        for (int i = 0; i < 10; ++i) {
            std::uint32_t count = 0;
            EXPECT_TRUE(store.read_int("counts", (key + " " + std::to_string(i)).c_str(), count));
            lost -= static_cast<int>(count);
        }
    EXPECT_EQ(lost, 0);
}

TEST(SettingsProcess, ReaderBesideAWriter_SeesWholeStatesInOrder)
{
    const TemporaryFolder folder;
    const std::string name = folder.file("settings.ini");
    const auto writer = start_child({"write", name});
    ASSERT_NE(writer, nullptr);
    std::string line;
    ASSERT_TRUE(writer->read_line(line));
    ASSERT_EQ(line, "1");
    const auto reader = start_child({"read", name, "500"});
    ASSERT_NE(reader, nullptr);

    // Somebody has to take the writer's lines, or it would stop.
    std::string reader_says;
    std::thread watch([&] {
        reader_says = last_line(*reader);
        writer->kill();
    });
    std::string writer_says;
    while (writer->read_line(line))
        writer_says = line;
    watch.join();
    EXPECT_EQ(reader_says, "whole");
    EXPECT_EQ(writer_says.find_first_not_of("0123456789"), std::string::npos) << writer_says;
}

TEST(SettingsProcess, ThreadsOfOneProcess_LoseNoUpdate)
{
    const TemporaryFolder folder;
    const std::string name = folder.file("settings.ini");
    constexpr int kUpdates = 100;
    const auto write = [&](const std::string& key) {
        zmr::IniStore store(zmr::FileSystemDevice::Real(), name);
        for (int i = 0; i < kUpdates; ++i)
            EXPECT_TRUE(store.write_int("s", (key + std::to_string(i)).c_str(), i));
    };
    std::thread one(write, "a");
    std::thread other(write, "b");
    one.join();
    other.join();

    zmr::IniStore store(zmr::FileSystemDevice::Real(), name);
    store.begin();
    for (int i = 0; i < kUpdates; ++i) {
        std::uint32_t number = 0;
        EXPECT_TRUE(store.read_int("s", ("a" + std::to_string(i)).c_str(), number));
        EXPECT_TRUE(store.read_int("s", ("b" + std::to_string(i)).c_str(), number));
    }
}
