#include "FaultyFileSystem.h"
#include "LibraryModel.h"
#include "store/LibraryFile.h"
#include "store/ProcessIdentity.h"

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

namespace zmr {
namespace {

constexpr char kName[] = "lib";
constexpr LibraryTuning kSmall{6000, 60'000, 60'000, 700};

void open(LibraryFile& file, LibraryAccess access)
{
    const LibraryOpenResult result = file.open(kName, access, "ann@studio, process 7, since noon");
    ASSERT_EQ(result.status, LibraryOpenStatus::Ok) << result.text;
}

bool put(LibraryFile& file, const std::string& name, const std::string& bytes)
{
    return file.put({}, name, "t", ContentKind::Raw, "Label", as_span(bytes));
}

std::string get(const LibraryFile& file, const std::string& name)
{
    std::string bytes;
    return file.get({}, name, "t", bytes) ? bytes : "<none>";
}

/// Makes and removes so much that all free space would be used many times over.
void churn(LibraryFile& file, int rounds)
{
    for (int i = 0; i < rounds; ++i) {
        for (unsigned k = 0; k < 6; ++k)
            ASSERT_TRUE(put(file, "churn " + std::to_string(k), noise_bytes(3000 + k, k)));
        ASSERT_TRUE(file.set_file_kind("round " + std::to_string(i)));
        ASSERT_TRUE(file.commit());
    }
}

TEST(LibrarySharing, SecondWriter_IsToldWhoWrites)
{
    FaultyFileSystem files;
    LibraryFile first(files);
    open(first, LibraryAccess::Write);
    ASSERT_TRUE(put(first, "n", "x"));
    ASSERT_TRUE(first.commit());
    LibraryFile second(files);
    const LibraryOpenResult result = second.open(kName, LibraryAccess::Write, "bob");

    EXPECT_EQ(result.status, LibraryOpenStatus::Locked);
    EXPECT_EQ(result.text, "in use by ann@studio, process 7, since noon");
    EXPECT_FALSE(second.is_open());
    ASSERT_TRUE(first.close());
    EXPECT_EQ(second.open(kName, LibraryAccess::Write, "bob").status, LibraryOpenStatus::Ok);
}

TEST(LibrarySharing, Reader_KeepsItsSnapshotWhileTheWriterGoesOn)
{
    FaultyFileSystem files;
    LibraryFile writer(files, kSmall);
    open(writer, LibraryAccess::Write);
    for (unsigned i = 0; i < 40; ++i)
        ASSERT_TRUE(put(writer, std::to_string(i), noise_bytes(2000 + i, i)));
    ASSERT_TRUE(writer.commit());
    churn(writer, 5);
    LibraryFile reader(files, kSmall);
    open(reader, LibraryAccess::Read);
    const LibraryModel snapshot = LibraryModel::Of(reader);

    for (unsigned i = 0; i < 40; ++i)
        ASSERT_TRUE(put(writer, std::to_string(i), "replaced"));
    churn(writer, 60);
    ASSERT_TRUE(writer.pack());
    churn(writer, 60);

    EXPECT_EQ(LibraryModel::Of(reader), snapshot);
    EXPECT_TRUE(reader.verify({}));
    ASSERT_TRUE(reader.refresh());
    EXPECT_EQ(get(reader, "3"), "replaced");
    EXPECT_EQ(LibraryModel::Of(reader), LibraryModel::Of(writer));
}

TEST(LibrarySharing, Pack_DoesNotCutWhatAReaderOfAnOlderStateHolds)
{
    FaultyFileSystem files;
    LibraryFile writer(files);
    open(writer, LibraryAccess::Write);
    ASSERT_TRUE(put(writer, "front", noise_bytes(3000, 1)));
    ASSERT_TRUE(put(writer, "end", noise_bytes(50'000, 2)));
    ASSERT_TRUE(writer.commit());
    LibraryFile reader(files);
    open(reader, LibraryAccess::Read);
    ASSERT_TRUE(writer.remove({}, "end", "t"));
    ASSERT_TRUE(writer.pack());
    EXPECT_EQ(get(reader, "end"), noise_bytes(50'000, 2));

    ASSERT_TRUE(reader.close());
    ASSERT_TRUE(writer.pack());
    EXPECT_LT(writer.extent(), 40'000u);
}

TEST(LibrarySharing, Pack_DoesNotCutWhatAReaderThatCameMeanwhileHolds)
{
    FaultyFileSystem files;
    LibraryFile writer(files);
    open(writer, LibraryAccess::Write);
    for (unsigned i = 0; i < 40; ++i)
        ASSERT_TRUE(put(writer, std::to_string(i), noise_bytes(5000, i)));
    ASSERT_TRUE(writer.commit());
    for (unsigned i = 0; i < 28; ++i)
        ASSERT_TRUE(writer.remove({}, std::to_string(i), "t"));
    LibraryFile reader(files);
    // Told of the first progress: contents were moved, and nothing of it is committed yet.
    ASSERT_TRUE(writer.pack([&](std::uint64_t, std::uint64_t) {
        if (!reader.is_open())
            open(reader, LibraryAccess::Read);
        return true;
    }));
    ASSERT_TRUE(reader.is_open());
    for (unsigned i = 28; i < 40; ++i)
        EXPECT_EQ(get(reader, std::to_string(i)), noise_bytes(5000, i));

    ASSERT_TRUE(reader.close());
    ASSERT_TRUE(writer.pack());
    EXPECT_LT(writer.extent(), 90'000u);
}

TEST(LibrarySharing, SpaceOfAGoneReader_IsUsedAgain)
{
    FaultyFileSystem files;
    LibraryFile writer(files, kSmall);
    open(writer, LibraryAccess::Write);
    churn(writer, 30);
    std::uint64_t held = 0;
    {
        LibraryFile reader(files, kSmall);
        open(reader, LibraryAccess::Read);
        const std::uint64_t before = writer.extent();
        churn(writer, 100);
        held = writer.extent() - before;
    }
    churn(writer, 30);
    const std::uint64_t before = writer.extent();
    churn(writer, 100);

    EXPECT_GT(held, 100u * 6 * 3000 / 2);           // the reader kept all of it from use
    EXPECT_LT(writer.extent() - before, held / 4);  // and then it was used
}

TEST(LibrarySharing, BeginWriting_TakesTheNewestCommit)
{
    FaultyFileSystem files;
    LibraryFile writer(files);
    open(writer, LibraryAccess::Write);
    ASSERT_TRUE(put(writer, "n", "old"));
    ASSERT_TRUE(writer.commit());
    LibraryFile reader(files);
    open(reader, LibraryAccess::Read);
    EXPECT_EQ(reader.begin_writing("me").status, LibraryOpenStatus::Locked);
    EXPECT_EQ(get(reader, "n"), "old");
    ASSERT_TRUE(put(writer, "n", "new"));
    ASSERT_TRUE(writer.close());

    ASSERT_EQ(reader.begin_writing("me").status, LibraryOpenStatus::Ok);
    EXPECT_TRUE(reader.is_writable());
    EXPECT_EQ(get(reader, "n"), "new");
    EXPECT_TRUE(put(reader, "m", "mine"));
    EXPECT_TRUE(reader.close());
}

TEST(LibrarySharing, PinnedContent_StaysWhereItIsThroughReplaceChurnAndPack)
{
    FaultyFileSystem files;
    LibraryFile file(files, kSmall);
    open(file, LibraryAccess::Write);
    for (unsigned i = 0; i < 20; ++i)
        ASSERT_TRUE(put(file, std::to_string(i), noise_bytes(5000, i)));
    const std::string movie = noise_bytes(200'000, 77);
    ASSERT_TRUE(put(file, "movie", movie));
    const std::string small = "small and in the index";
    ASSERT_TRUE(file.put({}, "small", "t", ContentKind::Streamable, "", as_span(small)));
    LibraryContent content;
    LibraryContent inner;
    ASSERT_TRUE(file.pin({}, "movie", "t", content));
    ASSERT_TRUE(file.pin({}, "small", "t", inner));
    ASSERT_TRUE(file.commit());

    ASSERT_TRUE(put(file, "movie", "replaced"));
    ASSERT_TRUE(file.remove({}, "small", "t"));
    for (unsigned i = 0; i < 20; ++i)
        ASSERT_TRUE(file.remove({}, std::to_string(i), "t"));
    churn(file, 60);
    ASSERT_TRUE(file.pack());
    churn(file, 60);
    ASSERT_TRUE(file.pack());

    std::string bytes(movie.size(), '\0');
    EXPECT_EQ(file.read_at(content, 0, bytes.data(), bytes.size()), bytes.size());
    EXPECT_EQ(bytes, movie);
    EXPECT_EQ(file.read_position(content.position + 100, bytes.data(), 1000), 1000u);
    EXPECT_EQ(bytes.substr(0, 1000), movie.substr(100, 1000));
    bytes.assign(small.size(), '\0');
    EXPECT_EQ(file.read_position(inner.position, bytes.data(), bytes.size()), bytes.size());
    EXPECT_EQ(bytes, small);

    const std::uint64_t before = file.extent();
    file.unpin(content);
    file.unpin(inner);
    churn(file, 5);
    ASSERT_TRUE(file.pack());
    EXPECT_LT(file.extent() + movie.size() / 2, before);
}

TEST(LibrarySharing, PinOfAReader_OutlivesItsUpgrade)
{
    FaultyFileSystem files;
    const std::string movie = noise_bytes(100'000, 1);
    LibraryFile writer(files, kSmall);
    open(writer, LibraryAccess::Write);
    ASSERT_TRUE(put(writer, "movie", movie));
    ASSERT_TRUE(writer.commit());
    churn(writer, 10);
    LibraryFile reader(files, kSmall);
    open(reader, LibraryAccess::Read);
    LibraryContent content;
    ASSERT_TRUE(reader.pin({}, "movie", "t", content));
    ASSERT_TRUE(put(writer, "movie", "gone"));
    ASSERT_TRUE(writer.close());
    ASSERT_EQ(reader.begin_writing("me").status, LibraryOpenStatus::Ok);
    churn(reader, 80);
    ASSERT_TRUE(reader.pack());
    churn(reader, 20);

    std::string bytes(movie.size(), '\0');
    EXPECT_EQ(reader.read_at(content, 0, bytes.data(), bytes.size()), bytes.size());
    EXPECT_EQ(bytes, movie);
}

TEST(LibrarySharing, Pack_ShrinksToWhatLives)
{
    FaultyFileSystem files;
    LibraryFile file(files, kSmall);
    open(file, LibraryAccess::Write);
    for (unsigned i = 0; i < 400; ++i)
        ASSERT_TRUE(put(file, std::to_string(i), noise_bytes(i % 2 == 0 ? 4096 : 16384, i)));
    ASSERT_TRUE(file.commit());
    for (unsigned i = 0; i < 400; ++i) {
        if (i % 4 < 2) {
            ASSERT_TRUE(file.remove({}, std::to_string(i), "t"));
        }
    }
    const LibraryModel model = LibraryModel::Of(file);
    ASSERT_TRUE(file.pack());

    EXPECT_EQ(LibraryModel::Of(file), model);
    const std::uint64_t lives = 100 * (4096 + 16384);
    EXPECT_LT(file.extent(), lives + lives / 25 + 16384);
    ASSERT_TRUE(file.close());
    EXPECT_LT(files.bytes(kName).size(), lives + lives / 25 + 16384);
    open(file, LibraryAccess::Read);
    EXPECT_EQ(LibraryModel::Of(file), model);
    EXPECT_TRUE(file.verify({}));
}

TEST(LibrarySharing, Pack_AfterTheEarlierHalfWasRemoved_CutsInOneRun)
{
    FaultyFileSystem files;
    LibraryFile file(files);
    open(file, LibraryAccess::Write);
    for (unsigned i = 0; i < 20; ++i)
        ASSERT_TRUE(put(file, std::to_string(i), noise_bytes(5000, i)));
    ASSERT_TRUE(file.close());
    open(file, LibraryAccess::Write);
    for (unsigned i = 0; i < 10; ++i)
        ASSERT_TRUE(file.remove({}, std::to_string(i), "t"));
    ASSERT_TRUE(file.pack());

    EXPECT_LT(file.extent(), 16384u + 10 * 5024 + 4096);
    EXPECT_EQ(get(file, "15"), noise_bytes(5000, 15));
}

TEST(LibrarySharing, Pack_AfterTheLaterHalfWasRemoved_CutsInOneRun)
{
    FaultyFileSystem files;
    LibraryFile file(files);
    open(file, LibraryAccess::Write);
    for (unsigned i = 0; i < 20; ++i)
        ASSERT_TRUE(put(file, std::to_string(i), noise_bytes(8000 + i * 10, i)));
    ASSERT_TRUE(file.close());
    const std::size_t half = files.bytes(kName).size();
    open(file, LibraryAccess::Write);
    for (unsigned i = 20; i < 40; ++i)
        ASSERT_TRUE(put(file, std::to_string(i), noise_bytes(8000 + i * 10, i)));
    ASSERT_TRUE(file.close());
    open(file, LibraryAccess::Write);
    for (unsigned i = 20; i < 40; ++i)
        ASSERT_TRUE(file.remove({}, std::to_string(i), "t"));
    ASSERT_TRUE(file.close());
    open(file, LibraryAccess::Write);
    ASSERT_TRUE(file.pack());
    ASSERT_TRUE(file.close());

    EXPECT_LT(files.bytes(kName).size(), half + 4096);
}

TEST(LibrarySharing, Pack_StoppedByItsProgressChangesNothingThatIsSeen)
{
    FaultyFileSystem files;
    LibraryFile file(files, kSmall);
    open(file, LibraryAccess::Write);
    for (unsigned i = 0; i < 100; ++i)
        ASSERT_TRUE(put(file, std::to_string(i), noise_bytes(3000, i)));
    for (unsigned i = 0; i < 50; ++i)
        ASSERT_TRUE(file.remove({}, std::to_string(i), "t"));
    const LibraryModel model = LibraryModel::Of(file);

    EXPECT_FALSE(file.pack([](std::uint64_t, std::uint64_t) { return false; }));
    EXPECT_EQ(LibraryModel::Of(file), model);
    EXPECT_FALSE(file.error());
    EXPECT_TRUE(put(file, "more", "x"));
}

TEST(LibrarySharing, ProcessIdentity_NamesUserHostProcessAndTime)
{
    const std::string text = process_identity();

    EXPECT_NE(text.find('@'), std::string::npos);
    EXPECT_NE(text.find(", process "), std::string::npos);
    EXPECT_NE(text.find(", since 20"), std::string::npos);
    EXPECT_LE(text.size(), 400u);
}

}  // namespace
}  // namespace zmr
