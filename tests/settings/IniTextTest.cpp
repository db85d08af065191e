#include "settings/IniText.h"

#include "tests/store/Random.h"

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <optional>
#include <string>
#include <utility>

using std::nullopt;
using zmr::IniText;

namespace {

std::string after_set(const std::string& before, const char* section, const char* entry,
                      const char* value)
{
    IniText text(before);
    EXPECT_TRUE(text.set(section, entry, value));
    return text.bytes();
}

std::string without_entry(const std::string& before, const char* section, const char* entry)
{
    IniText text(before);
    text.remove_entry(section, entry);
    return text.bytes();
}

std::string without_section(const std::string& before, const char* section)
{
    IniText text(before);
    text.remove_section(section);
    return text.bytes();
}

}  // namespace

TEST(IniText, Entry_IsFoundInItsSectionOnly)
{
    const IniText text("[one]\r\nkey=1\r\n[two]\r\nother=2\r\n");

    EXPECT_EQ(text.find("one", "key"), "1");
    EXPECT_EQ(text.find("two", "other"), "2");
    EXPECT_EQ(text.find("two", "key"), nullopt);
    EXPECT_EQ(text.find("three", "key"), nullopt);
}

TEST(IniText, EmptyText_HasNothing)
{
    const IniText text("");

    EXPECT_EQ(text.find("one", "key"), nullopt);
    EXPECT_EQ(text.find("", ""), nullopt);
}

TEST(IniText, Names_AreFoundInAnyCaseOfAsciiLetters)
{
    const IniText text("[One \xC3\xA4]\nKey=1\n");

    EXPECT_EQ(text.find("oNE \xC3\xA4", "kEY"), "1");
    EXPECT_EQ(text.find("one \xC3\x84", "key"), nullopt);
}

TEST(IniText, BlanksAroundNamesAndValues_DoNotCount)
{
    const IniText text("  [ one ]  \n \t key \t=\t value with blanks \t\n");

    EXPECT_EQ(text.find("one", "key"), "value with blanks");
    EXPECT_EQ(text.find(" one\t", " key "), "value with blanks");
}

TEST(IniText, OnePairOfQuotes_IsTakenOff)
{
    const IniText text(
        "[s]\na=\"x y\"\nb='x'\nc=\" x \"\nd=\"\"x\"\"\ne=\"\nf=\"x\ng='x\"\nh=\"\"\n");

    EXPECT_EQ(text.find("s", "a"), "x y");
    EXPECT_EQ(text.find("s", "b"), "x");
    EXPECT_EQ(text.find("s", "c"), " x ");
    EXPECT_EQ(text.find("s", "d"), "\"x\"");
    EXPECT_EQ(text.find("s", "e"), "\"");
    EXPECT_EQ(text.find("s", "f"), "\"x");
    EXPECT_EQ(text.find("s", "g"), "'x\"");
    EXPECT_EQ(text.find("s", "h"), "");
}

TEST(IniText, EqualEntries_TheFirstCounts)
{
    const IniText text("[s]\nkey=1\nKEY=2\n");

    EXPECT_EQ(text.find("s", "key"), "1");
}

TEST(IniText, EqualSections_TheFirstCountsAndHidesTheOthers)
{
    const IniText text("[s]\nkey=1\n[S]\nkey=2\nother=3\n");

    EXPECT_EQ(text.find("s", "key"), "1");
    EXPECT_EQ(text.find("s", "other"), nullopt);
}

TEST(IniText, LineWithoutEquals_HasNoValue)
{
    const IniText text("[s]\nkey\nempty=\n");

    EXPECT_EQ(text.find("s", "key"), nullopt);
    EXPECT_EQ(text.find("s", "empty"), "");
}

TEST(IniText, Value_MayHoldEqualsSemicolonsAndBrackets)
{
    const IniText text("[s]\na=b=c\nd=e ; f\ng=[h]\n");

    EXPECT_EQ(text.find("s", "a"), "b=c");
    EXPECT_EQ(text.find("s", "d"), "e ; f");
    EXPECT_EQ(text.find("s", "g"), "[h]");
}

