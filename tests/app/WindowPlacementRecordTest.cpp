#include "app/WindowPlacementRecord.h"

#include "foundation/GException.h"
#include "foundation/mpstream.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <random>
#include <vector>

namespace {

using zmr::WindowPlacementRecord;

constexpr std::int32_t kFar = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kFarBack = std::numeric_limits<std::int32_t>::min();

WindowPlacementRecord placed(std::int32_t left, std::int32_t top, std::int32_t right,
                             std::int32_t bottom)
{
    WindowPlacementRecord record;
    record.left = left;
    record.top = top;
    record.right = right;
    record.bottom = bottom;
    return record;
}

/// A monitor of 1000 by 800 and another one to its right, which is higher up.
const std::vector<CRect> kTwo = {CRect(0, 0, 1000, 800), CRect(1000, -200, 2000, 500)};

bool shows(const WindowPlacementRecord& record, const std::vector<CRect>& areas)
{
    for (const CRect& area : areas) {
        if (record.left < area.right && area.left < record.right && record.top < area.bottom &&
            area.top < record.bottom)
            return true;
    }
    return false;
}

}  // namespace

TEST(WindowPlacementRecord, Written_IsTenValuesOf32Bits)
{
    WindowPlacementRecord record = placed(5, 6, 7, 0x01020304);
    record.flags = 2;
    record.show = 3;
    record.minimized_x = -1;
    record.maximized_y = 4;
    ompstream out;
    out << record;

    ASSERT_EQ(out.bytes().size(), 40u);
    impstream in(out.bytes());
    for (const unsigned long expected :
         {2UL, 3UL, 0xFFFFFFFFUL, 0xFFFFFFFFUL, 0xFFFFFFFFUL, 4UL, 5UL, 6UL, 7UL, 0x01020304UL})
        EXPECT_EQ(in.readDWord(), expected);
}

TEST(WindowPlacementRecord, Read_IsWhatWasWritten)
{
    WindowPlacementRecord record = placed(-5, kFarBack, 7, kFar);
    record.flags = 0xFFFFFFFF;
    record.show = 0x80000000;
    ompstream out;
    out << record;
    impstream in(out.bytes());
    WindowPlacementRecord read;
    in >> read;

    EXPECT_EQ(read, record);
}

TEST(WindowPlacementRecord, CutAtEachLength_ThrowsAndLeavesTheRecord)
{
    ompstream out;
    out << placed(1, 2, 3, 4);
    for (std::size_t length = 0; length < 40; ++length) {
        impstream in(out.bytes().first(length));
        WindowPlacementRecord record = placed(9, 9, 9, 9);
        EXPECT_THROW(in >> record, GStreamException);
        EXPECT_EQ(record, placed(9, 9, 9, 9));
    }
}

TEST(UsablePlacement, ThatShowsSomewhere_Stays)
{
    for (const auto& record : {placed(0, 0, 1000, 800), placed(999, 799, 1500, 1500),
                               placed(-500, -500, 1, 1), placed(1999, -300, 2500, -199),
                               placed(kFarBack, kFarBack, kFar, kFar), placed(10, 20, 11, 21)})
        EXPECT_EQ(usable_placement(record, kTwo), record);
}

TEST(UsablePlacement, ThatShowsNowhere_MovesIntoTheNearestArea)
{
    EXPECT_EQ(usable_placement(placed(-300, 100, -100, 200), kTwo), placed(0, 100, 200, 200));
    EXPECT_EQ(usable_placement(placed(2000, 0, 2100, 100), kTwo), placed(1900, 0, 2000, 100));
    EXPECT_EQ(usable_placement(placed(1500, 600, 1600, 700), kTwo), placed(1500, 400, 1600, 500));
    EXPECT_EQ(usable_placement(placed(100, 5000, 300, 5100), kTwo), placed(100, 700, 300, 800));
}

TEST(UsablePlacement, LargerThanTheArea_IsCutToIt)
{
    EXPECT_EQ(usable_placement(placed(-9000, 5, -1, 700), kTwo), placed(0, 5, 1000, 700));
    EXPECT_EQ(usable_placement(placed(kFarBack, kFarBack, -1, -1000), {kTwo.data(), 1}),
              placed(0, 0, 1000, 800));
}

TEST(UsablePlacement, WithoutASize_IsTheMiddleOfThePrimaryArea)
{
    for (const auto& record : {placed(10, 10, 10, 50), placed(10, 10, 50, 10),
                               placed(50, 10, 10, 50), placed(kFar, kFar, kFarBack, kFarBack)})
        EXPECT_EQ(usable_placement(record, kTwo), placed(125, 100, 875, 700));
}

TEST(UsablePlacement, NoAreas_TheRectangleStays)
{
    EXPECT_EQ(usable_placement(placed(-300, 100, -100, 200), {}), placed(-300, 100, -100, 200));
}

TEST(UsablePlacement, UnknownShowAndFlags_BecomeKnownOnes)
{
    WindowPlacementRecord record = placed(0, 0, 10, 10);
    record.show = 12;
    record.flags = 0xFFFFFFFF;
    EXPECT_EQ(usable_placement(record, kTwo).show, WindowPlacementRecord::kNormal);
    EXPECT_EQ(usable_placement(record, kTwo).flags, 7u);
    for (std::uint32_t show = 0; show <= WindowPlacementRecord::kLastShow; ++show) {
        record.show = show;
        EXPECT_EQ(usable_placement(record, kTwo).show, show);
    }
}

TEST(UsablePlacement, AnyRecord_EndsWhereItShows)
{
    std::minstd_rand random(4711);
    const auto value = [&random] {
        // All sizes of numbers, so that small rectangles near the areas come as well.
        const auto bits = static_cast<std::int64_t>(random() % 31) + 1;
        const auto limit = std::int64_t{1} << bits;
        return static_cast<std::int32_t>(static_cast<std::int64_t>(random()) % limit - limit / 2);
    };
    for (int turn = 0; turn < 20'000; ++turn) {
        const WindowPlacementRecord record = placed(value(), value(), value(), value());
        const WindowPlacementRecord usable = usable_placement(record, kTwo);
        ASSERT_TRUE(shows(usable, kTwo));
        ASSERT_LT(usable.left, usable.right);
        ASSERT_LT(usable.top, usable.bottom);
        ASSERT_EQ(usable_placement(usable, kTwo), usable);
        if (record.left < record.right && record.top < record.bottom && shows(record, kTwo)) {
            ASSERT_EQ(usable, record);
        }
    }
}
