#include "store/LibraryFile.h"

#include "FaultyFileSystem.h"
#include "LibraryModel.h"
#include "Random.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zmr {
namespace {

constexpr char kName[] = "lib";

void open_to_write(LibraryFile& file)
{
    const LibraryOpenResult result = file.open(kName, LibraryAccess::Write, "tester");
    ASSERT_EQ(result.status, LibraryOpenStatus::Ok) << result.text;
}

void open_to_read(LibraryFile& file)
{
    const LibraryOpenResult result = file.open(kName, LibraryAccess::Read);
    ASSERT_EQ(result.status, LibraryOpenStatus::Ok) << result.text;
}

bool put(LibraryFile& file, const LibraryPath& path, std::string_view name, std::string_view type,
         const std::string& bytes)
{
    return file.put(path, name, type, ContentKind::Streamable, "Class", as_span(bytes));
}

std::string get(const LibraryFile& file, const LibraryPath& path, std::string_view name,
                std::string_view type)
{
    std::string bytes;
    return file.get(path, name, type, bytes) ? bytes : "<none>";
}

TEST(LibraryFile, MissingFileOpenedForReading_IsMissing)
{
    FaultyFileSystem files;
    LibraryFile file(files);

    EXPECT_EQ(file.open(kName, LibraryAccess::Read).status, LibraryOpenStatus::Missing);
    EXPECT_FALSE(file.is_open());
    EXPECT_FALSE(files.has(kName));
}

TEST(LibraryFile, MissingFileOpenedForWriting_IsMadeAtTheFirstCommit)
{
    FaultyFileSystem files;
    LibraryFile file(files);
    open_to_write(file);
    ASSERT_TRUE(put(file, {}, "n", "t", "bytes"));
    EXPECT_FALSE(files.has(kName));

    EXPECT_TRUE(file.commit());
    EXPECT_TRUE(files.has(kName));
}

TEST(LibraryFile, MissingFileClosedUnchanged_IsNotMade)
{
    FaultyFileSystem files;
    LibraryFile file(files);
    open_to_write(file);

    EXPECT_TRUE(file.close());
    EXPECT_FALSE(files.has(kName));
}

TEST(LibraryFile, FileOfAnotherKind_IsRefusedAndKept)
{
    for (const std::string& bytes : {std::string("hello"), std::string(40'000, 'x')}) {
        FaultyFileSystem files;
        files.set_bytes(kName, bytes);
        LibraryFile file(files);

        EXPECT_EQ(file.open(kName, LibraryAccess::Read).status, LibraryOpenStatus::NotALibrary);
        EXPECT_EQ(file.open(kName, LibraryAccess::Write).status, LibraryOpenStatus::NotALibrary);
        EXPECT_FALSE(LibraryFile::IsLibrary(files, kName));
        EXPECT_EQ(files.bytes(kName), bytes);
    }
}

TEST(LibraryFile, PutCommitReopen_GivesAllBack)
{
    FaultyFileSystem files;
    const LibraryPath path = path_of({"models", "chairs"});
    const std::string contents[] = {"",
                                    "small",
                                    text_bytes(512, 1),
                                    noise_bytes(513, 2),
                                    text_bytes(20'000, 3),
                                    noise_bytes(65'536, 4),
                                    noise_bytes(65'537, 5),
                                    text_bytes(300'000, 6)};
    {
        LibraryFile file(files);
        open_to_write(file);
        ASSERT_TRUE(file.set_file_kind("things"));
        for (std::size_t i = 0; i < std::size(contents); ++i)
            ASSERT_TRUE(put(file, path, std::to_string(i), "t", contents[i]));
        ASSERT_TRUE(file.close());
    }
    LibraryFile file(files);
    open_to_read(file);
    EXPECT_EQ(file.file_kind(), "things");
    for (std::size_t i = 0; i < std::size(contents); ++i)
        EXPECT_EQ(get(file, path, std::to_string(i), "t"), contents[i]) << i;
    EXPECT_EQ(file.list(path, "t").size(), std::size(contents));
    EXPECT_EQ(file.types(), std::vector<std::string>{"t"});
    EXPECT_EQ(file.directories({}), std::vector<std::string>{"models"});
    EXPECT_TRUE(file.verify({}));
}

TEST(LibraryFile, Find_TellsKindLengthLabelAndCompression)
{
    FaultyFileSystem files;
    LibraryFile file(files);
    open_to_write(file);
    const std::string text = text_bytes(9000, 1);
    ASSERT_TRUE(file.put({}, "s", "t", ContentKind::Streamable, "Chair", as_span(text)));
    ASSERT_TRUE(file.put({}, "r", "t", ContentKind::Raw, "Movie", as_span(text)));

    LibraryContent content;
    ASSERT_TRUE(file.find({}, "s", "t", content));
    EXPECT_TRUE(content.compressed);
    EXPECT_EQ(content.length, 9000u);
    EXPECT_LT(content.stored, 4000u);
    EXPECT_EQ(content.label, "Chair");
    ASSERT_TRUE(file.find({}, "r", "t", content));
    EXPECT_FALSE(content.compressed);
    EXPECT_EQ(content.kind, ContentKind::Raw);
    EXPECT_EQ(content.stored, 9000u);
    EXPECT_FALSE(file.find({}, "other", "t", content));
}

TEST(LibraryFile, NamesBeyondLimits_AreRefused)
{
    FaultyFileSystem files;
    LibraryFile file(files);
    open_to_write(file);
    const std::string longest(LibraryFile::kMaxNameBytes, 'n');

    EXPECT_TRUE(put(file, {}, longest, longest, "x"));
    EXPECT_FALSE(put(file, {}, longest + "n", "t", "x"));
    EXPECT_FALSE(put(file, {}, "n", longest + "n", "x"));
    EXPECT_FALSE(file.put({}, "n", "t", ContentKind::Raw, std::string(256, 'l'), {}));
    EXPECT_TRUE(file.put({}, "n", "t", ContentKind::Raw, std::string(255, 'l'), {}));
    LibraryPath path;
    EXPECT_FALSE(path.append(std::string(1025, 'p')));
    for (int i = 0; i < 64; ++i)
        EXPECT_TRUE(path.append("p"));
    EXPECT_FALSE(path.append("p"));
    EXPECT_TRUE(put(file, path, "deep", "t", "x"));
    EXPECT_EQ(get(file, path, "deep", "t"), "x");
}

TEST(LibraryFile, ReaderCannotWrite)
{
    FaultyFileSystem files;
    {
        LibraryFile file(files);
        open_to_write(file);
        ASSERT_TRUE(put(file, {}, "n", "t", "old"));
    }
    const std::uint64_t before = files.operations();
    LibraryFile file(files);
    open_to_read(file);

    EXPECT_FALSE(put(file, {}, "n", "t", "new"));
    EXPECT_FALSE(file.remove({}, "n", "t"));
    EXPECT_FALSE(file.clear());
    EXPECT_FALSE(file.pack());
    EXPECT_TRUE(file.commit());
    EXPECT_TRUE(file.close());
    EXPECT_EQ(files.operations(), before);  // reading writes nothing
}

TEST(LibraryFile, Rename_MovesAcrossDirectoriesAndReplaces)
{
    FaultyFileSystem files;
    LibraryFile file(files);
    open_to_write(file);
    const LibraryPath to = path_of({"b"});
    ASSERT_TRUE(put(file, path_of({"a"}), "n", "t", noise_bytes(5000, 1)));
    ASSERT_TRUE(put(file, to, "m", "t", "replaced"));

    EXPECT_TRUE(file.rename(path_of({"a"}), "n", "t", to, "m", "t"));
    EXPECT_EQ(get(file, to, "m", "t"), noise_bytes(5000, 1));
    EXPECT_FALSE(file.directory_exists(path_of({"a"})));
    EXPECT_FALSE(file.rename(path_of({"a"}), "n", "t", to, "m", "t"));
}

TEST(LibraryFile, RenameDirectory_MovesTheSubtreeButNeverOntoAnExistingOne)
{
    FaultyFileSystem files;
    LibraryFile file(files);
    open_to_write(file);
    ASSERT_TRUE(put(file, path_of({"a"}), "n", "t", "1"));
    ASSERT_TRUE(put(file, path_of({"a", "x", "y"}), "n", "t", "2"));
    ASSERT_TRUE(put(file, path_of({"ab"}), "n", "t", "3"));
    ASSERT_TRUE(file.close());
    open_to_write(file);

    EXPECT_FALSE(file.rename_directory(path_of({"a"}), path_of({"ab"})));
    EXPECT_FALSE(file.rename_directory(path_of({"a"}), path_of({"a", "x", "z"})));
    EXPECT_FALSE(file.rename_directory(path_of({"none"}), path_of({"c"})));
    EXPECT_TRUE(file.rename_directory(path_of({"a"}), path_of({"c", "d"})));
    EXPECT_EQ(get(file, path_of({"c", "d", "x", "y"}), "n", "t"), "2");
    EXPECT_EQ(file.directories({}), (std::vector<std::string>{"ab", "c"}));
    ASSERT_TRUE(file.close());
    open_to_read(file);
    EXPECT_EQ(get(file, path_of({"c", "d"}), "n", "t"), "1");
    EXPECT_EQ(get(file, path_of({"ab"}), "n", "t"), "3");
    EXPECT_FALSE(file.directory_exists(path_of({"a"})));
}

TEST(LibraryFile, List_IsASnapshotThatOutlivesChangesAndClosing)
{
    FaultyFileSystem files;
    LibraryFile file(files);
    open_to_write(file);
    ASSERT_TRUE(put(file, {}, "a", "t", "first"));
    ASSERT_TRUE(put(file, {}, "c", "t", "third"));
    ASSERT_TRUE(file.close());
    open_to_write(file);
    ASSERT_TRUE(put(file, {}, "b", "t", "second"));
    const LibraryEntryList list = file.list({}, "t");
    file.clear();
    ASSERT_TRUE(file.close());

    ASSERT_EQ(list.size(), 3u);
    EXPECT_EQ(list[0].name, "a");
    EXPECT_EQ(list[1].name, "b");
    EXPECT_EQ(list[2].name, "c");
    EXPECT_TRUE(std::ranges::equal(list[1].bytes, as_span("second")));
    EXPECT_EQ(list[2].label, "Class");
}

/// Enough of two types for several extents in the file, and changes over them.
void put_many(LibraryFile& file)
{
    file.begin_scope();
    for (int i = 0; i < 600; ++i)
        for (const char* type : {"s", "t"})
            ASSERT_TRUE(put(file, {}, "n" + std::to_string(i), type, noise_bytes(200, i)));
    file.end_scope();
    ASSERT_TRUE(file.close());
    open_to_write(file);
    ASSERT_TRUE(put(file, {}, "n100 new", "t", "new"));
    ASSERT_TRUE(put(file, {}, "n200", "t", "changed"));
    ASSERT_TRUE(file.remove({}, "n300", "t"));
}

TEST(LibraryFile, Visit_TellsWhatListHolds)
{
    FaultyFileSystem files;
    LibraryFile file(files);
    open_to_write(file);
    put_many(file);

    for (const char* type : {"", "s", "t", "u"}) {
        const LibraryEntryList list = file.list({}, type);
        std::size_t visited = 0;
        file.visit({}, type, [&](const LibraryEntryView& entry) {
            EXPECT_LT(visited, list.size());
            EXPECT_EQ(entry.name, list[visited].name);
            EXPECT_TRUE(std::ranges::equal(entry.bytes, list[visited].bytes));
            return ++visited < list.size();
        });
        EXPECT_EQ(visited, list.size());
    }
    EXPECT_EQ(file.list({}, "t").size(), 600u);
}

TEST(LibraryFile, Visit_FalseEndsIt)
{
    FaultyFileSystem files;
    LibraryFile file(files);
    open_to_write(file);
    put_many(file);

    int visited = 0;
    file.visit({}, "t", [&](const LibraryEntryView&) { return ++visited < 7; });
    EXPECT_EQ(visited, 7);
}

TEST(LibraryFile, Visit_LetsItsVisitorReadButNotChange)
{
    FaultyFileSystem files;
    LibraryFile file(files);
    open_to_write(file);
    put_many(file);

    std::size_t pairs = 0;
    bool first = true;
    file.visit({}, "t", [&](const LibraryEntryView& outer) {
        const std::string name(outer.name);
        EXPECT_FALSE(file.put({}, "x", "t", ContentKind::Raw, "", {}));
        EXPECT_FALSE(file.remove({}, name, "t"));
        if (first)
            file.visit({}, "s", [&](const LibraryEntryView&) { return ++pairs > 0; });
        first = false;
        EXPECT_EQ(outer.name, name);
        return true;
    });
    EXPECT_EQ(pairs, 600u);
    EXPECT_TRUE(put(file, {}, "x", "t", "after"));
}

TEST(LibraryFile, RandomChanges_EqualTheModelThroughCommitsAndReopens)
{
    for (unsigned seed = 1; seed <= 12; ++seed) {
        SCOPED_TRACE(seed);
        Random random(seed);
        FaultyFileSystem files;
        // Every other one takes the ways of much larger libraries.
        LibraryFile file(
            files, seed % 2 == 0 ? LibraryTuning() : LibraryTuning{6000, 60'000, 60'000, 700});
        LibraryModel model;
        open_to_write(file);
        for (int i = 0; i < 600; ++i) {
            const unsigned choice = random() % 100;
            if (choice < 90) {
                model.change(file, random);
            } else if (choice < 94) {
                ASSERT_TRUE(file.commit());
            } else if (choice < 96) {
                model.put_many(file, random, 300);
            } else if (choice < 97) {
                ASSERT_TRUE(file.pack());
            } else if (choice < 99) {
                ASSERT_TRUE(file.close());
                open_to_write(file);
            }
            if (i % 50 == 49) {
                ASSERT_EQ(LibraryModel::Of(file), model) << i;
            }
        }
        ASSERT_TRUE(file.close());
        open_to_read(file);
        EXPECT_EQ(LibraryModel::Of(file), model);
        EXPECT_EQ(file.statistics().entries, model.entries.size());
        EXPECT_TRUE(file.verify([](const LibraryDamage& damage) { ADD_FAILURE() << damage.text; }));
    }
}

TEST(LibraryFile, OneCommit_CostsOneSync)
{
    FaultyFileSystem files;
    LibraryFile file(files);
    open_to_write(file);
    ASSERT_TRUE(put(file, {}, "first", "t", "x"));
    ASSERT_TRUE(file.commit());
    for (int i = 0; i < 50; ++i) {
        const std::uint64_t before = files.syncs();
        LibraryCommitScope scope(file);
        ASSERT_TRUE(put(file, path_of({"d"}), std::to_string(i), "t", noise_bytes(20'000, 1)));
        ASSERT_TRUE(put(file, path_of({"d"}), std::to_string(i), "m", "mediator"));
        ASSERT_TRUE(file.commit());
        file.end_scope();
        EXPECT_EQ(files.syncs(), before + 1);
        file.begin_scope();
    }
}

TEST(LibraryFile, CommitScope_KeepsChangesInOneCommit)
{
    FaultyFileSystem files;
    LibraryFile file(files);
    open_to_write(file);
    ASSERT_TRUE(put(file, {}, "a", "t", "1"));
    ASSERT_TRUE(file.commit());
    {
        LibraryCommitScope outer(file);
        ASSERT_TRUE(put(file, {}, "a", "t", "2"));
        {
            LibraryCommitScope inner(file);
            ASSERT_TRUE(put(file, {}, "big", "t", noise_bytes(6u << 20, 1)));
            ASSERT_TRUE(file.commit());
        }
        LibraryFile other(files);
        open_to_read(other);
        EXPECT_EQ(get(other, {}, "a", "t"), "1");
    }
    LibraryFile other(files);
    open_to_read(other);
    EXPECT_EQ(get(other, {}, "a", "t"), "2");
    EXPECT_EQ(get(other, {}, "big", "t").size(), 6u << 20);
}

TEST(LibraryFile, WorkOutsideScopes_CommitsByItselfAfterFourMebibytes)
{
    FaultyFileSystem files;
    LibraryFile file(files);
    open_to_write(file);
    for (unsigned i = 0; i < 5; ++i)
        ASSERT_TRUE(put(file, {}, std::to_string(i), "t", noise_bytes(1u << 20, i)));

    LibraryFile other(files);
    open_to_read(other);
    EXPECT_GE(other.list({}, "t").size(), 4u);
}

TEST(LibraryFile, LargeCommit_IsOnItsWayToTheDiskBeforeItsSync)
{
    FaultyFileSystem files;
    LibraryFile file(files);
    open_to_write(file);
    {
        LibraryCommitScope scope(file);
        for (unsigned i = 0; i < 7; ++i)
            ASSERT_TRUE(put(file, {}, std::to_string(i), "t", noise_bytes(1u << 20, i)));
        EXPECT_EQ(files.written_out(), 0u) << "one sync will do for it";
        for (unsigned i = 7; i < 20; ++i)
            ASSERT_TRUE(put(file, {}, std::to_string(i), "t", noise_bytes(1u << 20, i)));
        EXPECT_GE(files.written_out(), 14u << 20);
        EXPECT_LE(files.written_out(), 21u << 20) << "nothing is told twice";
        ASSERT_TRUE(file.commit());
    }
    LibraryFile other(files);
    open_to_read(other);
    EXPECT_EQ(get(other, {}, "19", "t"), noise_bytes(1u << 20, 19));
}

TEST(LibraryFile, CopyBetweenFiles_KeepsCompressionAndBytes)
{
    FaultyFileSystem files;
    LibraryFile from(files);
    open_to_write(from);
    const std::string contents[] = {"small", text_bytes(9000, 1), noise_bytes(3u << 20, 2)};
    for (const std::string& bytes : contents)
        ASSERT_TRUE(put(from, {}, std::to_string(bytes.size()), "t", bytes));
    LibraryFile to(files);
    ASSERT_EQ(to.open("other", LibraryAccess::Write).status, LibraryOpenStatus::Ok);
    for (const std::string& bytes : contents) {
        const std::string name = std::to_string(bytes.size());
        ASSERT_TRUE(to.copy_from(path_of({"d"}), name, "u", from, {}, name, "t"));
        EXPECT_EQ(get(to, path_of({"d"}), name, "u"), bytes);
    }
    EXPECT_FALSE(to.copy_from({}, "n", "t", from, {}, "none", "t"));
    ASSERT_TRUE(from.put({}, "nothing", "raw", ContentKind::Raw, {}, {}));
    EXPECT_TRUE(to.copy_from({}, "nothing", "raw", from, {}, "nothing", "raw"));
    EXPECT_EQ(get(to, {}, "nothing", "raw"), "");
    EXPECT_TRUE(to.exists({}, "nothing", "raw"));
    LibraryContent content;
    ASSERT_TRUE(to.find(path_of({"d"}), "9000", "u", content));
    EXPECT_TRUE(content.compressed);
}

TEST(LibraryFile, ReadAt_ChecksOnlyTheBlocksThatItTouches)
{
    FaultyFileSystem files;
    const std::string bytes = noise_bytes(1u << 20, 7);
    LibraryContent content;
    {
        LibraryFile file(files);
        open_to_write(file);
        ASSERT_TRUE(file.put({}, "movie", "t", ContentKind::Raw, "", as_span(bytes)));
    }
    LibraryFile file(files);
    open_to_read(file);
    ASSERT_TRUE(file.find({}, "movie", "t", content));
    std::string part(100'000, '\0');
    EXPECT_EQ(file.read_at(content, 500'000, part.data(), part.size()), part.size());
    EXPECT_EQ(part, bytes.substr(500'000, part.size()));
    EXPECT_EQ(file.read_at(content, bytes.size() - 10, part.data(), part.size()), 10u);
    EXPECT_EQ(file.read_at(content, bytes.size(), part.data(), part.size()), 0u);

    files.bytes(kName)[static_cast<std::size_t>(content.position) + 3 * 65'536] ^= 1;
    LibraryFile again(files);
    open_to_read(again);
    EXPECT_EQ(again.read_at(content, 0, part.data(), 65'536), 65'536u);
    EXPECT_EQ(again.read_at(content, 3 * 65'536 + 5, part.data(), 10), 0u);
    EXPECT_EQ(again.read_at(content, 4 * 65'536, part.data(), 10), 10u);
    EXPECT_EQ(get(again, {}, "movie", "t"), "<none>");
    EXPECT_EQ(again.last_damage().part, LibraryDamage::Part::Content);
    EXPECT_EQ(again.last_damage().name.name, "movie");
}

TEST(LibraryFile, PutFrom_SourceThatGivesUpChangesNothing)
{
    FaultyFileSystem files;
    LibraryFile file(files);
    open_to_write(file);
    ASSERT_TRUE(put(file, {}, "m", "t", "old"));
    int calls = 0;
    const auto source = [&](void* data, std::size_t size, std::size_t& done) {
        std::fill_n(static_cast<char*>(data), size, 'x');
        done = size;
        EXPECT_FALSE(put(file, {}, "inside", "t", "x"));  // no changes from inside
        return ++calls < 5;
    };

    EXPECT_FALSE(file.put_from({}, "m", "t", "", source));
    EXPECT_EQ(get(file, {}, "m", "t"), "old");
    ASSERT_TRUE(put(file, {}, "n", "t", "after"));
    ASSERT_TRUE(file.close());
    open_to_read(file);
    EXPECT_EQ(get(file, {}, "m", "t"), "old");
    EXPECT_EQ(get(file, {}, "n", "t"), "after");
}

TEST(LibraryFile, Open_ReadsTheSameForFewAndForManyEntries)
{
    std::uint64_t few = 0;
    std::uint64_t many = 0;
    for (const int count : {10, 20'000}) {
        FaultyFileSystem files;
        LibraryFile file(files);
        open_to_write(file);
        for (int i = 0; i < count; ++i)
            ASSERT_TRUE(put(file, path_of({std::to_string(i % 50)}), std::to_string(i), "t",
                            text_bytes(100, static_cast<unsigned>(i))));
        ASSERT_TRUE(file.close());
        const std::uint64_t before = files.bytes_read();
        open_to_read(file);
        (count == 10 ? few : many) = files.bytes_read() - before;
    }
    EXPECT_LT(many, few + 2000);
}

}  // namespace
}  // namespace zmr
