#include "app/IdleTurn.h"

#include <gtest/gtest.h>

#include <limits>

TEST(IdleTurn, CountUpToZero_Works)
{
    EXPECT_EQ(zmr::idle_turn(0), zmr::IdleTurn::work);
    EXPECT_EQ(zmr::idle_turn(-1), zmr::IdleTurn::work);
    EXPECT_EQ(zmr::idle_turn(std::numeric_limits<long>::min()), zmr::IdleTurn::work);
}

TEST(IdleTurn, CountAboveZero_Waits)
{
    EXPECT_EQ(zmr::idle_turn(1), zmr::IdleTurn::wait);
    EXPECT_EQ(zmr::idle_turn(std::numeric_limits<long>::max()), zmr::IdleTurn::wait);
}
