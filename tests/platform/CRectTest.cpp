#include "platform/CRect.h"

#include <gtest/gtest.h>

TEST(CPoint, DifferenceOfPoints_IsASize)
{
    const CSize size = CPoint(10, 20) - CPoint(3, 5);

    EXPECT_EQ(size, CSize(7, 15));
    EXPECT_EQ(CPoint(3, 5) + size, CPoint(10, 20));
}

TEST(CRect, PtInRect_LeftAndTopBelongRightAndBottomDoNot)
{
    const CRect rect(10, 20, 30, 40);

    EXPECT_TRUE(rect.PtInRect(CPoint(10, 20)));
    EXPECT_TRUE(rect.PtInRect(CPoint(29, 39)));
    EXPECT_FALSE(rect.PtInRect(CPoint(30, 39)));
    EXPECT_FALSE(rect.PtInRect(CPoint(29, 40)));
    EXPECT_FALSE(rect.PtInRect(CPoint(9, 20)));
}

TEST(CRect, IsRectEmpty_WithoutAreaOrTurnedRound)
{
    EXPECT_TRUE(CRect(5, 5, 5, 9).IsRectEmpty());
    EXPECT_TRUE(CRect(9, 5, 5, 9).IsRectEmpty());
    EXPECT_FALSE(CRect(-1, -1, 0, 0).IsRectEmpty());
    EXPECT_FALSE(CRect(5, 5, 5, 9).IsRectNull());
    EXPECT_TRUE(CRect().IsRectNull());
}

TEST(CRect, IntersectRect_CommonPartOrNothing)
{
    CRect common;

    EXPECT_TRUE(common.IntersectRect(CRect(0, 0, 10, 10), CRect(5, -5, 20, 5)));
    EXPECT_EQ(common, CRect(5, 0, 10, 5));
    EXPECT_FALSE(common.IntersectRect(CRect(0, 0, 10, 10), CRect(10, 0, 20, 10)));
    EXPECT_TRUE(common.IsRectNull());
    EXPECT_FALSE(common.IntersectRect(CRect(0, 0, 10, 10), CRect(5, 5, 5, 5)));
}

TEST(CRect, UnionRect_EmptyRectangleDoesNotCount)
{
    CRect both;

    EXPECT_TRUE(both.UnionRect(CRect(0, 0, 10, 10), CRect(20, -5, 30, 5)));
    EXPECT_EQ(both, CRect(0, -5, 30, 10));
    EXPECT_TRUE(both.UnionRect(CRect(0, 0, 10, 10), CRect(50, 50, 50, 60)));
    EXPECT_EQ(both, CRect(0, 0, 10, 10));
    EXPECT_FALSE(both.UnionRect(CRect(1, 1, 1, 1), CRect(2, 2, 2, 2)));
    EXPECT_TRUE(both.IsRectNull());
}

TEST(CRect, UnionWithItself_ResultMayBeAnOperand)
{
    CRect rect(0, 0, 10, 10);
    rect |= CRect(5, 5, 20, 20);
    EXPECT_EQ(rect, CRect(0, 0, 20, 20));
    rect &= CRect(10, 10, 100, 100);

    EXPECT_EQ(rect, CRect(10, 10, 20, 20));
}

TEST(CRect, InflateOffsetNormalize_MoveTheEdges)
{
    CRect rect(10, 10, 20, 20);
    rect.InflateRect(1, 2);
    EXPECT_EQ(rect, CRect(9, 8, 21, 22));
    rect.DeflateRect(1, 2, 3, 4);
    EXPECT_EQ(rect, CRect(10, 10, 18, 18));
    rect.OffsetRect(CPoint(-10, 5));
    EXPECT_EQ(rect, CRect(0, 15, 8, 23));
    rect.MoveToXY(1, 1);
    EXPECT_EQ(rect, CRect(1, 1, 9, 9));
    CRect turned(9, 8, 1, 2);
    turned.NormalizeRect();

    EXPECT_EQ(turned, CRect(1, 2, 9, 8));
}

TEST(CRect, SizesAndCorners_FollowFromTheEdges)
{
    const CRect rect(CPoint(2, 3), CSize(10, 20));

    EXPECT_EQ(rect.Width(), 10);
    EXPECT_EQ(rect.Height(), 20);
    EXPECT_EQ(rect.Size(), CSize(10, 20));
    EXPECT_EQ(rect.BottomRight(), CPoint(12, 23));
    EXPECT_EQ(rect.CenterPoint(), CPoint(7, 13));
}
