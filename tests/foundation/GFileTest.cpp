#include "foundation/GFile.h"

#include "foundation/PathSyntax.h"
#include "foundation/mpstream.h"

#include "tests/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

// What holds for paths in both lanes; what differs is in PathSyntaxTest_<lane>.cpp.

namespace {

const std::string kSlash(1, zmr::kSeparator);

void make_file(const std::string& name)
{
    const std::u8string text(name.begin(), name.end());
    std::ofstream(std::filesystem::path(text)) << "content";
}

}  // namespace

TEST(GFile, Parts_OfAPathWithBothSlashes)
{
    const GFile file("a/b\\c.txt");

    EXPECT_STREQ(file.get_directory(), "a/b");
    EXPECT_STREQ(file.get_name(), "c.txt");
    EXPECT_STREQ(file.get_extension(), "txt");
}

TEST(GFile, Parts_OfANameAlone)
{
    const GFile file("c.txt");

    EXPECT_STREQ(file.get_directory(), "");
    EXPECT_STREQ(file.get_name(), "c.txt");
}

TEST(GFile, Parts_BehindATrailingSlashTheNameIsEmpty)
{
    const GFile file("a/b/");

    EXPECT_STREQ(file.get_directory(), "a/b");
    EXPECT_STREQ(file.get_name(), "");
    EXPECT_STREQ(GFile("a//b").get_directory(), "a");
    EXPECT_STREQ(GFile("a//b").get_name(), "b");
}

TEST(GFile, Parts_ARootKeepsItsSeparator)
{
    EXPECT_STREQ(GFile("/a").get_directory(), "/");
    EXPECT_STREQ(GFile("\\a").get_directory(), "\\");
    EXPECT_STREQ(GFile("/").get_directory(), "/");
    EXPECT_STREQ(GFile("/").get_name(), "");
    EXPECT_STREQ(GFile("").get_directory(), "");
    EXPECT_STREQ(GFile("").get_name(), "");
}

TEST(GFile, JustDirectoryAndJustName_ChangeThePath)
{
    GFile file("a/b/c");
    file.just_directory();
    EXPECT_STREQ(file, "a/b");
    file.just_name();
    EXPECT_STREQ(file, "b");
    file.just_directory();
    EXPECT_STREQ(file, "");
}

TEST(GFile, AddName_PutsOneSeparator)
{
    GFile file;
    file.add_name("a");
    EXPECT_STREQ(file, "a");
    file.add_name("b");
    EXPECT_EQ(std::string(file), "a" + kSlash + "b");
    file = "x/";
    file.add_name("y");
    EXPECT_STREQ(file, "x/y");
    file.add_name("/z");
    EXPECT_STREQ(file, "x/y/z");
    file.add_name("");
    file.add_name(nullptr);
    EXPECT_STREQ(file, "x/y/z");
    file = "/";
    file.add_name("a");
    EXPECT_STREQ(file, "/a");
    file = "a";
    file.add_name(file.text);
    EXPECT_EQ(std::string(file), "a" + kSlash + "a");
}

TEST(GFile, ReplaceName_KeepsTheDirectory)
{
    GFile file("a/b/c.txt");
    file.replace_name("*.lob");
    EXPECT_STREQ(file, "a/b/*.lob");
    file.replace_name("");
    EXPECT_STREQ(file, "a/b/");
    file.replace_name("d");
    EXPECT_STREQ(file, "a/b/d");
    file = "c";
    file.replace_name("d");
    EXPECT_STREQ(file, "d");
    file = "/";
    file.replace_name("d");
    EXPECT_STREQ(file, "/d");
    file = "a/b";
    file.replace_name(file.text);
    EXPECT_STREQ(file, "a/a/b");
    file.replace_name(nullptr);
    EXPECT_STREQ(file, "a/a/");
}

TEST(GFile, ReplaceExtension_WithAndWithoutADot)
{
    GFile file("a.b/c.tar.gz");
    file.replace_extension("zip");
    EXPECT_STREQ(file, "a.b/c.tar.zip");
    file.replace_extension(".chm");
    EXPECT_STREQ(file, "a.b/c.tar.chm");
    file.replace_extension("");
    EXPECT_STREQ(file, "a.b/c.tar");
    file.replace_extension(nullptr);
    EXPECT_STREQ(file, "a.b/c");
    file.replace_extension("x");
    EXPECT_STREQ(file, "a.b/c.x");
}

