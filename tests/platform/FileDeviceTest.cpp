#include "platform/FileDevice.h"

#include "tests/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace {

using zmr::FileAccess;
using zmr::FileCreate;
using zmr::FileDevice;
using zmr::FileError;
using zmr::FileErrorKind;
using zmr::FileLockKind;
using zmr::FileShare;
using zmr::FileSystemDevice;

class FileDeviceTest : public testing::Test {
protected:
    std::unique_ptr<FileDevice> open(const std::string& name,
                                     FileCreate create = FileCreate::OpenOrCreate,
                                     FileAccess access = FileAccess::ReadWrite,
                                     FileShare share = FileShare::ReadWrite)
    {
        return FileSystemDevice::Real().open(name, access, create, share, error_);
    }
    std::string content(const FileDevice& file)
    {
        std::string bytes(1000, '?');
        std::size_t done = 0;
        EXPECT_FALSE(file.read_at(0, bytes.data(), bytes.size(), done));
        bytes.resize(done);
        return bytes;
    }
    FileError write(const std::string& name, const std::string& bytes)
    {
        const auto file = open(name);
        return file ? file->write_at(0, bytes.data(), bytes.size()) : error_;
    }

    TemporaryFolder folder_;
    std::string name_ = folder_.file("data.bin");
    FileError error_;
};

}  // namespace

TEST_F(FileDeviceTest, WriteThenRead_SameBytesAndLength)
{
    const auto file = open(name_);
    ASSERT_TRUE(file);
    ASSERT_FALSE(file->write_at(0, "hello", 5));

    std::uint64_t length = 0;
    EXPECT_FALSE(file->length(length));
    EXPECT_EQ(length, 5u);
    EXPECT_EQ(content(*file), "hello");
}

TEST_F(FileDeviceTest, ReadAcrossTheEnd_ShortCountWithoutError)
{
    ASSERT_FALSE(write(name_, "0123456789"));
    const auto file = open(name_);
    ASSERT_TRUE(file);
    std::array<char, 8> bytes{};
    std::size_t done = 99;

    EXPECT_FALSE(file->read_at(7, bytes.data(), bytes.size(), done));
    EXPECT_EQ(done, 3u);
    EXPECT_FALSE(file->read_at(10, bytes.data(), bytes.size(), done));
    EXPECT_EQ(done, 0u);
    EXPECT_FALSE(file->read_at(~std::uint64_t{0}, bytes.data(), bytes.size(), done));
    EXPECT_EQ(done, 0u);
}

TEST_F(FileDeviceTest, WriteBehindTheEnd_GapReadsAsZeros)
{
    const auto file = open(name_);
    ASSERT_TRUE(file);
    ASSERT_FALSE(file->write_at(4, "x", 1));

    EXPECT_EQ(content(*file), std::string("\0\0\0\0x", 5));
}

TEST_F(FileDeviceTest, WriteBeyondTheLastPosition_IsRefusedAsTooLarge)
{
    const auto file = open(name_);
    ASSERT_TRUE(file);

    EXPECT_EQ(file->write_at(~std::uint64_t{0} - 1, "x", 1).kind, FileErrorKind::DiskFull);
    EXPECT_EQ(file->set_length(~std::uint64_t{0}).kind, FileErrorKind::DiskFull);
}

TEST_F(FileDeviceTest, PositionBeyondFourGiB_IsKept)
{
    constexpr std::uint64_t kFar = (std::uint64_t{5} << 30) + 1;
    const auto file = open(name_);
    ASSERT_TRUE(file);
    ASSERT_FALSE(file->write_at(kFar, "far", 3));  // a hole: takes no space on the disk

    std::uint64_t length = 0;
    EXPECT_FALSE(file->length(length));
    EXPECT_EQ(length, kFar + 3);
    std::array<char, 3> bytes{};
    std::size_t done = 0;
    EXPECT_FALSE(file->read_at(kFar, bytes.data(), bytes.size(), done));
    EXPECT_EQ(std::string(bytes.data(), done), "far");
    EXPECT_FALSE(file->set_length(0));
}

