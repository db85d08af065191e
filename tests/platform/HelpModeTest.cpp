#include "platform/HelpMode.h"

#include <gtest/gtest.h>

using zmr::HelpModeStep;

TEST(HelpMode, Step_EscapeLeaves)
{
    EXPECT_EQ(zmr::help_mode_step(0x0100, 0x1B, false), HelpModeStep::Leave);
    EXPECT_EQ(zmr::help_mode_step(0x0104, 0x1B, false), HelpModeStep::Leave);
}

TEST(HelpMode, Step_ShiftF1AgainLeavesAndF1AloneDoesNot)
{
    EXPECT_EQ(zmr::help_mode_step(0x0100, 0x70, true), HelpModeStep::Leave);
    EXPECT_EQ(zmr::help_mode_step(0x0100, 0x70, false), HelpModeStep::Pass);
}

TEST(HelpMode, Step_ReleaseOfAKeyPasses)
{
    EXPECT_EQ(zmr::help_mode_step(0x0101, 0x1B, false), HelpModeStep::Pass);
    EXPECT_EQ(zmr::help_mode_step(0x0101, 0x70, true), HelpModeStep::Pass);
}

TEST(HelpMode, Step_LeftPressAsksInsideAndAround)
{
    for (const UINT message : {0x0201u, 0x0203u, 0x00A1u, 0x00A3u})
        EXPECT_EQ(zmr::help_mode_step(message, 1, false), HelpModeStep::Ask) << message;
}

TEST(HelpMode, Step_MovePoints)
{
    EXPECT_EQ(zmr::help_mode_step(0x0200, 0, false), HelpModeStep::Point);
    EXPECT_EQ(zmr::help_mode_step(0x00A0, 0, false), HelpModeStep::Point);
}

TEST(HelpMode, Step_OtherMouseMessagesAreDropped)
{
    for (const UINT message :
         {0x0202u, 0x0204u, 0x0205u, 0x0207u, 0x020Au, 0x020Eu, 0x00A2u, 0x00A4u, 0x00A7u, 0x00ADu})
        EXPECT_EQ(zmr::help_mode_step(message, 0, false), HelpModeStep::Drop) << message;
}

TEST(HelpMode, Step_AllElsePasses)
{
    for (const UINT message :
         {0x000Fu, 0x0111u, 0x0113u, 0x0362u, 0x0400u, 0x009Fu, 0x00AEu, 0x020Fu})
        EXPECT_EQ(zmr::help_mode_step(message, 0x1B, true), HelpModeStep::Pass) << message;
}

TEST(HelpMode, Area_MenusOpen)
{
    EXPECT_TRUE(zmr::help_area(5).opens_menu);
    EXPECT_TRUE(zmr::help_area(3).opens_menu);
}

TEST(HelpMode, Area_ClientAreaHasNoTopicOfItsOwn)
{
    for (const int code : {1, 0, -1, -2}) {
        EXPECT_FALSE(zmr::help_area(code).opens_menu) << code;
        EXPECT_EQ(zmr::help_area(code).context, 0u) << code;
    }
}

TEST(HelpMode, Area_PartsAroundHaveTopics)
{
    EXPECT_EQ(zmr::help_area(2).context, 0x40002u) << "the title";
    EXPECT_EQ(zmr::help_area(20).context, 0x40014u) << "the close box";
    EXPECT_FALSE(zmr::help_area(2).opens_menu);
}

TEST(HelpMode, SystemCommand_ThoseThatTheUserChoosesAsk)
{
    for (const UINT command :
         {0xF000u, 0xF010u, 0xF012u, 0xF020u, 0xF030u, 0xF040u, 0xF050u, 0xF060u, 0xF120u, 0xF130u})
        EXPECT_TRUE(zmr::asks_in_help_mode(command)) << command;
}

TEST(HelpMode, SystemCommand_OpeningMenusAndScrollingDoNot)
{
    for (const UINT command : {0xF070u, 0xF080u, 0xF090u, 0xF095u, 0xF100u, 0xF140u, 0xF170u})
        EXPECT_FALSE(zmr::asks_in_help_mode(command)) << command;
}
