#include "platform/Handles.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

int closed = 0;

struct CloseNumber {
    static void close(HANDLE) noexcept
    {
        ++closed;
        ::SetLastError(77);
    }
};
using OwnedNumber = zmr::Owned<HANDLE, CloseNumber>;

HANDLE handle(std::uintptr_t number)
{
    return reinterpret_cast<HANDLE>(number);
}

class OwnedTest : public testing::Test {
protected:
    void SetUp() override { closed = 0; }
};

}  // namespace

TEST_F(OwnedTest, EndOfScope_ClosesOnceAndKeepsTheLastError)
{
    ::SetLastError(5);
    {
        const OwnedNumber owned(handle(1));
        EXPECT_TRUE(owned);
        const OwnedNumber nothing;
        EXPECT_FALSE(nothing);
    }

    EXPECT_EQ(closed, 1);
    EXPECT_EQ(::GetLastError(), 5u);
}

TEST_F(OwnedTest, Move_LeavesNothingBehindAndClosesWhatWasHeld)
{
    OwnedNumber first(handle(1));
    OwnedNumber second(handle(2));
    second = std::move(first);
    EXPECT_EQ(closed, 1);
    EXPECT_EQ(second.get(), handle(1));
    OwnedNumber third(std::move(second));

    EXPECT_EQ(third.get(), handle(1));
    EXPECT_EQ(closed, 1);
}

TEST_F(OwnedTest, Release_GivesTheHandleUp)
{
    {
        OwnedNumber owned(handle(1));
        EXPECT_EQ(owned.release(), handle(1));
    }

    EXPECT_EQ(closed, 0);
}
