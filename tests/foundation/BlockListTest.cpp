#include "foundation/BlockList.h"

#include <gtest/gtest.h>

TEST(BlockList, PushBack_OverManyBlocks_AllItemsStandWhereTheyWere)
{
    zmr::BlockList<int, 4> list;
    EXPECT_EQ(list.size(), 0u);
    const int* first = &list.push_back(0);
    for (int number = 1; number < 103; ++number)
        EXPECT_EQ(list.push_back(number), number);

    ASSERT_EQ(list.size(), 103u);
    for (std::size_t index = 0; index < list.size(); ++index)
        EXPECT_EQ(list[index], static_cast<int>(index));
    EXPECT_EQ(&list[0], first);
}

TEST(BlockList, Items_CanBeChanged)
{
    zmr::BlockList<int, 2> list;
    for (int number = 0; number < 5; ++number)
        list.push_back(number);
    list[3] = 30;
    const auto& same = list;

    EXPECT_EQ(same[2], 2);
    EXPECT_EQ(same[3], 30);
    EXPECT_EQ(same[4], 4);
}
