// The long random work for two seconds: that it ends well and tells its figures.

#include "tests/support/ChildProcess.h"

#include <gtest/gtest.h>

#include <string>

TEST(OdbSoak, TwoSeconds_AreAsTheModelSaysAndLoseNoDescriptor)
{
    ChildStart start;
    start.program = ZMR_ODB_SOAK;
    start.words = {"--seconds", "2", "--seed", "7"};
    std::string reason;
    const auto child = ChildProcess::Start(start, reason);
    ASSERT_NE(child, nullptr) << reason;

    std::string line;
    std::string last;
    int lines = 0;
    for (; child->read_line(line); ++lines)
        last = line;
    EXPECT_EQ(child->wait().code, 0) << last;
    EXPECT_GE(lines, 3);
    EXPECT_TRUE(last.ends_with("\"failure\": \"\"}")) << last;
}
