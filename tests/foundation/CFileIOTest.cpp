#include "foundation/CFileIO.h"
#include "tests/CauseOf.h"

#include "FailingFile.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <string>

namespace {

/// A file that is said to be very long; nothing is read or written.
class LongFile : public CFile {
public:
    explicit LongFile(ULONGLONG length) : length_(length) {}
    ULONGLONG Seek(LONGLONG offset, UINT from) override
    {
        position_ = target_of_seek(offset, from, length_);
        return position_;
    }
    [[nodiscard]] ULONGLONG GetLength() const override { return length_; }

private:
    ULONGLONG length_;
};

}  // namespace

TEST(CFileIO, Made_HasTheModeAndNoErrorAndTheFile)
{
    FailingFile file;
    const CFileIO io(file, GIO::OpenReadWrite);
    EXPECT_EQ(io.get_CFile(), &file);
    EXPECT_EQ(io.get_open_mode(), GIO::OpenReadWrite);
    EXPECT_EQ(io.get_error(), GIO::NoError);
}

TEST(CFileIO, Ended_LeavesTheFileOpen)
{
    FailingFile file("abc");
    {
        const CFileIO io(file, GIO::OpenRead);
    }
    char byte = 0;
    EXPECT_EQ(file.Read(&byte, 1), 1u);
    EXPECT_EQ(byte, 'a');
}

TEST(CFileIO, WrittenBytes_AreReadBackFromWhereItSeeks)
{
    FailingFile file;
    CFileIO io(file, GIO::OpenReadWrite);
    EXPECT_EQ(io.gwrite("0123456789", 10), 10);
    EXPECT_EQ(io.gtell(), 10);
    EXPECT_EQ(io.gseek(2, GIO::SeekBegin), 2);
    std::array<char, 20> bytes{};
    EXPECT_EQ(io.gread(bytes.data(), 3), 3);
    EXPECT_EQ(std::string(bytes.data(), 3), "234");
    EXPECT_EQ(io.gleft(), 5);
    EXPECT_EQ(io.gread(bytes.data(), 20), 5);
    EXPECT_EQ(io.gread(bytes.data(), 20), 0);
    EXPECT_EQ(io.gleft(), 0);
    EXPECT_EQ(io.get_error(), GIO::NoError);
}

TEST(CFileIO, SizesBelowOne_DoNothing)
{
    FailingFile file("abc");
    file.fails = true;
    CFileIO io(file, GIO::OpenReadWrite);
    EXPECT_EQ(io.gwrite("x", 0), 0);
    EXPECT_EQ(io.gwrite("x", -1), 0);
    file.fails = false;
    char byte = 0;
    EXPECT_EQ(io.gread(&byte, 0), 0);
    EXPECT_EQ(io.gread(&byte, -1), 0);
    EXPECT_EQ(file.content(), "abc");
}

TEST(CFileIO, Gseek_CountsFromBeginCurrentAndEnd)
{
    FailingFile file("0123456789");
    CFileIO io(file, GIO::OpenRead);
    EXPECT_EQ(io.gseek(4, GIO::SeekBegin), 4);
    EXPECT_EQ(io.gseek(-1, GIO::SeekCurrent), 3);
    EXPECT_EQ(io.gseek(-2, GIO::SeekEnd), 8);
    EXPECT_EQ(io.gseek(-3, static_cast<GIO::IOSeekDirection>(3)), 7) << "others count as the end";
    EXPECT_EQ(io.gtell(), 7);
}

TEST(CFileIO, GseekBeforeTheStart_IsAFileExceptionWithError6AndMovesNothing)
{
    FailingFile file("0123456789");
    CFileIO io(file, GIO::OpenRead);
    io.gseek(4, GIO::SeekBegin);
    EXPECT_EQ(cause_of<CFileException>([&io] { io.gseek(-1, GIO::SeekBegin); }),
              CFileException::badSeek);
    EXPECT_EQ(io.get_error(), 6);
    EXPECT_EQ(file.GetPosition(), 4u);
}