TEST_F(FileDeviceTest, SetLength_CutsAndExtends)
{
    ASSERT_FALSE(write(name_, "hello"));
    const auto file = open(name_);
    ASSERT_TRUE(file);

    EXPECT_FALSE(file->set_length(2));
    EXPECT_EQ(content(*file), "he");
    EXPECT_FALSE(file->set_length(4));
    EXPECT_EQ(content(*file), std::string("he\0\0", 4));
}

TEST_F(FileDeviceTest, OpenExisting_MissingFileIsNotFound)
{
    EXPECT_FALSE(open(name_, FileCreate::OpenExisting));
    EXPECT_EQ(error_.kind, FileErrorKind::NotFound);
    EXPECT_NE(error_.system_code, 0);
    EXPECT_FALSE(open(folder_.file("no/such/folder"), FileCreate::OpenOrCreate));
    EXPECT_EQ(error_.kind, FileErrorKind::NotFound);
}

TEST_F(FileDeviceTest, CreateNew_PresentFileAlreadyExists)
{
    ASSERT_TRUE(open(name_, FileCreate::CreateNew));
    EXPECT_FALSE(error_);

    EXPECT_FALSE(open(name_, FileCreate::CreateNew));
    EXPECT_EQ(error_.kind, FileErrorKind::AlreadyExists);
}

TEST_F(FileDeviceTest, CreateOrTruncate_StartsEmpty)
{
    ASSERT_FALSE(write(name_, "old"));

    const auto file = open(name_, FileCreate::CreateOrTruncate);
    ASSERT_TRUE(file);
    EXPECT_EQ(content(*file), "");
}

TEST_F(FileDeviceTest, OpenADirectory_IsAccessDenied)
{
    EXPECT_FALSE(open(folder_.file("."), FileCreate::OpenExisting));
    EXPECT_EQ(error_.kind, FileErrorKind::AccessDenied);
}

TEST_F(FileDeviceTest, NameWithAZeroByte_IsNoName)
{
    EXPECT_FALSE(open(name_ + std::string("\0x", 2)));
    EXPECT_EQ(error_.kind, FileErrorKind::BadName);
}

TEST_F(FileDeviceTest, WriteToADeviceForReading_IsAccessDenied)
{
    ASSERT_FALSE(write(name_, "hello"));
    const auto file = open(name_, FileCreate::OpenExisting, FileAccess::Read);
    ASSERT_TRUE(file);

    EXPECT_EQ(file->write_at(0, "x", 1).kind, FileErrorKind::AccessDenied);
    EXPECT_EQ(file->set_length(0).kind, FileErrorKind::AccessDenied);
    EXPECT_FALSE(file->sync());
    EXPECT_EQ(content(*file), "hello");
}

TEST_F(FileDeviceTest, NameOutsideAscii_OpensTheSameFileAgain)
{
    const std::string name = folder_.file("Gr\xC3\xBC\xC3\x9F \xE7\x8C\xAB \xF0\x9F\x90\x88.bin");
    ASSERT_FALSE(write(name, "cat"));

    const auto file = open(name, FileCreate::OpenExisting);
    ASSERT_TRUE(file);
    EXPECT_EQ(content(*file), "cat");
    std::size_t entries = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
        const std::u8string found = entry.path().generic_u8string();
        EXPECT_EQ(std::string(found.begin(), found.end()), name);
        ++entries;
    }
    EXPECT_EQ(entries, 1u);
}

