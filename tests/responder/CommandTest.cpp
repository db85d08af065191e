#include "responder/GResponder.h"

#include <gtest/gtest.h>

namespace {

/// The set is one for the process: each test starts with an empty one and a changed flag that no
/// one can put back.
class Commands : public ::testing::Test {
protected:
    Commands() { GResponder::SetCommands(GCommandSet()); }
    ~Commands() override { GResponder::SetCommands(GCommandSet()); }

    static GCommandSet present()
    {
        GCommandSet set;
        GResponder::GetCommands(set);
        return set;
    }
};

// The flag never goes back, so what raises it first is tested in a process of its own: gtest's
// death tests run the statement in a child.
void exit_by_flag(unsigned char expected)
{
    std::exit(GResponder::CommandSetChanged() == expected ? 0 : 1);
}

}  // namespace

TEST_F(Commands, FreshSet_EveryCommandIsEnabledOnly)
{
    EXPECT_EQ(GResponder::GetCommandState(5), command_enabled);
    EXPECT_TRUE(GResponder::CommandEnabled(5));
    EXPECT_FALSE(GResponder::CommandChecked(5));
    EXPECT_FALSE(GResponder::CommandSelected(5));
}

TEST_F(Commands, DisableOnFreshSet_NeighboursStayEnabled)
{
    GResponder::DisableCommand(5);

    EXPECT_EQ(GResponder::GetCommandState(5), command_disabled);
    for (unsigned long id = 0; id < 5; ++id)
        EXPECT_EQ(GResponder::GetCommandState(id), command_enabled) << id;
    EXPECT_EQ(GResponder::GetCommandState(6), command_enabled);
    EXPECT_EQ(present().size, 12U);
}

TEST_F(Commands, EnableOnFreshSet_SetStaysEmpty)
{
    GResponder::EnableCommand(9);

    EXPECT_EQ(present().size, 0U);
}

TEST_F(Commands, Check_EnablesAndDoesNotSelect)
{
    GResponder::DisableCommand(7);
    GResponder::CheckCommand(7, 1);

    EXPECT_TRUE(GResponder::CommandEnabled(7));
    EXPECT_TRUE(GResponder::CommandChecked(7));
    EXPECT_FALSE(GResponder::CommandSelected(7));
}

TEST_F(Commands, UncheckOfSelected_GivesEnabled)
{
    GResponder::SelectCommand(7, 1);
    EXPECT_TRUE(GResponder::CommandSelected(7));
    GResponder::CheckCommand(7, 0);

    EXPECT_EQ(GResponder::GetCommandState(7), command_enabled);
}

TEST_F(Commands, UnselectOrUncheckOfDisabled_Enables)
{
    GResponder::DisableCommand(3);
    GResponder::SelectCommand(3, 0);
    EXPECT_EQ(GResponder::GetCommandState(3), command_enabled);
    GResponder::DisableCommand(3);
    GResponder::CheckCommand(3, 0);
    EXPECT_EQ(GResponder::GetCommandState(3), command_enabled);
    GResponder::CheckCommand(3, 1);
    GResponder::EnableCommand(3);
    EXPECT_EQ(GResponder::GetCommandState(3), command_enabled);
}

TEST_F(Commands, EnableWithFalse_EqualsDisable)
{
    GResponder::EnableCommand(7, 0);
    EXPECT_EQ(GResponder::GetCommandState(7), command_disabled);
    GResponder::EnableCommand(7, 1);
    EXPECT_EQ(GResponder::GetCommandState(7), command_enabled);
}

TEST_F(Commands, OtherNames_AreTheSameOperations)
{
    GResponder::disable_command(1);
    GResponder::select_command(2, 1);
    GResponder::check_command(3, 1);
    GResponder::set_command_state(4, command_disabled);
    GResponder::enable_command(5, 0);

    EXPECT_EQ(GResponder::get_command_state(1), command_disabled);
    EXPECT_FALSE(GResponder::command_enabled(1));
    EXPECT_TRUE(GResponder::command_selected(2));
    EXPECT_TRUE(GResponder::command_checked(3));
    EXPECT_EQ(GResponder::GetCommandState(4), command_disabled);
    EXPECT_EQ(GResponder::GetCommandState(5), command_disabled);
    GResponder::enable_command(5);
    EXPECT_TRUE(GResponder::command_enabled(5));
    GCommandSet saved;
    GResponder::get_commands(saved);
    GResponder::set_commands(GCommandSet());
    EXPECT_TRUE(GResponder::command_enabled(1));
    GResponder::set_commands(saved);
    EXPECT_FALSE(GResponder::command_enabled(1));
}

