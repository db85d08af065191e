#include "foundation/TGVector.h"

#include "foundation/GString.h"
#include "foundation/TGSortedVector.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <memory>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

template <class T>
std::vector<T> all(const TGVector<T>& vector)
{
    return {vector.begin(), vector.end()};
}

/// Throws when the countdown ends, and knows how many of its kind are alive.
struct Fragile {
    explicit Fragile(int first_value = 0) : value(first_value) { ++alive; }
    Fragile(const Fragile& other) : value(other.value)
    {
        if (countdown > 0 && --countdown == 0)
            throw std::runtime_error("copy");
        ++alive;
    }
    Fragile& operator=(const Fragile&) = default;
    ~Fragile() { --alive; }

    int value;
    static inline int alive = 0;
    static inline int countdown = 0;
};

}  // namespace

TEST(TGVector, New_HasNoMemory)
{
    const TGVector<int> vector;
    EXPECT_EQ(vector.count, 0);
    EXPECT_EQ(vector.limit, 0);
    EXPECT_EQ(vector.items, nullptr);
    EXPECT_TRUE(vector.movable);
    EXPECT_FALSE(TGVector<GString>().movable);
}

TEST(TGVector, Growing_RoundsUpToTheStep)
{
    TGVector<int> vector(0, 4);
    vector.insert(1);
    EXPECT_EQ(vector.limit, 4);
    vector[4] = 5;
    EXPECT_EQ(vector.limit, 8);
    vector[8] = 9;
    EXPECT_EQ(vector.limit, 12);
    vector.setCount(16);
    EXPECT_EQ(vector.limit, 16);
    EXPECT_EQ(TGVector<int>(10, 4).limit, 10);
    TGVector<int> odd(-3, -3);
    odd.insert(1);
    EXPECT_EQ(odd.limit, 1);
}

TEST(TGVector, Growing_OneByOneStaysLinear)
{
    TGVector<int> vector(0, 4);
    int moves = 0;
    for (int number = 0; number < 200000; ++number) {
        const long before = vector.limit;
        vector.insert(number);
        moves += vector.limit != before ? 1 : 0;
    }
    EXPECT_LT(moves, 300);
    EXPECT_EQ(vector[199999], 199999);
}

TEST(TGVector, WritingAtOrPastTheCount_GrowsWithInitialisedItems)
{
    TGVector<int> vector(0, 4);
    vector[3] = 7;
    EXPECT_EQ(all(vector), (std::vector<int>{0, 0, 0, 7}));
    TGVector<GString> texts(0, 4);
    texts[1] = "b";
    EXPECT_EQ(texts.count, 2);
    EXPECT_EQ(texts[0], "");
    EXPECT_EQ(texts[1], "b");
}

TEST(TGVector, IndexBelowZero_ThrowsWithTheRange)
{
    TGVector<int> vector(0, 4);
    vector[2] = 1;
    try {
        vector[-1] = 5;
        FAIL() << "nothing was thrown";
    } catch (const TGVector_IndexOutOfRange_Exception& thrown) {
        EXPECT_EQ(thrown.index, -1);
        EXPECT_EQ(thrown.low, 0);
        EXPECT_EQ(thrown.high, 2);
    }
    EXPECT_THROW(vector[LONG_MIN] = 1, TGVector_IndexOutOfRange_Exception);
    EXPECT_THROW(vector.at_insert(-1, 1), TGVector_IndexOutOfRange_Exception);
    EXPECT_EQ(vector.count, 3);
}

TEST(TGVector, ReadingOutside_Throws)
{
    TGVector<int> vector(0, 4);
    vector[1] = 8;
    const TGVector<int>& reader = vector;
    EXPECT_EQ(reader[1], 8);
    EXPECT_THROW(static_cast<void>(reader[2]), TGVector_IndexOutOfRange_Exception);
    EXPECT_THROW(static_cast<void>(reader[-1]), TGVector_IndexOutOfRange_Exception);
    EXPECT_EQ(vector.count, 2);
}

TEST(TGVector, AbsurdSizes_ThrowOutOfMemory)
{
    struct Large {
        char bytes[1 << 20];
    };
    TGVector<Large> vector(0, 4);
    EXPECT_THROW(vector.setLimit(LONG_MAX), OutOfMemory_Exception);
    EXPECT_EQ(vector.limit, 0);
    EXPECT_EQ(vector.items, nullptr);
}

TEST(TGVector, Removing_TakesOut)
{
    TGVector<GString> vector(0, 4);
    for (const char* text : {"a", "b", "c", "d", "e"})
        vector.insert(text);
    vector.at_remove(1);
    EXPECT_EQ(all(vector), (std::vector<GString>{"a", "c", "d", "e"}));
    vector.at_remove(2, 100);
    EXPECT_EQ(all(vector), (std::vector<GString>{"a", "c"}));
    vector.at_remove(-1);
    vector.at_remove(2);
    vector.at_remove(0, 0);
    vector.at_remove(0, -5);
    EXPECT_EQ(vector.count, 2);
    vector.empty();
    EXPECT_EQ(vector.count, 0);
    EXPECT_GT(vector.limit, 0);
}

TEST(TGVector, Inserting_AnItemOfItsOwn)
{
    TGVector<GString> vector(0, 1);
    vector.insert("first");
    for (int number = 0; number < 20; ++number)
        vector.insert(vector[0]);
    vector.at_insert(0, vector[5]);
    vector.at_insert(100, "last");
    EXPECT_EQ(vector.count, 23);
    EXPECT_EQ(vector[0], "first");
    EXPECT_EQ(vector[22], "last");
}