TEST_F(FileDeviceTest, NameLongerThan260Characters_OpensTheFile)
{
    std::filesystem::create_directory(folder_.file(std::string(80, 'a')));
    std::filesystem::create_directory(
        folder_.file(std::string(80, 'a') + "/" + std::string(80, 'b')));
    const std::string name = folder_.file(std::string(80, 'a') + "/" + std::string(80, 'b') + "/" +
                                          std::string(150, 'c'));
    ASSERT_FALSE(write(name, "long"));

    auto file = open(name, FileCreate::OpenExisting);
    ASSERT_TRUE(file);
    EXPECT_EQ(content(*file), "long");
    file.reset();
    EXPECT_FALSE(FileSystemDevice::Real().remove(name));
}

TEST_F(FileDeviceTest, Identity_SameForTwoDevicesOnAFileAndItsOtherPaths)
{
    ASSERT_FALSE(write(name_, "a"));
    ASSERT_FALSE(write(folder_.file("other.bin"), "a"));
    const auto first = open(name_);
    const auto second = open(folder_.file("./data.bin"));
    const auto other = open(folder_.file("other.bin"));
    ASSERT_TRUE(first && second && other);
    zmr::FileIdentity identities[3];
    ASSERT_FALSE(first->identity(identities[0]));
    ASSERT_FALSE(second->identity(identities[1]));
    ASSERT_FALSE(other->identity(identities[2]));

    EXPECT_EQ(identities[0], identities[1]);
    EXPECT_NE(identities[0], identities[2]);
}

TEST_F(FileDeviceTest, Rename_ReplacesTheTarget)
{
    const std::string target = folder_.file("target.bin");
    ASSERT_FALSE(write(name_, "new"));
    ASSERT_FALSE(write(target, "old content"));

    EXPECT_FALSE(FileSystemDevice::Real().rename(name_, target));
    EXPECT_FALSE(FileSystemDevice::Real().sync_directory_of(target));
    EXPECT_FALSE(open(name_, FileCreate::OpenExisting));
    const auto file = open(target, FileCreate::OpenExisting);
    ASSERT_TRUE(file);
    EXPECT_EQ(content(*file), "new");
}

TEST_F(FileDeviceTest, RenameAMissingFile_NotFoundAndTargetKept)
{
    ASSERT_FALSE(write(name_, "kept"));

    const FileError error = FileSystemDevice::Real().rename(folder_.file("missing"), name_);
    EXPECT_EQ(error.kind, FileErrorKind::NotFound);
    EXPECT_EQ(content(*open(name_)), "kept");
}

TEST_F(FileDeviceTest, Remove_FileIsGoneAndASecondRemoveNotFound)
{
    ASSERT_FALSE(write(name_, "x"));

    EXPECT_FALSE(FileSystemDevice::Real().remove(name_));
    EXPECT_EQ(FileSystemDevice::Real().remove(name_).kind, FileErrorKind::NotFound);
}

TEST_F(FileDeviceTest, ExclusiveLock_KeepsEveryOtherDeviceOut)
{
    const auto first = open(name_);
    const auto second = open(name_);
    ASSERT_TRUE(first && second);
    ASSERT_FALSE(first->lock(1000, 10, FileLockKind::Exclusive));

    EXPECT_EQ(second->lock(1000, 10, FileLockKind::Exclusive).kind, FileErrorKind::InUse);
    EXPECT_EQ(second->lock(1005, 1, FileLockKind::Shared).kind, FileErrorKind::InUse);
    EXPECT_FALSE(second->lock(1010, 1, FileLockKind::Exclusive));
    EXPECT_TRUE(second->is_locked_by_other(1009, 1));
    EXPECT_FALSE(first->is_locked_by_other(1000, 10));
    first->unlock(1000, 10);
    EXPECT_FALSE(second->lock(1000, 10, FileLockKind::Exclusive));
}

