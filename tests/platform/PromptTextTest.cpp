#include "platform/PromptText.h"

#include "platform/PlatformIds.h"

#include <gtest/gtest.h>

TEST(PromptText, TextOfBothParts_IsDividedAtTheFirstLineFeed)
{
    EXPECT_EQ(zmr::prompt_of("Opens a library\nOpen"), "Opens a library");
    EXPECT_EQ(zmr::tip_of("Opens a library\nOpen"), "Open");
}

TEST(PromptText, TextWithoutLineFeed_IsAllPrompt)
{
    EXPECT_EQ(zmr::prompt_of("Opens a library"), "Opens a library");
    EXPECT_EQ(zmr::tip_of("Opens a library"), "");
}

TEST(PromptText, EmptyParts_StayEmpty)
{
    EXPECT_EQ(zmr::prompt_of(""), "");
    EXPECT_EQ(zmr::tip_of(""), "");
    EXPECT_EQ(zmr::prompt_of("\nOpen"), "");
    EXPECT_EQ(zmr::tip_of("Opens\n"), "");
}

TEST(PromptText, ThirdPart_BelongsToNeither)
{
    EXPECT_EQ(zmr::tip_of("Opens\nOpen\nmore"), "Open");
}

TEST(PromptText, ChoiceOfACommand_HasTheCommandsNumber)
{
    EXPECT_EQ(zmr::prompt_id_of_choice(ID_FILE_OPEN, 0), ID_FILE_OPEN);
    EXPECT_EQ(zmr::prompt_id_of_choice(1, 0x0003), 1u) << "greyed items have their text, too";
}

TEST(PromptText, ChoiceOfAPopupOrASeparator_HasNone)
{
    EXPECT_EQ(zmr::prompt_id_of_choice(2, 0x0010), 0u);
    EXPECT_EQ(zmr::prompt_id_of_choice(0, 0x0800), 0u);
}

TEST(PromptText, ChoiceOfASystemCommand_HasOneOfTheirRange)
{
    EXPECT_EQ(zmr::prompt_id_of_choice(0xF000, 0x2000), AFX_IDS_SCFIRST);
    EXPECT_EQ(zmr::prompt_id_of_choice(0xF060, 0x2000), AFX_IDS_SCFIRST + 6);
    EXPECT_EQ(zmr::prompt_id_of_choice(0xF1F0, 0), 0xF1F0u) << "behind the range";
}

TEST(PromptText, Closed_OnlyWithAllFlagsAndNoMenu)
{
    EXPECT_TRUE(zmr::menu_was_closed(0xFFFF, false));
    EXPECT_FALSE(zmr::menu_was_closed(0xFFFF, true));
    EXPECT_FALSE(zmr::menu_was_closed(0x8000, false));
}
