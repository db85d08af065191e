#include "settings/IniEncoding.h"

#include <gtest/gtest.h>

#include <string>

using zmr::IniEncoding;
using namespace std::string_literals;

namespace {

const std::string kLittle =
    "\xFF\xFE"s
    "a\0"s
    "\xE4\0"s
    "\x3D\xD8\x00\xDE"s;
const std::string kBig =
    "\xFE\xFF"s
    "\0a"s
    "\0\xE4"s
    "\xD8\x3D\xDE\x00"s;
const std::string kUtf8 = "a\xC3\xA4\xF0\x9F\x98\x80";

std::string decoded(const std::string& bytes, bool expected_whole)
{
    bool is_whole = !expected_whole;
    const std::string text = zmr::decode_ini(bytes, is_whole);
    EXPECT_EQ(is_whole, expected_whole);
    return text;
}

}  // namespace

TEST(IniEncoding, Mark_TellsUtf16)
{
    EXPECT_EQ(zmr::ini_encoding(kLittle), IniEncoding::Utf16Little);
    EXPECT_EQ(zmr::ini_encoding(kBig), IniEncoding::Utf16Big);
    EXPECT_EQ(zmr::ini_encoding(kUtf8), IniEncoding::Bytes);
    EXPECT_EQ(zmr::ini_encoding(""), IniEncoding::Bytes);
}

TEST(IniEncoding, Utf16_BecomesUtf8AndComesBack)
{
    EXPECT_EQ(decoded(kLittle, true), kUtf8);
    EXPECT_EQ(decoded(kBig, true), kUtf8);
    EXPECT_EQ(zmr::encode_ini(kUtf8, IniEncoding::Utf16Little), kLittle);
    EXPECT_EQ(zmr::encode_ini(kUtf8, IniEncoding::Utf16Big), kBig);
}

TEST(IniEncoding, OtherBytes_StayAsTheyAre)
{
    EXPECT_EQ(decoded("\xFF\x80 \xEF\xBB\xBF", true), "\xFF\x80 \xEF\xBB\xBF");
    EXPECT_EQ(zmr::encode_ini("\xFF\x80", IniEncoding::Bytes), "\xFF\x80");
}

TEST(IniEncoding, HalfPairsAndHalfLetters_AreReplacedAndTold)
{
    EXPECT_EQ(decoded("\xFF\xFE"s
                      "\x3D\xD8"s
                      "a\0"s,
                      false),
              "\xEF\xBF\xBD"
              "a");
    EXPECT_EQ(decoded("\xFF\xFE"s
                      "\x00\xDE"s,
                      false),
              "\xEF\xBF\xBD");
    EXPECT_EQ(decoded("\xFF\xFE"s
                      "a\0"s
                      "\x3D\xD8"s,
                      false),
              "a\xEF\xBF\xBD");
    EXPECT_EQ(decoded("\xFF\xFE"s
                      "a\0b"s,
                      false),
              "a");
}

TEST(IniEncoding, TextThatIsNotUtf8_CannotBecomeUtf16)
{
    EXPECT_EQ(zmr::encode_ini("a\xFF", IniEncoding::Utf16Little), std::nullopt);
}
