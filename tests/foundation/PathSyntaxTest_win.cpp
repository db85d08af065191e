#include "foundation/GFile.h"
#include "foundation/PathSyntax.h"

#include <gtest/gtest.h>

#include <string>

TEST(PathSyntaxWin, Roots_AreDrivesAndServers)
{
    EXPECT_EQ(zmr::root_length("C:\\a"), 3u);
    EXPECT_EQ(zmr::root_length("c:/"), 3u);
    EXPECT_EQ(zmr::root_length("C:a"), 2u);
    EXPECT_EQ(zmr::root_length("1:a"), 0u);
    EXPECT_EQ(zmr::root_length("\\a"), 1u);
    EXPECT_EQ(zmr::root_length("\\\\host\\share\\a"), 13u);
    EXPECT_EQ(zmr::root_length("//host/share"), 12u);
    EXPECT_EQ(zmr::root_length("\\\\host"), 6u);
    EXPECT_EQ(zmr::root_length("\\\\?\\C:\\a"), 7u);
    EXPECT_EQ(zmr::root_length(""), 0u);
}

TEST(PathSyntaxWin, Parts_KeepTheRoot)
{
    EXPECT_STREQ(GFile("C:\\a").get_directory(), "C:\\");
    EXPECT_STREQ(GFile("C:a").get_directory(), "C:");
    EXPECT_STREQ(GFile("C:a").get_name(), "a");
    EXPECT_STREQ(GFile("\\\\host\\share\\a").get_directory(), "\\\\host\\share\\");
    EXPECT_FALSE(GFile("C:a").isRelativePath());
    GFile drive("C:");
    drive.add_name("a");
    EXPECT_STREQ(drive, "C:a");
}

TEST(PathSyntaxWin, Compare_IgnoresTheCaseOfAsciiLetters)
{
    EXPECT_EQ(GFile("C:/Lib/A.odb").compare("c:\\LIB\\a.ODB"), 0);
    EXPECT_NE(GFile("\xC3\x84").compare("\xC3\xA4"), 0);
}

TEST(PathSyntaxWin, Valid_RefusesForbiddenCharacters)
{
    for (const char* path : {"a|b", "a<b", "a>b", "a\"b", "aa:b", "C:\\a:b", "a\x01", "\xFF\xFE"})
        EXPECT_FALSE(GFile(path).valid()) << path;
    for (const char* path : {"C:\\a*.?", "C:a", "\\\\host\\share\\a", "\\\\?\\C:\\a"})
        EXPECT_TRUE(GFile(path).valid()) << path;
}

TEST(PathSyntaxWin, Valid_DeviceNamesAndDroppedEnds_AreNoFiles)
{
    for (const char* path : {"CON", "nul", "Aux.lob", "dir\\com1", "LPT9.txt", "PRN .x", "CONIN$",
                             "name.", "name ", "dir.\\name", "dir \\name", "..."})
        EXPECT_FALSE(GFile(path).valid()) << path;
    for (const char* path : {"CONSOLE", "nul1", "com", "com0", "com10", "lpt", "x.con", ".", "..",
                             "..\\name", ".\\name", ".hidden", " name", "dir\\"})
        EXPECT_TRUE(GFile(path).valid()) << path;
}

TEST(PathSyntaxWin, Expand_TakesDrivesAndServers)
{
    GFile file("C:/a/../b/./c/");
    file.expand();
    EXPECT_STREQ(file, "C:\\b\\c");
    file = "//host/share/../a";
    file.expand();
    EXPECT_STREQ(file, "\\\\host\\share\\a");
    file = "\\a";
    file.expand();
    EXPECT_EQ(file.text[1], ':');
    EXPECT_STREQ(file.text + 2, "\\a");
}

TEST(PathSyntaxWin, Expand_ADriveMeansItsCurrentDirectory)
{
    GFile here(".");
    here.expand();
    GFile drive(std::string(here.text, 2).c_str());
    drive.expand();
    EXPECT_EQ(drive.compare(here), 0);
}

TEST(PathSyntaxWin, Shrink_IgnoresTheCase)
{
    GFile file("C:\\Lib\\a.lob");
    file.shrink("c:/lib");
    EXPECT_STREQ(file, "a.lob");
    file = "C:\\a.lob";
    file.shrink("C:\\");
    EXPECT_STREQ(file, "a.lob");
    file = "D:\\a.lob";
    file.shrink("C:\\");
    EXPECT_STREQ(file, "D:\\a.lob");
}
