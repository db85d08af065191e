#include "foundation/mpstream.h"
#include "store/RegularExpression.h"

#include <gtest/gtest.h>

#include <string>

TEST(RegularExpression, MatchesTheWholeTextAndCaseCounts)
{
    const RegularExpression expression("la.p[0-9]*");

    EXPECT_TRUE(expression == "lamp12");
    EXPECT_TRUE(expression == "lamp");
    EXPECT_FALSE(expression == "a lamp");
    EXPECT_FALSE(expression == "Lamp");
    EXPECT_FALSE(expression == nullptr);
}

TEST(RegularExpression, Empty_MatchesOnlyTheEmptyText)
{
    EXPECT_TRUE(RegularExpression() == "");
    EXPECT_FALSE(RegularExpression() == "x");
    EXPECT_TRUE(RegularExpression(nullptr) == "");
}

TEST(RegularExpression, Malformed_MatchesNothingAndDoesNotThrow)
{
    for (const char* pattern : {"(", "[a", "*", "a{2,1}", "\\"}) {
        const RegularExpression expression(pattern);
        EXPECT_FALSE(expression.valid()) << pattern;
        EXPECT_FALSE(expression == pattern) << pattern;
        EXPECT_FALSE(expression == "") << pattern;
    }
}

TEST(RegularExpression, TooLongOrTooDeep_MatchesNothing)
{
    EXPECT_FALSE(RegularExpression(std::string(1'001, 'a').c_str()).valid());
    EXPECT_TRUE(RegularExpression(std::string(1'000, 'a').c_str()).valid());
    EXPECT_FALSE(
        RegularExpression((std::string(400, '(') + std::string(400, ')')).c_str()).valid());
}

TEST(RegularExpression, NumbersThatNoIntHolds_MatchNothing)
{
    for (const char* pattern :
         {R"(a\33333333333333333333)", "a{33333333333333333333}", "a{1,33333333333333333333}"})
        EXPECT_FALSE(RegularExpression(pattern).valid()) << pattern;
    EXPECT_TRUE(RegularExpression("a{2}12345678901{2}") == "aa123456789011");
    EXPECT_TRUE(RegularExpression(R"(\d12345678901\{12345678901)") == "712345678901{12345678901");
}

TEST(RegularExpression, NestedRepetition_EndsInLinearTime)
{
    const RegularExpression expression("(a+)+b");

    EXPECT_FALSE(expression == std::string(5'000, 'a').c_str());
}

TEST(RegularExpression, LongText_DoesNotExhaustTheStack)
{
    const RegularExpression expression("(a|b)*c");

    EXPECT_FALSE(expression == std::string(60'000, 'a').c_str());
    EXPECT_TRUE(expression == (std::string(60'000, 'a') + "c").c_str());
    EXPECT_FALSE(expression == std::string(70'000, 'c').c_str());
}

TEST(RegularExpression, Stream_KeepsThePatternAlsoOfAMalformedOne)
{
    for (const char* pattern : {"a+", "("}) {
        ompstream out;
        out << RegularExpression(pattern);
        impstream in(out.bytes());
        RegularExpression back;
        in >> back;
        EXPECT_EQ(back.pattern(), pattern);
        EXPECT_EQ(back == "aa", std::string(pattern) == "a+");
    }
}
