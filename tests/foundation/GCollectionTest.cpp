#include "foundation/GCollection.h"

#include "foundation/GException.h"
#include "foundation/TGCollection.h"
#include "foundation/mpstream.h"

#include "tests/foundation/CountedItem.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <memory>
#include <random>
#include <vector>

namespace {

void* as_item(std::uintptr_t number)
{
    return reinterpret_cast<void*>(number);
}

/// A collection of mere numbers, which it does not own.
class Numbers : public GCollection {
public:
    Numbers() : GCollection(0, 4, 0) {}
    Numbers(std::initializer_list<std::uintptr_t> numbers) : Numbers()
    {
        for (const std::uintptr_t number : numbers)
            v_insert(as_item(number));
    }
    [[nodiscard]] std::vector<std::uintptr_t> all() const
    {
        std::vector<std::uintptr_t> numbers;
        for (long index = 0; index < count; ++index)
            numbers.push_back(reinterpret_cast<std::uintptr_t>(items[index]));
        return numbers;
    }
    [[nodiscard]] long room() const { return limit_; }
};

using All = std::vector<std::uintptr_t>;

std::vector<unsigned char> written(GStreamable& object)
{
    ompstream out;
    out.writePointer(&object);
    const auto bytes = out.bytes();
    return {bytes.begin(), bytes.end()};
}

/// An owner whose items take each other along.
class Chain : public TGCollection<int> {
public:
    void freeItem(void* item) override
    {
        const int number = *static_cast<int*>(item);
        TGCollection<int>::freeItem(item);
        if (number % 2 == 0 && count > 0)
            at_free(0);  // takes another one out
        if (number == 7)
            v_insert(new int(1));
    }
    ~Chain() override { empty(); }
};

/// An owner whose items leave a smaller one behind.
class Countdown : public TGCollection<int> {
public:
    void freeItem(void* item) override
    {
        const int number = *static_cast<int*>(item);
        TGCollection<int>::freeItem(item);
        if (number > 0)
            v_insert(new int(number - 1));
    }
    ~Countdown() override { empty(); }
};

}  // namespace

TEST(GCollection, New_IsEmptyAndOwns)
{
    const GCollection collection;
    EXPECT_EQ(collection.count, 0);
    EXPECT_EQ(collection.owns_items, 1);
    EXPECT_EQ(collection.at(0), nullptr);
    EXPECT_EQ(collection.at(-1), nullptr);
    EXPECT_EQ(collection.v_index_of(as_item(1)), -1);
}

TEST(GCollection, OddSizes_CountAsSmallOnes)
{
    GCollection collection(-5, -1, 0);
    for (std::uintptr_t number = 1; number <= 100; ++number)
        EXPECT_EQ(collection.v_insert(as_item(number)), static_cast<long>(number) - 1);
    EXPECT_EQ(collection.count, 100);
    EXPECT_THROW(GCollection(LONG_MAX, 1, 0), OutOfMemory_Exception);
}

TEST(GCollection, AtInsert_OutsideGoesToTheNearerEnd)
{
    Numbers numbers{1, 2};
    numbers.v_at_insert(1, as_item(9));
    numbers.v_at_insert(-5, as_item(8));
    numbers.v_at_insert(100, as_item(7));

    EXPECT_EQ(numbers.all(), (All{8, 1, 9, 2, 7}));
}

TEST(GCollection, AtInsertRange_TakesAPartOfItself)
{
    Numbers numbers{1, 2, 3, 4};
    numbers.v_at_insert_range(1, numbers.items + 1, 3);
    EXPECT_EQ(numbers.all(), (All{1, 2, 3, 4, 2, 3, 4}));
    numbers.v_at_insert_range(0, nullptr, 3);
    numbers.v_at_insert_range(0, numbers.items, 0);
    numbers.v_at_insert_range(0, numbers.items, -1);
    EXPECT_EQ(numbers.count, 7);
}

TEST(GCollection, IndexOutside_IsIgnored)
{
    Numbers numbers{1, 2, 3};
    for (const long index : {-1L, 3L, LONG_MAX, LONG_MIN}) {
        numbers.v_at_put(index, as_item(9));
        numbers.v_at_remove(index);
        numbers.v_at_remove_range(index, 2);
        numbers.at_free(index);
        EXPECT_EQ(numbers.at(index), nullptr);
    }
    numbers.v_remove(as_item(9));
    EXPECT_EQ(numbers.all(), (All{1, 2, 3}));
}

