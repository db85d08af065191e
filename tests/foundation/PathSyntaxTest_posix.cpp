#include "foundation/GFile.h"

#include <gtest/gtest.h>

TEST(PathSyntaxPosix, Drives_AreNames)
{
    EXPECT_TRUE(GFile("C:\\a").isRelativePath());
    EXPECT_STREQ(GFile("C:a").get_name(), "C:a");
    EXPECT_TRUE(GFile("C:a|b").valid());
}

TEST(PathSyntaxPosix, Compare_MindsTheCase)
{
    EXPECT_NE(GFile("A").compare("a"), 0);
}

TEST(PathSyntaxPosix, Expand_WritesSlashes)
{
    GFile file("\\a\\b/c");
    file.expand();
    EXPECT_STREQ(file, "/a/b/c");
    file = "//a";
    file.expand();
    EXPECT_STREQ(file, "/a");
}

TEST(PathSyntaxPosix, Valid_TakesWhatIsNoUtf8)
{
    EXPECT_TRUE(GFile("\xFF\xFE").valid());
}
