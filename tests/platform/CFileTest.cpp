#include "platform/CFile.h"
#include "tests/CauseOf.h"

#include "platform/CFileException.h"
#include "platform/CMemFile.h"
#include "platform/CMemoryException.h"
#include "tests/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <string>

namespace {

std::string read_all(CFile& file)
{
    std::string bytes(static_cast<std::size_t>(file.GetLength()), '?');
    file.SeekToBegin();
    bytes.resize(file.Read(bytes.data(), static_cast<UINT>(bytes.size())));
    return bytes;
}

class CFileTest : public testing::Test {
protected:
    void write(const std::string& bytes)
    {
        CFile file(name_.c_str(), CFile::modeCreate | CFile::modeWrite);
        file.Write(bytes.data(), static_cast<UINT>(bytes.size()));
        file.Close();
    }

    TemporaryFolder folder_;
    std::string name_ = folder_.file("a document.bin");
};

}  // namespace

TEST_F(CFileTest, WriteSeekRead_PositionMovesAlong)
{
    CFile file(name_.c_str(), CFile::modeCreate | CFile::modeReadWrite);
    file.Write("hello world", 11);
    EXPECT_EQ(file.GetPosition(), 11u);
    EXPECT_EQ(file.Seek(-5, CFile::current), 6u);
    char bytes[6] = {};
    EXPECT_EQ(file.Read(bytes, 5), 5u);
    EXPECT_STREQ(bytes, "world");
    EXPECT_EQ(file.Read(bytes, 5), 0u);
    EXPECT_EQ(file.Seek(-1, CFile::end), 10u);
    EXPECT_EQ(file.SeekToEnd(), 11u);

    EXPECT_EQ(read_all(file), "hello world");
}

TEST_F(CFileTest, SeekBeforeTheStart_FailsAndMovesNothing)
{
    CFile file(name_.c_str(), CFile::modeCreate | CFile::modeReadWrite);
    file.Write("abc", 3);

    EXPECT_EQ(cause_of<CFileException>([&] { file.Seek(-4, CFile::current); }),
              CFileException::badSeek);
    EXPECT_EQ(cause_of<CFileException>([&] { file.Seek(-4, CFile::end); }),
              CFileException::badSeek);
    EXPECT_EQ(cause_of<CFileException>(
                  [&] { file.Seek(std::numeric_limits<LONGLONG>::min(), CFile::current); }),
              CFileException::badSeek);
    EXPECT_EQ(cause_of<CFileException>(
                  [&] { file.Seek(std::numeric_limits<LONGLONG>::max(), CFile::current); }),
              CFileException::badSeek);
    EXPECT_EQ(cause_of<CFileException>([&] { file.Seek(0, 3); }), CFileException::badSeek);
    EXPECT_EQ(file.GetPosition(), 3u);
}

TEST_F(CFileTest, PositionBeyondFourGiB_IsKeptWhole)
{
    constexpr LONGLONG kFar = (LONGLONG{5} << 30) + 3;
    CFile file(name_.c_str(), CFile::modeCreate | CFile::modeReadWrite);

    EXPECT_EQ(file.Seek(kFar, CFile::begin), static_cast<ULONGLONG>(kFar));
    file.Write("x", 1);
    EXPECT_EQ(file.GetLength(), static_cast<ULONGLONG>(kFar) + 1);
    file.SetLength(0);
}

TEST_F(CFileTest, OpenAMissingFile_FalseWithTheCauseAndTheName)
{
    CFile file;
    CFileException failure;

    EXPECT_FALSE(file.Open(name_.c_str(), CFile::modeRead, &failure));
    EXPECT_EQ(failure.m_cause, CFileException::fileNotFound);
    EXPECT_STREQ(failure.m_strFileName, name_.c_str());
    EXPECT_EQ(cause_of<CFileException>([&] { const CFile other(name_.c_str(), CFile::modeRead); }),
              CFileException::fileNotFound);
}

TEST_F(CFileTest, ModeCreate_CutsUnlessToldNotTo)
{
    write("old content");
    {
        CFile file(name_.c_str(), CFile::modeCreate | CFile::modeNoTruncate | CFile::modeReadWrite);
        EXPECT_EQ(read_all(file), "old content");
    }
    CFile file(name_.c_str(), CFile::modeCreate | CFile::modeReadWrite);

    EXPECT_EQ(file.GetLength(), 0u);
}