TEST(IniText, Comments_AreNoEntries)
{
    const IniText text("[s]\n;key=1\n  ; key=2\n#key=3\nkey=4\n");

    EXPECT_EQ(text.find("s", "key"), "4");
    EXPECT_EQ(text.find("s", ";key"), nullopt);
    EXPECT_EQ(text.find("s", "#key"), "3");
}

TEST(IniText, SectionHead_EndsAtItsLastBracket)
{
    const IniText text("[one]two]\nkey=1\n[three] more\nkey=2\n[four\nkey=3\n");

    EXPECT_EQ(text.find("one]two", "key"), "1");
    EXPECT_EQ(text.find("three", "key"), "2");
    EXPECT_EQ(text.find("four", "key"), nullopt);
}

TEST(IniText, LinesBeforeTheFirstSection_BelongToTheEmptyOne)
{
    const IniText text("key=1\n[s]\nkey=2\n");

    EXPECT_EQ(text.find("", "key"), "1");
}

TEST(IniText, AnyLineEnd_EndsLines)
{
    const IniText text("[s]\ra=1\r\nb=2\n\nc=3\r\r\nd=4");

    EXPECT_EQ(text.find("s", "a"), "1");
    EXPECT_EQ(text.find("s", "b"), "2");
    EXPECT_EQ(text.find("s", "c"), "3");
    EXPECT_EQ(text.find("s", "d"), "4");
}

TEST(IniText, Utf8Mark_IsNoPartOfTheFirstLine)
{
    IniText text("\xEF\xBB\xBF[s]\nkey=1\n");

    EXPECT_EQ(text.find("s", "key"), "1");
    EXPECT_TRUE(text.set("", "top", "2"));
    EXPECT_EQ(text.bytes(), "\xEF\xBB\xBFtop=2\n[s]\nkey=1\n");
}

TEST(IniText, Set_ReplacesTheValueAndKeepsAllElse)
{
    EXPECT_EQ(after_set("; c\r\n\r\n[s]\r\n\r\n  key = old  \r\n;end", "S", "KEY", "new"),
              "; c\r\n\r\n[s]\r\n\r\n  key = new\r\n;end");
}

TEST(IniText, SetOfTheSameValue_ChangesNothing)
{
    const std::string before = "[s]\r\n key =  value \r\n";

    EXPECT_EQ(after_set(before, "s", "key", "value"), before);
    EXPECT_EQ(after_set(before, "s", "key", " value "), before);
}

TEST(IniText, SetOfANewEntry_StandsBehindTheLastOneOfItsSection)
{
    EXPECT_EQ(after_set("[s]\na=1\n\n; about t\n[t]\nb=2\n", "s", "c", "3"),
              "[s]\na=1\nc=3\n\n; about t\n[t]\nb=2\n");
    EXPECT_EQ(after_set("[s]\n[t]\nb=2\n", "s", "c", "3"), "[s]\nc=3\n[t]\nb=2\n");
}

TEST(IniText, SetOfANewSection_StandsAtTheEnd)
{
    EXPECT_EQ(after_set("[s]\na=1\n", "t", "b", "2"), "[s]\na=1\n[t]\nb=2\n");
    EXPECT_EQ(after_set("", "t", "b", "2"), "[t]\r\nb=2\r\n");
}

TEST(IniText, SetBehindAnOpenLastLine_EndsItFirst)
{
    EXPECT_EQ(after_set("[s]\r\na=1", "s", "b", "2"), "[s]\r\na=1\r\nb=2\r\n");
    EXPECT_EQ(after_set("[s]\na=1", "t", "b", "2"), "[s]\na=1\n[t]\nb=2\n");
    EXPECT_EQ(after_set("[s]\na=1", "s", "a", "2"), "[s]\na=2");
}

