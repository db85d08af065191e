#include "TestObjects.h"
#include "UncompressedMovie.h"
#include "odb/GInputAVIFile.h"
#include "odb/MovieProcedure.h"
#include "odb/ODB_MovieAttribute.h"
#include "platform/Windows.h"
#include "store/ResourceFileServer.h"
#include "tests/store/Random.h"

#include <gtest/gtest.h>

#include <mmsystem.h>
#include <vfw.h>

#include <atomic>
#include <fstream>
#include <thread>

// The real multimedia and AVI layers, on movies inside libraries.

namespace {

constexpr std::uint32_t kLibraryCode = 0x2042444F;  // "ODB "

/// A library whose entry has an uncompressed movie.
class PlayTest : public OdbTest {
public:
    explicit PlayTest(const std::string& entry = "lämp")
    {
        add(entry.c_str(), "x");
        database.get_mediator(GString(entry.c_str()))->set_attribute(&attribute, false);
        bytes = movie.bytes();
        const std::string file = folder.file("source.avi");
        std::ofstream(std::filesystem::path(file), std::ios::binary) << bytes;
        attribute.set_movie(file.c_str());
    }
    [[nodiscard]] std::string name() const { return attribute.get_movie_name(false).text; }
    [[nodiscard]] long clients() const { return database.server->clients.count; }

    UncompressedMovie movie;
    std::string bytes;
    ODB_MovieAttribute attribute;
};

/// Opens by the multimedia layer; closes at the end.
class OpenedByLayer {
public:
    OpenedByLayer(std::string name, DWORD flags)
    {
        handle = ::mmioOpenA(name.data(), &info, flags);
    }
    ~OpenedByLayer()
    {
        if (handle != nullptr)
            ::mmioClose(handle, 0);
    }
    OpenedByLayer(const OpenedByLayer&) = delete;
    OpenedByLayer& operator=(const OpenedByLayer&) = delete;

    MMIOINFO info{};
    HMMIO handle = nullptr;
};

/// The installed procedure, called as the layer calls it.
class CalledDirectly {
public:
    CalledDirectly() : procedure_(::mmioInstallIOProcA(kLibraryCode, nullptr, MMIO_FINDPROC)) {}
    ~CalledDirectly() { call(MMIOM_CLOSE, 0, 0); }
    CalledDirectly(const CalledDirectly&) = delete;
    CalledDirectly& operator=(const CalledDirectly&) = delete;

    LRESULT open(const std::string& name, DWORD flags)
    {
        info.dwFlags = flags;
        return call(MMIOM_OPEN, reinterpret_cast<LPARAM>(name.c_str()), 0);
    }
    LRESULT call(UINT message, LPARAM first, LPARAM second)
    {
        return procedure_(reinterpret_cast<LPSTR>(&info), message, first, second);
    }

    MMIOINFO info{};

private:
    LPMMIOPROC procedure_;
};

/// The frames of a movie, by the AVI layer.
class Frames {
public:
    explicit Frames(const GInputAVIFile& file)
    {
        if (::AVIFileGetStream(file.handle, &stream, streamtypeVIDEO, 0) == AVIERR_OK)
            frames_ = ::AVIStreamGetFrameOpen(stream, nullptr);
    }
    ~Frames()
    {
        if (frames_ != nullptr)
            ::AVIStreamGetFrameClose(frames_);
        if (stream != nullptr)
            ::AVIStreamRelease(stream);
    }
    Frames(const Frames&) = delete;
    Frames& operator=(const Frames&) = delete;

    [[nodiscard]] bool shows(const UncompressedMovie& movie, int frame) const
    {
        const auto* const head =
            static_cast<const BITMAPINFOHEADER*>(::AVIStreamGetFrame(frames_, frame));
        if (head == nullptr || head->biWidth != movie.width || head->biHeight != movie.height ||
            head->biBitCount != 24)
            return false;
        const auto* pixel = reinterpret_cast<const std::uint8_t*>(head) + head->biSize;
        for (int row = 0; row < movie.height; ++row)
            for (int x = 0; x < movie.width; ++x)
                for (int channel = 0; channel < 3; ++channel)
                    if (*pixel++ != movie.value(frame, x, row, channel))
                        return false;
        return true;
    }

    PAVISTREAM stream = nullptr;

private:
    PGETFRAME frames_ = nullptr;
};

}  // namespace

