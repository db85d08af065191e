#include "odb/NamesText.h"
#include "tests/store/Random.h"

#include <gtest/gtest.h>

#include <cctype>
#include <string>
#include <vector>

namespace {

/// What NamesText must give: the search through the text itself.
class PlainSearch {
public:
    bool add(const CString& text)
    {
        const bool is_name = text.Find("=(") > 0;
        const bool is_category = text.Find("]:") > 0;
        if (is_name)
            names_ += CString(" ") + text;
        if (is_category)
            categories_ += text;
        return is_name || is_category;
    }
    [[nodiscard]] CString user_name_for(const CString& name) const
    {
        const CString key = name + "=(";
        const int at = find_key(names_, key);
        if (at < 0)
            return name;
        const int start = at + key.GetLength();
        const int end = names_.Find(')', start);
        CString result = end < 0 ? names_.Mid(start) : names_.Mid(start, end - start);
        result.TrimRight();
        result.TrimLeft();
        return result;
    }
    [[nodiscard]] CString category_name_for(const CString& name) const
    {
        int at = find_key(categories_, name + ",");
        if (at < 0)
            at = find_key(categories_, name + "]:");
        if (at < 0)
            return {};
        const int end = categories_.Find("]:", at + 1);
        if (end < 0)
            return {};
        const int semicolon = categories_.Find(';', end);
        if (semicolon < 0)
            return {};
        CString result = categories_.Mid(end + 2, semicolon - end - 2);
        result.TrimRight();
        result.TrimLeft();
        return result;
    }

private:
    static int find_key(const CString& text, const CString& key)
    {
        int at = text.Find(key, 0);
        while (at > 0 && std::isalpha(static_cast<unsigned char>(text.GetAt(at - 1))) != 0)
            at = text.Find(key, at + 1);
        return at;
    }

    CString names_;
    CString categories_;
};

/// A short text of the pieces that the form knows, in no sensible order.
std::string random_text(zmr::Random& random, unsigned longest)
{
    static const std::vector<std::string> pieces = {
        "Box", "Sphere",   "x", "X",  "Boxx", "2",  "_",          "=(",  ")",
        ",",   "]:",       ";", "]",  ":",    "=",  "(",          " ",   "\t",
        "=",   ".",        "é", "ns", "::",   "1a", "]:Group;",   "B",   "Global",
        "\n",  "=(A box)", "a", "b",  ",B",   "C,", "HIDDEN];:;", "]:]:"};
    std::string text;
    for (unsigned left = random() % longest; left > 0; --left)
        text += pieces[random() % pieces.size()];
    return text;
}

zmr::NamesText names_of(std::initializer_list<const char*> texts)
{
    zmr::NamesText names;
    for (const char* text : texts)
        EXPECT_TRUE(names.add(text)) << text;
    return names;
}

}  // namespace

TEST(NamesText, NothingContributed_ClassHasItsOwnNameAndNoCategory)
{
    zmr::NamesText names;

    EXPECT_EQ(names.user_name_for("BoxObject"), "BoxObject");
    EXPECT_EQ(names.category_name_for("BoxObject"), "");
    EXPECT_EQ(names.user_name_for(""), "");
}

TEST(NamesText, OneText_MayHoldSeveralPairs)
{
    zmr::NamesText names = names_of({"BoxObject=(Box) SphereObject=( Ball \t)ConeObject=()"});

    EXPECT_EQ(names.user_name_for("BoxObject"), "Box");
    EXPECT_EQ(names.user_name_for("SphereObject"), "Ball");
    EXPECT_EQ(names.user_name_for("ConeObject"), "");
}

TEST(NamesText, ClassInTheMiddleAndAtTheEndOfAList_BothFindTheCategory)
{
    zmr::NamesText names = names_of({"BoxObject,SphereObject,ConeObject]: Solids ;"});

    EXPECT_EQ(names.category_name_for("BoxObject"), "Solids");
    EXPECT_EQ(names.category_name_for("SphereObject"), "Solids");
    EXPECT_EQ(names.category_name_for("ConeObject"), "Solids");
}

TEST(NamesText, CategoryOnTheLeft_IsASubcategory)
{
    zmr::NamesText names = names_of({"BoxObject]:Solids;", "Solids,Curves]:Geometry;"});

    EXPECT_EQ(names.category_name_for("BoxObject"), "Solids");
    EXPECT_EQ(names.category_name_for("Solids"), "Geometry");
}

