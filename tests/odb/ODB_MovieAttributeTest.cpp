#include "odb/ODB_MovieAttribute.h"

#include "TestObjects.h"
#include "foundation/GException.h"
#include "foundation/mpstream.h"
#include "odb/GInputAVIFile.h"
#include "odb/MovieReader.h"
#include "odb/OpenMovies.h"
#include "store/ResourceFileServer.h"
#include "tests/store/Random.h"

#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <iterator>
#include <memory>
#include <thread>

namespace {

/// Bytes that no block of them equals another.
std::string movie_bytes(std::size_t size, std::uint32_t seed = 1)
{
    zmr::Random random(seed);
    std::string bytes(size, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

/// A database with an entry that may have a movie.
class MovieTest : public OdbTest {
public:
    MovieTest()
    {
        add("lamp", "x");
        lamp().set_attribute(&attribute, false);
    }
    ODB_Mediator& lamp() { return *database.get_mediator(GString("lamp")); }
    std::string write_file(const char* name, const std::string& bytes) const
    {
        const std::string full = folder.file(name);
        std::ofstream(std::filesystem::path(std::u8string(full.begin(), full.end())),
                      std::ios::binary)
            << bytes;
        return full;
    }
    std::string read_file(const char* name) const
    {
        const std::string full = folder.file(name);
        std::ifstream in(std::filesystem::path(std::u8string(full.begin(), full.end())),
                         std::ios::binary);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }
    bool has_file(const char* name) const { return GFile(folder.file(name).c_str()).exists(); }
    void set_movie(const std::string& bytes)
    {
        attribute.set_movie(write_file("source.avi", bytes).c_str());
    }
    [[nodiscard]] std::unique_ptr<zmr::MovieReader> open() const
    {
        return zmr::MovieReader::Open(attribute.get_movie_name(false).text);
    }

    ODB_MovieAttribute attribute;
};

std::string read_all(zmr::MovieReader& movie, std::int64_t piece)
{
    std::string bytes;
    std::string buffer(static_cast<std::size_t>(piece), '\0');
    for (;;) {
        const std::int64_t done =
            movie.read(static_cast<std::uint32_t>(bytes.size()), buffer.data(), piece);
        if (done <= 0)
            return done < 0 ? "(failed)" : bytes;
        bytes.append(buffer.data(), static_cast<std::size_t>(done));
    }
}

}  // namespace

TEST(ODB_MovieAttribute, SetMovie_StoresTheBytesOfTheFileRaw)
{
    MovieTest test;
    const std::string bytes = movie_bytes(200'000);
    EXPECT_EQ(test.attribute.get_movie_name(true), "");

    test.set_movie(bytes);

    const ResourceFileBlock block =
        test.database.get_resource_block(test.attribute.get_movie_resource_name());
    EXPECT_EQ(block.length, bytes.size());
    EXPECT_EQ(block.sequential, 0u);
    EXPECT_EQ(test.attribute.get_movie_name(true), test.attribute.get_movie_name(false));
}

TEST(ODB_MovieAttribute, SetMovie_ReplacesTheOldOne)
{
    MovieTest test;
    test.set_movie("first movie, the longer one");
    test.set_movie("second");

    ASSERT_TRUE(test.attribute.extract_movie(test.folder.file("out.avi").c_str()));

    EXPECT_EQ(test.read_file("out.avi"), "second");
}

TEST(ODB_MovieAttribute, SetMovie_OfAMissingFile_ChangesNothing)
{
    MovieTest test;
    test.set_movie("movie");

    test.attribute.set_movie(test.folder.file("missing.avi").c_str());

    ASSERT_TRUE(test.attribute.extract_movie(test.folder.file("out.avi").c_str()));
    EXPECT_EQ(test.read_file("out.avi"), "movie");
}

TEST(ODB_MovieAttribute, SetMovie_OfTheLibraryItself_ChangesNothing)
{
    MovieTest test;
    test.set_movie("movie");
    test.database.flush();

    test.attribute.set_movie(test.file().c_str());

    EXPECT_EQ(test.open()->length(), 5u);
}

TEST(ODB_MovieAttribute, SetMovie_Null_RemovesIt)
{
    MovieTest test;
    test.set_movie("movie");

    test.attribute.set_movie(nullptr);

    EXPECT_FALSE(test.database.exist(test.attribute.get_movie_resource_name()));
    EXPECT_EQ(test.open(), nullptr);
}

TEST(ODB_MovieAttribute, SetMovie_OfAnEmptyFile_IsAMovieOfNoBytes)
{
    MovieTest test;
    test.set_movie("");

    ASSERT_TRUE(test.attribute.extract_movie(test.folder.file("out.avi").c_str()));

    EXPECT_TRUE(test.has_file("out.avi"));
    EXPECT_EQ(test.read_file("out.avi"), "");
}

TEST(ODB_MovieAttribute, ExtractMovie_WritesTheBytesOverAnOldFile)
{
    MovieTest test;
    const std::string bytes = movie_bytes(300'000);
    test.set_movie(bytes);
    test.write_file("out.avi", movie_bytes(400'000, 9));

    EXPECT_TRUE(test.attribute.extract_movie(test.folder.file("out.avi").c_str()));

    EXPECT_EQ(test.read_file("out.avi"), bytes);
}

TEST(ODB_MovieAttribute, ExtractMovie_OfNone_IsFalseAndTouchesNoFile)
{
    MovieTest test;
    test.write_file("out.avi", "kept");

    EXPECT_FALSE(test.attribute.extract_movie(test.folder.file("out.avi").c_str()));
    EXPECT_FALSE(test.attribute.extract_movie(nullptr));

    EXPECT_EQ(test.read_file("out.avi"), "kept");
}

TEST(ODB_MovieAttribute, ExtractMovie_ToWhereNoFileCanBe_IsFalse)
{
    MovieTest test;
    test.set_movie("movie");

    EXPECT_FALSE(test.attribute.extract_movie(test.folder.file("none/out.avi").c_str()));
    EXPECT_FALSE(test.attribute.extract_movie(test.folder.file("").c_str()));
}

TEST(ODB_MovieAttribute, ExtractMovie_OverTheLibraryItself_IsFalseAndLeavesIt)
{
    MovieTest test;
    test.set_movie("movie");
    EXPECT_FALSE(test.attribute.extract_movie(test.file().c_str()));  // not made yet
    test.database.flush();

    EXPECT_FALSE(test.attribute.extract_movie(test.file().c_str()));

    test.database.flush();
    EXPECT_TRUE(ResourceFile::IsValidToRead(test.file().c_str()));
    EXPECT_EQ(test.note_of("lamp"), "x");
}

TEST(ODB_MovieAttribute, GetMovie_OfAnEntryWithoutOne_IsNullAndLeavesNoFileOpen)
{
    MovieTest test;
    const long clients = test.database.server->clients.count;

    EXPECT_EQ(test.attribute.get_movie(), nullptr);

    EXPECT_EQ(test.database.server->clients.count, clients);
}

TEST(ODB_MovieAttribute, GetMovie_OfBytesThatAreNoMovie_IsNullAndLeavesNoFileOpen)
{
    MovieTest test;
    test.set_movie("no movie at all");
    const long clients = test.database.server->clients.count;

    EXPECT_EQ(test.attribute.get_movie(), nullptr);

    EXPECT_EQ(test.database.server->clients.count, clients);
}

TEST(ODB_MovieAttribute, RemovingTheEntry_RemovesItsMovieAndRenamingMovesIt)
{
    MovieTest test;
    test.set_movie("movie");
    const GResourceFullName before = test.attribute.get_movie_resource_name();

    test.database.rename_object(GString("lamp"), GString("light"));
    EXPECT_FALSE(test.database.exist(before));
    const GResourceFullName after = test.attribute.get_movie_resource_name();
    EXPECT_EQ(after.name, "light");
    EXPECT_TRUE(test.database.exist(after));
    test.database.remove_object(GString("light"));

    EXPECT_FALSE(test.database.exist(after));
}

TEST(ODB_MovieAttribute, Stream_IsTwoBytesWithoutTheMovie)
{
    MovieTest test;
    test.set_movie("movie");
    ompstream out;
    test.attribute.write(out);

    EXPECT_TRUE(std::ranges::equal(out.bytes(), std::vector<unsigned char>{0, 0}));
    impstream in(out.bytes());
    ODB_MovieAttribute back;
    back.read(in);
    EXPECT_EQ(in.remaining(), 0);
    impstream cut(out.bytes().first(1));
    EXPECT_THROW(back.read(cut), GStreamException);
}

TEST(ODB_MovieAttribute, Movie_IsNoObjectAndNoAttribute)
{
    MovieTest test;
    ompstream tricky;  // bytes that are a whole object's stream
    TestNote note("in a movie");
    tricky.writePointer(&note);
    const auto bytes = tricky.bytes();
    test.set_movie(std::string(bytes.begin(), bytes.end()));

    EXPECT_EQ(test.lamp().get_attribute(ODB_MovieAttribute::GetMovieResourceType()), nullptr);
    EXPECT_EQ(test.database.get(test.attribute.get_movie_resource_name(), false), nullptr);
}

TEST(MovieReader, Read_GivesTheMovieInPiecesOfAnySize)
{
    MovieTest test;
    const std::string bytes = movie_bytes(150'001);
    test.set_movie(bytes);

    const auto movie = test.open();

    ASSERT_NE(movie, nullptr);
    EXPECT_EQ(movie->length(), bytes.size());
    for (const int piece : {1021, 8192, 65536, 150'001, 1'000'000})
        EXPECT_EQ(read_all(*movie, piece), bytes) << piece;
}

TEST(MovieReader, Read_AcrossTheEnd_GivesTheBytesUpToIt)
{
    MovieTest test;
    test.set_movie("0123456789");
    const auto movie = test.open();
    std::string buffer(8, '.');

    EXPECT_EQ(movie->read(7, buffer.data(), 8), 3);
    EXPECT_EQ(buffer, "789.....");
}

TEST(MovieReader, Read_PastTheEndOrOfNothing_IsZero)
{
    MovieTest test;
    test.set_movie("0123456789");
    const auto movie = test.open();
    char buffer[4];

    EXPECT_EQ(movie->read(10, buffer, 4), 0);
    EXPECT_EQ(movie->read(0xFFFFFFFF, buffer, 4), 0);
    EXPECT_EQ(movie->read(3, buffer, 0), 0);
    EXPECT_EQ(movie->read(3, buffer, -5), 0);
}

TEST(MovieReader, Read_AtRandom_GivesTheBytesOfThatPlace)
{
    MovieTest test;
    const std::string bytes = movie_bytes(400'000);
    test.set_movie(bytes);
    const auto movie = test.open();
    zmr::Random random(5);
    std::string buffer(70'000, '\0');
    for (int i = 0; i < 500; ++i) {
        const std::uint32_t position = random() % 400'000;
        const std::int64_t count = random() % 70'000;
        const std::int64_t done = movie->read(position, buffer.data(), count);
        ASSERT_EQ(done, std::min<std::int64_t>(count, 400'000 - position));
        ASSERT_EQ(bytes.compare(position, static_cast<std::size_t>(done), buffer, 0,
                                static_cast<std::size_t>(done)),
                  0);
    }
}

TEST(MovieReader, Read_OfAFewBytesThatLieWithTheIndex)
{
    MovieTest test;
    test.set_movie("tiny");
    EXPECT_EQ(read_all(*test.open(), 3), "tiny");
    test.database.close();

    const auto movie = zmr::MovieReader::Open(ODB_MovieAttribute::BuildMovieName(
        GFile(test.file().c_str()),
        GResourceFullName(GResourcePath(), GString("lamp"), GString())));

    ASSERT_NE(movie, nullptr);  // opened by itself: the library was closed
    EXPECT_EQ(read_all(*movie, 3), "tiny");
}

TEST(MovieReader, Open_OfWhatIsNotThere_IsNullAndLeavesNoFileOpen)
{
    MovieTest test;
    test.set_movie("movie");
    const long clients = test.database.server->clients.count;
    const GString good = test.attribute.get_movie_name(true);

    EXPECT_EQ(zmr::MovieReader::Open(nullptr), nullptr);
    EXPECT_EQ(zmr::MovieReader::Open(test.file().c_str()), nullptr);
    EXPECT_EQ(zmr::MovieReader::Open((good + "x").text), nullptr);
    EXPECT_EQ(zmr::MovieReader::Open(ODB_MovieAttribute::BuildMovieName(
                  test.database.get_filename(),
                  GResourceFullName(GResourcePath(), GString("chair"), GString()))),
              nullptr);
    EXPECT_EQ(zmr::MovieReader::Open(
                  ODB_MovieAttribute::BuildMovieName(GFile(test.folder.file("missing.odb").c_str()),
                                                     test.attribute.get_movie_resource_name())),
              nullptr);

    EXPECT_EQ(test.database.server->clients.count, clients);
}

TEST(MovieReader, OpenMovie_ReadsOnWhenItIsReplacedRemovedAndPacked)
{
    MovieTest test;
    const std::string bytes = movie_bytes(300'000);
    test.set_movie(bytes);
    test.database.flush();
    const auto movie = test.open();

    test.set_movie(movie_bytes(300'000, 2));
    test.database.flush();
    EXPECT_EQ(read_all(*movie, 8192), bytes);
    test.attribute.set_movie(nullptr);
    test.database.flush();
    test.database.pack();
    test.add("chair", movie_bytes(500'000, 3).c_str());
    test.database.flush();
    EXPECT_EQ(read_all(*movie, 8192), bytes);
    test.database.close();

    EXPECT_EQ(read_all(*movie, 8192), bytes);
}

TEST(MovieReader, Close_GivesTheSpaceBack)
{
    MovieTest test;
    test.set_movie(movie_bytes(500'000));
    test.database.flush();
    const auto bytes_of_file = [&] {
        return std::filesystem::file_size(test.folder.path() / "library.odb");
    };
    test.open().reset();

    test.attribute.set_movie(nullptr);
    test.database.flush();
    test.database.pack();
    test.database.flush();

    EXPECT_LT(bytes_of_file(), 400'000u);
}

TEST(MovieReader, CompressedContent_IsReadThroughTheSharedStream)
{
    MovieTest test;
    std::string text;
    for (int i = 0; text.size() < 100'000; ++i)
        text += "frame " + std::to_string(i) + "\n";
    TestNote note(text.c_str());
    const GResourceFullName name = test.attribute.get_movie_resource_name();
    test.database.put(&note, name, false);
    ASSERT_NE(test.database.get_resource_block(name).sequential, 0u);
    ompstream expected;
    expected.writePointer(&note);
    const auto bytes = expected.bytes();

    const auto movie = test.open();

    ASSERT_NE(movie, nullptr);
    EXPECT_EQ(read_all(*movie, 30'000), std::string(bytes.begin(), bytes.end()));
    test.database.server->get_stream().clear(pstream::kFail);  // what another client left behind
    char byte = 0;
    EXPECT_EQ(movie->read(50'000, &byte, 1), 1);
    EXPECT_EQ(static_cast<unsigned char>(byte), bytes[50'000]);
}

TEST(MovieReader, DamagedBytes_AreRefused)
{
    MovieTest test;
    const std::string bytes = movie_bytes(300'000);
    test.set_movie(bytes);
    test.database.flush();
    const ResourceFileBlock block =
        test.database.get_resource_block(test.attribute.get_movie_resource_name());
    test.database.close();
    {
        std::fstream file(test.folder.path() / "library.odb",
                          std::ios::in | std::ios::out | std::ios::binary);
        file.seekp(static_cast<std::streamoff>(block.offset) + 200'000);
        file.put('\x55').put('\xAA').put('\x55').put('\xAA');
    }
    const auto movie = zmr::MovieReader::Open(ODB_MovieAttribute::BuildMovieName(
        GFile(test.file().c_str()),
        GResourceFullName(GResourcePath(), GString("lamp"), GString())));
    ASSERT_NE(movie, nullptr);
    std::string buffer(1000, '\0');

    EXPECT_EQ(movie->read(200'000, buffer.data(), 1000), -1);
    EXPECT_EQ(movie->read(0, buffer.data(), 1000), 1000);
    EXPECT_EQ(buffer, bytes.substr(0, 1000));
}

TEST(MovieReader, Seek_FromStartCurrentAndEnd)
{
    MovieTest test;
    test.set_movie("0123456789");
    const auto movie = test.open();

    EXPECT_EQ(movie->seek(5, 3, 0), 3);
    EXPECT_EQ(movie->seek(5, 3, 1), 8);
    EXPECT_EQ(movie->seek(5, -5, 1), 0);
    EXPECT_EQ(movie->seek(5, 3, 2), 7);  // counted back from the end
    EXPECT_EQ(movie->seek(5, 0, 2), 10);
    EXPECT_EQ(movie->seek(5, 4, 77), 4);
}

TEST(MovieReader, Seek_OutsideTheMovie_IsMinusOne)
{
    MovieTest test;
    test.set_movie("0123456789");
    const auto movie = test.open();

    EXPECT_EQ(movie->seek(5, 10, 0), 10);
    EXPECT_EQ(movie->seek(5, 11, 0), -1);
    EXPECT_EQ(movie->seek(5, -1, 0), -1);
    EXPECT_EQ(movie->seek(5, 6, 1), -1);
    EXPECT_EQ(movie->seek(5, -6, 1), -1);
    EXPECT_EQ(movie->seek(5, 11, 2), -1);
    EXPECT_EQ(movie->seek(5, -1, 2), -1);
}

TEST(MovieReader, Seek_AtTheLimitsOfItsNumbers_DoesNotRunOver)
{
    MovieTest test;
    test.set_movie("0123456789");
    const auto movie = test.open();

    for (const int origin : {0, 1, 2}) {
        EXPECT_EQ(movie->seek(0xFFFFFFFF, INT32_MAX, origin), -1);
        EXPECT_EQ(movie->seek(0xFFFFFFFF, INT32_MIN, origin), -1);
    }
}

TEST(MovieReader, ReadersInThreadsWhileAnotherWritesToTheLibrary_ReadWhatWasOpened)
{
    MovieTest test;
    const std::string bytes = movie_bytes(300'000);
    test.set_movie(bytes);
    const GString name = test.attribute.get_movie_name(true);
    std::atomic<bool> stop{false};
    std::atomic<int> rounds{0};
    std::atomic<int> wrong{0};
    std::vector<std::thread> readers;
    for (int i = 0; i < 3; ++i) {
        readers.emplace_back([&] {
            while (!stop) {
                const auto movie = zmr::MovieReader::Open(name.text);
                if (movie == nullptr || read_all(*movie, 8192) != bytes)
                    ++wrong;
                ++rounds;
            }
        });
    }
    for (int i = 0; i < 300 || rounds < 6; ++i) {
        test.add(("note" + std::to_string(i % 20)).c_str(),
                 movie_bytes(2000, static_cast<std::uint32_t>(i)).c_str());
        if (i % 50 == 49)
            test.database.flush();
    }
    stop = true;
    for (std::thread& reader : readers)
        reader.join();

    EXPECT_EQ(wrong, 0);
}

TEST(MovieReader, OpenedAndClosedInAThreadWhileOtherClientsOpenAndClose_HarmsNobody)
{
    MovieTest test;
    test.set_movie(movie_bytes(3000));
    const GString name = test.attribute.get_movie_name(true);
    std::atomic<bool> stop{false};
    std::atomic<int> opened{0};
    std::thread player([&] {
        while (!stop)
            opened += zmr::MovieReader::Open(name.text) != nullptr ? 1 : 0;
    });
    for (int i = 0; i < 200 || opened < 50; ++i) {
        ObjectDatabase second(test.file().c_str(), GIO::OpenReadWrite);
        ObjectDatabase third(second);
        ASSERT_EQ(OdbTest::note_of(third, "lamp"), "x");
    }
    stop = true;
    player.join();

    EXPECT_GE(opened, 50);
    EXPECT_EQ(test.note_of("lamp"), "x");
}

TEST(OpenMovies, Numbers_AreNeverZeroAndLeadToTheirMovie)
{
    MovieTest test;
    test.set_movie("movie");
    zmr::OpenMovies movies;
    EXPECT_EQ(movies.add(nullptr), 0u);
    EXPECT_EQ(movies.find(0), nullptr);

    const std::uint32_t first = movies.add(test.open());
    const std::uint32_t second = movies.add(test.open());

    EXPECT_NE(first, 0u);
    EXPECT_NE(first, second);
    const auto held = movies.find(first);
    ASSERT_NE(held, nullptr);
    movies.remove(first);
    EXPECT_EQ(movies.find(first), nullptr);
    EXPECT_EQ(movies.count(), 1u);
    EXPECT_EQ(read_all(*held, 10), "movie");  // while somebody reads it, it lives
    movies.remove(12345);
    movies.remove(second);
    EXPECT_EQ(movies.count(), 0u);
}
