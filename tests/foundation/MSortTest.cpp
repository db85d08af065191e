#include "foundation/MSort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <utility>
#include <vector>

namespace {

std::vector<int> things;
long calls = 0;

short by_value(long a, long b)
{
    ++calls;
    const int left = things.at(static_cast<std::size_t>(a));
    const int right = things.at(static_cast<std::size_t>(b));
    return static_cast<short>(left < right ? -1 : left > right ? 1 : 0);
}

void exchange(long a, long b)
{
    std::swap(things.at(static_cast<std::size_t>(a)), things.at(static_cast<std::size_t>(b)));
}

void sort_things()
{
    MSort::HSort(static_cast<long>(things.size()), by_value, exchange);
}

}  // namespace

TEST(MSort, NothingToSort_CallsNothing)
{
    things.clear();
    calls = 0;
    sort_things();
    MSort::HSort(-5, by_value, exchange);
    things = {1};
    sort_things();
    EXPECT_EQ(calls, 0);
}

TEST(MSort, AllSmallPermutations_AreSorted)
{
    for (int count = 2; count <= 7; ++count) {
        std::vector<int> order(static_cast<std::size_t>(count));
        std::iota(order.begin(), order.end(), 0);
        do {
            things = order;
            sort_things();
            ASSERT_TRUE(std::is_sorted(things.begin(), things.end()));
        } while (std::next_permutation(order.begin(), order.end()));
    }
}

TEST(MSort, ManyWithDuplicates_TakeNLogN)
{
    std::mt19937 random(2);
    things.clear();
    for (int number = 0; number < 100000; ++number)
        things.push_back(static_cast<int>(random() % 1000));
    std::vector<int> expected = things;
    std::sort(expected.begin(), expected.end());
    calls = 0;
    sort_things();

    EXPECT_EQ(things, expected);
    EXPECT_LT(calls, 2 * 100000 * 17);
}

TEST(MSort, ContradictingCompare_KeepsAllThings)
{
    things.resize(100);
    std::iota(things.begin(), things.end(), 0);
    MSort::HSort(
        100, [](long, long) -> short { return -1; }, exchange);
    std::sort(things.begin(), things.end());
    for (int number = 0; number < 100; ++number)
        EXPECT_EQ(things[static_cast<std::size_t>(number)], number);
}