TEST(IniText, NewLines_EndAsTheFirstOneDoes)
{
    EXPECT_EQ(after_set("[s]\ra=1\r", "s", "b", "2"), "[s]\ra=1\rb=2\r");
    EXPECT_EQ(after_set("[s]", "s", "b", "2"), "[s]\r\nb=2\r\n");
}

TEST(IniText, SetOfALineWithoutEquals_GivesItOne)
{
    EXPECT_EQ(after_set("[s]\nkey  \n", "s", "key", "1"), "[s]\nkey=1\n");
}

TEST(IniText, SetOfEqualEntries_ChangesTheFirst)
{
    EXPECT_EQ(after_set("[s]\nk=1\nk=2\n[s]\nk=3\n", "s", "k", "9"), "[s]\nk=9\nk=2\n[s]\nk=3\n");
    EXPECT_EQ(after_set("[s]\nk=1\n[s]\nl=3\n", "s", "l", "9"), "[s]\nk=1\nl=9\n[s]\nl=3\n");
}

TEST(IniText, NamesAndValuesThatNoLineCanHold_AreRefused)
{
    const std::string before = "[s]\nkey=1\n";
    IniText text(before);

    EXPECT_FALSE(text.set("s", "key", "a\nb=c"));
    EXPECT_FALSE(text.set("s", "key", "a\r"));
    EXPECT_FALSE(text.set("s\n", "key", "1"));
    EXPECT_FALSE(text.set("s", "key\n", "1"));
    EXPECT_FALSE(text.set("s", "key=more", "1"));
    EXPECT_FALSE(text.set("s", ";key", "1"));
    EXPECT_FALSE(text.set("s", " [key]", "1"));
    EXPECT_EQ(text.bytes(), before);
}

TEST(IniText, EmptyNames_AreNamesToo)
{
    EXPECT_EQ(after_set("[s]\n", "s", "", "1"), "[s]\n=1\n");
    EXPECT_EQ(after_set("[s]\n", "", "key", "1"), "key=1\n[s]\n");
}

TEST(IniText, RemoveEntry_TakesItsLineOnly)
{
    EXPECT_EQ(without_entry("[s]\r\n; c\r\na=1\r\n\r\nb=2\r\n", "s", "A"),
              "[s]\r\n; c\r\n\r\nb=2\r\n");
    EXPECT_EQ(without_entry("[s]\na=1", "s", "a"), "[s]\n");
    EXPECT_EQ(without_entry("[s]\nflag\n", "s", "flag"), "[s]\n");
}

TEST(IniText, RemoveEntryThatIsMissing_ChangesNothing)
{
    EXPECT_EQ(without_entry("[s]\na=1\n", "s", "b"), "[s]\na=1\n");
    EXPECT_EQ(without_entry("[s]\na=1\n", "t", "a"), "[s]\na=1\n");
}

TEST(IniText, RemoveSection_TakesHeadAndLines)
{
    EXPECT_EQ(without_section("[r]\nx=1\n[s]\na=1\n; c\n\nb=2\n[t]\nb=2\n", "S"),
              "[r]\nx=1\n[t]\nb=2\n");
    EXPECT_EQ(without_section("[s]\na=1", "s"), "");
    EXPECT_EQ(without_section("[s]\na=1\n", "t"), "[s]\na=1\n");
}

TEST(IniText, RemoveSection_LeavesTheCommentsRightAboveTheNextOne)
{
    EXPECT_EQ(without_section("[s]\na=1\n; of s\n\n; about t\n; more\n[t]\nb=2\n", "s"),
              "; about t\n; more\n[t]\nb=2\n");
}

TEST(IniText, RemoveOfEqualSections_TakesTheFirst)
{
    EXPECT_EQ(without_section("[s]\na=1\n[s]\na=2\n", "s"), "[s]\na=2\n");
}

TEST(IniText, RemoveOfTheEmptySection_LeavesComments)
{
    EXPECT_EQ(without_section("; c\na=1\n\nb=2\n[s]\nc=3\n", ""), "; c\n\n[s]\nc=3\n");
}

