#include "scene_editor/core/IconCache.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>
#include <random>
#include <set>

using editor::IconCache;
using testing::ElementsAre;

TEST(IconCache, UnknownRow_IsNotLoaded)
{
    IconCache cache(4);

    EXPECT_EQ(cache.find(1), IconCache::kNotLoaded);
    EXPECT_FALSE(cache.is_known(1));
}

TEST(IconCache, Full_TheRowLookedAtLongestAgoMakesRoom)
{
    IconCache cache(2);
    const int first = cache.store(10);
    const int second = cache.store(11);
    EXPECT_NE(first, second);
    EXPECT_EQ(cache.find(10), first);

    EXPECT_EQ(cache.store(12), second);
    EXPECT_EQ(cache.find(11), IconCache::kNotLoaded);
    EXPECT_EQ(cache.find(10), first);
}

TEST(IconCache, RowWithoutIcon_TakesNoSlot)
{
    IconCache cache(1);
    cache.store_none(1);
    const int slot = cache.store(2);

    EXPECT_EQ(cache.find(1), IconCache::kNoIcon);
    EXPECT_EQ(cache.find(2), slot);
}

TEST(IconCache, Forget_GivesTheSlotBack)
{
    IconCache cache(1);
    const int slot = cache.store(1);
    cache.forget(1);
    cache.forget(1);

    EXPECT_FALSE(cache.is_known(1));
    EXPECT_EQ(cache.store(2), slot);
}

TEST(IconCache, RandomUse_NeverGivesTwoRowsOneSlot)
{
    std::mt19937 random(3);
    IconCache cache(8);
    for (int step = 0; step < 20000; ++step) {
        const auto row = static_cast<std::uint32_t>(random() % 30);
        switch (random() % 4) {
            case 0:
                cache.forget(row);
                break;
            case 1:
                cache.store_none(row);
                break;
            default:
                static_cast<void>(cache.store(row));
                break;
        }
        std::multiset<int> slots;
        for (std::uint32_t any = 0; any < 30; ++any) {
            if (cache.is_known(any) && cache.find(any) != IconCache::kNoIcon)
                slots.insert(cache.find(any));
        }
        ASSERT_EQ(slots.size(), std::set<int>(slots.begin(), slots.end()).size());
        ASSERT_LE(slots.size(), 8U);
    }
}

TEST(IconCache, RowsAround_AreThoseInViewThenThePageAfterThenTheOneBefore)
{
    std::vector<std::uint32_t> shown(10);
    std::iota(shown.begin(), shown.end(), 100);

    EXPECT_THAT(editor::rows_around(shown, 3, 2), ElementsAre(103, 104, 105, 106, 101, 102));
}

TEST(IconCache, RowsAround_AtTheEndsAndBeyond_StayWithinTheRows)
{
    const std::vector<std::uint32_t> shown{7, 8};

    EXPECT_THAT(editor::rows_around(shown, 0, 5), ElementsAre(7, 8));
    EXPECT_THAT(editor::rows_around(shown, 9, 1), ElementsAre(8));
    EXPECT_TRUE(editor::rows_around({}, 0, 5).empty());
}
