#include "foundation/GStringCollection.h"

#include "foundation/GException.h"
#include "foundation/GString.h"
#include "foundation/mpstream.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<std::string> all(const GStringCollection& collection)
{
    std::vector<std::string> texts;
    for (long index = 0; index < collection.count; ++index)
        texts.emplace_back(collection.at(index));
    return texts;
}

}  // namespace

TEST(GStringCollection, Texts_AreSortedByUnsignedBytesOnceEach)
{
    GStringCollection collection(0, 4, 1);
    for (const char* text : {"b", "\xC3\xA4", "a", "", "B"})
        collection.v_insert(gnewstr(text));
    char* twice = gnewstr("a");
    EXPECT_EQ(collection.v_insert(twice), 2);
    gfreestr(twice);

    EXPECT_EQ(all(collection), (std::vector<std::string>{"", "B", "a", "b", "\xC3\xA4"}));
    EXPECT_EQ(collection.at(5), nullptr);
    EXPECT_EQ(collection.at(-1), nullptr);
    long index = -1;
    EXPECT_TRUE(collection.search("b", index));
    EXPECT_EQ(index, 3);
    collection.at_free(index);
    EXPECT_FALSE(collection.search("b", index));
}

TEST(GStringCollection, Streams_KeepTheTexts)
{
    GStringCollection source;
    for (const char* text : {"b", "", "a"})
        source.v_insert(gnewstr(text));
    ompstream out;
    source.write(out);

    GStringCollection target;
    target.v_insert(gnewstr("old"));
    impstream in(out.bytes());
    target.read(in);
    EXPECT_EQ(all(target), (std::vector<std::string>{"", "a", "b"}));
}

TEST(GStringCollection, EveryCutLength_EndsInAnException)
{
    GStringCollection source;
    for (const char* text : {"one", "two", "three"})
        source.v_insert(gnewstr(text));
    ompstream out;
    source.write(out);
    for (std::size_t length = 0; length < out.bytes().size(); ++length) {
        GStringCollection target;
        impstream in(out.bytes().first(length));
        EXPECT_THROW(target.read(in), GStreamException) << length;
    }
}

TEST(GStringCollection, Copy_BorrowsTheTexts)
{
    GStringCollection source;
    source.v_insert(gnewstr("text"));
    const GStringCollection copied(source);
    EXPECT_EQ(copied.at(0), source.at(0));
    EXPECT_EQ(copied.owns_items, 0);
}