TEST(MoviePlay, Mmio_ReadsTheMovieFromItsFirstByteToItsLast)
{
    PlayTest test;
    const OpenedByLayer movie(test.name(), MMIO_READ);
    ASSERT_NE(movie.handle, nullptr);

    std::string read(test.bytes.size() + 100, '\0');
    const LONG done = ::mmioRead(movie.handle, read.data(), static_cast<LONG>(read.size()));

    ASSERT_EQ(done, static_cast<LONG>(test.bytes.size()));
    read.resize(test.bytes.size());
    EXPECT_EQ(read, test.bytes);
    char beyond = 0;
    EXPECT_EQ(::mmioRead(movie.handle, &beyond, 1), 0);
}

TEST(MoviePlay, Mmio_BufferedAndSeeking_ReadsAnyPlace)
{
    PlayTest test;
    const OpenedByLayer movie(test.name(), MMIO_READ | MMIO_ALLOCBUF);
    ASSERT_NE(movie.handle, nullptr);
    zmr::Random random(3);
    for (int i = 0; i < 300; ++i) {
        const auto position = static_cast<LONG>(random() % test.bytes.size());
        std::string read(random() % 3000, '\0');
        ASSERT_EQ(::mmioSeek(movie.handle, position, SEEK_SET), position);
        const LONG done = ::mmioRead(movie.handle, read.data(), static_cast<LONG>(read.size()));
        ASSERT_GE(done, 0);
        read.resize(static_cast<std::size_t>(done));
        ASSERT_EQ(read, test.bytes.substr(static_cast<std::size_t>(position), read.size()));
    }
}

TEST(MoviePlay, Procedure_SeeksAndAnswersOtherMessagesWithZero)
{
    PlayTest test;
    CalledDirectly movie;
    ASSERT_EQ(movie.open(test.name(), MMIO_READ), 0);
    const auto length = static_cast<LONG>(test.bytes.size());

    EXPECT_EQ(movie.call(MMIOM_SEEK, length + 1, SEEK_SET), -1);
    EXPECT_EQ(movie.info.lDiskOffset, 0);
    EXPECT_EQ(movie.call(MMIOM_SEEK, 10, SEEK_END), length - 10);
    EXPECT_EQ(movie.call(MMIOM_SEEK, 5, SEEK_CUR), length - 5);
    EXPECT_EQ(movie.call(MMIOM_SEEK, 6, SEEK_CUR), -1);
    EXPECT_EQ(movie.info.lDiskOffset, length - 5);
    EXPECT_EQ(movie.call(MMIOM_WRITE, 0, 0), 0);
    EXPECT_EQ(movie.call(0x4711, 0, 0), 0);
}

TEST(MoviePlay, Procedure_ReadsAcrossTheEndAndThenNothing)
{
    PlayTest test;
    CalledDirectly movie;
    ASSERT_EQ(movie.open(test.name(), MMIO_READ), 0);
    const auto length = static_cast<LONG>(test.bytes.size());
    ASSERT_EQ(movie.call(MMIOM_SEEK, length - 3, SEEK_SET), length - 3);
    char buffer[8] = {};

    EXPECT_EQ(movie.call(MMIOM_READ, reinterpret_cast<LPARAM>(buffer), 8), 3);
    EXPECT_EQ(std::string(buffer, 3), test.bytes.substr(test.bytes.size() - 3));
    EXPECT_EQ(movie.info.lDiskOffset, length);
    EXPECT_EQ(movie.call(MMIOM_READ, reinterpret_cast<LPARAM>(buffer), 8), 0);
}

TEST(MoviePlay, Procedure_WithoutAnOpenMovie_AnswersZero)
{
    CalledDirectly movie;
    char buffer[8] = {};

    EXPECT_EQ(movie.call(MMIOM_READ, reinterpret_cast<LPARAM>(buffer), 8), 0);
    EXPECT_EQ(movie.call(MMIOM_SEEK, 5, SEEK_SET), 0);
    EXPECT_EQ(movie.call(MMIOM_CLOSE, 0, 0), 0);
    movie.info.adwInfo[0] = 0xDEAD;  // a number that nobody was given
    EXPECT_EQ(movie.call(MMIOM_READ, reinterpret_cast<LPARAM>(buffer), 8), 0);
}