TEST(IniText, FindAfterAChange_SeesIt)
{
    IniText text("[s]\na=1\n");
    EXPECT_EQ(text.find("s", "a"), "1");

    EXPECT_TRUE(text.set("s", "a", "22"));
    EXPECT_EQ(text.find("s", "a"), "22");
    text.remove_entry("s", "a");
    EXPECT_EQ(text.find("s", "a"), nullopt);
}

TEST(IniText, ValueThatLiesInTheText_CanBeSet)
{
    IniText text("[s]\na=long enough to move\nb=2\n");

    EXPECT_TRUE(text.set("s", "b", *text.find("s", "a")));
    EXPECT_TRUE(text.set("t", "c", *text.find("s", "a")));
    EXPECT_EQ(text.find("s", "b"), "long enough to move");
    EXPECT_EQ(text.find("t", "c"), "long enough to move");
}

TEST(IniText, ManyEntriesAndSections_AreAllFound)
{
    std::string bytes;
    for (int section = 0; section < 200; ++section) {
        bytes += "[section " + std::to_string(section) + "]\n";
        for (int entry = 0; entry < 100; ++entry)
            bytes += "key" + std::to_string(entry) + "=" + std::to_string(section * entry) + "\n";
    }
    const IniText text(bytes);

    for (int section = 0; section < 200; ++section)
        for (int entry = 0; entry < 100; ++entry)
            ASSERT_EQ(
                text.find("Section " + std::to_string(section), "KEY" + std::to_string(entry)),
                std::to_string(section * entry));
}

// Quadratic work on such texts would not come to an end here.
TEST(IniText, MillionsOfShortLines_AreReadInLinearTime)
{
    for (const char* const line : {"\r", "\n", "=\n", "[]\n", ";\r", "\r\n"}) {
        std::string bytes;
        while (bytes.size() < (std::size_t{4} << 20))
            bytes += line;
        IniText text(bytes);

        EXPECT_EQ(text.find("s", "a"), nullopt);
        EXPECT_TRUE(text.set("s", "a", "1"));
        EXPECT_EQ(text.find("s", "a"), "1");
        text.remove_section("s");
        EXPECT_EQ(text.bytes(), bytes);
    }
}

// The text beside a map of what must be in it, under changes by chance.
TEST(IniText, ChangesByChance_AgreeWithAMap)
{
    constexpr std::array<const char*, 4> kSections = {"", "one", "Two", "three"};
    constexpr std::array<const char*, 5> kEntries = {"a", "B", "c d", "", "e"};
    constexpr std::array<const char*, 5> kValues = {"", "1", "x = y", "[z]", "; no comment"};
    zmr::Random random(7);
    for (int round = 0; round < 200; ++round) {
        IniText text(round % 2 == 0 ? "; top\n\n[other]\nkept=yes\n; end" : "");
        std::map<std::pair<std::string, std::string>, std::string> expected;
        for (int step = 0; step < 60; ++step) {
            const std::string section = kSections[random() % kSections.size()];
            const std::string entry = kEntries[random() % kEntries.size()];
            const unsigned what = random() % 8;
            if (what == 0) {
                text.remove_section(section);
                std::erase_if(expected,
                              [&](const auto& item) { return item.first.first == section; });
            } else if (what < 3) {
                text.remove_entry(section, entry);
                expected.erase({section, entry});
            } else {
                const std::string value = kValues[random() % kValues.size()];
                ASSERT_TRUE(text.set(section, entry, value));
                expected[{section, entry}] = value;
            }
            for (const char* const in : kSections)
                for (const char* const name : kEntries) {
                    const auto found = expected.find({in, name});
                    if (found == expected.end())
                        ASSERT_EQ(text.find(in, name), nullopt) << text.bytes();
                    else
                        ASSERT_EQ(text.find(in, name), found->second) << text.bytes();
                }
        }
        if (round % 2 == 0) {
            EXPECT_EQ(text.find("other", "kept"), "yes");
            EXPECT_NE(text.bytes().find("; top\n\n"), std::string::npos);
        }
    }
}
