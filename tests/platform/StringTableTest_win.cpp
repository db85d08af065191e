#include "platform/StringTable.h"

#include "platform/CString.h"

#include <gtest/gtest.h>

// The texts lie in strings.rc, which is linked into this program.

TEST(StringTable, TextOfTheProgramsTable_IsUtf8)
{
    std::string text;

    EXPECT_TRUE(zmr::find_string(40001, text));
    EXPECT_EQ(text,
              "Gr\xC3\xB6\xC3\x9F"
              "e \xE2\x82\xAC");
}

TEST(StringTable, MissingNumber_TextUnchanged)
{
    std::string text = "before";

    EXPECT_FALSE(zmr::find_string(40002, text));
    EXPECT_EQ(text, "before");
}

TEST(StringTable, LoadString_UnderBothOfItsNames)
{
    CString text;

    EXPECT_TRUE(text.LoadString(40003));
    EXPECT_STREQ(text, "second");
    EXPECT_TRUE(text.LoadStringA(40003));
}
