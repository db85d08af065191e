#include "graphics/StretchPart.h"

#include <gtest/gtest.h>

#include <climits>

TEST(StretchPart, InsideTheMap_StaysAsItIs)
{
    zmr::StretchPart part{1, 2, 3, 4, 10, 20, 40, 60};
    const zmr::StretchPart before = part;

    EXPECT_TRUE(zmr::clip_to_map(part, 4, 6));
    EXPECT_EQ(part, before);
}

TEST(StretchPart, AcrossTheEdges_IsCutInProportion)
{
    zmr::StretchPart part{-1, 3, 4, 4, 0, 0, 40, 80};

    EXPECT_TRUE(zmr::clip_to_map(part, 2, 5));
    EXPECT_EQ(part, (zmr::StretchPart{0, 3, 2, 2, 10, 0, 30, 40}));
}

TEST(StretchPart, OutsideOrEmpty_IsNothing)
{
    const zmr::StretchPart parts[] = {
        {5, 0, 1, 1, 0, 0, 9, 9},
        {-3, 0, 3, 1, 0, 0, 9, 9},
        {0, 0, 0, 1, 0, 0, 9, 9},
        {0, 0, 1, -1, 0, 0, 9, 9},
        {0, 0, 1, 1, 9, 0, 9, 9},
        {0, 0, 1, 1, 0, 9, 9, 0},
        {INT_MAX, 0, INT_MAX, 1, 0, 0, 9, 9},
        {INT_MIN, 0, INT_MAX, 1, 0, 0, 9, 9},
    };
    for (zmr::StretchPart part : parts)
        EXPECT_FALSE(zmr::clip_to_map(part, 5, 5)) << part.x << " " << part.width;
}

TEST(StretchPart, WidestNumbers_DoNotOverflow)
{
    zmr::StretchPart part{INT_MIN / 2, 0, INT_MAX, 1, INT_MIN, 0, INT_MAX, 1};

    EXPECT_TRUE(zmr::clip_to_map(part, 1 << 20, 1));
    EXPECT_EQ(part.x, 0);
    EXPECT_EQ(part.width, 1 << 20);
}
