#include "platform/PlatformTypes.h"

#include <gtest/gtest.h>

TEST(PlatformTypes, ScalarsThatReachFiles_HaveTheirWidths)
{
    EXPECT_EQ(sizeof(BYTE), 1u);
    EXPECT_EQ(sizeof(WORD), 2u);
    EXPECT_EQ(sizeof(DWORD), 4u);
    EXPECT_EQ(sizeof(LONG), 4u);
    EXPECT_EQ(sizeof(LONGLONG), 8u);
    EXPECT_EQ(sizeof(COLORREF), 4u);
}

TEST(PlatformTypes, PointerSizedNames_HoldAPointer)
{
    EXPECT_EQ(sizeof(DWORD_PTR), sizeof(void*));
    EXPECT_EQ(sizeof(HWND), sizeof(void*));
}
