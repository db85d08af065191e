#include "foundation/GClassDictionary.h"
#include "foundation/GCollection.h"
#include "foundation/GSortedCollection.h"
#include "foundation/GStringCollection.h"
#include "foundation/GVoidPtrSortedArrayPrim.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <set>
#include <vector>

TEST(GVoidPtrSortedArrayPrim, Items_StandByAddressOnceEach)
{
    std::vector<char> things(300);
    std::mt19937 random(8);
    GVoidPtrSortedArrayPrim array;
    std::set<const void*, std::less<>> model;
    for (int step = 0; step < 5000; ++step) {
        const void* thing = &things[random() % things.size()];
        if (random() % 2 == 0) {
            const long index = array.insert_item(thing);
            ASSERT_EQ(array.items[index], thing);
            model.insert(thing);
        } else {
            array.at_remove(array.index_of(thing));
            model.erase(thing);
        }
        ASSERT_TRUE(std::equal(model.begin(), model.end(), array.items, array.items + array.count));
    }
}

TEST(GVoidPtrSortedArrayPrim, IndexOutside_IsIgnored)
{
    int thing = 0;
    GVoidPtrSortedArrayPrim array;
    array.at_remove(0);
    array.insert_item(&thing);
    array.at_remove(-1);
    array.at_remove(1);
    EXPECT_EQ(array.count, 1);
    EXPECT_EQ(array.index_of(&array), -1);
}

TEST(GVoidPtrSortedArrayPrim, Copy_IsItsOwn)
{
    int things[2] = {};
    GVoidPtrSortedArrayPrim first;
    first.insert_item(&things[0]);
    GVoidPtrSortedArrayPrim second(first);
    second.insert_item(&things[1]);
    EXPECT_EQ(first.count, 1);
    first = second;
    EXPECT_EQ(first.count, 2);
    GVoidPtrSortedArrayPrim& alias = first;
    first = alias;
    EXPECT_EQ(first.count, 2);
    EXPECT_EQ(GVoidPtrSortedArrayPrim(GVoidPtrSortedArrayPrim()).count, 0);
}

TEST(GClassDictionary, Classes_StandByNameOnceEach)
{
    GClassDictionary dictionary;
    dictionary.insert(GStringCollection::metaclass_);
    EXPECT_EQ(dictionary.insert(GCollection::metaclass_), 0);
    dictionary.insert(GSortedCollection::metaclass_);
    EXPECT_EQ(dictionary.insert(GCollection::metaclass_), 0);

    ASSERT_EQ(dictionary.count, 3);
    EXPECT_EQ(dictionary.at(0), &GCollection::metaclass_);
    EXPECT_EQ(dictionary.at(1), &GSortedCollection::metaclass_);
    EXPECT_EQ(dictionary.at(2), &GStringCollection::metaclass_);
    EXPECT_EQ(dictionary.at(3), nullptr);
    EXPECT_EQ(dictionary.at(-1), nullptr);
}