TEST_F(CFileTest, Mode_ForbidsTheOtherDirection)
{
    write("abc");
    char bytes[3];
    {
        CFile reader(name_.c_str(), CFile::modeRead);
        EXPECT_EQ(cause_of<CFileException>([&] { reader.Write("x", 1); }),
                  CFileException::accessDenied);
    }
    CFile writer(name_.c_str(), CFile::modeWrite);

    EXPECT_EQ(cause_of<CFileException>([&] { writer.Read(bytes, 3); }),
              CFileException::accessDenied);
}

TEST_F(CFileTest, ClosedFile_IsInvalid)
{
    CFile file(name_.c_str(), CFile::modeCreate | CFile::modeReadWrite);
    file.Close();
    file.Close();

    EXPECT_EQ(cause_of<CFileException>([&] { file.Write("x", 1); }), CFileException::invalidFile);
    EXPECT_TRUE(file.Open(name_.c_str(), CFile::modeRead));
}

TEST_F(CFileTest, Names_WholePathAndLastPart)
{
    const CFile file(name_.c_str(), CFile::modeCreate | CFile::modeWrite);

    EXPECT_STREQ(file.GetFilePath(), name_.c_str());
    EXPECT_STREQ(file.GetFileName(), "a document.bin");
}

TEST_F(CFileTest, RenameAndRemove_ActOnTheName)
{
    write("abc");
    const std::string other = folder_.file("other.bin");
    CFile::Rename(name_.c_str(), other.c_str());
    EXPECT_EQ(cause_of<CFileException>([&] { CFile::Remove(name_.c_str()); }),
              CFileException::fileNotFound);
    CFile::Remove(other.c_str());

    EXPECT_EQ(cause_of<CFileException>([&] { CFile::Remove(other.c_str()); }),
              CFileException::fileNotFound);
}

TEST_F(CFileTest, FlushAndSetLength_KeepThePosition)
{
    CFile file(name_.c_str(), CFile::modeCreate | CFile::modeReadWrite);
    file.Write("abcdef", 6);
    file.Flush();
    file.SetLength(2);

    EXPECT_EQ(file.GetPosition(), 6u);
    EXPECT_EQ(read_all(file), "ab");
}

TEST(CMemFile, WriteBehindTheEnd_GapIsZeros)
{
    CMemFile file(8);
    file.Seek(3, CFile::begin);
    file.Write("x", 1);

    EXPECT_EQ(read_all(file), std::string("\0\0\0x", 4));
}

TEST(CMemFile, ManySmallWrites_AllAreThere)
{
    CMemFile file;
    std::string expected;
    for (int i = 0; i < 5000; ++i) {
        const std::string line = std::to_string(i) + "\n";
        file.Write(line.data(), static_cast<UINT>(line.size()));
        expected += line;
    }

    EXPECT_EQ(read_all(file), expected);
}

TEST(CMemFile, AttachedBlockWithoutGrowth_IsReadAndWrittenInPlaceAndCannotGrow)
{
    BYTE block[5] = {'h', 'e', 'l', 'l', 'o'};
    CMemFile file(block, sizeof block);
    EXPECT_EQ(read_all(file), "hello");
    file.SeekToBegin();
    file.Write("J", 1);
    EXPECT_EQ(block[0], 'J');
    file.SeekToEnd();

    EXPECT_THROW(file.Write("!", 1), CMemoryException*);
    EXPECT_EQ(file.GetLength(), 5u);
}

TEST(CMemFile, WriteFarBehindTheMemory_MemoryExceptionAndNothingChanged)
{
    CMemFile file;
    file.Write("abc", 3);
    file.Seek(std::numeric_limits<LONGLONG>::max() - 10, CFile::begin);

    EXPECT_THROW(file.Write("x", 1), CMemoryException*);
    EXPECT_EQ(read_all(file), "abc");
}

TEST(CMemFile, Detach_GivesTheBlockAndEndsEmpty)
{
    CMemFile file;
    file.Write("abc", 3);
    BYTE* const block = file.Detach();
    ASSERT_NE(block, nullptr);
    const std::string bytes(reinterpret_cast<const char*>(block), 3);
    std::free(block);

    EXPECT_EQ(bytes, "abc");
    EXPECT_EQ(file.GetLength(), 0u);
    file.Write("new", 3);
    EXPECT_EQ(read_all(file), "new");
}

TEST(CMemFile, SetLength_CutsAndExtendsByZeros)
{
    CMemFile file;
    file.Write("abcdef", 6);
    file.SetLength(2);
    file.SetLength(4);

    EXPECT_EQ(read_all(file), std::string("ab\0\0", 4));
}
