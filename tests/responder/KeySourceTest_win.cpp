#include "platform/Windows.h"
#include "responder/GEvent.h"
#include "responder/KeySource.h"

#include <gtest/gtest.h>

TEST(KeySource, System_IsTheThreadsKeyboardState)
{
    BYTE before[256];
    ASSERT_TRUE(::GetKeyboardState(before));
    BYTE keys[256] = {};
    keys[VK_CONTROL] = 0x80;
    keys[VK_CAPITAL] = 0x01;
    ASSERT_TRUE(::SetKeyboardState(keys));

    const ShiftState state = GEvent::GetShiftState(false);
    const unsigned short control = zmr::system_key_state(VK_CONTROL, false);
    ASSERT_TRUE(::SetKeyboardState(before));

    EXPECT_EQ(state, GEvent::control_down | GEvent::caps_lock);
    EXPECT_EQ(control & 0x8000, 0x8000);
}

TEST(KeySource, Asynchronous_IsTheStateOfThisMoment)
{
    const auto expected = static_cast<unsigned short>(::GetAsyncKeyState(VK_SHIFT));

    EXPECT_EQ(zmr::system_key_state(VK_SHIFT, true) & 0x8000, expected & 0x8000);
}