TEST(NamesText, NameAtTheTailOfALongerWord_BehindALetter_IsNotThatClass)
{
    zmr::NamesText names = names_of({"BigBox=(Crate) ", "BigBox,Ball]:Solids;"});

    EXPECT_EQ(names.user_name_for("Box"), "Box");
    EXPECT_EQ(names.category_name_for("Box"), "");
    EXPECT_EQ(names.user_name_for("BigBox"), "Crate");
}

TEST(NamesText, NameBehindADigitOrAnUnderscore_IsThatClass)
{
    zmr::NamesText names = names_of({"Big2Box=(Crate) Big_Ball=(Globe)", "Big2Box]:Solids;"});

    EXPECT_EQ(names.user_name_for("Box"), "Crate");
    EXPECT_EQ(names.user_name_for("Ball"), "Globe");
    EXPECT_EQ(names.category_name_for("Box"), "Solids");
}

TEST(NamesText, LaterContribution_DoesNotReplaceAnEarlierOne)
{
    zmr::NamesText names = names_of({"Box=(First)", "Box]:One;"});
    EXPECT_EQ(names.user_name_for("Box"), "First");  // the index stands before the second comes

    names.add("Box=(Second)");
    names.add("Box]:Two;");

    EXPECT_EQ(names.user_name_for("Box"), "First");
    EXPECT_EQ(names.category_name_for("Box"), "One");
}

TEST(NamesText, MarkerAtPositionZero_AddsNothing)
{
    zmr::NamesText names;

    EXPECT_FALSE(names.add("=(Box)"));
    EXPECT_FALSE(names.add("]:Solids;"));
    EXPECT_FALSE(names.add("=(a) Box=(Crate)"));  // the first one decides
    EXPECT_FALSE(names.add(""));
    EXPECT_FALSE(names.add("Box"));
    EXPECT_EQ(names.user_name_for("Box"), "Box");
}

TEST(NamesText, TextOfBothForms_GoesToBoth)
{
    zmr::NamesText names = names_of({"Box=(Crate) Ball]:Solids;"});

    EXPECT_EQ(names.user_name_for("Box"), "Crate");
    EXPECT_EQ(names.category_name_for("Ball"), "Solids");
}

TEST(NamesText, NoClosingParenthesis_TakesTheRest)
{
    zmr::NamesText names = names_of({"Box=(Crate of wood "});

    EXPECT_EQ(names.user_name_for("Box"), "Crate of wood");
}

TEST(NamesText, CategoryWithoutSemicolon_IsNone)
{
    zmr::NamesText names = names_of({"Box]:Solids"});
    EXPECT_EQ(names.category_name_for("Box"), "");

    names.add("Ball]:Round;");

    EXPECT_EQ(names.category_name_for("Box"), "SolidsBall]:Round");  // texts are joined as they are
}

TEST(NamesText, MarkerAcrossTwoContributions_Counts)
{
    zmr::NamesText names;
    names.add("Ball]:Round;Box]");
    EXPECT_EQ(names.category_name_for("Box"), "");

    names.add(":Square;Cone]:Pointed;");

    EXPECT_EQ(names.category_name_for("Box"), "Square");
}

TEST(NamesText, RandomTextsWithEveryQuirk_AnswerAsTheSearchThroughTheText)
{
    zmr::Random random(7);
    std::size_t known = 0;
    std::size_t categories = 0;
    for (int round = 0; round < 3000; ++round) {
        zmr::NamesText names;
        PlainSearch plain;
        for (unsigned texts = 1 + random() % 6; texts > 0; --texts) {
            const std::string text = random_text(random, 24);
            ASSERT_EQ(names.add(text), plain.add(CString(text))) << text;
            for (int questions = 0; questions < 12; ++questions) {
                const std::string name = random_text(random, 5);
                const CString user_name = plain.user_name_for(CString(name));
                const CString category = plain.category_name_for(CString(name));
                ASSERT_EQ(names.user_name_for(name), user_name) << text << " / " << name;
                ASSERT_EQ(names.category_name_for(name), category) << text << " / " << name;
                known += user_name == CString(name) ? 0 : 1;
                categories += category.IsEmpty() ? 0 : 1;
            }
        }
    }
    EXPECT_GT(known, 1000u);
    EXPECT_GT(categories, 1000u);
}

TEST(NamesText, WordOfAHundredThousandDigits_IsTakenInAndAnswers)
{
    zmr::NamesText names;
    names.add(std::string(100'000, '7') + "Box=(Crate)");

    EXPECT_EQ(names.user_name_for("Box"), "Crate");
    EXPECT_EQ(names.user_name_for("77Box"), "Crate");
    EXPECT_EQ(names.user_name_for("77Ball"), "77Ball");
}
