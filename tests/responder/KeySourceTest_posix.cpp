#include "responder/KeySource.h"

#include <gtest/gtest.h>

TEST(KeySource, System_KnowsNoKeyboardHere)
{
    for (int key = 0; key < 256; ++key) {
        EXPECT_EQ(zmr::system_key_state(key, false), 0);
        EXPECT_EQ(zmr::system_key_state(key, true), 0);
    }
}