TEST(GCollection, Remove_TakesOut)
{
    Numbers numbers{1, 2, 3, 4, 5, 2};
    numbers.v_remove(as_item(2));
    EXPECT_EQ(numbers.all(), (All{1, 3, 4, 5, 2}));
    numbers.v_at_remove(0);
    numbers.v_at_remove_range(1, LONG_MAX);
    EXPECT_EQ(numbers.all(), All{3});
    numbers.v_at_remove_range(0, -1);
    numbers.v_at_remove_range(0, 0);
    EXPECT_EQ(numbers.all(), All{3});
}

TEST(GCollection, PackAndLimit_KeepTheItems)
{
    Numbers numbers{0, 1, 0, 0, 2, 0};
    numbers.pack();
    EXPECT_EQ(numbers.all(), (All{1, 2}));
    numbers.setLimit(0);
    EXPECT_EQ(numbers.room(), 2);
    numbers.setLimit(100);
    EXPECT_EQ(numbers.room(), 100);
    EXPECT_EQ(numbers.all(), (All{1, 2}));
    numbers.empty();
    numbers.setLimit(0);
    EXPECT_EQ(numbers.items, nullptr);
    numbers.pack();
    EXPECT_EQ(numbers.v_insert(as_item(3)), 0);
}

TEST(GCollection, Growing_IsGeometric)
{
    Numbers numbers;
    int moves = 0;
    for (std::uintptr_t number = 1; number <= 100000; ++number) {
        const long before = numbers.room();
        numbers.v_insert(as_item(number));
        moves += numbers.room() != before ? 1 : 0;
    }
    EXPECT_LT(moves, 50);
}

TEST(GCollection, Owner_FreesItsItems)
{
    {
        GCollection owner;
        for (int number = 0; number < 3; ++number)
            owner.v_insert(new CountedItem(number));
        owner.v_insert(nullptr);
        owner.at_free(1);
        EXPECT_EQ(CountedItem::alive, 2);
        auto* kept = static_cast<CountedItem*>(static_cast<GStreamable*>(owner.at(0)));
        owner.v_at_remove(0);
        EXPECT_EQ(CountedItem::alive, 2);
        delete kept;
        EXPECT_EQ(CountedItem::alive, 1);
    }
    EXPECT_EQ(CountedItem::alive, 0);
}

TEST(GCollection, Borrower_FreesNothing)
{
    CountedItem item;
    {
        GCollection borrower(0, 1, 0);
        borrower.v_insert(&item);
        borrower.at_free(0);
        borrower.v_insert(&item);
    }
    EXPECT_EQ(CountedItem::alive, 1);
}

TEST(GCollection, Copy_OwnsNothing)
{
    GCollection owner;
    owner.v_insert(new CountedItem(5));
    {
        const GCollection copied(owner);
        EXPECT_EQ(copied.owns_items, 0);
        EXPECT_EQ(copied.count, 1);
        EXPECT_EQ(copied.at(0), owner.at(0));
        GCollection assigned;
        assigned.v_insert(new CountedItem(6));
        assigned = owner;
        EXPECT_EQ(CountedItem::alive, 1);
        EXPECT_EQ(assigned.owns_items, 0);
        EXPECT_EQ(assigned.at(0), owner.at(0));
        GCollection& alias = assigned;
        assigned = alias;
        EXPECT_EQ(assigned.count, 1);
    }
    EXPECT_EQ(CountedItem::alive, 1);
    owner.empty();
    EXPECT_EQ(CountedItem::alive, 0);
}

TEST(GCollection, Empty_StandsItemsThatTakeOthersAlong)
{
    Chain chain;
    for (int number = 0; number < 10; ++number)
        chain.v_insert(new int(number));
    chain.empty();
    EXPECT_EQ(chain.count, 0);
}

TEST(GCollection, Empty_StandsItemsThatInsertOthers)
{
    Countdown countdown;
    countdown.v_insert(new int(20));
    countdown.empty();
    EXPECT_EQ(countdown.count, 0);
}

TEST(GCollection, ShutDown_FreesTheItems)
{
    GCollection owner;
    owner.v_insert(new CountedItem);
    owner.shut_down();
    EXPECT_EQ(CountedItem::alive, 0);
    EXPECT_EQ(owner.count, 0);
}

