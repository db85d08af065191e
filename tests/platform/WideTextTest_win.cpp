#include "platform/WideText.h"

#include <gtest/gtest.h>

TEST(WideText, ThereAndBack_SameText)
{
    const std::string text = "a\xC3\xBC\xE2\x82\xAC\xF0\x9F\x90\x88z";
    std::wstring wide;

    ASSERT_TRUE(zmr::to_wide(text, wide));
    EXPECT_EQ(wide, L"a\u00FC\u20AC\xD83D\xDC08z");
    EXPECT_EQ(zmr::to_utf8(wide), text);
}

TEST(WideText, BytesThatAreNotUtf8_AreRefusedAndNothingChanges)
{
    for (const std::string text :
         {"\x80", "\xC3", "\xED\xA0\x80", "\xF8\x88\x80\x80\x80", "\xFF"}) {
        std::wstring wide = L"before";
        EXPECT_FALSE(zmr::to_wide(text, wide)) << text;
        EXPECT_EQ(wide, L"before");
    }
}

TEST(WideText, ZeroByte_IsRefused)
{
    std::wstring wide;

    EXPECT_FALSE(zmr::to_wide(std::string_view("a\0b", 3), wide));
}

TEST(WideText, HalfPairs_BecomeTheReplacementCharacter)
{
    const wchar_t lead = 0xD83D;
    const wchar_t trail = 0xDC08;

    EXPECT_EQ(zmr::to_utf8(std::wstring{L'a', lead, L'b'}),
              "a\xEF\xBF\xBD"
              "b");
    EXPECT_EQ(zmr::to_utf8(std::wstring{trail, L'b'}),
              "\xEF\xBF\xBD"
              "b");
    EXPECT_EQ(zmr::to_utf8(std::wstring{lead}), "\xEF\xBF\xBD");
}

TEST(WideText, LongPath_IsMadeAbsoluteAndMarked)
{
    const std::string name = "C:/some folder/" + std::string(300, 'x') + "/../file.bin";
    std::wstring wide;

    ASSERT_TRUE(zmr::to_wide_path(name, wide));
    EXPECT_EQ(wide, L"\\\\?\\C:\\some folder\\file.bin");
}

TEST(WideText, ShortPath_StaysAsItIs)
{
    std::wstring wide;

    ASSERT_TRUE(zmr::to_wide_path("folder/file.bin", wide));
    EXPECT_EQ(wide, L"folder/file.bin");
}
