#include "platform/CWaitCursor.h"

#include <gtest/gtest.h>

namespace {

HCURSOR arrow()
{
    return ::LoadCursor(nullptr, IDC_ARROW);
}

HCURSOR hourglass()
{
    return ::LoadCursor(nullptr, IDC_WAIT);
}

}  // namespace

TEST(CWaitCursor, Nested_HourglassUntilTheLastOneEnds)
{
    ::SetCursor(arrow());
    {
        const CWaitCursor outer;
        EXPECT_EQ(::GetCursor(), hourglass());
        {
            const CWaitCursor inner;
            EXPECT_EQ(::GetCursor(), hourglass());
        }
        EXPECT_EQ(::GetCursor(), hourglass());
    }

    EXPECT_EQ(::GetCursor(), arrow());
}

TEST(CWaitCursor, Restore_ShowsItAgain)
{
    ::SetCursor(arrow());
    {
        CWaitCursor wait;
        ::SetCursor(::LoadCursor(nullptr, IDC_CROSS));
        wait.Restore();
        EXPECT_EQ(::GetCursor(), hourglass());
    }

    EXPECT_EQ(::GetCursor(), arrow());
}
