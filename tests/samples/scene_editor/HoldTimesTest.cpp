#include "scene_editor/core/HoldTimes.h"

#include <gtest/gtest.h>

using editor::HoldTimes;
using std::chrono::milliseconds;

namespace {

HoldTimes::Time at(int ms)
{
    return HoldTimes::Time{} + milliseconds(ms);
}

}  // namespace

TEST(HoldTimes, Turns_KeepLastLongestAndItsSource)
{
    HoldTimes times;
    times.begin(at(0), 5);
    times.end(at(40));
    times.begin(at(100), 6);
    times.end(at(110));

    EXPECT_EQ(times.turns(), 2U);
    EXPECT_EQ(times.last(), milliseconds(10));
    EXPECT_EQ(times.longest(), milliseconds(40));
    EXPECT_EQ(times.longest_what(), 5U);
}

TEST(HoldTimes, TurnOfJustTheLimit_IsNotOverIt)
{
    HoldTimes times;
    times.begin(at(0), 0);
    times.end(at(100));
    EXPECT_EQ(times.over_limit(), 0U);

    times.begin(at(200), 0);
    times.end(at(301));
    EXPECT_EQ(times.over_limit(), 1U);
}

TEST(HoldTimes, TimeInALoopOfTheSystem_DoesNotCount)
{
    HoldTimes times;
    times.begin(at(0), 0);
    times.pause(at(20));
    times.resume(at(5000));
    times.end(at(5030));

    EXPECT_EQ(times.longest(), milliseconds(30));
    EXPECT_EQ(times.over_limit(), 0U);
}

TEST(HoldTimes, NestedPauses_EndWithTheOutermost)
{
    HoldTimes times;
    times.begin(at(0), 0);
    times.pause(at(1));
    times.pause(at(2));
    times.resume(at(900));
    times.resume(at(1000));
    times.end(at(1007));

    EXPECT_EQ(times.longest(), milliseconds(7));
}

TEST(HoldTimes, EndAndResumeWithoutBegin_CountNothing)
{
    HoldTimes times;
    times.end(at(500));
    times.resume(at(600));
    times.pause(at(700));

    EXPECT_EQ(times.turns(), 0U);
}

TEST(HoldTimes, Reset_ForgetsWhatWas)
{
    HoldTimes times;
    times.begin(at(0), 3);
    times.end(at(400));
    times.reset();

    EXPECT_EQ(times.turns(), 0U);
    EXPECT_EQ(times.over_limit(), 0U);
    EXPECT_EQ(times.longest(), milliseconds(0));
}

TEST(HoldTimes, SpanText_HasOneDecimalBelowTenMilliseconds)
{
    EXPECT_EQ(editor::span_text(std::chrono::microseconds(0)), "0.0 ms");
    EXPECT_EQ(editor::span_text(std::chrono::microseconds(449)), "0.4 ms");
    EXPECT_EQ(editor::span_text(std::chrono::microseconds(450)), "0.5 ms");
    EXPECT_EQ(editor::span_text(std::chrono::microseconds(12600)), "13 ms");
}
