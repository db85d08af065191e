#include "settings/MessageFlags.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct FlagsCase {
    unsigned long flags;
    const char* caption;
    std::uint32_t type;
};

class MessageFlags : public testing::TestWithParam<FlagsCase> {};

std::string name_of(const testing::TestParamInfo<FlagsCase>& info)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%03lx", info.param.flags);
    return text;
}

}  // namespace

TEST_P(MessageFlags, Look_CaptionIconAndButtonsOfTheWord)
{
    const zmr::MessageLook look = zmr::message_look(GetParam().flags);

    EXPECT_STREQ(look.caption, GetParam().caption);
    EXPECT_EQ(look.type, GetParam().type);
}

INSTANTIATE_TEST_SUITE_P(
    Words, MessageFlags,
    testing::Values(FlagsCase{0x000, "Warning", 0x2030}, FlagsCase{0x001, "Error", 0x2010},
                    FlagsCase{0x002, "Information", 0x2040}, FlagsCase{0x003, "Error", 0x2010},
                    FlagsCase{0x004, "Warning", 0x2030}, FlagsCase{0x400, "Warning", 0x2030},
                    FlagsCase{0x405, "Error", 0x2010}, FlagsCase{0x800, "Warning", 0x2030},
                    FlagsCase{0xC00, "Warning", 0x2031}, FlagsCase{0x100, "Warning", 0x2034},
                    FlagsCase{0x900, "Warning", 0x2033}, FlagsCase{0xD00, "Warning", 0x2033},
                    FlagsCase{0x500, "Warning", 0x2034}, FlagsCase{0x108, "Warning", 0x2134},
                    FlagsCase{0x910, "Warning", 0x2233}, FlagsCase{0x918, "Warning", 0x2133},
                    FlagsCase{0xF000, "Warning", 0x2030}),
    name_of);

TEST(MessageFlagWords, Look_NoWordOfTwelveBitsGivesConfirm)
{
    for (unsigned long flags = 0; flags < 0x1000; ++flags)
        EXPECT_STRNE(zmr::message_look(flags).caption, "Confirm") << flags;
}

TEST(MessageFlagWords, Answer_OkYesAndNoStay)
{
    EXPECT_EQ(zmr::message_answer(1), 1u);
    EXPECT_EQ(zmr::message_answer(6), 6u);
    EXPECT_EQ(zmr::message_answer(7), 7u);
}

TEST(MessageFlagWords, Answer_AllElseIsCancel)
{
    for (const int answer : {-1, 0, 2, 3, 4, 5, 8, 9, 10, 11, 32000})
        EXPECT_EQ(zmr::message_answer(answer), 2u) << answer;
}