TEST(GCollection, Streams_KeepItemsNullsAndOwnership)
{
    GCollection owner(10, 7, 1);
    owner.v_insert(new CountedItem(1));
    owner.v_insert(nullptr);
    owner.v_insert(new CountedItem(3));
    const auto bytes = written(owner);

    impstream in(bytes);
    const std::unique_ptr<GCollection> read(in.read_pointer<GCollection>());
    in.claim();
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->owns_items, 1);
    ASSERT_EQ(read->count, 3);
    EXPECT_EQ(static_cast<CountedItem*>(static_cast<GStreamable*>(read->at(0)))->number, 1);
    EXPECT_EQ(read->at(1), nullptr);
    EXPECT_EQ(static_cast<CountedItem*>(static_cast<GStreamable*>(read->at(2)))->number, 3);
    EXPECT_EQ(CountedItem::alive, 4);
}

TEST(GCollection, Reading_ReplacesThePresentItems)
{
    GCollection source;
    source.v_insert(new CountedItem(1));
    ompstream out;
    source.write(out);

    GCollection target;
    target.v_insert(new CountedItem(8));
    target.v_insert(new CountedItem(9));
    impstream in(out.bytes());
    target.read(in);
    EXPECT_EQ(target.count, 1);
    EXPECT_EQ(CountedItem::alive, 2);
}

TEST(GCollection, OwnedItemThatComesTwice_IsRefused)
{
    CountedItem item;
    GCollection twice(0, 1, 0);
    twice.v_insert(&item);
    twice.v_insert(&item);
    twice.owns_items = 1;
    ompstream out;
    twice.write(out);
    twice.owns_items = 0;

    {
        GCollection target;
        impstream in(out.bytes());
        EXPECT_THROW(target.read(in), GStreamException);
        EXPECT_EQ(target.count, 1);
    }
    EXPECT_EQ(CountedItem::alive, 1);
}

TEST(GCollection, CountBeyondTheData_IsRefusedWithoutMemory)
{
    ompstream out;
    GCollection().write(out);
    std::vector<unsigned char> bytes(out.bytes().begin(), out.bytes().end());
    for (std::size_t place = bytes.size() - 4; place < bytes.size(); ++place)
        bytes[place] = 0xFF;
    GCollection target;
    impstream in(bytes);
    EXPECT_THROW(target.read(in), GStreamException);
    EXPECT_EQ(target.count, 0);
}

TEST(GCollection, EveryCutLength_EndsInAnException)
{
    GCollection owner;
    for (int number = 0; number < 5; ++number)
        owner.v_insert(new CountedItem(number));
    const auto bytes = written(owner);
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        const std::vector<unsigned char> cut(bytes.begin(),
                                             bytes.begin() + static_cast<std::ptrdiff_t>(length));
        impstream in(cut);
        EXPECT_THROW(static_cast<void>(in.read_pointer<GCollection>()), GStreamException) << length;
    }
}

TEST(GCollection, NewerVersion_IsRefused)
{
    ompstream out;
    GCollection().write(out);
    std::vector<unsigned char> bytes(out.bytes().begin(), out.bytes().end());
    bytes[0] = 200;
    GCollection target;
    target.v_insert(new CountedItem);
    impstream in(bytes);
    EXPECT_THROW(target.read(in), GStreamException);
    EXPECT_EQ(target.count, 1);
}

TEST(GCollection, RandomOperations_AgreeWithAVector)
{
    std::mt19937 random(99);
    Numbers numbers;
    All model;
    for (int step = 0; step < 20000; ++step) {
        const auto count = static_cast<long>(model.size());
        const long index = static_cast<long>(random() % 60) - 5;
        const auto number = static_cast<std::uintptr_t>(random() % 20);
        const bool inside = index >= 0 && index < count;
        switch (random() % 8) {
            case 0:
            case 1:
                numbers.v_insert(as_item(number));
                model.push_back(number);
                break;
            case 2:
                numbers.v_at_insert(index, as_item(number));
                model.insert(model.begin() + std::clamp(index, 0L, count), number);
                break;
            case 3:
                numbers.v_at_remove(index);
                if (inside)
                    model.erase(model.begin() + index);
                break;
            case 4:
                numbers.v_at_put(index, as_item(number));
                if (inside)
                    model[static_cast<std::size_t>(index)] = number;
                break;
            case 5: {
                const long length = static_cast<long>(random() % 4);
                numbers.v_at_remove_range(index, length);
                if (inside)
                    model.erase(model.begin() + index,
                                model.begin() + std::min(index + length, count));
                break;
            }
            case 6: {
                numbers.v_remove(as_item(number));
                const auto place = std::find(model.begin(), model.end(), number);
                if (place != model.end())
                    model.erase(place);
                break;
            }
            default:
                if (random() % 30 == 0) {
                    numbers.pack();
                    std::erase(model, 0u);
                }
                break;
        }
        ASSERT_EQ(numbers.all(), model) << "step " << step;
    }
}
