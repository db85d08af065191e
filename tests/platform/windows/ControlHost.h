#pragma once

#include "platform/CWnd.h"

#include <gtest/gtest.h>

/// A visible window for the controls of a test.
class ControlTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(host.CreateEx(0, nullptr, "controls", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                                  CRect(100, 100, 500, 400), nullptr, 0));
    }

    CWnd host;
    const CRect place{10, 10, 210, 110};
    static constexpr DWORD kChild = WS_CHILD | WS_VISIBLE;
    static constexpr UINT kId = 1001;
};