TEST(MoviePlay, Procedure_Close_ClearsTheNumber)
{
    PlayTest test;
    const long clients = test.clients();
    CalledDirectly movie;
    ASSERT_EQ(movie.open(test.name(), MMIO_READ), 0);
    EXPECT_NE(movie.info.adwInfo[0], 0u);
    EXPECT_EQ(test.clients(), clients + 1);

    EXPECT_EQ(movie.call(MMIOM_CLOSE, 0, 0), 0);

    EXPECT_EQ(movie.info.adwInfo[0], 0u);
    EXPECT_EQ(test.clients(), clients);
}

TEST(MoviePlay, Procedure_NameWithoutAPlus_CannotOpen)
{
    PlayTest test;
    CalledDirectly movie;

    EXPECT_EQ(movie.open(test.file(), MMIO_READ), MMIOERR_CANNOTOPEN);
    EXPECT_EQ(MMIOERR_CANNOTOPEN, 259);
}

TEST(MoviePlay, Procedure_Exist_SucceedsForAPresentMovieAndLeavesNothingOpen)
{
    PlayTest test;
    const long clients = test.clients();
    test.add("chair", "x");
    const std::string absent = ODB_MovieAttribute::BuildMovieName(
                                   test.database.get_filename(),
                                   GResourceFullName(GResourcePath(), GString("chair"), GString()))
                                   .text;
    CalledDirectly movie;

    EXPECT_EQ(movie.open(test.name(), MMIO_EXIST), 0);
    EXPECT_EQ(movie.open(test.name(), MMIO_PARSE), 0);
    EXPECT_EQ(movie.open(test.name(), MMIO_GETTEMP), MMIOERR_CANNOTOPEN);
    EXPECT_EQ(movie.open(test.name(), MMIO_GETTEMP | MMIO_EXIST), 0);
    EXPECT_EQ(movie.open(absent, MMIO_EXIST), MMIOERR_CANNOTOPEN);

    EXPECT_EQ(movie.info.adwInfo[0], 0u);
    EXPECT_EQ(test.clients(), clients);
}

TEST(MoviePlay, Procedure_OpenToWrite_CannotOpenBeforeAnythingElse)
{
    PlayTest test;
    CalledDirectly movie;

    for (const DWORD flags : {MMIO_WRITE, MMIO_READWRITE, MMIO_WRITE | MMIO_EXIST})
        EXPECT_EQ(movie.open(test.name(), flags), MMIOERR_CANNOTOPEN);
}

TEST(MoviePlay, Mmio_OpenToWrite_CannotOpenAndOpensNothing)
{
    PlayTest test;
    const long clients = test.clients();

    for (const DWORD flags : {MMIO_WRITE, MMIO_READWRITE}) {
        const OpenedByLayer movie(test.name(), flags);
        EXPECT_EQ(movie.handle, nullptr);
        EXPECT_EQ(movie.info.wErrorRet, static_cast<UINT>(MMIOERR_CANNOTOPEN));
    }
    EXPECT_EQ(test.clients(), clients);
}

TEST(MoviePlay, Mmio_Exist_LeavesNothingOpen)
{
    // Layers differ in whether they ask the procedure at all, so only what stays open is looked at.
    PlayTest test;
    const long clients = test.clients();
    std::string name = test.name();

    static_cast<void>(::mmioOpenA(name.data(), nullptr, MMIO_EXIST));

    EXPECT_EQ(test.clients(), clients);
}

TEST(MoviePlay, Mmio_Close_LetsTheLibraryGo)
{
    PlayTest test;
    const long clients = test.clients();
    {
        const OpenedByLayer movie(test.name(), MMIO_READ);
        EXPECT_EQ(test.clients(), clients + 1);
    }
    EXPECT_EQ(test.clients(), clients);
}

TEST(MoviePlay, Avi_ShowsEveryFrameFromTheFirstToTheLastAndAtRandom)
{
    PlayTest test;
    const std::unique_ptr<GInputAVIFile> file(test.attribute.get_movie());
    ASSERT_NE(file, nullptr);
    const Frames frames(*file);
    ASSERT_NE(frames.stream, nullptr);
    EXPECT_EQ(::AVIStreamLength(frames.stream), test.movie.frames);

    for (int frame = 0; frame < test.movie.frames; ++frame)
        EXPECT_TRUE(frames.shows(test.movie, frame)) << frame;
    zmr::Random random(9);
    for (int i = 0; i < 200; ++i) {
        const int frame = static_cast<int>(random() % static_cast<unsigned>(test.movie.frames));
        ASSERT_TRUE(frames.shows(test.movie, frame)) << frame;
    }
}

