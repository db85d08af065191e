#include "LibraryModel.h"
#include "platform/FileDevice.h"
#include "store/LibraryFile.h"
#include "store/LibraryFormat.h"
#include "tests/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

// Libraries whose contents lie around the positions where 32 bits end. The file in front of them is
// a hole, which takes no room on the disk.
namespace zmr {
namespace {

std::unique_ptr<FileDevice> open_device(const std::string& name)
{
    FileError error;
    auto device = FileSystemDevice::Real().open(
        name, FileAccess::ReadWrite, FileCreate::OpenExisting, FileShare::ReadWrite, error);
    EXPECT_FALSE(error) << error.text();
    return device;
}

/// Makes what is appended next to a closed library begin at `end`: as if space up to there had been
/// in use once.
void move_end(const std::string& name, std::uint64_t end)
{
    const auto device = open_device(name);
    ASSERT_NE(device, nullptr);
    int moved = 0;
    for (const std::uint64_t position : kSlotPosition) {
        std::string sector(kSectorBytes, '\0');
        std::size_t done = 0;
        ASSERT_FALSE(device->read_at(position, sector.data(), sector.size(), done));
        RootSlot slot;
        if (!decode_slot(sector, slot) || slot.number == 0)
            continue;
        slot.tail = end;
        const std::string changed = encode_slot(slot);
        ASSERT_FALSE(device->write_at(position, changed.data(), changed.size()));
        ++moved;
    }
    ASSERT_GT(moved, 0);
    ASSERT_FALSE(device->set_length(end));
}

bool put(LibraryFile& file, const std::string& name, const std::string& bytes)
{
    return file.put({}, name, "t", ContentKind::Raw, "", as_span(bytes));
}

/// The parameter is the position that contents are written around.
class LibraryLargeOffsets : public testing::TestWithParam<std::uint64_t> {};

std::string text_of(int number)
{
    return std::string(1000, static_cast<char>('a' + number % 26)) + std::to_string(number);
}

}  // namespace

TEST_P(LibraryLargeOffsets, ContentsAcrossThePosition_AreReadFoundAndPacked)
{
    const TemporaryFolder folder;
    const std::string name = folder.file("large.lib");
    {
        LibraryFile file;
        ASSERT_EQ(file.open(name, LibraryAccess::Write).status, LibraryOpenStatus::Ok);
        ASSERT_TRUE(put(file, "first", text_of(0)));
        ASSERT_TRUE(file.close());
    }
    // Contents of 1 KiB begin 20 KiB before the position and end behind it.
    constexpr std::uint64_t kBefore = 20'000;
    constexpr int kContents = 40;
    ASSERT_NO_FATAL_FAILURE(move_end(name, GetParam() - kBefore));
    {
        LibraryFile file;
        ASSERT_EQ(file.open(name, LibraryAccess::Write).status, LibraryOpenStatus::Ok);
        for (int i = 1; i <= kContents; ++i) {
            ASSERT_TRUE(put(file, "n" + std::to_string(i), text_of(i)));
            if (i % 8 == 0) {
                ASSERT_TRUE(file.commit());
            }
        }
        ASSERT_TRUE(file.close());
    }

    LibraryFile file;
    ASSERT_EQ(file.open(name, LibraryAccess::Write).status, LibraryOpenStatus::Ok);
    ASSERT_GT(file.extent(), GetParam());
    int below = 0;
    int above = 0;
    for (int i = 1; i <= kContents; ++i) {
        LibraryContent content;
        ASSERT_TRUE(file.find({}, "n" + std::to_string(i), "t", content)) << i;
        (content.position < GetParam() ? below : above) += 1;
        std::string bytes;
        ASSERT_TRUE(file.get({}, "n" + std::to_string(i), "t", bytes)) << i;
        EXPECT_EQ(bytes, text_of(i));
    }
    EXPECT_GT(below, 0);
    EXPECT_GT(above, 0);
    EXPECT_TRUE(file.verify({}));

    // Once the others are gone the last one moves to the front.
    for (int i = 1; i < kContents; ++i)
        ASSERT_TRUE(file.remove({}, "n" + std::to_string(i), "t"));
    ASSERT_TRUE(file.commit());
    ASSERT_TRUE(file.pack());
    std::string bytes;
    ASSERT_TRUE(file.get({}, "n" + std::to_string(kContents), "t", bytes));
    EXPECT_EQ(bytes, text_of(kContents));
    EXPECT_TRUE(file.verify({}));
    EXPECT_TRUE(file.close());
}

TEST_P(LibraryLargeOffsets, ContentBeginsAtThePosition_IsReadByPositionToo)
{
    const TemporaryFolder folder;
    const std::string name = folder.file("large.lib");
    LibraryFile file;
    ASSERT_EQ(file.open(name, LibraryAccess::Write).status, LibraryOpenStatus::Ok);
    ASSERT_TRUE(put(file, "first", text_of(0)));
    ASSERT_TRUE(file.close());
    ASSERT_NO_FATAL_FAILURE(move_end(name, GetParam() - kFrameBytes));
    ASSERT_EQ(file.open(name, LibraryAccess::Write).status, LibraryOpenStatus::Ok);
    ASSERT_TRUE(put(file, "there", text_of(1)));
    ASSERT_TRUE(file.close());

    ASSERT_EQ(file.open(name, LibraryAccess::Read).status, LibraryOpenStatus::Ok);
    LibraryContent content;
    ASSERT_TRUE(file.pin({}, "there", "t", content));
    EXPECT_EQ(content.position, GetParam());
    std::string bytes(text_of(1).size(), '\0');
    EXPECT_EQ(file.read_position(GetParam(), bytes.data(), bytes.size()), bytes.size());
    EXPECT_EQ(bytes, text_of(1));
    EXPECT_TRUE(file.verify({}));
}

INSTANTIATE_TEST_SUITE_P(Positions, LibraryLargeOffsets,
                         testing::Values((1ULL << 31) - 1, 1ULL << 31, (1ULL << 31) + 1,
                                         (1ULL << 32) - 1, 1ULL << 32, (1ULL << 32) + 1));

}  // namespace zmr
