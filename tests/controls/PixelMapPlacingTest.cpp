#include "controls/PixelMapPlacing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <random>
#include <vector>

using zmr::free_strips;
using zmr::PicturePlacing;
using zmr::PictureSize;
using zmr::place_picture;
using zmr::wants_smaller_picture;

namespace {

constexpr GRect kNothing;

const std::vector<PicturePlacing> kAllPlacings = {PicturePlacing::kCentered,
                                                  PicturePlacing::kTopLeft, PicturePlacing::kFit,
                                                  PicturePlacing::kStretch};

/// How often each pixel of the area lies in a strip or under the picture.
std::vector<int> coverage(const GRect& placed, PictureSize area)
{
    std::vector<GRect> parts = {placed};
    for (const GRect& strip : free_strips(placed, area))
        parts.push_back(strip);
    std::vector<int> counts(static_cast<std::size_t>(area.width * area.height), 0);
    for (const GRect& part : parts)
        for (int y = std::max(part.y0, 0); y < std::min(part.y1, area.height); ++y)
            for (int x = std::max(part.x0, 0); x < std::min(part.x1, area.width); ++x)
                ++counts[static_cast<std::size_t>(y * area.width + x)];
    return counts;
}

}  // namespace

TEST(PlacePicture, Centered_SmallerPicture_LiesInTheMiddleRoundedTowardsTheTopLeft)
{
    EXPECT_EQ(place_picture(PicturePlacing::kCentered, {10, 10}, {100, 51}), GRect(45, 20, 55, 30));
}

TEST(PlacePicture, Centered_LargerPicture_HasNegativeLeftAndTopRoundedTowardsZero)
{
    EXPECT_EQ(place_picture(PicturePlacing::kCentered, {101, 61}, {40, 20}),
              GRect(-30, -20, 71, 41));
}

TEST(PlacePicture, TopLeft_KeepsTheNaturalSize)
{
    EXPECT_EQ(place_picture(PicturePlacing::kTopLeft, {7, 300}, {40, 20}), GRect(0, 0, 7, 300));
}

TEST(PlacePicture, Stretch_FillsTheArea)
{
    EXPECT_EQ(place_picture(PicturePlacing::kStretch, {7, 300}, {40, 20}), GRect(0, 0, 40, 20));
}

TEST(PlacePicture, Fit_SquareInAWideArea_IsAsHighAsTheAreaAndInItsMiddle)
{
    EXPECT_EQ(place_picture(PicturePlacing::kFit, {10, 10}, {100, 50}), GRect(25, 0, 75, 50));
}

TEST(PlacePicture, Fit_AreaRelativelyHigherThanPicture_WidthLimits)
{
    EXPECT_EQ(place_picture(PicturePlacing::kFit, {30, 10}, {60, 100}), GRect(0, 40, 60, 60));
}

TEST(PlacePicture, Fit_EqualRatios_HeightBranchAppliesAndFillsTheArea)
{
    EXPECT_EQ(place_picture(PicturePlacing::kFit, {30, 20}, {60, 40}), GRect(0, 0, 60, 40));
    // 1/3 is no double, yet both ratios are the same one.
    EXPECT_EQ(place_picture(PicturePlacing::kFit, {9, 27}, {3, 9}), GRect(0, 0, 3, 9));
}

TEST(PlacePicture, Fit_SideThatWouldBeBelowOnePixel_LeavesAnEmptyRectangle)
{
    const GRect placed = place_picture(PicturePlacing::kFit, {1000, 1}, {10, 10});

    EXPECT_TRUE(placed.is_empty());
    EXPECT_EQ(placed, GRect(0, 5, 10, 5));
}

TEST(PlacePicture, PictureWithoutPixels_IsNowhere)
{
    for (const PicturePlacing placing : kAllPlacings)
        for (const PictureSize picture : {PictureSize{0, 5}, {5, 0}, {0, 0}, {-1, 5}, {5, INT_MIN}})
            EXPECT_EQ(place_picture(placing, picture, {40, 20}), kNothing);
}

