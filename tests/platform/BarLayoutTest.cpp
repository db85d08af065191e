#include "platform/BarLayout.h"

#include <gtest/gtest.h>

#include <random>

namespace {

zmr::RoomForBars room(bool stretch = true)
{
    return {CRect(0, 0, 200, 100), CSize(), stretch};
}

}  // namespace

TEST(BarLayout, BarsOfAllEdges_LieAlongThemAndLeaveTheMiddle)
{
    zmr::RoomForBars left = room();

    EXPECT_EQ(zmr::take_edge(left, zmr::BarEdge::top, {32767, 20}), CRect(0, 0, 200, 20));
    EXPECT_EQ(zmr::take_edge(left, zmr::BarEdge::bottom, {32767, 10}), CRect(0, 90, 200, 100));
    EXPECT_EQ(zmr::take_edge(left, zmr::BarEdge::left, {30, 32767}), CRect(0, 20, 30, 90));
    EXPECT_EQ(zmr::take_edge(left, zmr::BarEdge::right, {40, 32767}), CRect(160, 20, 200, 90));
    EXPECT_EQ(left.rest, CRect(30, 20, 160, 90));
}

TEST(BarLayout, BarThickerThanTheRest_TakesTheRestOnly)
{
    zmr::RoomForBars left = room();

    EXPECT_EQ(zmr::take_edge(left, zmr::BarEdge::bottom, {50, 500}), CRect(0, 0, 200, 100));
    EXPECT_TRUE(left.rest.IsRectEmpty());
    EXPECT_EQ(left.rest.Height(), 0);
}

TEST(BarLayout, WithoutStretch_BarIsAsLongAsItWants)
{
    zmr::RoomForBars left = room(false);

    EXPECT_EQ(zmr::take_edge(left, zmr::BarEdge::top, {50, 20}), CRect(0, 0, 50, 20));
    EXPECT_EQ(zmr::take_edge(left, zmr::BarEdge::right, {25, 30}), CRect(175, 20, 200, 50));
    EXPECT_EQ(left.rest, CRect(0, 20, 175, 100));
    EXPECT_EQ(left.total, CSize(50 + 25, 30));
}

TEST(BarLayout, NegativeLengths_TakeNothing)
{
    zmr::RoomForBars left = room();

    EXPECT_EQ(zmr::take_edge(left, zmr::BarEdge::top, {-5, -7}), CRect(0, 0, 200, 0));
    EXPECT_EQ(left.rest, CRect(0, 0, 200, 100));
}

TEST(BarLayout, RandomBars_NeverOverlapAndStayInside)
{
    std::mt19937 random(11);
    const auto length = [&] { return static_cast<int>(random() % 160) - 20; };
    for (int round = 0; round < 5000; ++round) {
        zmr::RoomForBars left = {CRect(0, 0, length(), length()), CSize(), random() % 2 == 0};
        const CRect whole(0, 0, std::max<int>(0, static_cast<int>(left.rest.right)),
                          std::max<int>(0, static_cast<int>(left.rest.bottom)));
        for (int bar = 0; bar < 5; ++bar) {
            const CRect before = left.rest;
            const auto edge = static_cast<zmr::BarEdge>(random() % 4);
            const CRect taken = zmr::take_edge(left, edge, {length(), length()});
            CRect common;
            EXPECT_FALSE(common.IntersectRect(&taken, &left.rest));
            EXPECT_GE(left.rest.Width(), 0);
            EXPECT_GE(left.rest.Height(), 0);
            EXPECT_TRUE(taken.left >= whole.left && taken.right <= whole.right &&
                        taken.top >= whole.top && taken.bottom <= whole.bottom)
                << "round " << round;
            EXPECT_LE(left.rest.Width(), std::max(0, before.Width()));
        }
    }
}

TEST(PaneEdges, FirstStretches_TheOthersStandAtTheEnd)
{
    const zmr::PaneWidth panes[] = {{0, true}, {30, false}, {40, false}};

    EXPECT_EQ(zmr::pane_edges(panes, 300, 3, 2), (std::vector<int>{214, 252, 300}));
}

TEST(PaneEdges, LastStretches_ReachesTheEndOfTheBar)
{
    const zmr::PaneWidth panes[] = {{20, false}, {0, true}};

    EXPECT_EQ(zmr::pane_edges(panes, 300, 0, 2), (std::vector<int>{20, -1}));
}

TEST(PaneEdges, TwoStretch_ShareWithTheOddPixelInTheFirst)
{
    const zmr::PaneWidth panes[] = {{10, true}, {10, true}, {20, false}};

    EXPECT_EQ(zmr::pane_edges(panes, 101, 0, 0), (std::vector<int>{10 + 31, 51 + 30, 101}));
}

TEST(PaneEdges, NoRoom_EachKeepsItsWidth)
{
    const zmr::PaneWidth panes[] = {{50, true}, {60, false}};

    EXPECT_EQ(zmr::pane_edges(panes, 20, 1, 2), (std::vector<int>{52, 116}));
}

TEST(PaneEdges, NoPanes_NoEdges)
{
    EXPECT_TRUE(zmr::pane_edges({}, 100, 1, 2).empty());
}

TEST(StatusBarHeight, FollowsTheTextAndNeverFallsBelowTheLeast)
{
    EXPECT_EQ(zmr::status_bar_height(13, 2, 0), 21);
    EXPECT_EQ(zmr::status_bar_height(20, 2, 0), 28);
    EXPECT_EQ(zmr::status_bar_height(13, 2, 30), 30);
    EXPECT_EQ(zmr::status_bar_height(-1, -1, 0), 4);
}

TEST(ScaledToDpi, RoundsToTheNearest)
{
    EXPECT_EQ(zmr::scaled_to_dpi(5, 96), 5);
    EXPECT_EQ(zmr::scaled_to_dpi(5, 144), 8);
    EXPECT_EQ(zmr::scaled_to_dpi(-5, 144), -8);
    EXPECT_EQ(zmr::scaled_to_dpi(3, 120), 4);
}
