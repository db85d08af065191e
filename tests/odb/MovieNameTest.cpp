#include "odb/MovieName.h"

#include "TestObjects.h"
#include "odb/ODB_MovieAttribute.h"
#include "odb/ShortMovieName.h"
#include "tests/store/Random.h"

#include <gtest/gtest.h>

namespace {

GResourceFullName movie_of(const GResourcePath& path, const char* name)
{
    return {path, GString(name), ODB_MovieAttribute::GetMovieResourceType()};
}

}  // namespace

TEST(MovieName, ResourceType_IsTheClassAndTheWordMovie)
{
    EXPECT_EQ(ODB_MovieAttribute::GetMovieResourceType(), "ODB_MovieAttribute.movie");
}

TEST(MovieName, Build_IsTheFileAPlusAndThePieces)
{
    const GString text = ODB_MovieAttribute::BuildMovieName(
        GFile("/lib/a.odb"), movie_of(path_of({"one", "two"}), "lamp"));

    EXPECT_EQ(text, "/lib/a.odb+\1one\4\1two\4\2lamp\4\3ODB_MovieAttribute.movie\4");
}

TEST(MovieName, Build_WritesTheMoviesTypeWhateverTheNameHolds)
{
    const GResourceFullName other(GResourcePath(), GString("lamp"), GString(".ODB icon"));

    EXPECT_EQ(ODB_MovieAttribute::BuildMovieName(GFile("a.odb"), other),
              "a.odb+\2lamp\4\3ODB_MovieAttribute.movie\4");
}

TEST(MovieName, BuildThenParse_GivesBackFileAndNameAtAnyDepth)
{
    GResourcePath path;
    for (int depth = 0; depth < 40; ++depth) {
        const GResourceFullName name = movie_of(path, "lämp + chair");
        GFile file;
        GResourceFullName parsed(path_of({"stale"}), GString("stale"), GString("stale"));

        ASSERT_TRUE(ODB_MovieAttribute::ParseMovieName(
            ODB_MovieAttribute::BuildMovieName(GFile("C:\\líb\\a b.odb"), name), file, parsed));

        EXPECT_EQ(file, "C:\\líb\\a b.odb");
        EXPECT_TRUE(parsed == name) << depth;
        path += GString(("level" + std::to_string(depth)).c_str());
    }
}

TEST(MovieName, Parse_NoPlus_IsFalseAndChangesNothing)
{
    GFile file("kept");
    GResourceFullName name = movie_of(path_of({"kept"}), "kept");
    const GResourceFullName before = name;

    EXPECT_FALSE(ODB_MovieAttribute::ParseMovieName("a.odb", file, name));
    EXPECT_FALSE(ODB_MovieAttribute::ParseMovieName("", file, name));
    EXPECT_FALSE(ODB_MovieAttribute::ParseMovieName(nullptr, file, name));

    EXPECT_EQ(file, "kept");
    EXPECT_TRUE(name == before);
}

TEST(MovieName, Parse_MalformedPiece_IsFalse)
{
    GFile file;
    GResourceFullName name;
    for (const char* const text : {"a.odb+\2lamp", "a.odb+lamp\4", "a.odb+\4", "a.odb+\5lamp\4",
                                   "a.odb+\2lamp\4x", "a.odb+\2lamp\4\3"})
        EXPECT_FALSE(ODB_MovieAttribute::ParseMovieName(text, file, name)) << text;
    EXPECT_TRUE(name.is_empty());
}

TEST(MovieName, Parse_FirstPlusEndsTheFile)
{
    GFile file;
    GResourceFullName name;

    ASSERT_TRUE(ODB_MovieAttribute::ParseMovieName("a+\2lamp+b\4", file, name));
    EXPECT_EQ(file, "a");
    EXPECT_EQ(name.name, "lamp+b");
    ASSERT_TRUE(ODB_MovieAttribute::ParseMovieName("a.odb+", file, name));
    EXPECT_TRUE(name.is_empty());
}

TEST(MovieName, Parse_PiecesInAnyOrder_LastNameAndTypeCount)
{
    GFile file;
    GResourceFullName name;

    ASSERT_TRUE(zmr::parse_movie_name("a+\3t\4\2old\4\1x\4\2new\4\1y\4", file, name));

    EXPECT_TRUE(name == GResourceFullName(path_of({"x", "y"}), GString("new"), GString("t")));
}

TEST(MovieName, RandomTexts_ParseOrAreRefused_AndWhatParsesBuildsTheSameMeaning)
{
    zmr::Random random(3);
    int parsed_count = 0;
    for (int round = 0; round < 20000; ++round) {
        std::string text = "f+";
        for (unsigned left = random() % 12; left > 0; --left)
            text += "\1\2\3\4ab+"[random() % 7];
        GFile file;
        GResourceFullName name;
        if (!zmr::parse_movie_name(text.c_str(), file, name))
            continue;
        ++parsed_count;
        GFile file_again;
        GResourceFullName again;
        ASSERT_TRUE(zmr::parse_movie_name(zmr::build_movie_name(file, name), file_again, again));
        EXPECT_EQ(file_again, file);
        EXPECT_TRUE(again == name);
    }
    EXPECT_GT(parsed_count, 200);
}

TEST(MovieName, ExtensionCode_IsFourCapitalsFilledWithBlanks)
{
    EXPECT_EQ(zmr::movie_extension_code("odb"), 0x2042444Fu);  // "ODB "
    EXPECT_EQ(zmr::movie_extension_code("LIBRARY"), zmr::movie_extension_code("libr"));
    EXPECT_EQ(zmr::movie_extension_code(""), 0x20202020u);
    EXPECT_EQ(zmr::movie_extension_code(nullptr), 0x20202020u);
    EXPECT_EQ(zmr::movie_extension_code("\xE4"), 0x202020E4u);
}

TEST(ShortMovieName, OfAMovieInALibrary_HasItsExtensionAndIsFoundWhileItLives)
{
    const GString full = ODB_MovieAttribute::BuildMovieName(
        GFile("C:\\lib.new\\a.b.odb"), movie_of(path_of({"models"}), "a rock of granite.stl"));
    GString found("kept");
    std::string text;
    {
        const zmr::ShortMovieName first(full.text);
        const zmr::ShortMovieName second(full.text);
        text = first.text();

        EXPECT_LE(text.size(), 20u);
        EXPECT_NE(text.find(".odb+"), std::string::npos) << text;
        EXPECT_NE(text, second.text());
        ASSERT_TRUE(zmr::ShortMovieName::Find(text.c_str(), found));
        EXPECT_EQ(found, full);
        found = "kept";
        {
            const zmr::ShortMovieName of_itself(text.c_str());
            EXPECT_EQ(of_itself.text(), text);
        }
        EXPECT_TRUE(zmr::ShortMovieName::Find(text.c_str(), found));
        found = "kept";
    }
    EXPECT_FALSE(zmr::ShortMovieName::Find(text.c_str(), found));
    EXPECT_FALSE(zmr::ShortMovieName::Find(nullptr, found));
    EXPECT_EQ(found, "kept");
}

TEST(ShortMovieName, OfAnyOtherName_IsThatName)
{
    const GString without_extension =
        ODB_MovieAttribute::BuildMovieName(GFile("/lib.odb/a"), movie_of(GResourcePath(), "lamp"));
    for (const std::string& name : {std::string("film.avi"), std::string("a.odb+film"),
                                    std::string(), std::string(without_extension.text)})
        EXPECT_EQ(zmr::ShortMovieName(name.c_str()).text(), name);
}