TEST(PlacePicture, AreaWithoutPixels_ScaledPictureIsEmptyAndNaturalSizeStays)
{
    for (const PictureSize area : {PictureSize{0, 0}, {-5, 0}, {INT_MIN, INT_MIN}}) {
        EXPECT_TRUE(place_picture(PicturePlacing::kFit, {8, 6}, area).is_empty());
        EXPECT_TRUE(place_picture(PicturePlacing::kStretch, {8, 6}, area).is_empty());
        EXPECT_EQ(place_picture(PicturePlacing::kTopLeft, {8, 6}, area), GRect(0, 0, 8, 6));
        EXPECT_EQ(place_picture(PicturePlacing::kCentered, {8, 6}, area), GRect(-4, -3, 4, 3));
    }
}

TEST(PlacePicture, UnknownPlacing_IsNowhere)
{
    EXPECT_EQ(place_picture(static_cast<PicturePlacing>(0), {8, 6}, {40, 20}), kNothing);
    EXPECT_EQ(place_picture(static_cast<PicturePlacing>(5), {8, 6}, {40, 20}), kNothing);
}

TEST(PlacePicture, LargestSizes_DoNotOverflow)
{
    EXPECT_EQ(place_picture(PicturePlacing::kCentered, {INT_MAX, INT_MAX}, {1, INT_MAX}),
              GRect(-(INT_MAX / 2), 0, INT_MAX / 2 + 1, INT_MAX));
    EXPECT_EQ(place_picture(PicturePlacing::kFit, {INT_MAX, INT_MAX - 1}, {INT_MAX, INT_MAX - 1}),
              GRect(0, 0, INT_MAX, INT_MAX - 1));
    EXPECT_EQ(place_picture(PicturePlacing::kFit, {1, INT_MAX}, {INT_MAX, INT_MAX}),
              GRect(INT_MAX / 2, 0, INT_MAX / 2 + 1, INT_MAX));
}

TEST(PlacePicture, RandomSizes_FitLiesInTheAreaTouchesTwoEdgesAndKeepsTheProportion)
{
    std::mt19937 random(7);
    std::uniform_int_distribution<int> small(1, 60);
    std::uniform_int_distribution<int> any(1, INT_MAX);
    for (int turn = 0; turn < 20'000; ++turn) {
        const bool is_small = turn % 2 == 0;
        const auto side = [&] { return is_small ? small(random) : any(random); };
        const PictureSize picture{side(), side()};
        const PictureSize area{side(), side()};
        const GRect placed = place_picture(PicturePlacing::kFit, picture, area);

        ASSERT_GE(placed.x0, 0);
        ASSERT_GE(placed.y0, 0);
        ASSERT_LE(placed.x1, area.width);
        ASSERT_LE(placed.y1, area.height);
        ASSERT_TRUE(placed.width() == area.width || placed.height() == area.height);
        // The free space is the same on both sides, to a pixel.
        ASSERT_LE(area.width - placed.x1 - placed.x0, 1);
        ASSERT_LE(area.height - placed.y1 - placed.y0, 1);
        if (placed.width() == area.width && placed.height() == area.height)
            continue;
        // Rounded down from the exact proportion, by less than a pixel.
        const auto exact = placed.width() == area.width
                               ? std::int64_t{area.width} * picture.height / picture.width
                               : std::int64_t{area.height} * picture.width / picture.height;
        ASSERT_EQ(placed.width() == area.width ? placed.height() : placed.width(), exact);
    }
}

