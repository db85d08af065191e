#include "foundation/CArchiveIO.h"
#include "tests/CauseOf.h"

#include "platform/CArchive.h"
#include "platform/CArchiveException.h"

#include "FailingFile.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

TEST(CArchiveIO, Loading_IsOpenForReading)
{
    FailingFile file("0123456789");
    CArchive archive(&file, CArchive::load);
    CArchiveIO io(archive);
    EXPECT_EQ(io.get_open_mode(), GIO::OpenRead);
    EXPECT_EQ(io.get_error(), GIO::NoError);
    std::array<char, 20> bytes{};
    EXPECT_EQ(io.gread(bytes.data(), 4), 4);
    EXPECT_EQ(std::string(bytes.data(), 4), "0123");
    EXPECT_EQ(io.gread(bytes.data(), 20), 6);
    EXPECT_EQ(io.gread(bytes.data(), 20), 0);
    EXPECT_EQ(io.get_error(), GIO::NoError) << "the end is no failure";
}

TEST(CArchiveIO, Storing_IsOpenForWriting)
{
    FailingFile file;
    CArchive archive(&file, CArchive::store);
    CArchiveIO io(archive);
    EXPECT_EQ(io.get_open_mode(), GIO::OpenWrite);
    EXPECT_EQ(io.gwrite("0123", 4), 4);
    EXPECT_EQ(file.content(), "") << "it is in the archive's buffer";
    io.flush();
    EXPECT_EQ(file.content(), "0123");
}

TEST(CArchiveIO, Gseek_ReturnsMinusOneAndMovesNothing)
{
    FailingFile file("0123456789");
    CArchive archive(&file, CArchive::load);
    CArchiveIO io(archive);
    for (const auto direction : {GIO::SeekBegin, GIO::SeekCurrent, GIO::SeekEnd})
        EXPECT_EQ(io.gseek(5, direction), -1);
    EXPECT_EQ(io.gtell(), -1);
    EXPECT_EQ(io.gleft(), -1);
    EXPECT_EQ(io.get_error(), GIO::NoError);
    char byte = 0;
    EXPECT_EQ(io.gread(&byte, 1), 1);
    EXPECT_EQ(byte, '0');
}

TEST(CArchiveIO, FlushWhileLoading_DoesNothing)
{
    FailingFile file("0123456789");
    CArchive archive(&file, CArchive::load);
    CArchiveIO io(archive);
    char byte = 0;
    EXPECT_EQ(io.gread(&byte, 1), 1);
    const ULONGLONG read_ahead = file.GetPosition();
    io.flush();
    EXPECT_EQ(file.GetPosition(), read_ahead);
}

TEST(CArchiveIO, FailuresOfTheFile_GoThroughAndLeaveTheirNumber)
{
    FailingFile source("0123456789");
    source.fails_reading = true;
    CArchive loading(&source, CArchive::load);
    CArchiveIO reader(loading);
    char byte = 0;
    EXPECT_EQ(code_of([&] { static_cast<void>(reader.gread(&byte, 1)); }), FailingFile::kCode);
    EXPECT_EQ(reader.get_error(), 5);

    FailingFile target;
    target.writes_left = 0;
    CArchive storing(&target, CArchive::store);
    CArchiveIO writer(storing);
    const std::string much(10'000, 'x');
    EXPECT_EQ(code_of([&] { writer.gwrite(much.data(), 10'000); }), FailingFile::kCode);
    EXPECT_EQ(writer.get_error(), 4);
    storing.Abort();
}

TEST(CArchiveIO, FlushThatFails_LeavesError4)
{
    FailingFile file;
    file.writes_left = 0;
    CArchive archive(&file, CArchive::store);
    CArchiveIO io(archive);
    io.gwrite("x", 1);
    EXPECT_EQ(code_of([&io] { io.flush(); }), FailingFile::kCode);
    EXPECT_EQ(io.get_error(), 4);
    archive.Abort();
}

TEST(CArchiveIO, FlushAfterAFailedWrite_DoesNothing)
{
    FailingFile file;
    file.writes_left = 0;
    CArchive archive(&file, CArchive::store);
    CArchiveIO io(archive);
    const std::string much(10'000, 'x');
    EXPECT_EQ(code_of([&] { io.gwrite(much.data(), 10'000); }), FailingFile::kCode);
    file.writes_left = -1;
    archive.Write("y", 1);
    io.flush();
    EXPECT_EQ(file.content(), "") << "what the archive holds stays there";
    archive.Abort();
}

TEST(CArchiveIO, TheWrongWay_IsAnArchiveExceptionWithItsNumber)
{
    FailingFile file("0123456789");
    CArchive loading(&file, CArchive::load);
    CArchiveIO reader(loading);
    EXPECT_EQ(cause_of<CArchiveException>([&reader] { reader.gwrite("x", 1); }),
              CArchiveException::readOnly);
    EXPECT_EQ(reader.get_error(), 4);

    CArchive storing(&file, CArchive::store);
    CArchiveIO writer(storing);
    char byte = 0;
    EXPECT_EQ(cause_of<CArchiveException>([&] { static_cast<void>(writer.gread(&byte, 1)); }),
              CArchiveException::writeOnly);
    EXPECT_EQ(writer.get_error(), 5);
}
