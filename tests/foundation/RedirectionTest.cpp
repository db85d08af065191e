#include "foundation/Redirection.h"

#include "foundation/GException.h"
#include "foundation/fpstream.h"
#include "foundation/mpstream.h"

#include "tests/TemporaryFolder.h"
#include "tests/foundation/CountedItem.h"

#include <gtest/gtest.h>

#include <fstream>
#include <memory>

namespace {

/// The process's redirection while a test runs.
class ScopedRedirection {
public:
    explicit ScopedRedirection(std::unique_ptr<RedirectionFile> redirection)
    {
        fpbase::SetRedirectionFile(std::move(redirection));
    }
    ~ScopedRedirection() { fpbase::SetRedirectionFile(nullptr); }
    ScopedRedirection(const ScopedRedirection&) = delete;
    ScopedRedirection& operator=(const ScopedRedirection&) = delete;
};

}  // namespace

TEST(RedirectionItem, Match_LooksAtTheLastName)
{
    const RedirectionItem item("*.tga; *.bmp;;sky?.png");
    EXPECT_TRUE(item.match("a.tga"));
    EXPECT_TRUE(item.match("dir/other\\A.BMP"));
    EXPECT_TRUE(item.match("sky1.png"));
    EXPECT_FALSE(item.match("sky.png"));
    EXPECT_FALSE(item.match("tga"));
    EXPECT_FALSE(item.match("a.tga/b"));
    EXPECT_FALSE(item.match(""));
    EXPECT_FALSE(item.match(nullptr));
    EXPECT_FALSE(RedirectionItem().match("a"));
}

TEST(RedirectionItem, Match_AMaskHasToBeEqual)
{
    const RedirectionItem item("*.tga;*.bmp");
    EXPECT_TRUE(item.match("dir/*.TGA"));
    EXPECT_FALSE(item.match("*.t*"));
    EXPECT_FALSE(item.match("a*.tga"));
}

TEST(RedirectionItem, Directories_KeepTheirOrder)
{
    RedirectionItem item("*");
    for (const char* directory : {"z", "a", "m", "a"})
        item.v_insert(gnewstr(directory));

    ASSERT_EQ(item.count, 4);
    EXPECT_STREQ(item.at(0), "z");
    EXPECT_STREQ(item.at(2), "m");
    long index = -1;
    EXPECT_TRUE(item.search("a", index));
    EXPECT_EQ(index, 1);
    EXPECT_FALSE(item.search("b", index));
    EXPECT_EQ(item.v_index_of(item.at(3)), 3);
    EXPECT_EQ(item.v_insert(nullptr), -1);
}

TEST(RedirectionFile, Streams_KeepItemsMasksAndOrder)
{
    RedirectionFile source;
    auto* item = new RedirectionItem("*.tga");
    item->v_insert(gnewstr("z"));
    item->v_insert(gnewstr("a"));
    source.v_insert(static_cast<GStreamable*>(item));
    ompstream out;
    source.write(out);

    RedirectionFile target;
    impstream in(out.bytes());
    target.read(in);
    ASSERT_EQ(target.count, 1);
    ASSERT_NE(target.find("x.tga"), nullptr);
    EXPECT_EQ(target.find("x.bmp"), nullptr);
    EXPECT_STREQ(target.at(0)->masks(), "*.tga");
    EXPECT_STREQ(target.at(0)->at(0), "z");
    EXPECT_STREQ(target.at(0)->at(1), "a");
}

TEST(RedirectionFile, ObjectOfAnotherClass_ReadsAsNull)
{
    GCollection other;
    other.v_insert(new CountedItem);
    ompstream out;
    other.write(out);

    RedirectionFile target;
    impstream in(out.bytes());
    target.read(in);
    ASSERT_EQ(target.count, 1);
    EXPECT_EQ(target.at(0), nullptr);
    EXPECT_EQ(target.find("x"), nullptr);
    EXPECT_EQ(CountedItem::alive, 1);
}

TEST(GFileRedirect, TakesTheRedirectedNameWhenThatFileExists)
{
    const TemporaryFolder folder;
    std::ofstream(folder.path() / "there.tga") << "x";
    auto redirection = std::make_unique<RedirectionFile>();
    auto* item = new RedirectionItem("*.tga");
    item->v_insert(gnewstr(folder.file("missing").c_str()));
    item->v_insert(gnewstr(folder.file("").c_str()));
    redirection->v_insert(static_cast<GStreamable*>(item));
    const ScopedRedirection scope(std::move(redirection));

    GFile file("old/there.tga");
    file.redirect();
    EXPECT_EQ(file.compare(folder.file("there.tga").c_str()), 0) << file.text;
    file = "old/elsewhere.tga";
    file.redirect();
    EXPECT_STREQ(file, "old/elsewhere.tga");
    file = "old/there.bmp";
    file.redirect();
    EXPECT_STREQ(file, "old/there.bmp");
}

TEST(GFileRedirect, WithoutARedirection_Stays)
{
    GFile file("a/b");
    file.redirect();
    EXPECT_STREQ(file, "a/b");
}
