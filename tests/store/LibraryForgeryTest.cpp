#include "FaultyFileSystem.h"
#include "store/CommitRecord.h"
#include "store/DirectoryIndex.h"
#include "store/IndexBlock.h"
#include "store/LibraryFile.h"
#include "store/LibraryFormat.h"

#include <gtest/gtest.h>

// Files whose every checksum fits and that no writer ever made.
namespace zmr {
namespace {

constexpr char kName[] = "lib";
constexpr int kRecords = 50;

BlockRef append(std::string& file, FrameKind kind, const std::string& bytes)
{
    file += encode_frame({kind, bytes.size()}, file.size());
    const BlockRef block{file.size(), bytes.size(), checksum_of(std::string_view(bytes))};
    file += bytes;
    return block;
}

void place(std::string& file, std::uint64_t at, const std::string& sector)
{
    file.replace(static_cast<std::size_t>(at), sector.size(), sector);
}

/// A library whose root directory names one extent of kRecords entries, all called "a", `times`
/// times under ascending names, in a file with `unused` bytes.
std::string forged(int times, std::size_t unused)
{
    std::string file(kDataStart, '\0');
    append(file, FrameKind::Content, std::string(unused, 'u'));
    IndexBlockBuilder entries(IndexBlock::Kind::Extent);
    EntryValue value;
    value.flags = EntryValue::kInIndex;
    for (int i = 0; i < kRecords; ++i)
        entries.add_entry({"t", "a"}, "", value);
    const BlockRef extent = append(file, FrameKind::Index, entries.finish());

    Directory directory;
    directory.entries = static_cast<std::uint64_t>(kRecords) * static_cast<std::uint64_t>(times);
    directory.types.emplace_back("t", directory.entries);
    for (int i = 0; i < times; ++i)
        directory.extents.push_back({"t", "b" + std::to_string(1000 + i), extent, kRecords});
    IndexBlockBuilder page(IndexBlock::Kind::Page);
    directory.write(LibraryPath().key(), page);
    CommitRecord record;
    record.number = 1;
    record.flags = CommitRecord::kSyncedFirst | CommitRecord::kHasRoot;
    record.root.entries = directory.entries;
    record.root.pages.push_back({LibraryPath().key(), {}, 1});
    record.root.pages.back().block = append(file, FrameKind::Index, page.finish());

    const std::string payload = record.encode();
    const std::uint64_t at = file.size();
    append(file, FrameKind::Commit, payload);
    const RootSlot slot{1, at, kFrameBytes + payload.size(), CommitRecord::checksum_in(payload),
                        file.size()};
    place(file, 0, encode_header());
    for (const std::uint64_t position : kSlotPosition)
        place(file, position, encode_slot(slot));
    return file;
}

/// How many entries are listed, and visited.
std::pair<std::size_t, std::size_t> entries_of(const std::string& bytes)
{
    FaultyFileSystem files;
    files.set_bytes(kName, bytes);
    LibraryFile file(files);
    EXPECT_EQ(file.open(kName, LibraryAccess::Read).status, LibraryOpenStatus::Ok);
    std::size_t visited = 0;
    file.visit({}, "t", [&](const LibraryEntryView&) { return ++visited > 0; });
    return {file.list({}, "t").size(), visited};
}

TEST(LibraryForgery, OneExtentUnderItsName_GivesItsEntries)
{
    const auto [listed, visited] = entries_of(forged(1, 100'000));

    EXPECT_EQ(listed, static_cast<std::size_t>(kRecords));
    EXPECT_EQ(visited, static_cast<std::size_t>(kRecords));
}

TEST(LibraryForgery, OneExtentUnderManyNames_GivesNoMoreThanItsEntries)
{
    const auto [listed, visited] = entries_of(forged(100, 100'000));

    EXPECT_EQ(listed, static_cast<std::size_t>(kRecords));
    EXPECT_EQ(visited, static_cast<std::size_t>(kRecords));
}

TEST(LibraryForgery, ExtentsThatTakeMoreThanTheFile_AreNotRead)
{
    const std::string bytes = forged(5000, 0);
    FaultyFileSystem files;
    files.set_bytes(kName, bytes);
    LibraryFile file(files);
    ASSERT_EQ(file.open(kName, LibraryAccess::Read).status, LibraryOpenStatus::Ok);

    EXPECT_EQ(file.list({}, "t").size(), 0u);
    EXPECT_EQ(file.last_damage().part, LibraryDamage::Part::DirectoryTable);
    EXPECT_LT(files.bytes_read(), 2 * bytes.size());
}

}  // namespace
}  // namespace zmr
