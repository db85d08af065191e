#include "foundation/GLock.h"

#include <gtest/gtest.h>

#include <thread>

TEST(GLock, TheHoldingThread_MayTakeItAgain)
{
    GCriticalSection section;
    int reached = 0;
    {
        const GSingleLock first(section);
        const GSingleLock second(section);
        ++reached;
    }
    std::thread other([&] {  // both were given back
        const GSingleLock lock(section);
        ++reached;
    });
    other.join();

    EXPECT_EQ(reached, 2);
}

TEST(GLock, OtherThreads_AreKeptOut)
{
    GCriticalSection section;
    long number = 0;
    const auto count = [&] {
        for (int step = 0; step < 20000; ++step) {
            const GSingleLock outer(section);
            const GSingleLock inner(section);
            ++number;
        }
    };
    std::thread other(count);
    count();
    other.join();

    EXPECT_EQ(number, 40000);
}

TEST(GLock, Guard_UsesTheVirtualOperations)
{
    class Counting : public GCriticalSection {
    public:
        void Lock() override { ++locked; }
        void Unlock() override { ++unlocked; }
        int locked = 0;
        int unlocked = 0;
    };
    Counting section;
    {
        const GSingleLock lock(section);
        EXPECT_EQ(section.locked, 1);
        EXPECT_EQ(section.unlocked, 0);
    }
    EXPECT_EQ(section.unlocked, 1);
}
