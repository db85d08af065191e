#include "responder/GIdler.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

class CountingIdler : public GIdler {
public:
    explicit CountingIdler(bool allow = true) : GIdler(allow) {}
    void idle() override
    {
        ++calls;
        if (on_idle)
            on_idle();
    }
    int calls = 0;
    std::function<void()> on_idle;
};

/// Idlers in the order of their places in memory, so that the order of a pass is known: from the
/// last one to the first.
struct FourIdlers {
    std::vector<CountingIdler> all = std::vector<CountingIdler>(4);
};

}  // namespace

TEST(GIdler, NothingRegistered_AnswersFalse)
{
    CountingIdler idler(false);

    EXPECT_FALSE(idler.allow_idle());
    idler.allow_idle(false);
    EXPECT_FALSE(idler.allow_idle());
}

TEST(GIdler, AfterTheOnlyOneHasEnded_PassDoesNothing)
{
    int calls = 0;
    {
        CountingIdler idler;
        idler.on_idle = [&] { ++calls; };
        GIdler::CallAllIdleFunctions();
    }
    GIdler::CallAllIdleFunctions();

    EXPECT_EQ(calls, 1);
}

TEST(GIdler, BuiltWithFalse_IsSilentUntilItIsAllowed)
{
    CountingIdler idler(false);
    CountingIdler other;

    EXPECT_FALSE(idler.allow_idle());
    idler.allow_idle(true);
    EXPECT_TRUE(idler.allow_idle());
    GIdler::CallAllIdleFunctions();
    EXPECT_EQ(idler.calls, 1);
}

TEST(GIdler, CopyOfARegisteredOne_IsNotRegistered)
{
    CountingIdler idler;
    CountingIdler copy(idler);
    CountingIdler assigned(false);
    assigned = idler;

    EXPECT_TRUE(idler.allow_idle());
    EXPECT_FALSE(copy.allow_idle());
    EXPECT_FALSE(assigned.allow_idle());
    idler = copy;
    EXPECT_TRUE(idler.allow_idle());
}

TEST(GIdler, RegisteredTwice_GoesWithOneWord)
{
    CountingIdler idler;
    idler.allow_idle(true);
    GIdler::CallAllIdleFunctions();
    EXPECT_EQ(idler.calls, 1);

    idler.allow_idle(false);
    EXPECT_FALSE(idler.allow_idle());
}

TEST(GIdler, UnregistersItselfInItsCall_RunsOnceAndTheOthersGoOn)
{
    FourIdlers four;
    for (CountingIdler& idler : four.all)
        idler.allow_idle(true);
    four.all[2].on_idle = [&] { four.all[2].allow_idle(false); };

    GIdler::CallAllIdleFunctions();
    GIdler::CallAllIdleFunctions();

    EXPECT_EQ(four.all[0].calls, 2);
    EXPECT_EQ(four.all[1].calls, 2);
    EXPECT_EQ(four.all[2].calls, 1);
    EXPECT_EQ(four.all[3].calls, 2);
}

TEST(GIdler, LowerOneUnregisteredInAPass_ShiftsTheOthersDown)
{
    FourIdlers four;
    for (CountingIdler& idler : four.all)
        idler.allow_idle(true);
    four.all[3].on_idle = [&] { four.all[0].allow_idle(false); };

    GIdler::CallAllIdleFunctions();

    // The next place down holds the one that was just called.
    EXPECT_EQ(four.all[3].calls, 2);
    EXPECT_EQ(four.all[2].calls, 1);
    EXPECT_EQ(four.all[1].calls, 1);
    EXPECT_EQ(four.all[0].calls, 0);
}

TEST(GIdler, AllUnregisteredInAPass_PassEnds)
{
    FourIdlers four;
    for (CountingIdler& idler : four.all)
        idler.allow_idle(true);
    four.all[3].on_idle = [&] {
        for (CountingIdler& idler : four.all)
            idler.allow_idle(false);
    };

    GIdler::CallAllIdleFunctions();

    EXPECT_EQ(four.all[3].calls, 1);
    EXPECT_EQ(four.all[0].calls + four.all[1].calls + four.all[2].calls, 0);
    EXPECT_FALSE(four.all[3].allow_idle());
}

TEST(GIdler, ListEndsAndBeginsAnewInAPass_PassGoesOnInTheNewOne)
{
    FourIdlers four;
    for (CountingIdler& idler : four.all)
        idler.allow_idle(true);
    four.all[3].on_idle = [&] {
        for (CountingIdler& idler : four.all)
            idler.allow_idle(false);
        four.all[0].allow_idle(true);
    };

    GIdler::CallAllIdleFunctions();

    EXPECT_EQ(four.all[0].calls, 1);
}

TEST(GIdler, IdlersMadeAndEndedInAPass_AreSafe)
{
    CountingIdler idler;
    std::vector<std::unique_ptr<CountingIdler>> made;
    idler.on_idle = [&] {
        if (made.size() < 50)
            made.push_back(std::make_unique<CountingIdler>());
        else
            made.clear();
    };

    for (int pass = 0; pass < 120; ++pass)
        GIdler::CallAllIdleFunctions();

    EXPECT_GE(idler.calls, 120);
}

TEST(GIdler, Exception_EndsThePassAndReleasesTheLock)
{
    FourIdlers four;
    for (CountingIdler& idler : four.all)
        idler.allow_idle(true);
    four.all[2].on_idle = [] { throw std::runtime_error("idle"); };

    EXPECT_THROW(GIdler::CallAllIdleFunctions(), std::runtime_error);

    EXPECT_EQ(four.all[3].calls, 1);
    EXPECT_EQ(four.all[1].calls, 0);
    bool registered = false;
    std::thread other([&] { registered = four.all[0].allow_idle(); });
    other.join();
    EXPECT_TRUE(registered);
}

TEST(GIdler, ThreadsThatRegisterDuringPasses_LoseNothing)
{
    CountingIdler stays;
    std::vector<std::thread> threads;
    for (int number = 0; number < 3; ++number) {
        threads.emplace_back([] {
            for (int round = 0; round < 2000; ++round) {
                CountingIdler idler(false);
                idler.allow_idle(true);
                EXPECT_TRUE(idler.allow_idle());
                idler.allow_idle(false);
                EXPECT_FALSE(idler.allow_idle());
            }
        });
    }
    for (int pass = 0; pass < 2000; ++pass)
        GIdler::CallAllIdleFunctions();
    for (std::thread& thread : threads)
        thread.join();

    EXPECT_GE(stays.calls, 1);
    stays.allow_idle(false);
    EXPECT_FALSE(stays.allow_idle());
}
