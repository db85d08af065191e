#include "scene_editor/core/MovieClock.h"

#include <gtest/gtest.h>

using editor::MovieClock;
using std::chrono::milliseconds;

namespace {

const MovieClock::Time kBegin{std::chrono::hours(5)};

}  // namespace

TEST(MovieClock, Standing_ShowsOneFrame)
{
    MovieClock clock(25, 25, 1);
    EXPECT_EQ(clock.frame(kBegin), 0);
    clock.go_to(7, kBegin);
    EXPECT_EQ(clock.frame(kBegin + milliseconds(900)), 7);
    EXPECT_FALSE(clock.plays());
}

TEST(MovieClock, Playing_ShowsEachFrameFromItsTimeOnAndBeginsAnew)
{
    MovieClock clock(25, 25, 1);
    clock.play(kBegin);

    EXPECT_EQ(clock.frame(kBegin + milliseconds(39)), 0);
    EXPECT_EQ(clock.frame(kBegin + milliseconds(40)), 1);
    EXPECT_EQ(clock.frame(kBegin + milliseconds(999)), 24);
    EXPECT_EQ(clock.frame(kBegin + milliseconds(1000)), 0);
    EXPECT_EQ(clock.frame(kBegin - milliseconds(10)), 0);
}

TEST(MovieClock, Next_IsTheTimeOfTheNextFrame)
{
    for (const std::uint32_t rate : {24U, 25U, 30U, 60U, 7U}) {
        MovieClock clock(1000, rate, 1);
        clock.play(kBegin);
        MovieClock::Time now = kBegin;
        for (int frame = 1; frame < 2000; ++frame) {
            now = clock.next(now);
            ASSERT_EQ(clock.frame(now), frame % 1000) << rate;
            ASSERT_EQ(clock.frame(now - MovieClock::Span(1)), (frame - 1) % 1000) << rate;
        }
    }
}

TEST(MovieClock, Pause_KeepsTheFrameAndPlayGoesOnThere)
{
    MovieClock clock(25, 25, 1);
    clock.play(kBegin);
    clock.pause(kBegin + milliseconds(100));
    EXPECT_EQ(clock.frame(kBegin + milliseconds(700)), 2);

    clock.play(kBegin + milliseconds(700));
    EXPECT_EQ(clock.frame(kBegin + milliseconds(740)), 3);
}

TEST(MovieClock, GoTo_StaysWithinTheMovie)
{
    MovieClock clock(25, 25, 1);
    clock.go_to(-3, kBegin);
    EXPECT_EQ(clock.frame(kBegin), 0);
    clock.go_to(25, kBegin);
    EXPECT_EQ(clock.frame(kBegin), 24);
}

TEST(MovieClock, NoFramesAndImpossibleRates_DoNoHarm)
{
    MovieClock none(-1, 25, 1);
    none.play(kBegin);
    EXPECT_FALSE(none.plays());
    EXPECT_EQ(none.frame(kBegin), 0);
    for (const auto& [rate, scale] : {std::pair{0U, 1U},
                                      {1U, 0U},
                                      {4'000'000'000U, 1U},
                                      {1U, 4'000'000'000U},
                                      {9'000'000U, 1U}}) {
        MovieClock clock(10, rate, scale);
        clock.play(kBegin);
        EXPECT_EQ(clock.frame(kBegin + milliseconds(2500)), 2) << rate << "/" << scale;
    }
}

TEST(MovieClock, Text_TellsFrameAndTimes)
{
    EXPECT_EQ(MovieClock(25, 25, 1).text(7), "Frame 8 of 25, 0:00.28 of 0:01.00");
    EXPECT_EQ(MovieClock(1800, 25, 1).text(1750), "Frame 1751 of 1800, 1:10.00 of 1:12.00");
}
