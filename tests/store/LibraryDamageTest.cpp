#include "FaultyFileSystem.h"
#include "LibraryModel.h"
#include "Random.h"
#include "store/BlockLoader.h"
#include "store/LibraryFile.h"
#include "store/LibraryFormat.h"
#include "store/LibraryStorage.h"

#include <gtest/gtest.h>

#include <set>

namespace zmr {
namespace {

constexpr char kName[] = "lib";
constexpr LibraryTuning kSmall{6000, 60'000, 60'000, 700};

/// A library that has it all in little room: folds, a page, extents, contents in and out of the
/// index, compressed ones, one in blocks; with `tail` also commits behind the root.
LibraryModel make_library(FaultyFileSystem& files, bool tail)
{
    LibraryModel model;
    LibraryFile file(files, kSmall);
    EXPECT_EQ(file.open(kName, LibraryAccess::Write, "tester").status, LibraryOpenStatus::Ok);
    const auto put = [&](const LibraryPath& path, const std::string& name, ContentKind kind,
                         const std::string& bytes) {
        EXPECT_TRUE(file.put(path, name, "t" + std::to_string(bytes.size() % 2), kind, "Label",
                             as_span(bytes)));
        model.entries[{path.key(), "t" + std::to_string(bytes.size() % 2), name}] = {kind, "Label",
                                                                                     bytes};
    };
    for (unsigned i = 0; i < 12; ++i) {
        put(path_of({"a", std::to_string(i % 3)}), std::to_string(i), ContentKind::Streamable,
            noise_bytes(40 + i, i));
        put({}, "plain " + std::to_string(i), ContentKind::Raw, noise_bytes(300, i));
    }
    put({}, "packed", ContentKind::Streamable, text_bytes(3000, 1));
    EXPECT_TRUE(file.set_file_kind("kind"));
    model.file_kind = "kind";
    EXPECT_TRUE(file.close());
    if (!tail)
        return model;

    EXPECT_EQ(file.open(kName, LibraryAccess::Write, "tester").status, LibraryOpenStatus::Ok);
    for (unsigned i = 0; i < 4; ++i) {
        put(path_of({"b"}), "tail " + std::to_string(i), ContentKind::Streamable,
            noise_bytes(700 + i * 2, i));
        EXPECT_TRUE(file.commit());
    }
    const std::string bytes = files.bytes(kName);
    EXPECT_TRUE(file.close());
    files.set_bytes(kName, bytes);  // as if it had been killed before it closed
    return model;
}

/// Opens bytes that something happened to. Whatever is read must be right, a loss must be told.
void check_confined(const std::string& bytes, const LibraryModel& model)
{
    FaultyFileSystem files;
    files.set_bytes(kName, bytes);
    LibraryFile file(files, kSmall);
    const LibraryOpenResult result = file.open(kName, LibraryAccess::Read);
    if (result.status != LibraryOpenStatus::Ok) {
        ASSERT_FALSE(result.text.empty());
        return;
    }
    int unreadable = 0;
    const LibraryModel seen = LibraryModel::Of(file, &unreadable);
    for (const auto& [key, entry] : seen.entries) {
        const auto place = model.entries.find(key);
        ASSERT_TRUE(place != model.entries.end());
        ASSERT_EQ(place->second, entry);
    }
    if (seen == model)
        return;
    // What is missing must not be silent.
    int damages = 0;
    const bool clean = file.verify([&](const LibraryDamage& damage) {
        ++damages;
        ASSERT_FALSE(damage.text.empty());
    });
    ASSERT_FALSE(clean);
    ASSERT_GT(damages, 0);
}

TEST(LibraryDamage, EveryFlippedBitOfAClosedLibrary_IsConfinedAndTold)
{
    FaultyFileSystem files;
    const LibraryModel model = make_library(files, false);
    const std::string good = files.bytes(kName);
    for (std::size_t at = 0; at < good.size(); ++at) {
        if (at % 512 == 0 && at > 512 && at < kDataStart &&
            good.substr(at, 512) == std::string(512, '\0'))
            at += 511;  // nothing lies there
        for (int bit = 0; bit < 8; ++bit) {
            SCOPED_TRACE(testing::Message() << "byte " << at << " bit " << bit);
            std::string bytes = good;
            bytes[at] = static_cast<char>(bytes[at] ^ (1 << bit));
            ASSERT_NO_FATAL_FAILURE(check_confined(bytes, model));
        }
    }
}

TEST(LibraryDamage, EveryFlippedByteOfATail_IsConfined)
{
    FaultyFileSystem files;
    const LibraryModel model = make_library(files, true);
    const std::string good = files.bytes(kName);
    FaultyFileSystem closed;
    static_cast<void>(make_library(closed, false));
    for (std::size_t at = kDataStart; at < good.size(); ++at) {
        SCOPED_TRACE(at);
        std::string bytes = good;
        bytes[at] = static_cast<char>(bytes[at] ^ 0x55);
        FaultyFileSystem damaged;
        damaged.set_bytes(kName, bytes);
        LibraryFile file(damaged, kSmall);
        if (file.open(kName, LibraryAccess::Read).status != LibraryOpenStatus::Ok)
            continue;
        int unreadable = 0;
        const LibraryModel seen = LibraryModel::Of(file, &unreadable);
        for (const auto& [key, entry] : seen.entries)
            ASSERT_EQ(model.entries.at(key), entry);
    }
}

TEST(LibraryDamage, EveryTruncation_IsConfinedAndTold)
{
    FaultyFileSystem files;
    const LibraryModel model = make_library(files, false);
    const std::string good = files.bytes(kName);
    for (std::size_t length = 0; length < good.size(); ++length) {
        SCOPED_TRACE(length);
        ASSERT_NO_FATAL_FAILURE(check_confined(good.substr(0, length), model));
    }
}

TEST(LibraryDamage, TruncatedLibrary_IsNeverWrittenTo)
{
    FaultyFileSystem files;
    static_cast<void>(make_library(files, false));
    const std::string good = files.bytes(kName);
    for (std::size_t length = kDataStart + 1; length < good.size(); length += 97) {
        SCOPED_TRACE(length);
        files.set_bytes(kName, good.substr(0, length));
        LibraryFile file(files, kSmall);
        ASSERT_EQ(file.open(kName, LibraryAccess::Write).status, LibraryOpenStatus::Damaged);
        ASSERT_EQ(files.bytes(kName), good.substr(0, length));
    }
}

TEST(LibraryDamage, OneRootDamaged_TheOtherGivesTheSameState)
{
    FaultyFileSystem files;
    const LibraryModel model = make_library(files, true);
    const std::string good = files.bytes(kName);
    for (const std::uint64_t slot : kSlotPosition) {
        std::string bytes = good;
        bytes.replace(static_cast<std::size_t>(slot), 512, 512, '\xAA');
        files.set_bytes(kName, bytes);
        LibraryFile file(files, kSmall);
        ASSERT_EQ(file.open(kName, LibraryAccess::Write).status, LibraryOpenStatus::Ok);
        EXPECT_EQ(LibraryModel::Of(file), model);
        EXPECT_EQ(file.last_damage().part, LibraryDamage::Part::RootSlot);
        // And the next close mends it.
        ASSERT_TRUE(file.put({}, "more", "t", ContentKind::Raw, "", {}));
        ASSERT_TRUE(file.close());
        ASSERT_EQ(file.open(kName, LibraryAccess::Read).status, LibraryOpenStatus::Ok);
        EXPECT_TRUE(file.verify({}));
    }
}

TEST(LibraryDamage, EitherRootDamagedAfterAnyCommit_TheOtherStillGivesTheSameState)
{
    FaultyFileSystem files;
    LibraryFile writer(files, kSmall);
    ASSERT_EQ(writer.open(kName, LibraryAccess::Write, "tester").status, LibraryOpenStatus::Ok);
    LibraryModel model;
    Random random(5);
    for (int i = 0; i < 150; ++i) {
        // In one commit, and so much that freed space is used as soon as it may be.
        LibraryCommitScope scope(writer);
        for (int change = 0; change < 4; ++change)
            model.change(writer, random);
        if (i % 3 == 0)
            model.put_many(writer, random, 12);
        ASSERT_TRUE(writer.commit());
        writer.end_scope();
        for (const std::uint64_t slot : kSlotPosition) {
            FaultyFileSystem damaged = files.copy();
            damaged.bytes(kName)[static_cast<std::size_t>(slot) + 20] ^= 1;
            LibraryFile reader(damaged, kSmall);
            ASSERT_EQ(reader.open(kName, LibraryAccess::Read).status, LibraryOpenStatus::Ok);
            ASSERT_EQ(LibraryModel::Of(reader), model) << i;
        }
        writer.begin_scope();
    }
}

TEST(LibraryDamage, BothRootsDamaged_IsDamagedAndNeverWrittenTo)
{
    FaultyFileSystem files;
    static_cast<void>(make_library(files, false));
    std::string bytes = files.bytes(kName);
    for (const std::uint64_t slot : kSlotPosition)
        bytes[static_cast<std::size_t>(slot) + 9] ^= 1;
    files.set_bytes(kName, bytes);
    LibraryFile file(files);

    EXPECT_EQ(file.open(kName, LibraryAccess::Read).status, LibraryOpenStatus::Damaged);
    EXPECT_EQ(file.open(kName, LibraryAccess::Write).status, LibraryOpenStatus::Damaged);
    EXPECT_EQ(files.bytes(kName), bytes);
}

TEST(LibraryDamage, DamagedExtent_HidesItsEntriesOnlyAndTheDirectoryGoesOn)
{
    FaultyFileSystem files;
    LibraryModel model = make_library(files, false);
    LibraryFile file(files, kSmall);
    ASSERT_EQ(file.open(kName, LibraryAccess::Write).status, LibraryOpenStatus::Ok);
    ASSERT_TRUE(file.put(path_of({"b"}), "unmistakable", "t", ContentKind::Streamable, "", {}));
    ASSERT_TRUE(file.close());
    std::string bytes = files.bytes(kName);
    int flipped = 0;
    for (std::size_t at = bytes.find("unmistakable"); at != std::string::npos;
         at = bytes.find("unmistakable", at + 1)) {
        const std::size_t extent = bytes.rfind("TXMZ", at);
        const std::size_t page = bytes.rfind("GPMZ", at);
        if (extent == std::string::npos || (page != std::string::npos && page > extent))
            continue;  // the table holds the name of an extent's first entry, too
        bytes[at] ^= 1;
        ++flipped;
    }
    ASSERT_EQ(flipped, 1);
    files.set_bytes(kName, bytes);

    ASSERT_EQ(file.open(kName, LibraryAccess::Write).status, LibraryOpenStatus::Ok);
    EXPECT_EQ(LibraryModel::Of(file), model);
    std::set<std::string> named;
    EXPECT_FALSE(file.verify(
        [&](const LibraryDamage& damage) { named.insert(damage.name.path.readable()); }));
    EXPECT_EQ(named, std::set<std::string>{"b"});
    ASSERT_TRUE(file.put(path_of({"b"}), "new", "t", ContentKind::Raw, "", {}));
    ASSERT_TRUE(file.close());
    ASSERT_EQ(file.open(kName, LibraryAccess::Read).status, LibraryOpenStatus::Ok);
    EXPECT_TRUE(file.exists(path_of({"b"}), "new", "t"));
}

TEST(LibraryDamage, EmptyIndexBlock_IsDamaged)
{
    FaultyFileSystem files;
    FileError error;
    LibraryStorage storage(files, LibraryTuning().one_sync_bytes);
    storage.attach(files.open(kName, FileAccess::ReadWrite, FileCreate::CreateNew,
                              FileShare::ReadWrite, error),
                   kName, {}, false);
    BlockLoader loader(storage);
    ReadOutcome outcome = ReadOutcome::Good;

    EXPECT_EQ(loader.load({kDataStart + kFrameBytes, 0, checksum_of("")}, IndexBlock::Kind::Extent,
                          outcome),
              nullptr);
    EXPECT_EQ(outcome, ReadOutcome::Damaged);
    EXPECT_EQ(BlockLoader::Walk(loader).load({kDataStart + kFrameBytes, 0, checksum_of("")}),
              nullptr);
}

TEST(LibraryDamage, RandomSplices_NeverGiveWrongBytes)
{
    FaultyFileSystem files;
    const LibraryModel model = make_library(files, true);
    const std::string good = files.bytes(kName);
    Random random(7);
    for (int i = 0; i < 3000; ++i) {
        SCOPED_TRACE(i);
        std::string bytes = good;
        const std::size_t from = random() % good.size();
        const std::size_t to = random() % good.size();
        const std::size_t count = random() % 600;
        bytes.replace(to, std::min(count, bytes.size() - to), good.substr(from, count));
        FaultyFileSystem spliced;
        spliced.set_bytes(kName, bytes);
        LibraryFile file(spliced, kSmall);
        if (file.open(kName, LibraryAccess::Read).status != LibraryOpenStatus::Ok)
            continue;
        int unreadable = 0;
        const LibraryModel seen = LibraryModel::Of(file, &unreadable);
        for (const auto& [key, entry] : seen.entries)
            ASSERT_EQ(model.entries.at(key), entry);
        static_cast<void>(file.verify({}));
    }
}

}  // namespace
}  // namespace zmr
