#include "store/LibraryFile.h"

#include "FaultyFileSystem.h"
#include "LibraryModel.h"

#include <gtest/gtest.h>

namespace zmr {
namespace {

constexpr char kName[] = "lib";
constexpr std::uint64_t kReserve = 2000;
constexpr LibraryTuning kReserving{1u << 20, 8u << 20, 8u << 20, kReserve};
constexpr LibraryTuning kPlain{1u << 20, 8u << 20, 8u << 20, 0};
constexpr int kEnough = 5;  // commits, so that there is a reserve

void open_to_write(LibraryFile& file)
{
    ASSERT_EQ(file.open(kName, LibraryAccess::Write, "tester").status, LibraryOpenStatus::Ok);
}

bool commit_one(LibraryFile& file, int number)
{
    const std::string name = "n" + std::to_string(number);
    return file.put({}, name, "t", ContentKind::Streamable, "", as_span(name)) && file.commit();
}

void commit_some(LibraryFile& file, int count)
{
    for (int i = 0; i < count; ++i)
        ASSERT_TRUE(commit_one(file, i));
}

std::size_t zeros_at_end(const std::string& bytes)
{
    return bytes.size() - 1 - bytes.find_last_not_of('\0');
}

std::size_t entries_of(const LibraryFile& file)
{
    return file.list({}, "t").size();
}

TEST(LibraryReserve, FewCommits_ReserveNothing)
{
    FaultyFileSystem files;
    FaultyFileSystem plain_files;
    LibraryFile file(files, kReserving);
    LibraryFile plain(plain_files, kPlain);
    open_to_write(file);
    open_to_write(plain);
    commit_some(file, 3);
    commit_some(plain, 3);

    EXPECT_EQ(files.bytes(kName), plain_files.bytes(kName));
}

TEST(LibraryReserve, RunOfCommits_LiesInZerosThatCloseCutsOff)
{
    FaultyFileSystem files;
    FaultyFileSystem plain_files;
    LibraryFile file(files, kReserving);
    LibraryFile plain(plain_files, kPlain);
    open_to_write(file);
    open_to_write(plain);
    commit_some(file, kEnough);
    commit_some(plain, kEnough);

    EXPECT_GT(files.bytes(kName).size(), plain_files.bytes(kName).size() + kReserve / 2);
    EXPECT_GT(zeros_at_end(files.bytes(kName)), kReserve / 2);
    ASSERT_TRUE(file.close());
    ASSERT_TRUE(plain.close());
    EXPECT_EQ(files.bytes(kName), plain_files.bytes(kName));
}

TEST(LibraryReserve, CommitWithinIt_IsOneWriteAndOneSyncAndKeepsTheLength)
{
    FaultyFileSystem files;
    LibraryFile file(files, kReserving);
    open_to_write(file);
    commit_some(file, kEnough);
    const std::uint64_t operations = files.operations();
    const std::uint64_t syncs = files.syncs();
    const std::size_t length = files.bytes(kName).size();
    ASSERT_TRUE(commit_one(file, kEnough));

    EXPECT_EQ(files.operations() - operations, 2u);
    EXPECT_EQ(files.syncs() - syncs, 1u);
    EXPECT_EQ(files.bytes(kName).size(), length);
}

TEST(LibraryReserve, KilledWriter_LeavesZerosThatNobodyTakesForCommits)
{
    FaultyFileSystem files;
    LibraryFile file(files, kReserving);
    open_to_write(file);
    commit_some(file, kEnough);
    FaultyFileSystem killed = files.copy();
    killed.end_process();
    ASSERT_GT(zeros_at_end(killed.bytes(kName)), kReserve / 2);

    LibraryFile next(killed, kReserving);
    ASSERT_EQ(next.open(kName, LibraryAccess::Read).status, LibraryOpenStatus::Ok);
    EXPECT_EQ(entries_of(next), std::size_t{kEnough});
    EXPECT_EQ(next.last_damage().part, LibraryDamage::Part::None);
    open_to_write(next);
    const std::size_t length = killed.bytes(kName).size();
    ASSERT_TRUE(commit_one(next, kEnough));
    EXPECT_EQ(killed.bytes(kName).size(), length);
    ASSERT_TRUE(next.close());
    EXPECT_LT(zeros_at_end(killed.bytes(kName)), 16u);
    ASSERT_EQ(next.open(kName, LibraryAccess::Read).status, LibraryOpenStatus::Ok);
    EXPECT_EQ(entries_of(next), std::size_t{kEnough + 1});
    EXPECT_TRUE(next.verify({}));
}

TEST(LibraryReserve, KilledWriterWithoutATail_ItsReserveIsCutAtTheNextClose)
{
    FaultyFileSystem files;
    LibraryFile file(files, kReserving);
    open_to_write(file);
    commit_some(file, kEnough);
    ASSERT_TRUE(file.close());
    const std::string closed = files.bytes(kName);
    files.set_bytes(kName, closed + std::string(kReserve, '\0'));
    open_to_write(file);
    ASSERT_TRUE(file.close());

    EXPECT_EQ(files.bytes(kName).size(), closed.size());
}

TEST(LibraryReserve, ReaderBesideTheWriter_SeesEachCommit)
{
    FaultyFileSystem files;
    LibraryFile writer(files, kReserving);
    LibraryFile reader(files, kReserving);
    open_to_write(writer);
    for (int i = 0; i < 40; ++i) {
        ASSERT_TRUE(commit_one(writer, i));
        ASSERT_EQ(reader.open(kName, LibraryAccess::Read).status, LibraryOpenStatus::Ok);
        ASSERT_EQ(entries_of(reader), static_cast<std::size_t>(i + 1));
        ASSERT_EQ(reader.last_damage().part, LibraryDamage::Part::None);
    }
    ASSERT_TRUE(writer.close());
    EXPECT_EQ(entries_of(reader), 40u);
}

TEST(LibraryReserve, DamagedCommitBeforeTheReserve_IsToldAndNotTakenForItsEnd)
{
    FaultyFileSystem files;
    LibraryFile file(files, kReserving);
    open_to_write(file);
    commit_some(file, 2);
    const std::size_t second = files.bytes(kName).size();
    ASSERT_TRUE(commit_one(file, 2));
    ASSERT_TRUE(commit_one(file, 3));
    ASSERT_TRUE(commit_one(file, 4));
    FaultyFileSystem damaged = files.copy();
    damaged.end_process();
    damaged.bytes(kName).replace(second, 24, std::string(24, '\0'));

    LibraryFile reader(damaged, kReserving);
    ASSERT_EQ(reader.open(kName, LibraryAccess::Read).status, LibraryOpenStatus::Ok);
    EXPECT_EQ(reader.last_damage().part, LibraryDamage::Part::RootSlot);
    EXPECT_EQ(entries_of(reader), 2u);
    EXPECT_EQ(reader.open(kName, LibraryAccess::Write).status, LibraryOpenStatus::Damaged);
}

TEST(LibraryReserve, Pack_CutsItToo)
{
    FaultyFileSystem files;
    LibraryFile file(files, kReserving);
    open_to_write(file);
    commit_some(file, 30);
    for (int i = 0; i < 25; ++i)
        ASSERT_TRUE(file.remove({}, "n" + std::to_string(i), "t"));
    ASSERT_TRUE(file.commit());
    ASSERT_TRUE(file.pack());
    const std::size_t packed = files.bytes(kName).size();
    EXPECT_LT(zeros_at_end(files.bytes(kName)), 16u);
    ASSERT_TRUE(commit_one(file, 100));
    ASSERT_TRUE(commit_one(file, 101));
    EXPECT_GT(files.bytes(kName).size(), packed + kReserve / 2);
    ASSERT_TRUE(file.close());
    ASSERT_EQ(file.open(kName, LibraryAccess::Read).status, LibraryOpenStatus::Ok);
    EXPECT_EQ(entries_of(file), 7u);
    EXPECT_TRUE(file.verify({}));
}

TEST(LibraryReserve, DiskFullWhileReserving_IsNoErrorAndIsNotTriedAgain)
{
    FaultyFileSystem files;
    FaultyFileSystem plain_files;
    LibraryFile file(files, kReserving);
    LibraryFile plain(plain_files, kPlain);
    open_to_write(file);
    open_to_write(plain);
    commit_some(file, 3);
    commit_some(plain, 3);
    files.fail_at(2, FileErrorKind::DiskFull, false);
    for (int i = 3; i < 8; ++i) {
        ASSERT_TRUE(commit_one(file, i));
        ASSERT_TRUE(commit_one(plain, i));
    }

    EXPECT_FALSE(file.error());
    EXPECT_EQ(files.bytes(kName), plain_files.bytes(kName));
}

}  // namespace
}  // namespace zmr
