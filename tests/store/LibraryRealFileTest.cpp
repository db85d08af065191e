#include "LibraryModel.h"
#include "Random.h"
#include "store/LibraryFile.h"
#include "tests/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace zmr {
namespace {

constexpr LibraryTuning kSmall{6000, 60'000, 60'000, 700};

bool put(LibraryFile& file, const std::string& name, const std::string& bytes)
{
    return file.put({}, name, "t", ContentKind::Raw, "", as_span(bytes));
}

TEST(LibraryRealFile, RandomChanges_EqualTheModelThroughReopensAndPacks)
{
    const TemporaryFolder folder;
    // A name outside ASCII: "Möbel 家具".
    const std::string name = folder.file(
        "M\xC3\xB6"
        "bel \xE5\xAE\xB6\xE5\x85\xB7.lib");
    Random random(3);
    LibraryFile file(FileSystemDevice::Real(), kSmall);
    LibraryModel model;
    ASSERT_EQ(file.open(name, LibraryAccess::Write, "tester").status, LibraryOpenStatus::Ok);
    for (int i = 0; i < 300; ++i) {
        model.change(file, random);
        if (i % 40 == 39) {
            model.put_many(file, random, 40);
            ASSERT_TRUE(file.commit());
        }
        if (i % 100 == 99) {
            ASSERT_TRUE(file.pack());
            ASSERT_TRUE(file.close());
            ASSERT_EQ(file.open(name, LibraryAccess::Write, "tester").status,
                      LibraryOpenStatus::Ok);
        }
    }
    ASSERT_TRUE(file.close());

    ASSERT_EQ(file.open(name, LibraryAccess::Read).status, LibraryOpenStatus::Ok);
    EXPECT_EQ(LibraryModel::Of(file), model);
    EXPECT_TRUE(file.verify({}));
}

TEST(LibraryRealFile, SecondWriter_IsToldWhoWritesWhileTheLockIsHeld)
{
    const TemporaryFolder folder;
    const std::string name = folder.file("lock.lib");
    LibraryFile first;
    ASSERT_EQ(first.open(name, LibraryAccess::Write, "ann").status, LibraryOpenStatus::Ok);
    ASSERT_TRUE(put(first, "n", "x"));
    ASSERT_TRUE(first.commit());
    LibraryFile second;
    const LibraryOpenResult result = second.open(name, LibraryAccess::Write, "bob");

    EXPECT_EQ(result.status, LibraryOpenStatus::Locked);
    EXPECT_EQ(result.text, "in use by ann");
    ASSERT_TRUE(first.close());
    EXPECT_EQ(second.open(name, LibraryAccess::Write, "bob").status, LibraryOpenStatus::Ok);
}

TEST(LibraryRealFile, Reader_KeepsItsSnapshotThroughChangesAndPack)
{
    const TemporaryFolder folder;
    const std::string name = folder.file("snapshot.lib");
    LibraryFile writer(FileSystemDevice::Real(), kSmall);
    ASSERT_EQ(writer.open(name, LibraryAccess::Write, "w").status, LibraryOpenStatus::Ok);
    for (unsigned i = 0; i < 30; ++i)
        ASSERT_TRUE(put(writer, std::to_string(i), noise_bytes(2500, i)));
    ASSERT_TRUE(writer.commit());
    LibraryFile reader(FileSystemDevice::Real(), kSmall);
    ASSERT_EQ(reader.open(name, LibraryAccess::Read).status, LibraryOpenStatus::Ok);
    for (unsigned round = 1; round < 20; ++round) {
        for (unsigned i = 0; i < 30; ++i)
            ASSERT_TRUE(put(writer, std::to_string(i), noise_bytes(2500, i + round * 100)));
        ASSERT_TRUE(writer.commit());
    }
    ASSERT_TRUE(writer.pack());

    for (unsigned i = 0; i < 30; ++i) {
        std::string bytes;
        EXPECT_TRUE(reader.get({}, std::to_string(i), "t", bytes));
        EXPECT_EQ(bytes, noise_bytes(2500, i));
    }
    const std::uint64_t before = writer.extent();
    ASSERT_TRUE(reader.close());
    ASSERT_TRUE(writer.pack());
    EXPECT_LT(writer.extent(), before / 2);  // what the reader had kept from being cut
}

TEST(LibraryRealFile, BeginWriting_UpgradesAReader)
{
    const TemporaryFolder folder;
    const std::string name = folder.file("upgrade.lib");
    LibraryFile file;
    ASSERT_EQ(file.open(name, LibraryAccess::Write, "w").status, LibraryOpenStatus::Ok);
    ASSERT_TRUE(put(file, "n", "x"));
    ASSERT_TRUE(file.close());
    ASSERT_EQ(file.open(name, LibraryAccess::Read).status, LibraryOpenStatus::Ok);
    ASSERT_FALSE(put(file, "m", "y"));

    ASSERT_EQ(file.begin_writing("w").status, LibraryOpenStatus::Ok);
    EXPECT_TRUE(put(file, "m", "y"));
    EXPECT_TRUE(file.close());
    EXPECT_TRUE(LibraryFile::IsLibrary(FileSystemDevice::Real(), name));
}

}  // namespace
}  // namespace zmr