TEST_F(FileDeviceTest, SharedLocks_StandTogetherAndKeepExclusiveOnesOut)
{
    const auto first = open(name_);
    const auto second = open(name_);
    ASSERT_TRUE(first && second);
    ASSERT_FALSE(first->lock(0, 1, FileLockKind::Shared));
    ASSERT_FALSE(second->lock(0, 1, FileLockKind::Shared));

    EXPECT_TRUE(first->is_locked_by_other(0, 1));
    EXPECT_EQ(first->lock(0, 1, FileLockKind::Exclusive).kind, FileErrorKind::InUse);
    // The refused change left the shared lock in place.
    EXPECT_TRUE(second->is_locked_by_other(0, 1));
    second->unlock(0, 1);
    EXPECT_FALSE(first->lock(0, 1, FileLockKind::Exclusive));
    EXPECT_EQ(second->lock(0, 1, FileLockKind::Shared).kind, FileErrorKind::InUse);
    EXPECT_FALSE(first->lock(0, 1, FileLockKind::Shared));
    EXPECT_FALSE(second->lock(0, 1, FileLockKind::Shared));
}

TEST_F(FileDeviceTest, AnotherDeviceOnTheFileCloses_LocksStay)
{
    const auto first = open(name_);
    const auto third = open(name_);
    ASSERT_TRUE(first && third);
    ASSERT_FALSE(first->lock(0, 1, FileLockKind::Exclusive));

    ASSERT_TRUE(open(name_));  // opened and closed
    EXPECT_TRUE(third->is_locked_by_other(0, 1));
}

TEST_F(FileDeviceTest, DeviceCloses_ItsLocksGo)
{
    auto first = open(name_);
    const auto second = open(name_);
    ASSERT_TRUE(first && second);
    ASSERT_FALSE(first->lock(std::uint64_t{1} << 62, 1, FileLockKind::Exclusive));
    ASSERT_TRUE(second->is_locked_by_other(std::uint64_t{1} << 62, 1));

    first.reset();
    EXPECT_FALSE(second->is_locked_by_other(std::uint64_t{1} << 62, 1));
    EXPECT_FALSE(second->lock(std::uint64_t{1} << 62, 1, FileLockKind::Exclusive));
}

TEST_F(FileDeviceTest, LockOfADeviceForReading_SharedIsGiven)
{
    ASSERT_FALSE(write(name_, "x"));
    const auto reader = open(name_, FileCreate::OpenExisting, FileAccess::Read);
    const auto writer = open(name_);
    ASSERT_TRUE(reader && writer);

    EXPECT_FALSE(reader->lock(5000, 1, FileLockKind::Shared));
    EXPECT_TRUE(writer->is_locked_by_other(5000, 1));
    EXPECT_FALSE(reader->is_locked_by_other(5000, 1));
}

TEST_F(FileDeviceTest, AdviseRandom_ChangesNothingThatIsRead)
{
    ASSERT_FALSE(write(name_, "bytes"));
    const auto file = open(name_);
    ASSERT_TRUE(file);

    file->advise_random();
    EXPECT_EQ(content(*file), "bytes");
}

TEST_F(FileDeviceTest, StartWriteOut_OfAnyRange_ChangesNothing)
{
    ASSERT_FALSE(write(name_, "bytes"));
    const auto file = open(name_);
    ASSERT_TRUE(file);

    file->start_write_out(0, 5);
    file->start_write_out(3, 1u << 20);
    file->start_write_out(std::uint64_t{1} << 63, 1);
    EXPECT_EQ(content(*file), "bytes");
    EXPECT_FALSE(file->sync());
}

TEST(FileError, Text_SaysTheReasonAndForOthersTheSystemsCode)
{
    EXPECT_EQ((FileError{FileErrorKind::DiskFull, 1}).text(), "no space is left on the disk");
    EXPECT_EQ((FileError{FileErrorKind::OutOfMemory, 0}).text(), "memory ran out");
    EXPECT_EQ((FileError{FileErrorKind::Damaged, 0}).text(), "the file is damaged");
    EXPECT_NE((FileError{FileErrorKind::Other, 5}).text().find("error 5"), std::string::npos);
}
