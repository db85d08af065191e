#include "responder/ChildList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

namespace {

/// The list knows only addresses.
GResponder* address(int number)
{
    return reinterpret_cast<GResponder*>(static_cast<std::uintptr_t>(number) * 16);
}

void expect_same(const zmr::ChildList& list, const std::vector<GResponder*>& expected)
{
    ASSERT_EQ(list.count(), static_cast<int>(expected.size()));
    for (int index = 0; index < list.count(); ++index)
        ASSERT_EQ(list[index], expected[static_cast<std::size_t>(index)]);
}

}  // namespace

TEST(ChildList, RandomInsertionsAndRemovals_AreThoseOfAVector)
{
    std::mt19937 random(7);
    zmr::ChildList list;
    std::vector<GResponder*> model;
    for (int step = 0; step < 20000; ++step) {
        // Growing and shrinking by turns, mostly at the ends.
        const bool grows = model.empty() || random() % 100 < (step / 1000 % 2 == 0 ? 70U : 30U);
        const auto bound = static_cast<unsigned>(model.size()) + (grows ? 1U : 0U);
        const auto kind = static_cast<unsigned>(random() % 3);
        const unsigned place = kind == 0   ? 0
                               : kind == 1 ? bound - 1
                                           : static_cast<unsigned>(random() % bound);
        const auto index = static_cast<int>(place);
        if (grows) {
            list.insert_at(index, address(step + 1));
            model.insert(model.begin() + index, address(step + 1));
        } else {
            list.remove_at(index);
            model.erase(model.begin() + index);
        }
        if (step % 97 == 0)
            expect_same(list, model);
    }
    expect_same(list, model);
}

TEST(ChildList, IndexOf_FindsTheFirstAtEveryPlaceAndLength)
{
    for (int count = 0; count < 40; ++count) {
        zmr::ChildList list;
        for (int number = 1; number <= count; ++number)
            list.insert_at(list.count(), address(number));
        for (int number = 1; number <= count; ++number)
            EXPECT_EQ(list.index_of(address(number)), number - 1);
        EXPECT_EQ(list.index_of(address(99)), count);
    }
}

TEST(ChildList, FullToTheLimit_KeepsAll)
{
    zmr::ChildList list;
    for (int number = 1; number <= zmr::ChildList::kMaxCount; ++number)
        list.insert_at(number % 2 == 0 ? 0 : list.count(), address(number));

    EXPECT_EQ(list.count(), zmr::ChildList::kMaxCount);
    EXPECT_EQ(list[0], address(zmr::ChildList::kMaxCount - 1));
    while (list.count() > 0)
        list.remove_at(list.count() / 2);
}

TEST(ChildList, SharedArray_CopiedBeforeTheChange)
{
    zmr::ChildList list;
    for (int number = 1; number <= 5; ++number)
        list.insert_at(list.count(), address(number));
    zmr::ChildList borrower;
    borrower.share(list);

    borrower.own_array();
    borrower.remove_at(0);

    EXPECT_EQ(list.count(), 5);
    EXPECT_EQ(list[0], address(1));
    EXPECT_EQ(borrower.count(), 4);
    EXPECT_EQ(borrower[0], address(2));
}

TEST(ChildList, MoveEntries_OverlappingBothWays)
{
    zmr::ChildList list;
    for (int number = 1; number <= 6; ++number)
        list.insert_at(list.count(), address(number));

    list.move_entries(1, 0, 4);
    expect_same(list, {address(1), address(1), address(2), address(3), address(4), address(6)});
    list.move_entries(0, 2, 4);
    expect_same(list, {address(2), address(3), address(4), address(6), address(4), address(6)});
    list.swap(0, 5);
    EXPECT_EQ(list[0], address(6));
    EXPECT_EQ(list[5], address(2));
}