TEST(CFileIO, FailuresOfTheFile_GoThroughAndLeaveTheirNumber)
{
    FailingFile file("0123456789");
    file.fails = true;
    std::array<char, 4> bytes{};
    struct Case {
        int error;
        void (*action)(CFileIO& io, char* bytes);
    };
    for (const Case& tried : {
             Case{4, [](CFileIO&io, char*data) { io.gwrite(data, 4); }},
             Case{5, [](CFileIO&io, char*data) { static_cast<void>(io.gread(data, 4)); }},
             Case{6, [](CFileIO&io, char*) { io.gseek(1, GIO::SeekBegin); }},
             Case{6, [](CFileIO&io, char*) { static_cast<void>(io.gtell()); }},
             Case{6, [](CFileIO&io, char*) { static_cast<void>(io.gleft()); }},
             Case{4, [](CFileIO&io, char*) { io.flush(); }},
         }) {
        CFileIO io(file, GIO::OpenReadWrite);
        EXPECT_EQ(code_of([&] { tried.action(io, bytes.data()); }), FailingFile::kCode);
        EXPECT_EQ(io.get_error(), tried.error);
    }
}

TEST(CFileIO, FlushWhileWriting_FlushesTheFile)
{
    FailingFile file;
    CFileIO write_only(file, GIO::OpenWrite);
    write_only.flush();
    EXPECT_EQ(file.flushes, 1);
    CFileIO both(file, GIO::OpenReadWrite);
    both.flush();
    EXPECT_EQ(file.flushes, 2);
}

TEST(CFileIO, FlushOfAReadOnlyBridge_DoesNothing)
{
    FailingFile file;
    CFileIO io(file, GIO::OpenRead);
    io.flush();
    EXPECT_EQ(file.flushes, 0);
    file.fails = true;
    EXPECT_EQ(code_of([&io] { io.flush(); }), -1);
    EXPECT_EQ(io.get_error(), GIO::NoError);
}

TEST(CFileIO, FlushAfterAFailedWrite_DoesNothing)
{
    FailingFile file;
    file.writes_left = 0;
    CFileIO io(file, GIO::OpenWrite);
    EXPECT_EQ(code_of([&io] { io.gwrite("x", 1); }), FailingFile::kCode);
    file.fails = true;
    EXPECT_EQ(code_of([&io] { io.flush(); }), -1);
    EXPECT_EQ(file.flushes, 0);
    EXPECT_EQ(io.get_error(), 4);
}

TEST(CFileIO, PositionsThatALongHolds_AreToldWholly)
{
    constexpr long kLast = std::numeric_limits<long>::max();
    LongFile file(static_cast<ULONGLONG>(kLast));
    CFileIO io(file, GIO::OpenRead);
    EXPECT_EQ(io.gseek(0, GIO::SeekEnd), kLast);
    EXPECT_EQ(io.gtell(), kLast);
    EXPECT_EQ(io.gleft(), 0);
    io.gseek(5, GIO::SeekBegin);
    EXPECT_EQ(io.gleft(), std::int64_t{kLast} - 5);
}

TEST(CFileIO, PositionsBeyondLongMax_AreError6AndAFileException)
{
    constexpr auto kBeyond = static_cast<ULONGLONG>(std::numeric_limits<long>::max()) + 1;
    LongFile file(kBeyond);
    CFileIO io(file, GIO::OpenRead);
    io.gseek(100, GIO::SeekBegin);
    EXPECT_EQ(cause_of<CFileException>([&io] { io.gseek(0, GIO::SeekEnd); }),
              CFileException::badSeek);
    EXPECT_EQ(io.get_error(), 6);
    EXPECT_EQ(io.gtell(), 100) << "the file stays where it was";

    class Beyond : public LongFile {
    public:
        Beyond() : LongFile(kBeyond) { position_ = kBeyond; }
    } beyond;
    CFileIO other(beyond, GIO::OpenRead);
    EXPECT_EQ(cause_of<CFileException>([&other] { static_cast<void>(other.gtell()); }),
              CFileException::badSeek);
    EXPECT_EQ(other.get_error(), 6);
    EXPECT_EQ(other.gleft(), 0);
}

TEST(CFileIO, GiveBack_MovesBackUnlessTheFileWasMovedMeanwhile)
{
    FailingFile file("0123456789");
    CFileIO io(file, GIO::OpenRead);
    std::array<char, 8> bytes{};
    EXPECT_EQ(io.gread(bytes.data(), 8), 8);
    io.give_back(5);
    EXPECT_EQ(file.GetPosition(), 3u);
    EXPECT_EQ(io.gread(bytes.data(), 4), 4);
    file.Seek(1, CFile::begin);
    io.give_back(1);
    EXPECT_EQ(file.GetPosition(), 1u);
}
