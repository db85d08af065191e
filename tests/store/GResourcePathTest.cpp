#include "foundation/GException.h"
#include "foundation/mpstream.h"
#include "store/GResourceFullName.h"

#include <gtest/gtest.h>

namespace {

GResourcePath path_of(std::initializer_list<const char*> levels)
{
    GResourcePath path;
    for (const char* level : levels)
        path += GString(level);
    return path;
}

}  // namespace

TEST(GResourcePath, Default_IsTheRoot)
{
    const GResourcePath root;

    EXPECT_EQ(root.count, 0);
    EXPECT_EQ(root.get_readable_form(), "");
    EXPECT_EQ(root[0], "");
}

TEST(GResourcePath, Copies_AreValues)
{
    GResourcePath first = path_of({"a"});
    GResourcePath second = first;

    second += GString("b");

    EXPECT_EQ(first.count, 1);
    EXPECT_EQ(second.count, 2);
    EXPECT_FALSE(first == second);
    EXPECT_EQ(second[1], "b");
}

TEST(GResourcePath, AppendingItsOwnLevel_IsSafe)
{
    GResourcePath path = path_of({"a"});

    for (int i = 0; i < 20; ++i)
        path += path[0];

    EXPECT_EQ(path.count, 21);
    EXPECT_EQ(path[20], "a");
}

TEST(GResourcePath, AppendingAnEmptyLevel_ChangesNothing)
{
    GResourcePath path = path_of({"a", "", "b"});

    EXPECT_EQ(path.count, 2);
}

TEST(GResourcePath, Equality_SameLevelsInTheSameOrder)
{
    EXPECT_TRUE(path_of({"a", "b"}) == path_of({"a", "b"}));
    EXPECT_FALSE(path_of({"a", "b"}) == path_of({"b", "a"}));
    EXPECT_FALSE(path_of({"ab"}) == path_of({"a", "b"}));
}

TEST(GResourcePath, ReadableForm_EndsWithASeparator)
{
    EXPECT_EQ(path_of({"a", "b"}).get_readable_form(), "a/b/");
}

TEST(GResourcePath, RenameFromRoot_ReplacesTheStart)
{
    GResourcePath path = path_of({"a", "b", "c"});

    EXPECT_TRUE(path.rename_path_from_root(path_of({"a", "b"}), path_of({"x", "y", "z"})));

    EXPECT_TRUE(path == path_of({"x", "y", "z", "c"}));
}

TEST(GResourcePath, RenameFromRoot_AnotherStart_ChangesNothing)
{
    GResourcePath path = path_of({"a", "b"});

    EXPECT_FALSE(path.rename_path_from_root(path_of({"a", "c"}), path_of({"x"})));
    EXPECT_FALSE(path.rename_path_from_root(path_of({"a", "b", "c"}), path_of({"x"})));

    EXPECT_TRUE(path == path_of({"a", "b"}));
}

TEST(GResourcePath, RenameFromRoot_OfTheWholePathAndToTheRoot)
{
    GResourcePath path = path_of({"a", "b"});

    EXPECT_TRUE(path.rename_path_from_root(path_of({"a"}), GResourcePath()));
    EXPECT_TRUE(path == path_of({"b"}));
    EXPECT_TRUE(path.rename_path_from_root(path, path_of({"q"})));
    EXPECT_TRUE(path == path_of({"q"}));
}

TEST(GResourcePath, RemoveLast_StopsAtTheRoot)
{
    GResourcePath path = path_of({"a", "b"});
    const GResourcePath kept = path;

    path.remove_last();
    EXPECT_TRUE(path == path_of({"a"}));
    path.remove_last();
    path.remove_last();

    EXPECT_EQ(path.count, 0);
    EXPECT_TRUE(kept == path_of({"a", "b"}));
}

TEST(GResourcePath, LibraryForm_RoundTripAndLimits)
{
    zmr::LibraryPath stored;
    ASSERT_TRUE(path_of({"a", "\xC3\xA4/b"}).to_library(stored));
    EXPECT_TRUE(GResourcePath::FromLibrary(stored) == path_of({"a", "\xC3\xA4/b"}));
    GResourcePath deep;
    for (int i = 0; i < 2'000; ++i)
        deep += GString("x");

    EXPECT_FALSE(deep.to_library(stored));
}

TEST(GResourceFullName, EmptyIsTheDefaultState)
{
    GResourceFullName name(path_of({"a"}), GString("n"), GString("t"));
    EXPECT_FALSE(name.is_empty());

    name.empty();

    EXPECT_TRUE(name.is_empty());
    EXPECT_TRUE(name == GResourceFullName());
}

TEST(GResourceFullName, Equality_NeedsAllThree)
{
    const GResourceFullName name(path_of({"a"}), GString("n"), GString("t"));

    EXPECT_TRUE(name == GResourceFullName(path_of({"a"}), GString("n"), GString("t")));
    EXPECT_FALSE(name == GResourceFullName(path_of({"b"}), GString("n"), GString("t")));
    EXPECT_FALSE(name == GResourceFullName(path_of({"a"}), GString("m"), GString("t")));
    EXPECT_FALSE(name == GResourceFullName(path_of({"a"}), GString("n"), GString("u")));
}

TEST(GResourceFullName, Stream_RoundTripAndEveryCut)
{
    const GResourceFullName name(path_of({"a", "b"}), GString("n"), GString("t"));
    ompstream out;
    out << name;
    const auto bytes = out.bytes();
    GResourceFullName back;
    impstream whole(bytes);
    whole >> back;
    EXPECT_TRUE(back == name);

    for (std::size_t length = 0; length < bytes.size(); ++length) {
        impstream cut(bytes.first(length));
        GResourceFullName kept(path_of({"k"}), GString("k"), GString("k"));
        EXPECT_THROW(cut >> kept, GStreamException) << length;
        EXPECT_TRUE(kept == GResourceFullName(path_of({"k"}), GString("k"), GString("k")));
    }
}

TEST(GResourceFullName, Stream_TooManyLevels_IsRefused)
{
    ompstream out;
    out.writeDWord(0xFFFFFFFF);
    impstream in(out.bytes());
    GResourceFullName name;

    EXPECT_THROW(in >> name, GStreamException);
}