TEST(WantsSmallerPicture, OnlyScaledPlacingsOfAPictureBeyondItsRectangle)
{
    const GRect placed(0, 0, 40, 20);
    for (const PicturePlacing placing : {PicturePlacing::kFit, PicturePlacing::kStretch}) {
        EXPECT_TRUE(wants_smaller_picture(placing, {41, 20}, placed));
        EXPECT_TRUE(wants_smaller_picture(placing, {40, 21}, placed));
        EXPECT_TRUE(wants_smaller_picture(placing, {1, 21}, placed));
        EXPECT_FALSE(wants_smaller_picture(placing, {40, 20}, placed));
        EXPECT_FALSE(wants_smaller_picture(placing, {4, 2}, placed));
    }
    EXPECT_FALSE(wants_smaller_picture(PicturePlacing::kCentered, {400, 200}, placed));
    EXPECT_FALSE(wants_smaller_picture(PicturePlacing::kTopLeft, {400, 200}, placed));
}

TEST(WantsSmallerPicture, EmptyRectangle_KeepsThePicture)
{
    EXPECT_FALSE(wants_smaller_picture(PicturePlacing::kStretch, {400, 200}, kNothing));
    EXPECT_FALSE(wants_smaller_picture(PicturePlacing::kFit, {1000, 1}, GRect(0, 5, 10, 5)));
}

TEST(FreeStrips, PictureInTheMiddle_FourStripsInTheirOrder)
{
    const auto strips = free_strips(GRect(10, 5, 30, 15), {40, 20});

    EXPECT_EQ(strips[0], GRect(0, 0, 40, 5));
    EXPECT_EQ(strips[1], GRect(0, 15, 40, 20));
    EXPECT_EQ(strips[2], GRect(0, 5, 10, 15));
    EXPECT_EQ(strips[3], GRect(30, 5, 40, 15));
}

TEST(FreeStrips, PictureAtTheTopLeft_OnlyBelowAndRight)
{
    const auto strips = free_strips(GRect(0, 0, 30, 15), {40, 20});

    EXPECT_EQ(strips[0], kNothing);
    EXPECT_EQ(strips[1], GRect(0, 15, 40, 20));
    EXPECT_EQ(strips[2], kNothing);
    EXPECT_EQ(strips[3], GRect(30, 0, 40, 15));
}

TEST(FreeStrips, PictureOverTheWholeArea_LeavesNothing)
{
    for (const GRect& placed :
         {GRect(0, 0, 40, 20), GRect(-30, -20, 71, 41), GRect(INT_MIN, INT_MIN, INT_MAX, INT_MAX)})
        for (const GRect& strip : free_strips(placed, {40, 20}))
            EXPECT_EQ(strip, kNothing);
}

TEST(FreeStrips, PictureOutsideOrEmpty_FirstStripIsTheWholeArea)
{
    for (const GRect& placed : {kNothing, GRect(40, 0, 50, 20), GRect(-9, 0, 0, 20),
                                GRect(0, 20, 40, 30), GRect(5, 5, 5, 10), GRect(10, 10, 5, 5)}) {
        const auto strips = free_strips(placed, {40, 20});

        EXPECT_EQ(strips[0], GRect(0, 0, 40, 20));
        for (std::size_t i = 1; i < strips.size(); ++i)
            EXPECT_EQ(strips[i], kNothing);
    }
}

TEST(FreeStrips, AreaWithoutPixels_LeavesNothing)
{
    for (const PictureSize area : {PictureSize{0, 20}, {40, 0}, {-1, -1}})
        for (const GRect& strip : free_strips(GRect(0, 0, 5, 5), area))
            EXPECT_EQ(strip, kNothing);
}

TEST(FreeStrips, RandomPlaces_EachPixelIsCoveredExactlyOnce)
{
    std::mt19937 random(11);
    std::uniform_int_distribution<int> side(1, 12);
    std::uniform_int_distribution<int> edge(-6, 18);
    for (int turn = 0; turn < 20'000; ++turn) {
        const PictureSize area{side(random), side(random)};
        const int left = edge(random);
        const int top = edge(random);
        const GRect placed(left, top, left + side(random), top + side(random));

        for (const int count : coverage(placed, area))
            ASSERT_EQ(count, 1);
    }
}