TEST(GFile, ReplaceExtension_ADotInFrontIsPartOfTheName)
{
    GFile file("dir/.profile");
    EXPECT_STREQ(file.get_extension(), "");
    file.replace_extension("bak");
    EXPECT_STREQ(file, "dir/.profile.bak");
    file = "..";
    file.replace_extension("x");
    EXPECT_STREQ(file, "...x");
    file = "dir/";
    file.replace_extension("x");
    EXPECT_STREQ(file, "dir/");
    EXPECT_STREQ(GFile("..a").get_extension(), "");
    EXPECT_STREQ(GFile("..a.b").get_extension(), "b");
    file = "name.";
    EXPECT_STREQ(file.get_extension(), "");
    file.replace_extension("");
    EXPECT_STREQ(file, "name");
}

TEST(GFile, IsMask_LooksAtTheLastNameOnly)
{
    EXPECT_TRUE(GFile("a/*.lob").isMask());
    EXPECT_TRUE(GFile("?").isMask());
    EXPECT_FALSE(GFile("a*/b").isMask());
    EXPECT_FALSE(GFile("").isMask());
}

TEST(GFile, IsRelativePath_HasNoRoot)
{
    EXPECT_TRUE(GFile("a/b").isRelativePath());
    EXPECT_TRUE(GFile("../a").isRelativePath());
    EXPECT_TRUE(GFile("").isRelativePath());
    EXPECT_FALSE(GFile("/a").isRelativePath());
    EXPECT_FALSE(GFile("\\a").isRelativePath());
}

TEST(GFile, Exists_ForFilesAndDirectories)
{
    const TemporaryFolder folder;
    const std::string name = folder.file("\xC3\xA4 file \xE2\x82\xAC.txt");
    make_file(name);

    EXPECT_TRUE(GFile(name.c_str()).exists());
    EXPECT_FALSE(GFile(name.c_str()).isDirectory());
    EXPECT_TRUE(GFile(folder.file("").c_str()).exists());
    EXPECT_TRUE(GFile(folder.file("").c_str()).isDirectory());
    EXPECT_TRUE(GFile((folder.file("") + "\\").c_str()).isDirectory());
    EXPECT_FALSE(GFile(folder.file("missing").c_str()).exists());
    EXPECT_FALSE(GFile(folder.file("missing").c_str()).isDirectory());
    EXPECT_FALSE(GFile("").exists());
}

TEST(GFile, Exists_TakesBackslashesToo)
{
    const TemporaryFolder folder;
    make_file(folder.file("x"));
    std::string name = folder.file("x");
    name[name.rfind('/')] = '\\';

    EXPECT_TRUE(GFile(name.c_str()).exists());
}

TEST(GFile, ZeroByteInside_NamesNoFile)
{
    const TemporaryFolder folder;
    make_file(folder.file("x"));
    GFile file(folder.file("x").c_str());
    file += '\0';
    file += "y";

    EXPECT_FALSE(file.exists());
    EXPECT_FALSE(file.isDirectory());
    EXPECT_FALSE(file.valid());
}

TEST(GFile, Valid_RefusesEmptyAndTooLongNames)
{
    EXPECT_FALSE(GFile("").valid());
    EXPECT_TRUE(GFile("a").valid());
    EXPECT_TRUE(GFile("*.lob").valid());
    EXPECT_TRUE(GFile("\xC3\xA4/b").valid());
    EXPECT_TRUE(GFile(std::string(255, 'n').c_str()).valid());
    EXPECT_FALSE(GFile(std::string(256, 'n').c_str()).valid());
    std::string deep;
    while (deep.size() < 40000)
        deep += "/directory";
    EXPECT_FALSE(GFile(deep.c_str()).valid());
}

TEST(GFile, Compare_TakesSeparatorsAsEqual)
{
    EXPECT_EQ(GFile("a/b").compare("a\\b"), 0);
    EXPECT_LT(GFile("a").compare("b"), 0);
    EXPECT_GT(GFile("b").compare("a"), 0);
    EXPECT_LT(GFile("a").compare("a/b"), 0);
    EXPECT_EQ(GFile("").compare(nullptr), 0);
    EXPECT_GT(GFile("\xC3\xA4").compare("z"), 0);
}

