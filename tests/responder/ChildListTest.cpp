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

TEST(ChildList, IndexOfByANote_IsThatOfASearch)
{
    constexpr int kEntries = 3000;
    std::mt19937 random(11);
    zmr::ChildList list;
    std::vector<int> model;
    std::vector<std::uint16_t> places(kEntries + 1);
    const auto expect_found = [&](int number) {
        const auto at = std::find(model.begin(), model.end(), number);
        const auto index = static_cast<int>(at - model.begin());
        const auto entry = static_cast<std::size_t>(number);
        EXPECT_EQ(list.index_of(address(number), places[entry]), index);
        EXPECT_EQ(list.index_of(address(number), static_cast<std::uint16_t>(random())), index);
    };
    for (int number = 1; number <= kEntries; ++number) {
        const auto bound = static_cast<unsigned>(model.size()) + 1;
        const auto index = static_cast<int>(number % 2 == 0   ? bound - 1
                                            : number % 3 == 0 ? 0
                                                              : random() % bound);
        list.insert_at(index, address(number));
        model.insert(model.begin() + index, number);
        places[static_cast<std::size_t>(number)] = list.place_at(index);
        if (number % 100 == 0) {
            expect_found(1 + static_cast<int>(random() % kEntries));
            expect_found(number);
        }
    }
    while (!model.empty()) {
        const int number = model[random() % model.size()];
        expect_found(number);
        ASSERT_TRUE(list.remove(address(number), places[static_cast<std::size_t>(number)]));
        std::erase(model, number);
        ASSERT_FALSE(list.remove(address(number), places[static_cast<std::size_t>(number)]));
        ASSERT_EQ(list.count(), static_cast<int>(model.size()));
    }
}

TEST(ChildList, NotesOfThoseThatStay_HoldWhereOthersComeAndGoAtTheEnds)
{
    zmr::ChildList list;
    for (int number = 1; number <= 500; ++number)
        list.insert_at(list.count(), address(number));
    const std::uint16_t place = list.place_at(249);

    for (int number = 501; number <= 900; ++number)
        list.insert_at(0, address(number));
    EXPECT_EQ(list.place_at(649), place);
    for (int number = 0; number < 500; ++number)
        list.remove_at(0);
    EXPECT_EQ(list.place_at(149), place);
    while (list.count() > 150)
        list.remove_at(list.count() - 1);
    EXPECT_EQ(list.place_at(149), place);
    EXPECT_EQ(list[149], address(250));
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