TEST_F(Commands, SaveAndRestore_BringsAllStatesBack)
{
    GResponder::DisableCommand(1);
    GResponder::CheckCommand(40, 1);
    const GCommandSet saved = present();
    GResponder::EnableCommand(1);
    GResponder::SelectCommand(40, 1);
    GResponder::DisableCommand(900);

    GResponder::SetCommands(saved);

    EXPECT_EQ(GResponder::GetCommandState(1), command_disabled);
    EXPECT_EQ(GResponder::GetCommandState(40), command_checked);
    EXPECT_EQ(GResponder::GetCommandState(900), command_enabled);
}

TEST_F(Commands, HighIdThenLowId_SetKeepsItsSize)
{
    GResponder::DisableCommand(100);
    const auto size = present().size;
    GResponder::DisableCommand(3);

    EXPECT_EQ(size, 202U);
    EXPECT_EQ(present().size, size);
}

TEST_F(Commands, ReadingBeyondTheEnd_DoesNotGrow)
{
    GResponder::DisableCommand(1);

    EXPECT_EQ(GResponder::GetCommandState(0xFFFFFFFFUL), command_enabled);
    EXPECT_EQ(present().size, 4U);
}

TEST(GCommandSet, AllStatesAtAllPlaces_AreKept)
{
    GCommandSet set;
    for (unsigned long id = 0; id < 70; ++id)
        set.set(id, static_cast<GCommandState>(id * 7 % 4));
    for (unsigned long id = 0; id < 70; ++id)
        EXPECT_EQ(set[id], static_cast<GCommandState>(id * 7 % 4)) << id;

    // The two bits lie where the words say.
    EXPECT_EQ(set.words[0] & 3U, 0U);
    EXPECT_EQ(set.words[0] >> 2 & 3U, 3U);
    GCommandSet copy = set;
    EXPECT_TRUE(copy == set);
    copy.set(0, command_checked);
    EXPECT_FALSE(copy == set);
}

TEST(GCommandSet, Enabled_IsWhatTheStateTells)
{
    GCommandSet set;
    constexpr unsigned long kIds = 70;
    for (unsigned long id = 0; id < kIds; ++id)
        set.set(id, static_cast<GCommandState>((id * 7 + id / 4) % 4));

    for (unsigned long id = 0; id < kIds + 40; ++id)
        EXPECT_EQ(set.enabled(id), set[id] != command_disabled) << id;
    EXPECT_FALSE(set.enabled(0));
    EXPECT_TRUE(set.enabled(0xFFFFFFFFUL));
    EXPECT_TRUE(GCommandSet().enabled(0));
}

TEST(GCommandSet, IdAbove32Bits_CountsByItsLowBits)
{
    if constexpr (sizeof(unsigned long) > 4) {
        GCommandSet set;
        set.set(static_cast<unsigned long>(0x1'0000'0002ULL), command_disabled);
        EXPECT_EQ(set[2], command_disabled);
        EXPECT_EQ(set.size, 6U);
    } else {
        EXPECT_EQ(GCommandSet()[0xFFFFFFFFUL], command_enabled);
    }
}

using CommandFlagDeathTest = Commands;

TEST_F(CommandFlagDeathTest, EnableOnFreshSet_LeavesItDown)
{
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(
        {
            GResponder::EnableCommand(9);
            GResponder::SetCommandState(4, command_enabled);
            GResponder::SetCommands(GCommandSet());
            exit_by_flag(0);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(CommandFlagDeathTest, FirstChange_RaisesItForGood)
{
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(
        {
            GResponder::DisableCommand(9);
            GResponder::EnableCommand(9);
            exit_by_flag(1);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(CommandFlagDeathTest, OtherSet_RaisesIt)
{
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(
        {
            GCommandSet other;
            other.set(1, command_checked);
            GResponder::SetCommands(other);
            exit_by_flag(1);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(Commands, PresentStateOrEqualSet_LeaveTheFlag)
{
    GResponder::DisableCommand(2);
    const unsigned char flag = GResponder::CommandSetChanged();
    GResponder::SetCommandState(2, command_disabled);
    GResponder::SetCommands(present());

    EXPECT_EQ(GResponder::CommandSetChanged(), flag);
    EXPECT_EQ(flag, 1);
}
