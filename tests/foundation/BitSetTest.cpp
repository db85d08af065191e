#include "foundation/BitSet.h"

#include "foundation/GException.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <vector>

TEST(BitSet, New_IsEmpty)
{
    const BitSet set;
    EXPECT_EQ(set.size, 0u);
    EXPECT_FALSE(set.contains(0));
    EXPECT_TRUE(set == BitSet());
}

TEST(BitSet, Bit_LiesInItsWord)
{
    BitSet set(70);
    set += 33;
    ASSERT_EQ(set.words.size(), 3u);
    EXPECT_EQ(set.words[1], 2u);
    EXPECT_TRUE(set.contains(33));
    set -= 33;
    EXPECT_EQ(set.words[1], 0u);
}

TEST(BitSet, BitsOutside_AreIgnored)
{
    BitSet set(40);
    set += 40;
    set += 63;
    set -= 1000;
    set += std::numeric_limits<std::uint64_t>::max();
    EXPECT_TRUE(set == BitSet(40));
    EXPECT_FALSE(set.contains(40));
    EXPECT_FALSE(set.contains(std::numeric_limits<std::uint64_t>::max()));
}

TEST(BitSet, SetRange_LeavesTheEndOut)
{
    BitSet set(100);
    set.set_range(30, 65, true);
    EXPECT_FALSE(set.contains(29));
    EXPECT_TRUE(set.contains(30));
    EXPECT_TRUE(set.contains(64));
    EXPECT_FALSE(set.contains(65));
    set.set_range(31, 64, false);
    EXPECT_TRUE(set.contains(30));
    EXPECT_FALSE(set.contains(31));
    EXPECT_TRUE(set.contains(64));
}

TEST(BitSet, SetRange_EmptyOrOutside)
{
    BitSet set(40);
    set.set_range(5, 5, true);
    set.set_range(6, 5, true);
    set.set_range(40, 1000, true);
    EXPECT_TRUE(set == BitSet(40));
    set.set_range(38, std::numeric_limits<std::uint64_t>::max(), true);
    EXPECT_TRUE(set.contains(39));
    EXPECT_EQ(set.words[1], 0xC0u);
    set.set_range(0, 40, true);
    EXPECT_EQ(set.words[0], 0xFFFFFFFFu);
    EXPECT_EQ(set.words[1], 0xFFu);
}

TEST(BitSet, Resize_NewBitsAreClear)
{
    BitSet set(40);
    set.set_range(0, 40, true);
    set.resize(10);
    set.resize(40);
    for (std::uint64_t bit = 0; bit < 40; ++bit)
        EXPECT_EQ(set.contains(bit), bit < 10);
    set.resize(0);
    EXPECT_TRUE(set.words.empty());
}

TEST(BitSet, Equality_ComparesSizeAndBits)
{
    BitSet a(33);
    BitSet b(34);
    EXPECT_FALSE(a == b);
    b.resize(33);
    EXPECT_TRUE(a == b);
    a += 32;
    EXPECT_FALSE(a == b);
    const BitSet c(a);
    EXPECT_TRUE(a == c);
    b = a;
    EXPECT_TRUE(a == b);
}

TEST(BitSet, AbsurdSize_ThrowsAndChangesNothing)
{
    BitSet set(10);
    set += 3;
    EXPECT_THROW(set.resize(BitSet::kMaxBits + 1), OutOfMemory_Exception);
    EXPECT_THROW(set.resize(std::numeric_limits<std::uint64_t>::max()), OutOfMemory_Exception);
    EXPECT_EQ(set.size, 10u);
    EXPECT_TRUE(set.contains(3));
}

TEST(BitSet, RandomOperations_AgreeWithAVectorOfBool)
{
    std::mt19937 random(21);
    BitSet set;
    std::vector<bool> model;
    for (int step = 0; step < 5000; ++step) {
        const auto from = static_cast<std::size_t>(random() % 150);
        const auto to = static_cast<std::size_t>(random() % 150);
        switch (random() % 4) {
            case 0:
                set.resize(from);
                model.resize(from);
                break;
            case 1: {
                const bool value = random() % 2 == 0;
                set.set_range(from, to, value);
                for (std::size_t bit = from; bit < std::min(to, model.size()); ++bit)
                    model[bit] = value;
                break;
            }
            case 2:
                set += from;
                if (from < model.size())
                    model[from] = true;
                break;
            default:
                set -= from;
                if (from < model.size())
                    model[from] = false;
                break;
        }
        ASSERT_EQ(set.size, model.size());
        for (std::size_t bit = 0; bit < 200; ++bit)
            ASSERT_EQ(set.contains(bit), bit < model.size() && model[bit]) << "step " << step;
        ASSERT_EQ(set.words.size(), (model.size() + 31) / 32);
    }
}
