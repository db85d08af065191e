#include "FaultyFileSystem.h"
#include "LibraryModel.h"
#include "store/LibraryFile.h"
#include "store/LibraryFormat.h"

#include <gtest/gtest.h>

// A reader that opens at any instant of a writer's work, and a writer that works at any instant of
// a reader's opening.
namespace zmr {
namespace {

constexpr char kName[] = "lib";
constexpr LibraryTuning kFolding{3000, 60'000, 60'000, 700};
constexpr LibraryTuning kReserving{1u << 20, 8u << 20, 8u << 20, 300'000};

bool put(LibraryFile& file, unsigned number, std::size_t size)
{
    return file.put({}, std::to_string(number), "t", ContentKind::Raw, "",
                    as_span(noise_bytes(size, number)));
}

bool open_to_write(LibraryFile& file)
{
    return file.open(kName, LibraryAccess::Write, "w").status == LibraryOpenStatus::Ok;
}

/// Commits, folds and packs that move contents and cut the file.
void work(LibraryFile& writer)
{
    for (unsigned round = 0; round < 2; ++round) {
        for (unsigned i = 0; i < 16; ++i) {
            ASSERT_TRUE(put(writer, i, 900 + i * 100 + round));
            ASSERT_TRUE(writer.commit());
        }
        for (unsigned i = 0; i < 8; ++i)
            ASSERT_TRUE(writer.remove({}, std::to_string(i), "t"));
        ASSERT_TRUE(writer.commit());
        ASSERT_TRUE(writer.pack());
    }
}

/// Whether a reader that opens now is kept waiting.
bool is_cut_now(FaultyFileSystem& files)
{
    FileError error;
    const auto device =
        files.open(kName, FileAccess::Read, FileCreate::OpenExisting, FileShare::ReadWrite, error);
    return device == nullptr || device->lock(kReaderLocks, 1, FileLockKind::Shared);
}

TEST(LibraryBeside, ReaderOpenedWithinAnyOperationOfAWriter_KeepsAllThatItSaw)
{
    std::uint64_t operations = 0;
    {
        FaultyFileSystem files;
        LibraryFile writer(files, kFolding);
        ASSERT_TRUE(open_to_write(writer));
        ASSERT_TRUE(put(writer, 100, 2000));
        ASSERT_TRUE(writer.commit());
        operations = files.operations();
        work(writer);
        operations = files.operations() - operations;
    }
    std::uint64_t opened = 0;
    for (std::uint64_t at = 1; at <= operations; ++at) {
        FaultyFileSystem files;
        LibraryFile writer(files, kFolding);
        ASSERT_TRUE(open_to_write(writer));
        ASSERT_TRUE(put(writer, 100, 2000));
        ASSERT_TRUE(writer.commit());
        LibraryFile reader(files, kFolding);
        LibraryModel snapshot;
        files.within_operation(at, [&] {
            if (is_cut_now(files))
                return;
            ++opened;
            ASSERT_EQ(reader.open(kName, LibraryAccess::Read).status, LibraryOpenStatus::Ok);
            snapshot = LibraryModel::Of(reader);
        });
        work(writer);
        if (!reader.is_open())
            continue;

        EXPECT_TRUE(LibraryModel::Of(reader) == snapshot) << at;
        EXPECT_TRUE(reader.verify(
            [at](const LibraryDamage& damage) { ADD_FAILURE() << at << ": " << damage.text; }));
        ASSERT_TRUE(reader.refresh());
        EXPECT_TRUE(LibraryModel::Of(reader) == LibraryModel::Of(writer)) << at;
    }
    EXPECT_GT(opened, operations * 3 / 4);
}

TEST(LibraryBeside, FreeListThatAPackCutOff_IsNoDamageToAReader)
{
    FaultyFileSystem files;
    LibraryFile writer(files, kFolding);
    ASSERT_TRUE(open_to_write(writer));
    for (unsigned i = 0; i < 20; ++i)
        ASSERT_TRUE(put(writer, i, 5000));
    ASSERT_TRUE(writer.commit());
    for (unsigned i = 0; i < 10; ++i)
        ASSERT_TRUE(writer.remove({}, std::to_string(i), "t"));
    ASSERT_TRUE(writer.commit());
    // The last chance before the cut: whoever opens now sees the root whose free list goes.
    std::uint64_t at = 0;
    FaultyFileSystem before;
    for (bool cut = false; !cut;) {
        ASSERT_LT(at, 1000u);
        before = files.copy();
        LibraryFile trial(before, kFolding);
        ASSERT_TRUE(open_to_write(trial));
        before.within_operation(++at, [&] { cut = is_cut_now(before); });
        ASSERT_TRUE(trial.pack());
    }
    LibraryFile packer(before = files.copy(), kFolding);
    LibraryFile reader(before, kFolding);
    ASSERT_TRUE(open_to_write(packer));
    before.within_operation(at - 1, [&] {
        ASSERT_EQ(reader.open(kName, LibraryAccess::Read).status, LibraryOpenStatus::Ok);
    });
    ASSERT_TRUE(packer.pack());

    ASSERT_TRUE(reader.is_open());
    EXPECT_TRUE(reader.verify({}));
    EXPECT_EQ(reader.statistics().entries, packer.statistics().entries);
    EXPECT_EQ(reader.last_damage().part, LibraryDamage::Part::None) << reader.last_damage().text;
}

TEST(LibraryBeside, CommitsBeforeAnyReadOfAnOpeningReader_AreNoDamageToIt)
{
    for (const LibraryTuning& tuning : {kFolding, kReserving}) {
        std::uint64_t acted = 0;
        for (std::uint64_t at = 1; at == 1 || acted == at - 1; ++at) {
            FaultyFileSystem files;
            LibraryFile writer(files, tuning);
            ASSERT_TRUE(open_to_write(writer));
            for (unsigned i = 0; i < 9; ++i) {
                ASSERT_TRUE(put(writer, i, 700));
                ASSERT_TRUE(writer.commit());
            }
            LibraryFile reader(files, tuning);
            files.before_read(at, [&] {
                ++acted;
                ASSERT_TRUE(put(writer, 20, 700));
                ASSERT_TRUE(writer.commit());
                for (unsigned i = 21; i < 24; ++i) {
                    ASSERT_TRUE(put(writer, i, 50'000));
                    ASSERT_TRUE(writer.commit());
                }
            });
            ASSERT_EQ(reader.open(kName, LibraryAccess::Read).status, LibraryOpenStatus::Ok);
            files.heal();

            EXPECT_EQ(reader.last_damage().part, LibraryDamage::Part::None)
                << "read " << at << ": " << reader.last_damage().text;
            EXPECT_TRUE(reader.verify({})) << "read " << at;
            std::string bytes;
            EXPECT_TRUE(reader.get({}, "8", "t", bytes)) << "read " << at;
        }
        EXPECT_GT(acted, 5u);
    }
}

TEST(LibraryBeside, RefusedReadsOfAnOpeningWriter_LoseNoCommit)
{
    FaultyFileSystem whole;
    {
        LibraryFile file(whole, kReserving);
        ASSERT_TRUE(open_to_write(file));
        for (unsigned i = 0; i < 9; ++i) {
            ASSERT_TRUE(put(file, i, 700));
            ASSERT_TRUE(file.commit());
        }
        whole = whole.copy();  // as a killed process leaves it
    }
    std::uint64_t refused = 0;
    constexpr std::uint64_t kReads = 60;
    for (std::uint64_t at = 1; at < 2 * kReads; ++at) {
        FaultyFileSystem files = whole.copy();
        LibraryFile file(files, kReserving);
        if (at < kReads)
            files.fail_read(at);
        else
            files.fail_reads_from(at - kReads + 1);
        const LibraryOpenStatus status = file.open(kName, LibraryAccess::Write, "w").status;
        if (status == LibraryOpenStatus::Ok) {
            static_cast<void>(put(file, 50, 900));
            static_cast<void>(file.close());
        } else {
            EXPECT_EQ(status, LibraryOpenStatus::Failed) << "read " << at;
            ++refused;
        }
        EXPECT_FALSE(file.is_writable());
        files.heal();

        ASSERT_TRUE(open_to_write(file)) << at;
        for (unsigned i = 0; i < 9; ++i)
            EXPECT_TRUE(file.exists({}, std::to_string(i), "t")) << "read " << at << ", " << i;
    }
    EXPECT_GT(refused, 3u);
}

}  // namespace
}  // namespace zmr