TEST(TGVector, MovableTexts_GrowAsPlainMemory)
{
    TGVector<GString> vector(0, 4);
    vector.movable = true;
    for (int number = 0; number < 1000; ++number)
        vector.insert(std::to_string(number).c_str());
    for (int number = 0; number < 1000; ++number)
        ASSERT_EQ(vector[number], std::to_string(number).c_str());
    const TGVector<GString> copied(vector);
    EXPECT_TRUE(copied.movable);
    EXPECT_EQ(copied[999], "999");
}

TEST(TGVector, MoveOnlyItems_AreKept)
{
    TGVector<std::unique_ptr<int>> vector(0, 2);
    for (int number = 0; number < 10; ++number)
        vector.insert(std::make_unique<int>(number));
    TGVector<std::unique_ptr<int>> moved(std::move(vector));
    EXPECT_EQ(*moved[9], 9);
    EXPECT_EQ(vector.count, 0);
}

TEST(TGVector, CopyAndAssignment_AreDeep)
{
    TGVector<GString> first(0, 4);
    first.insert("a");
    TGVector<GString> second(first);
    second[0] += "b";
    EXPECT_EQ(first[0], "a");
    first = second;
    EXPECT_EQ(first[0], "ab");
    TGVector<GString>& alias = first;
    first = alias;
    EXPECT_EQ(first[0], "ab");
    first = TGVector<GString>();
    EXPECT_EQ(first.count, 0);
}

TEST(TGVector, ThrowingCopies_LeaveTheVectorAsItWas)
{
    {
        TGVector<Fragile> vector(0, 4);
        for (int number = 0; number < 4; ++number)
            vector.insert(Fragile(number));
        for (int position = 1; position <= 5; ++position) {
            const Fragile added(9);
            Fragile::countdown = position;
            EXPECT_THROW(vector.insert(added), std::runtime_error) << position;
            Fragile::countdown = 0;
            ASSERT_EQ(vector.count, 4);
            for (int number = 0; number < 4; ++number)
                EXPECT_EQ(vector[number].value, number);
        }
        Fragile::countdown = 3;
        EXPECT_THROW(TGVector<Fragile> copied(vector), std::runtime_error);
        Fragile::countdown = 0;
        EXPECT_EQ(Fragile::alive, 4);
    }
    EXPECT_EQ(Fragile::alive, 0);
}

TEST(TGVector, RandomOperations_AgreeWithAStandardVector)
{
    std::mt19937 random(3);
    TGVector<GString> vector(0, 3);
    std::vector<GString> model;
    for (int step = 0; step < 10000; ++step) {
        const long place = static_cast<long>(random() % (model.size() + 1));
        const GString text(std::to_string(random() % 50).c_str());
        switch (random() % 5) {
            case 0:
                vector.insert(text);
                model.push_back(text);
                break;
            case 1:
                vector.at_insert(place, text);
                model.insert(model.begin() + place, text);
                break;
            case 2:
                vector.at_remove(place);
                if (place < static_cast<long>(model.size()))
                    model.erase(model.begin() + place);
                break;
            case 3:
                vector[place] = text;
                if (place == static_cast<long>(model.size()))
                    model.emplace_back();
                model[static_cast<std::size_t>(place)] = text;
                break;
            default:
                if (random() % 10 == 0) {
                    const long wanted = static_cast<long>(random() % 40);
                    vector.setCount(wanted);
                    model.resize(static_cast<std::size_t>(wanted));
                    vector.setLimit(0);
                }
                break;
        }
        ASSERT_EQ(all(vector), model) << "step " << step;
        ASSERT_GE(vector.limit, vector.count);
    }
}

TEST(TGSortedVector, Values_AreSortedOnceEach)
{
    TGSortedVector<GString> vector(0, 4);
    EXPECT_EQ(vector.insert("b"), 0);
    EXPECT_EQ(vector.insert("a"), 0);
    EXPECT_EQ(vector.insert("c"), 2);
    EXPECT_EQ(vector.insert("b"), 1);
    EXPECT_EQ(vector.count, 3);
    EXPECT_EQ(vector[1], "b");
    EXPECT_EQ(vector.index_of("c"), 2);
    EXPECT_EQ(vector.index_of("d"), -1);
    EXPECT_TRUE(vector.contains("a"));
    EXPECT_TRUE(vector.remove("a"));
    EXPECT_FALSE(vector.remove("a"));
    EXPECT_EQ(vector.index_of("c"), 1);
    EXPECT_THROW(static_cast<void>(vector[2]), TGVector_IndexOutOfRange_Exception);
}

TEST(TGSortedVector, RandomInsertions_AgreeWithASet)
{
    std::mt19937 random(11);
    TGSortedVector<unsigned> vector;
    std::set<unsigned> model;
    for (int step = 0; step < 5000; ++step) {
        const auto value = static_cast<unsigned>(random() % 100);
        if (random() % 2 == 0) {
            vector.insert(value);
            model.insert(value);
        } else {
            ASSERT_EQ(vector.remove(value), model.erase(value) == 1);
        }
        ASSERT_TRUE(std::equal(vector.begin(), vector.end(), model.begin(), model.end()));
    }
}
