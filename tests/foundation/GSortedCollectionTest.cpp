#include "foundation/GSortedCollection.h"

#include "foundation/mpstream.h"

#include "tests/foundation/CountedItem.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <random>
#include <set>
#include <vector>

namespace {

/// Numbered items in the order of their numbers.
class ByNumber : public GSortedCollection {
public:
    explicit ByNumber(unsigned char owns = 1) : GSortedCollection(0, 4, owns) {}
    const void* keyOf(const void* item) const override
    {
        return &static_cast<const CountedItem*>(static_cast<const GStreamable*>(item))->number;
    }
    int compare(const void* key1, const void* key2) const override
    {
        return *static_cast<const int*>(key1) - *static_cast<const int*>(key2);
    }
    [[nodiscard]] std::vector<int> all() const
    {
        std::vector<int> numbers;
        for (long index = 0; index < count; ++index)
            numbers.push_back(*static_cast<const int*>(keyOf(items[index])));
        return numbers;
    }
};

}  // namespace

TEST(GSortedCollection, ByDefault_AddressesAreKeys)
{
    int things[5] = {};
    GSortedCollection collection(0, 4, 0);
    for (const int place : {3, 1, 4, 0, 2})
        collection.v_insert(&things[place]);

    for (long index = 0; index < 5; ++index) {
        EXPECT_EQ(collection.at(index), &things[index]);
        EXPECT_EQ(collection.v_index_of(&things[index]), index);
    }
    int other = 0;
    EXPECT_EQ(collection.v_index_of(&other), -1);
    collection.v_remove(&things[2]);
    EXPECT_EQ(collection.count, 4);
    EXPECT_EQ(collection.v_index_of(&things[2]), -1);
}

TEST(GSortedCollection, PresentItem_IsIgnoredWithItsIndex)
{
    int things[2] = {};
    GSortedCollection collection(0, 4, 0);
    EXPECT_EQ(collection.v_insert(&things[1]), 0);
    EXPECT_EQ(collection.v_insert(&things[0]), 0);
    EXPECT_EQ(collection.v_insert(&things[1]), 1);
    EXPECT_EQ(collection.count, 2);
    collection.v_remove(&things[1]);
    EXPECT_EQ(collection.v_index_of(&things[1]), -1);
}

TEST(GSortedCollection, Null_IsNotTaken)
{
    GSortedCollection collection(0, 4, 0);
    EXPECT_EQ(collection.v_insert(nullptr), -1);
    EXPECT_EQ(collection.v_index_of(nullptr), -1);
    EXPECT_EQ(collection.count, 0);
}

TEST(GSortedCollection, EqualKeyWithoutDuplicates_IsNotTaken)
{
    ByNumber collection;
    collection.v_insert(new CountedItem(5));
    CountedItem same(5);
    EXPECT_EQ(collection.v_insert(&same), 0);
    EXPECT_EQ(collection.count, 1);
    EXPECT_EQ(collection.v_index_of(&same), -1);
}

TEST(GSortedCollection, Duplicates_StandInTheOrderOfInsertion)
{
    ByNumber collection;
    collection.duplicates = true;
    CountedItem* items[6];
    const int numbers[6] = {2, 1, 2, 3, 2, 1};
    for (int place = 0; place < 6; ++place) {
        items[place] = new CountedItem(numbers[place]);
        collection.v_insert(items[place]);
    }

    EXPECT_EQ(collection.all(), (std::vector<int>{1, 1, 2, 2, 2, 3}));
    EXPECT_EQ(collection.v_index_of(items[0]), 2);
    EXPECT_EQ(collection.v_index_of(items[2]), 3);
    EXPECT_EQ(collection.v_index_of(items[4]), 4);
    long index = -1;
    const int two = 2;
    EXPECT_TRUE(collection.search(&two, index));
    EXPECT_EQ(index, 2);
    collection.v_remove(items[2]);
    EXPECT_EQ(collection.v_index_of(items[4]), 3);
    delete items[2];
}

TEST(GSortedCollection, Search_GivesThePlaceOfAMissingKey)
{
    ByNumber collection;
    long index = -1;
    int key = 5;
    EXPECT_FALSE(collection.search(&key, index));
    EXPECT_EQ(index, 0);
    collection.v_insert(new CountedItem(10));
    collection.v_insert(new CountedItem(20));
    EXPECT_FALSE(collection.search(&key, index));
    EXPECT_EQ(index, 0);
    key = 15;
    EXPECT_FALSE(collection.search(&key, index));
    EXPECT_EQ(index, 1);
    key = 25;
    EXPECT_FALSE(collection.search(&key, index));
    EXPECT_EQ(index, 2);
    key = 20;
    EXPECT_TRUE(collection.search(&key, index));
    EXPECT_EQ(index, 1);
}

TEST(GSortedCollection, Streams_KeepTheFlagAndTheItems)
{
    ByNumber source;
    source.duplicates = true;
    for (const int number : {3, 1, 3, 2})
        source.v_insert(new CountedItem(number));
    ompstream out;
    source.write(out);

    ByNumber target;
    impstream in(out.bytes());
    target.read(in);
    EXPECT_TRUE(target.duplicates);
    EXPECT_EQ(target.all(), (std::vector<int>{1, 2, 3, 3}));
}

TEST(GSortedCollection, ReadItemsOutOfOrder_AreSortedAgain)
{
    GCollection unsorted;
    for (const int number : {3, 1, 2})
        unsorted.v_insert(new CountedItem(number));
    unsorted.v_insert(nullptr);
    ompstream out;
    out.writeByte(0);
    out.writeByte(0);
    unsorted.write(out);

    ByNumber target;
    impstream in(out.bytes());
    target.read(in);
    EXPECT_EQ(target.all(), (std::vector<int>{1, 2, 3}));
}

TEST(GSortedCollection, ReadByAddress_FindsEveryItem)
{
    GSortedCollection source;
    for (int number = 0; number < 50; ++number)
        source.v_insert(new CountedItem(number));
    ompstream out;
    out.writePointer(&source);

    impstream in(out.bytes());
    const std::unique_ptr<GSortedCollection> target(in.read_pointer<GSortedCollection>());
    ASSERT_NE(target, nullptr);
    ASSERT_EQ(target->count, 50);
    for (long index = 0; index < target->count; ++index)
        EXPECT_EQ(target->v_index_of(target->at(index)), index);
}

TEST(GSortedCollection, RandomInsertions_AgreeWithASet)
{
    std::vector<char> things(200);
    std::mt19937 random(5);
    GSortedCollection collection(0, 4, 0);
    std::set<void*, std::less<>> model;
    for (int step = 0; step < 5000; ++step) {
        void* thing = &things[random() % things.size()];
        if (random() % 2 == 0) {
            collection.v_insert(thing);
            model.insert(thing);
        } else {
            collection.v_remove(thing);
            model.erase(thing);
        }
        ASSERT_TRUE(std::equal(model.begin(), model.end(), collection.items,
                               collection.items + collection.count))
            << "step " << step;
    }
}
