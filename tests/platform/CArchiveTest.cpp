#include "platform/CArchive.h"
#include "tests/CauseOf.h"

#include "platform/CArchiveException.h"
#include "platform/CMemFile.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string pattern(std::size_t size)
{
    std::string bytes(size, '\0');
    for (std::size_t at = 0; at < size; ++at)
        bytes[at] = static_cast<char>(at * 7 + at / 256);
    return bytes;
}

UINT size_of(const std::string& bytes)
{
    return static_cast<UINT>(bytes.size());
}

}  // namespace

TEST(CArchive, WriteThenRead_AnyPieceSizeGivesTheSameBytes)
{
    const std::string expected = pattern(5000);
    for (const UINT piece : {1U, 7U, 127U, 128U, 129U, 1000U, 5000U}) {
        CMemFile file;
        {
            CArchive archive(&file, CArchive::store, 128);
            for (UINT at = 0; at < 5000; at += piece)
                archive.Write(expected.data() + at, std::min(piece, 5000 - at));
        }
        EXPECT_EQ(file.GetLength(), 5000u);
        file.SeekToBegin();
        CArchive archive(&file, CArchive::load, 128);
        std::string read(5000, '?');
        for (UINT at = 0; at < 5000; at += piece)
            ASSERT_EQ(archive.Read(read.data() + at, std::min(piece, 5000 - at)),
                      std::min(piece, 5000 - at));

        EXPECT_EQ(read, expected) << piece;
    }
}

TEST(CArchive, ReadAcrossTheEnd_ShortCount)
{
    CMemFile file;
    file.Write("abc", 3);
    file.SeekToBegin();
    CArchive archive(&file, CArchive::load);
    char bytes[10];

    EXPECT_EQ(archive.Read(bytes, 10), 3u);
    EXPECT_EQ(archive.Read(bytes, 10), 0u);
}

TEST(CArchive, WrongDirection_Throws)
{
    CMemFile file;
    CArchive storing(&file, CArchive::store);
    CArchive loading(&file, CArchive::load);
    char byte = 0;

    EXPECT_EQ(cause_of<CArchiveException>([&] { storing.Read(&byte, 1); }),
              CArchiveException::writeOnly);
    EXPECT_EQ(cause_of<CArchiveException>([&] { loading.Write(&byte, 1); }),
              CArchiveException::readOnly);
    EXPECT_TRUE(storing.IsStoring());
    EXPECT_FALSE(storing.IsLoading());
    EXPECT_TRUE(loading.IsLoading());
}

TEST(CArchive, FlushWhileLoading_FileStandsBehindWhatWasRead)
{
    CMemFile file;
    const std::string bytes = pattern(1000);
    file.Write(bytes.data(), size_of(bytes));
    file.SeekToBegin();
    CArchive archive(&file, CArchive::load);
    char some[10];
    archive.Read(some, 10);
    archive.Flush();

    EXPECT_EQ(file.GetPosition(), 10u);
    archive.Read(some, 1);
    EXPECT_EQ(some[0], bytes[10]);
}

TEST(CArchive, FlushWhileStoring_BytesAreInTheFile)
{
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    archive.Write("abc", 3);
    EXPECT_EQ(file.GetLength(), 0u);
    archive.Flush();

    EXPECT_EQ(file.GetLength(), 3u);
}

TEST(CArchive, Close_LetsTheFileGoAndASecondOneDoesNothing)
{
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    archive.Write("abc", 3);
    archive.Close();
    archive.Close();

    EXPECT_EQ(archive.GetFile(), nullptr);
    EXPECT_EQ(file.GetLength(), 3u);
    EXPECT_EQ(cause_of<CArchiveException>([&] { archive.Write("x", 1); }),
              CArchiveException::genericException);
}

TEST(CArchive, AbortOrNoFlushOnDelete_LosesTheBuffer)
{
    CMemFile file;
    {
        CArchive archive(&file, CArchive::store);
        archive.Write("abc", 3);
        archive.Abort();
    }
    {
        CArchive archive(&file, CArchive::store | CArchive::bNoFlushOnDelete);
        archive.Write("abc", 3);
    }

    EXPECT_EQ(file.GetLength(), 0u);
}
