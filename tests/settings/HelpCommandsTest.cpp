#include "settings/HelpCommands.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

TEST(HelpCommands, HtmlCommand_IndexIsTheIndexNotTheContents)
{
    EXPECT_EQ(zmr::html_help_command(0x003), 0x02u);
}

TEST(HelpCommands, HtmlCommand_EachCommandThatHasOne)
{
    constexpr std::pair<std::uint32_t, std::uint32_t> kPairs[] = {
        {0x001, 0x0F}, {0x002, 0x12}, {0x008, 0x0F}, {0x00A, 0x10}, {0x00B, 0x00}, {0x00C, 0x11}};
    for (const auto& [classic, html] : kPairs)
        EXPECT_EQ(zmr::html_help_command(classic), html) << classic;
}

TEST(HelpCommands, HtmlCommand_CommandsOfTheClassicEngineAloneHaveNone)
{
    for (const std::uint32_t command :
         {0x004u, 0x005u, 0x009u, 0x00Du, 0x101u, 0x102u, 0x105u, 0x201u, 0x203u})
        EXPECT_EQ(zmr::html_help_command(command), 0xFFFFFFFFu) << command;
}

TEST(HelpCommands, HtmlCommand_UnknownCommandHasNone)
{
    for (const std::uint32_t command : {0x000u, 0x006u, 0x00Eu, 0x7FFFu, 0xFFFFFFFFu})
        EXPECT_EQ(zmr::html_help_command(command), 0xFFFFFFFFu) << command;
}

TEST(HelpCommands, CommandFor_ContextOfAControlOpensAPopup)
{
    for (const std::uintptr_t data : {0x50000u, 0x50001u, 0x5FFFFu})
        EXPECT_EQ(zmr::help_command_for(data, 0x001), 0x008u) << data;
}

TEST(HelpCommands, CommandFor_ContextOutsideTheControlsStays)
{
    for (const std::uintptr_t data : {0u, 0x10000u, 0x4FFFFu, 0x60000u})
        EXPECT_EQ(zmr::help_command_for(data, 0x001), 0x001u) << data;
}

TEST(HelpCommands, CommandFor_OtherCommandsStayForAControl)
{
    for (const std::uint32_t command : {0x002u, 0x003u, 0x008u, 0x00Du, 0x102u})
        EXPECT_EQ(zmr::help_command_for(0x50001, command), command) << command;
}

TEST(HelpCommands, CommandFor_AddressWithAControlsLowBitsStays)
{
    constexpr std::uintptr_t kAddress = (std::uintptr_t{0x7F} << 32) | 0x50001;

    EXPECT_EQ(zmr::help_command_for(kAddress, 0x001), 0x001u);
}

TEST(HelpCommands, SpecialBuild_DecimalOctalAndHexadecimal)
{
    EXPECT_EQ(zmr::parse_special_build("3"), 3u);
    EXPECT_EQ(zmr::parse_special_build("010"), 8u);
    EXPECT_EQ(zmr::parse_special_build("0x10"), 16u);
    EXPECT_EQ(zmr::parse_special_build("0X1f"), 31u);
    EXPECT_EQ(zmr::parse_special_build(" 7"), 7u);
    EXPECT_EQ(zmr::parse_special_build("0"), 0u);
}

TEST(HelpCommands, SpecialBuild_EmptyTextIsNought)
{
    EXPECT_EQ(zmr::parse_special_build(""), 0u);
}

TEST(HelpCommands, SpecialBuild_TextThatIsNotWhollyANumberHasNone)
{
    for (const char* text : {"3x", "3 ", "x3", "0x", "build-17", "3.0", "09", "- 1", "--1"})
        EXPECT_EQ(zmr::parse_special_build(text), std::nullopt) << text;
}

TEST(HelpCommands, SpecialBuild_NoTextHasNone)
{
    EXPECT_EQ(zmr::parse_special_build(nullptr), std::nullopt);
}

TEST(HelpCommands, SpecialBuild_BoundsAreThoseOf32BitsInBothLanes)
{
    EXPECT_EQ(zmr::parse_special_build("0xFFFFFFFE"), 0xFFFFFFFEu);
    EXPECT_EQ(zmr::parse_special_build("0xFFFFFFFF"), std::nullopt);
    EXPECT_EQ(zmr::parse_special_build("4294967296"), std::nullopt);
    EXPECT_EQ(zmr::parse_special_build("99999999999999999999999"), std::nullopt);
    EXPECT_EQ(zmr::parse_special_build("-1"), std::nullopt);
    EXPECT_EQ(zmr::parse_special_build("-2"), 0xFFFFFFFEu);
    EXPECT_EQ(zmr::parse_special_build("-4294967296"), std::nullopt);
    EXPECT_EQ(zmr::parse_special_build("-99999999999999999999999"), std::nullopt);
}

TEST(HelpCommands, ModuleHelpId_NumberStandsFromBit20On)
{
    EXPECT_EQ(zmr::module_help_id(10031, 3), 10031u | 0x300000u);
}

TEST(HelpCommands, ModuleHelpId_WithoutNumberIsTheId)
{
    EXPECT_EQ(zmr::module_help_id(10031, std::nullopt), 10031u);
}

TEST(HelpCommands, ModuleHelpId_BitsBeyond32AreLostInBothLanes)
{
    EXPECT_EQ(zmr::module_help_id(1, 0xFFF), 0xFFF00001u);
    EXPECT_EQ(zmr::module_help_id(1, 0x1003), 0x00300001u);
}