TEST(GFile, Expand_MakesAFullPath)
{
    GFile file("name");
    file.expand();
    EXPECT_FALSE(file.isRelativePath());
    EXPECT_STREQ(file.get_name(), "name");
    GFile here(".");
    here.expand();
    EXPECT_TRUE(here.isDirectory());
    EXPECT_EQ(GFile(file.get_directory()).compare(here), 0);
    GFile again(file);
    again.expand();
    EXPECT_EQ(again.compare(file), 0);
}

TEST(GFile, Expand_ResolvesDotsAsText)
{
    GFile expected("missing");
    expected.expand();
    for (const char* path : {"missing/", "./missing", "missing/.", "x/../missing", "x//../missing",
                             "x\\y\\..\\..\\missing", "missing/y/.."}) {
        GFile file(path);
        file.expand();
        EXPECT_EQ(file.compare(expected), 0) << path << " became " << file.text;
    }
}

TEST(GFile, Expand_DotsAtTheRootStayThere)
{
    GFile root("/");
    root.expand();
    GFile above("/../../..");
    above.expand();
    EXPECT_EQ(above.compare(root), 0);
    EXPECT_EQ(above.get_directory().compare(above), 0);
}

TEST(GFile, Expand_LeavesTheEmptyPath)
{
    GFile file;
    file.expand();
    EXPECT_STREQ(file, "");
}

TEST(GFile, Shrink_BecomesRelativeBelowTheDirectory)
{
    GFile file("/lib/objects/cube.lob");
    file.shrink("/lib");
    EXPECT_EQ(file.compare("objects/cube.lob"), 0);
    file = "/lib/objects/cube.lob";
    file.shrink("/lib/objects/");
    EXPECT_STREQ(file, "cube.lob");
    file = "/lib/x/../cube.lob";
    file.shrink("\\lib\\.");
    EXPECT_STREQ(file, "cube.lob");
    file = "/cube.lob";
    file.shrink("/");
    EXPECT_STREQ(file, "cube.lob");
    file = "sub/cube.lob";
    file.shrink("sub");
    EXPECT_STREQ(file, "cube.lob");
}

TEST(GFile, Shrink_StaysElsewhere)
{
    for (const char* directory : {"/lib/objects", "/li", "/library", "/lib/cube.lob", "relative"}) {
        GFile file("/lib/cube.lob");
        file.shrink(directory);
        EXPECT_STREQ(file, "/lib/cube.lob") << directory;
    }
    GFile file("/lib/cube.lob");
    file.shrink(nullptr);
    EXPECT_STREQ(file, "/lib/cube.lob");
    file.empty();
    file.shrink("/lib");
    EXPECT_STREQ(file, "");
    file = "/";
    file.shrink("/");
    EXPECT_STREQ(file, "/");
}

TEST(GFile, Shrink_ByTheEmptyDirectoryMeansTheCurrentOne)
{
    GFile file("cube.lob");
    file.expand();
    file.shrink("");
    EXPECT_STREQ(file, "cube.lob");
}

TEST(GFile, ShrunkPath_ExpandsAgainFromItsDirectory)
{
    GFile directory("lib/objects");
    directory.expand();
    GFile file(directory);
    file.add_name("deep");
    file.add_name("cube.lob");
    const GFile full(file);
    file.shrink(directory);
    EXPECT_TRUE(file.isRelativePath());
    GFile joined(directory);
    joined.add_name(file);
    EXPECT_EQ(joined.compare(full), 0);
}

TEST(GFile, Streams_KeepThePath)
{
    ompstream out;
    out << GFile("a\\b/c");
    impstream in(out.bytes());
    GFile file;
    in >> file;

    EXPECT_STREQ(file, "a\\b/c");
}

TEST(PathSyntax, NameStart_AndDirectoryAgreeWithJoining)
{
    for (const char* path : {"a", "a/b", "a//b", "/a", "/", "//a", "a/", "../..", "/a/b/c.d"}) {
        const std::string_view text(path);
        const std::size_t start = zmr::name_start(text);
        const std::size_t length = zmr::directory_length(text);
        EXPECT_LE(length, start) << path;
        for (std::size_t place = length; place < start; ++place)
            EXPECT_TRUE(zmr::is_separator(text[place])) << path;
    }
}
