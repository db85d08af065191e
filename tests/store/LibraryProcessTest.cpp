#include "KillRun.h"
#include "LibraryModel.h"
#include "NumberedCommits.h"
#include "store/LibraryFormat.h"
#include "tests/TemporaryFolder.h"
#include "tests/support/ChildProcess.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

namespace zmr {
namespace {

/// A store_child that has said that it is ready; null, with a failure told, when it has not.
std::unique_ptr<ChildProcess> start_child(const std::vector<std::string>& words)
{
    ChildStart start;
    start.program = ZMR_STORE_CHILD;
    start.words = words;
    std::string line;
    auto child = ChildProcess::Start(start, line);
    if (child != nullptr && child->read_line(line) && line == "ready")
        return child;
    ADD_FAILURE() << words.front() << ": " << line;
    return nullptr;
}

std::string next_line(ChildProcess& child)
{
    std::string line;
    return child.read_line(line) ? line : "it has ended";
}

/// Has both roots name a place further on as the one where the next commit begins.
bool move_tail(FileDevice& device, std::uint64_t tail)
{
    for (const std::uint64_t position : kSlotPosition) {
        std::string sector(kSectorBytes, '\0');
        std::size_t done = 0;
        RootSlot slot;
        if (device.read_at(position, sector.data(), sector.size(), done) ||
            !decode_slot(sector, slot))
            return false;
        if (slot.number == 0)
            continue;
        slot.tail = tail;
        sector = encode_slot(slot);
        if (device.write_at(position, sector.data(), sector.size()))
            return false;
    }
    return !device.set_length(tail);
}

bool put(LibraryFile& file, const std::string& name, const std::string& bytes)
{
    return file.put({}, name, "t", ContentKind::Raw, "", as_span(bytes));
}

TEST(LibraryProcess, KilledWriter_LosesNothingThatItAcknowledged)
{
    const TemporaryFolder folder;
    const KillFigures figures = run_kills(folder.file("kill.lib"), ZMR_STORE_KILLS, 1);

    EXPECT_EQ(figures.failure, "");
    EXPECT_EQ(figures.kills, ZMR_STORE_KILLS);
    EXPECT_GE(figures.commits, static_cast<std::uint64_t>(ZMR_STORE_KILLS / 2));
}

TEST(LibraryProcess, SecondWritingProcess_IsToldWhoWrites_AndGetsTheLockWhenThatIsKilled)
{
    const TemporaryFolder folder;
    const std::string name = folder.file("lock.lib");
    for (int i = 0; i < 10; ++i) {
        const auto child = start_child({"hold", name});
        ASSERT_NE(child, nullptr);
        LibraryFile file;
        const auto start = std::chrono::steady_clock::now();
        const LibraryOpenResult result = file.open(name, LibraryAccess::Write, "me");
        const auto waited = std::chrono::steady_clock::now() - start;
        EXPECT_EQ(result.status, LibraryOpenStatus::Locked);
        EXPECT_NE(result.text.find("in use by "), std::string::npos) << result.text;
        EXPECT_NE(result.text.find(", process "), std::string::npos) << result.text;
        EXPECT_LT(waited, std::chrono::milliseconds(200));
        child->kill();
        EXPECT_EQ(file.open(name, LibraryAccess::Write, "me").status, LibraryOpenStatus::Ok);
    }
}

TEST(LibraryProcess, TwoWritingProcesses_TakeTurnsAndLoseNothing)
{
    const TemporaryFolder folder;
    const std::string name = folder.file("turns.lib");
    const auto one = start_child({"turns", name, "50"});
    const auto other = start_child({"turns", name, "50"});
    ASSERT_TRUE(one != nullptr && other != nullptr);

    EXPECT_EQ(next_line(*one), "done");
    EXPECT_EQ(next_line(*other), "done");
    LibraryFile file;
    ASSERT_EQ(file.open(name, LibraryAccess::Read).status, LibraryOpenStatus::Ok);
    EXPECT_EQ(NumberedCommits::Last(file), 100u);
    EXPECT_EQ(NumberedCommits::Check(file), "");
}

TEST(LibraryProcess, ReaderOpenedBesideAWritingProcess_SeesWholeCommits)
{
    const TemporaryFolder folder;
    const std::string name = folder.file("beside.lib");
    const auto writer = start_child({"write", name});
    ASSERT_NE(writer, nullptr);
    std::uint64_t seen = 0;
    for (int i = 0; i < 40; ++i) {
        const std::string acknowledged = next_line(*writer);
        LibraryFile reader(FileSystemDevice::Real(), NumberedCommits::kSmall);
        ASSERT_EQ(reader.open(name, LibraryAccess::Read).status, LibraryOpenStatus::Ok);

        EXPECT_GE(NumberedCommits::Last(reader), std::stoull(acknowledged));
        EXPECT_GE(NumberedCommits::Last(reader), seen);
        EXPECT_EQ(NumberedCommits::Check(reader), "");
        seen = NumberedCommits::Last(reader);
    }
    EXPECT_TRUE(writer->runs());
}

TEST(LibraryProcess, ReadingProcess_KeepsItsSnapshotFromAWriterThatPacks)
{
    const TemporaryFolder folder;
    const std::string name = folder.file("read.lib");
    LibraryFile writer(FileSystemDevice::Real(), NumberedCommits::kSmall);
    ASSERT_EQ(writer.open(name, LibraryAccess::Write, "w").status, LibraryOpenStatus::Ok);
    std::uint64_t number = 0;
    while (number < 60)
        ASSERT_TRUE(NumberedCommits::Put(writer, ++number));
    const auto reader = start_child({"read", name});
    ASSERT_NE(reader, nullptr);
    while (number < 1500)
        ASSERT_TRUE(NumberedCommits::Put(writer, ++number));
    ASSERT_TRUE(writer.pack());

    ASSERT_TRUE(reader->write_line("look"));
    EXPECT_EQ(next_line(*reader), "whole");
    EXPECT_EQ(NumberedCommits::Last(writer), 1500u);
    EXPECT_EQ(NumberedCommits::Check(writer), "");
}

TEST(LibraryProcess, KilledReader_GivesUpTheSpaceThatItHeld)
{
    const TemporaryFolder folder;
    const std::string name = folder.file("space.lib");
    LibraryFile writer(FileSystemDevice::Real(), NumberedCommits::kSmall);
    ASSERT_EQ(writer.open(name, LibraryAccess::Write, "w").status, LibraryOpenStatus::Ok);
    ASSERT_TRUE(put(writer, "long", noise_bytes(3'000'000, 1)));
    ASSERT_TRUE(writer.commit());
    const auto reader = start_child({"read", name});
    ASSERT_NE(reader, nullptr);
    ASSERT_TRUE(writer.remove({}, "long", "t"));
    ASSERT_TRUE(put(writer, "short", "s"));
    ASSERT_TRUE(writer.pack());
    EXPECT_GT(writer.statistics().file_bytes, 3'000'000u);

    reader->kill();
    ASSERT_TRUE(writer.pack());
    EXPECT_LT(writer.statistics().file_bytes, 1'000'000u);
}

TEST(LibraryProcess, ContentsBeyondFourGibibytes_ArePutReadAndListed)
{
    const TemporaryFolder folder;
    const std::string name = folder.file("large.lib");
    LibraryFile file;
    ASSERT_EQ(file.open(name, LibraryAccess::Write, "w").status, LibraryOpenStatus::Ok);
    ASSERT_TRUE(put(file, "before", "b"));
    ASSERT_TRUE(file.close());
    {
        // What lies behind the root is unused: a jump of the tail makes a file of that size.
        FileError error;
        auto device = FileSystemDevice::Real().open(
            name, FileAccess::ReadWrite, FileCreate::OpenExisting, FileShare::ReadWrite, error);
        ASSERT_NE(device, nullptr);
        ASSERT_TRUE(move_tail(*device, (std::uint64_t{1} << 32) - 1000));
    }
    ASSERT_EQ(file.open(name, LibraryAccess::Write, "w").status, LibraryOpenStatus::Ok);
    const std::string movie = noise_bytes(300'000, 3);
    ASSERT_TRUE(put(file, "movie", movie));
    ASSERT_TRUE(file.commit());
    ASSERT_TRUE(put(file, "after", noise_bytes(5000, 4)));
    ASSERT_TRUE(file.close());

    ASSERT_EQ(file.open(name, LibraryAccess::Read).status, LibraryOpenStatus::Ok);
    EXPECT_GT(file.extent(), std::uint64_t{1} << 32);
    EXPECT_EQ(file.list({}, "t").size(), 3u);
    LibraryContent content;
    ASSERT_TRUE(file.pin({}, "movie", "t", content));
    EXPECT_GT(content.position + content.stored, std::uint64_t{1} << 32);
    std::string bytes(1000, '\0');
    EXPECT_EQ(file.read_at(content, 250'000, bytes.data(), bytes.size()), bytes.size());
    EXPECT_EQ(bytes, movie.substr(250'000, 1000));
    EXPECT_TRUE(file.verify({}));
}

TEST(LibraryProcess, OneWriterAndReadingThreads_EachSeesWholeCommits)
{
    const TemporaryFolder folder;
    const std::string name = folder.file("threads.lib");
    LibraryFile writer(FileSystemDevice::Real(), NumberedCommits::kSmall);
    ASSERT_EQ(writer.open(name, LibraryAccess::Write, "w").status, LibraryOpenStatus::Ok);
    const auto write = [&](unsigned number) {
        LibraryCommitScope scope(writer);
        for (unsigned i = 0; i < 8; ++i)
            if (!put(writer, std::to_string(i), noise_bytes(700, number)))
                return false;
        return writer.commit();
    };
    ASSERT_TRUE(write(0));
    std::atomic<bool> stop = false;
    std::atomic<int> torn = 0;
    std::atomic<int> snapshots = 0;
    std::vector<std::thread> readers;
    for (int i = 0; i < 4; ++i)
        readers.emplace_back([&] {
            while (!stop) {
                LibraryFile reader(FileSystemDevice::Real(), NumberedCommits::kSmall);
                if (reader.open(name, LibraryAccess::Read).status != LibraryOpenStatus::Ok) {
                    ++torn;
                    return;
                }
                std::string first;
                bool whole = reader.get({}, "0", "t", first);
                for (int k = 1; k < 8; ++k) {
                    std::string other;
                    whole =
                        whole && reader.get({}, std::to_string(k), "t", other) && other == first;
                }
                torn += whole ? 0 : 1;
                ++snapshots;
            }
        });
    for (unsigned number = 1; number < 400; ++number) {
        EXPECT_TRUE(write(number));
        if (number % 100 == 0) {
            EXPECT_TRUE(writer.pack());
        }
    }
    stop = true;
    for (std::thread& reader : readers)
        reader.join();

    EXPECT_EQ(torn, 0);
    EXPECT_GT(snapshots, 20);
}

}  // namespace
}  // namespace zmr