TEST(MoviePlay, Avi_OfAnEntryWithALongName_ShowsEveryFrame)
{
    constexpr std::size_t kLongest = 100;
    for (std::size_t length = 1; length <= kLongest; ++length) {
        const PlayTest test(std::string(length, 'l'));
        const GInputAVIFile file(test.name().c_str());
        ASSERT_NE(file.handle, nullptr) << length;
        const Frames frames(file);
        ASSERT_TRUE(frames.shows(test.movie, 0)) << length;
    }
}

TEST(MoviePlay, Avi_WhileAnotherThreadWritesToTheLibrary_ShowsEveryFrame)
{
    PlayTest test;
    std::atomic<bool> stop{false};
    std::atomic<int> shown{0};
    std::atomic<int> wrong{0};
    std::thread player([&] {
        const std::unique_ptr<GInputAVIFile> file(test.attribute.get_movie());
        if (file == nullptr) {
            ++wrong;
            return;
        }
        const Frames frames(*file);
        for (int frame = 0; !stop; frame = (frame + 1) % test.movie.frames) {
            if (!frames.shows(test.movie, frame))
                ++wrong;
            ++shown;
        }
    });
    for (int i = 0; wrong == 0 && (i < 200 || shown < 8 * test.movie.frames); ++i) {
        test.add(("note" + std::to_string(i % 30)).c_str(),
                 std::string(3000, static_cast<char>('a' + i % 26)).c_str());
        if (i % 40 == 39)
            test.database.flush();
    }
    stop = true;
    player.join();

    EXPECT_EQ(wrong, 0);
    EXPECT_GE(shown, 8 * test.movie.frames);
    EXPECT_EQ(test.note_of("note0").size(), 3000u);
}

TEST(MoviePlay, Avi_OfALongerMovie_IsReadInPlace)
{
    PlayTest test;
    test.movie = {160, 120, 60};
    const std::string file = test.folder.file("long.avi");
    std::ofstream(std::filesystem::path(file), std::ios::binary) << test.movie.bytes();
    test.attribute.set_movie(file.c_str());
    std::filesystem::remove(std::filesystem::path(file));

    const std::unique_ptr<GInputAVIFile> opened(test.attribute.get_movie());

    ASSERT_NE(opened, nullptr);
    const Frames frames(*opened);
    for (const int frame : {0, 59, 1, 30, 58})
        EXPECT_TRUE(frames.shows(test.movie, frame)) << frame;
}

TEST(MoviePlay, RegisterIOProc_Again_InstallsNothing)
{
    EXPECT_EQ(zmr::installed_movie_codes(), std::vector<std::uint32_t>{kLibraryCode});

    ODB_MovieAttribute::RegisterIOProc("odb");
    ODB_MovieAttribute::RegisterIOProc("ODB");

    EXPECT_EQ(zmr::installed_movie_codes(), std::vector<std::uint32_t>{kLibraryCode});
}

TEST(MoviePlay, RemovedProcedure_OpensNothingUntilItIsRegisteredAgain)
{
    PlayTest test;
    zmr::remove_movie_procedures();
    {
        const OpenedByLayer movie(test.name(), MMIO_READ);
        EXPECT_EQ(movie.handle, nullptr);
    }
    EXPECT_TRUE(zmr::installed_movie_codes().empty());

    ODB_MovieAttribute::RegisterIOProc("odb");

    const OpenedByLayer movie(test.name(), MMIO_READ);
    EXPECT_NE(movie.handle, nullptr);
    EXPECT_EQ(zmr::installed_movie_codes(), std::vector<std::uint32_t>{kLibraryCode});
}

TEST(MoviePlay, LibraryOfAnotherExtension_NeedsItsOwnRegistration)
{
    PlayTest test;
    ObjectDatabase other(test.folder.file("models.shelf").c_str(), GIO::OpenReadWrite);
    test.database.copy_to(other);
    other.flush();
    std::string name = ODB_MovieAttribute::BuildMovieName(other.get_filename(),
                                                          test.attribute.get_movie_resource_name())
                           .text;
    {
        const OpenedByLayer movie(name, MMIO_READ);
        EXPECT_EQ(movie.handle, nullptr);
    }

    ODB_MovieAttribute::RegisterIOProc("shelf");

    {
        const OpenedByLayer movie(name, MMIO_READ);
        EXPECT_NE(movie.handle, nullptr);
    }
    zmr::remove_movie_procedures();  // which the layer refuses while a movie is open
    ODB_MovieAttribute::RegisterIOProc("odb");
}
