#include "foundation/TGCollection.h"

#include <gtest/gtest.h>

#include <memory>

TEST(TGCollection, Owner_DeletesItsItems)
{
    const auto watched = std::make_shared<int>(1);
    {
        TGCollection<std::shared_ptr<int>> owner(0, 4, 1);
        owner.v_insert(new std::shared_ptr<int>(watched));
        owner.v_insert(new std::shared_ptr<int>(watched));
        EXPECT_EQ(*owner.at(1), watched);
        EXPECT_EQ(owner.at(2), nullptr);
        EXPECT_EQ(owner.at(-1), nullptr);
        owner.at_free(0);
        EXPECT_EQ(watched.use_count(), 2);
    }
    EXPECT_EQ(watched.use_count(), 1);
}

TEST(TGCollection, Borrower_DeletesNothing)
{
    int number = 5;
    TGCollection<int> borrower(0, 1, 0);
    borrower.v_insert(&number);
    borrower.empty();
    EXPECT_EQ(borrower.count, 0);
}
