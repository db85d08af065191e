#include "foundation/NameMask.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

using zmr::LetterCase;

bool fits(std::string_view name, std::string_view mask)
{
    return zmr::matches_mask(name, mask, LetterCase::Matters);
}

/// The definition, exponential as it is.
bool fits_by_definition(std::string_view name, std::string_view mask)
{
    if (mask.empty())
        return name.empty();
    if (mask.front() == '*')
        return fits_by_definition(name, mask.substr(1)) ||
               (!name.empty() && fits_by_definition(name.substr(1), mask));
    return !name.empty() && (mask.front() == '?' || mask.front() == name.front()) &&
           fits_by_definition(name.substr(1), mask.substr(1));
}

}  // namespace

TEST(NameMask, Star_FitsAnyBytes)
{
    EXPECT_TRUE(fits("cube.lob", "*.lob"));
    EXPECT_TRUE(fits(".lob", "*.lob"));
    EXPECT_FALSE(fits("cube.lob2", "*.lob"));
    EXPECT_TRUE(fits("abcabc", "*abc"));
    EXPECT_TRUE(fits("", "*"));
    EXPECT_TRUE(fits("", "**"));
    EXPECT_FALSE(fits("", "?"));
    EXPECT_TRUE(fits("", ""));
    EXPECT_FALSE(fits("a", ""));
}

TEST(NameMask, QuestionMark_FitsOneCharacterOfUtf8)
{
    EXPECT_TRUE(fits("a", "?"));
    EXPECT_TRUE(fits("\xC3\xA4", "?"));
    EXPECT_TRUE(
        fits("\xE2\x82\xAC"
             "b",
             "??"));
    EXPECT_FALSE(
        fits("\xE2\x82\xAC"
             "b",
             "?"));
    EXPECT_TRUE(fits("x\xC3\xA4y", "*?y"));
}

TEST(NameMask, StarDotStar_FitsEveryName)
{
    EXPECT_TRUE(fits("name", "*.*"));
    EXPECT_TRUE(fits("name.x", "*.*"));
    EXPECT_TRUE(fits("..", "*.*"));
    EXPECT_FALSE(fits("name", "n*.*"));
}

TEST(NameMask, LetterCase_CountsWhereAskedFor)
{
    EXPECT_FALSE(fits("A.LOB", "*.lob"));
    EXPECT_TRUE(zmr::matches_mask("A.LOB", "a.*b", LetterCase::Ignored));
    EXPECT_FALSE(zmr::matches_mask("\xC3\x84", "\xC3\xA4", LetterCase::Ignored));
}

TEST(NameMask, ManyStars_TakeNoExponentialTime)
{
    const std::string name(20000, 'a');
    std::string mask;
    for (int number = 0; number < 100; ++number)
        mask += "*a";
    EXPECT_TRUE(fits(name, mask));
    EXPECT_FALSE(fits(name, mask + "b"));
}

TEST(NameMask, RandomMasks_AgreeWithTheDefinition)
{
    std::mt19937 random(7);
    const auto text = [&random](const char* letters, unsigned kinds, unsigned longest) {
        std::string made(random() % (longest + 1), ' ');
        for (char& byte : made)
            byte = letters[random() % kinds];
        return made;
    };
    for (int round = 0; round < 20000; ++round) {
        const std::string name = text("ab", 2, 8);
        const std::string mask = text("ab*?", 4, 7);
        ASSERT_EQ(fits(name, mask), fits_by_definition(name, mask)) << name << " by " << mask;
    }
}
