#include "platform/ByteText.h"

#include <gtest/gtest.h>

namespace {

const std::string kEuro = "\xE2\x82\xAC";     // three bytes
const std::string kCat = "\xF0\x9F\x90\x88";  // four bytes
const std::string kUmlaut = "\xC3\xBC";       // two bytes
const std::string kMixed = "a" + kUmlaut + kEuro + kCat + "z";

}  // namespace

TEST(ByteText, CompareBytes_TakesBytesAsUnsignedAndPrefixesFirst)
{
    EXPECT_LT(zmr::compare_bytes("a", "b"), 0);
    EXPECT_LT(zmr::compare_bytes("z", kUmlaut), 0);
    EXPECT_LT(zmr::compare_bytes("ab", "abc"), 0);
    EXPECT_GT(zmr::compare_bytes("abc", "ab"), 0);
    EXPECT_EQ(zmr::compare_bytes("", ""), 0);
}

TEST(ByteText, CompareBytesWithACount_LooksAtThatManyOnly)
{
    EXPECT_EQ(zmr::compare_bytes("abcX", "abcY", 3), 0);
    EXPECT_LT(zmr::compare_bytes("abcX", "abcY", 4), 0);
    EXPECT_LT(zmr::compare_bytes("ab", "abc", 3), 0);
}

TEST(ByteText, CompareNoCase_FoldsAsciiLettersOnly)
{
    EXPECT_EQ(zmr::compare_no_case("HeLLo", "hEllO"), 0);
    EXPECT_NE(zmr::compare_no_case("\xC3\x9C", "\xC3\xBC"), 0);
    EXPECT_LT(zmr::compare_no_case("Ab", "aBc"), 0);
    // Between the capitals and the small letters lie signs that have no case.
    EXPECT_NE(zmr::compare_no_case("[", "{"), 0);
}

TEST(ByteText, ChangeOfCase_LeavesOtherCharactersAlone)
{
    EXPECT_EQ(zmr::lower_ascii("AZ[" + kEuro), "az[" + kEuro);
    EXPECT_EQ(zmr::upper_ascii("az{" + kEuro), "AZ{" + kEuro);
}

TEST(ByteText, CutLength_NeverCutsInsideACharacter)
{
    const std::size_t starts[] = {0, 1, 1, 3, 3, 3, 6, 6, 6, 6, 10, 11, 11};
    for (std::size_t limit = 0; limit < std::size(starts); ++limit)
        EXPECT_EQ(zmr::cut_length(kMixed, limit), starts[limit]) << limit;
}

TEST(ByteText, CutLengthOfBytesThatAreNoText_GivesUpAtMostThree)
{
    const std::string tails(20, '\x80');
    for (std::size_t limit = 0; limit < 20; ++limit)
        EXPECT_GE(zmr::cut_length(tails, limit) + 3, limit) << limit;
    EXPECT_EQ(zmr::cut_length("ab\xF0", 3), 3u);
}

TEST(ByteText, NextAndPreviousCharacter_WalkOverTheSamePlaces)
{
    const std::size_t places[] = {0, 1, 3, 6, 10, 11};
    for (std::size_t i = 0; i + 1 < std::size(places); ++i) {
        EXPECT_EQ(zmr::next_character(kMixed, places[i]), places[i + 1]);
        EXPECT_EQ(zmr::previous_character(kMixed, places[i + 1]), places[i]);
    }
    EXPECT_EQ(zmr::next_character(kMixed, 11), 11u);
    EXPECT_EQ(zmr::previous_character(kMixed, 0), 0u);
}

TEST(ByteText, BytesThatAreNoText_AreCharactersOfTheirOwn)
{
    const std::string broken = "\xE2\x82x\x80\x80";  // a character without its end, then tails

    EXPECT_EQ(zmr::next_character(broken, 0), 2u);
    EXPECT_EQ(zmr::next_character(broken, 2), 3u);
    EXPECT_EQ(zmr::next_character(broken, 3), 4u);
    EXPECT_EQ(zmr::previous_character(broken, 5), 4u);
}

TEST(ByteText, CopyCut_WritesWholeCharactersAndAZero)
{
    char target[6] = "?????";

    EXPECT_EQ(zmr::copy_cut(target, sizeof target, kMixed), 3u);
    EXPECT_EQ(std::string(target), "a" + kUmlaut);
    EXPECT_EQ(zmr::copy_cut(target, 1, kMixed), 0u);
    EXPECT_EQ(std::string(target), "");
    target[0] = '!';
    EXPECT_EQ(zmr::copy_cut(target, 0, kMixed), 0u);
    EXPECT_EQ(target[0], '!');
}
