#include "platform/PopupWalk.h"

#include <gtest/gtest.h>

#include <numeric>
#include <random>
#include <set>
#include <vector>

namespace {

/// Walks `items`; `update` may change them. What was visited, in order.
template <class Update>
std::vector<UINT> walk(std::vector<UINT>& items, Update update)
{
    std::vector<UINT> visited;
    zmr::PopupWalk at{0, static_cast<UINT>(items.size())};
    while (at.index < at.count) {
        const UINT id = items[at.index];
        visited.push_back(id);
        update(id);
        at = zmr::next_item(at, id, static_cast<UINT>(items.size()),
                            [&](UINT index) { return items[index]; });
    }
    return visited;
}

}  // namespace

TEST(PopupWalk, NothingChanges_EachItemOnceInOrder)
{
    std::vector<UINT> items{1, 2, 3};

    EXPECT_EQ(walk(items, [](UINT) {}), (std::vector<UINT>{1, 2, 3}));
}

TEST(PopupWalk, EmptyMenu_VisitsNothing)
{
    std::vector<UINT> items;

    EXPECT_TRUE(walk(items, [](UINT) {}).empty());
}

TEST(PopupWalk, ItemTakesItselfOut_NextOneIsStillVisited)
{
    std::vector<UINT> items{1, 2, 3};
    const auto visited = walk(items, [&](UINT id) {
        if (id == 2)
            items.erase(items.begin() + 1);
    });

    EXPECT_EQ(visited, (std::vector<UINT>{1, 2, 3}));
}

TEST(PopupWalk, FirstItemTakesItselfOut_NextOneIsStillVisited)
{
    std::vector<UINT> items{1, 2};
    const auto visited = walk(items, [&](UINT id) {
        if (id == 1)
            items.erase(items.begin());
    });

    EXPECT_EQ(visited, (std::vector<UINT>{1, 2}));
}

TEST(PopupWalk, ItemTakesOutAFollower_IsNotVisitedAgain)
{
    std::vector<UINT> items{1, 2, 3, 4};
    const auto visited = walk(items, [&](UINT id) {
        if (id == 2)
            items.erase(items.begin() + 2);
    });

    EXPECT_EQ(visited, (std::vector<UINT>{1, 2, 4}));
}

TEST(PopupWalk, ItemPutsFollowersIn_TheyAreVisited)
{
    std::vector<UINT> items{1, 9};
    const auto visited = walk(items, [&](UINT id) {
        if (id == 1)
            items.insert(items.begin() + 1, {2, 3});
    });

    EXPECT_EQ(visited, (std::vector<UINT>{1, 2, 3, 9}));
}

TEST(PopupWalk, AllItemsGo_Ends)
{
    std::vector<UINT> items{1, 2, 3};

    EXPECT_EQ(walk(items, [&](UINT) { items.clear(); }), (std::vector<UINT>{1}));
}

TEST(PopupWalk, RandomRemovals_EveryItemThatStaysIsVisited)
{
    std::mt19937 random(7);
    for (int round = 0; round < 2000; ++round) {
        std::vector<UINT> items;
        items.resize(random() % 12);
        std::iota(items.begin(), items.end(), 1u);
        const auto visited = walk(items, [&](UINT) {
            if (!items.empty() && random() % 3 == 0)
                items.erase(items.begin() + static_cast<std::ptrdiff_t>(random() % items.size()));
        });

        const std::set<UINT> seen(visited.begin(), visited.end());
        for (const UINT id : items)
            EXPECT_TRUE(seen.contains(id)) << "round " << round;
    }
}
