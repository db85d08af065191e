#include "settings/GHelp.h"

#include "platform/Handles.h"
#include "settings/HelpEngine.h"
#include "tests/TemporaryFolder.h"
#include "tests/settings/help_module/engine.h"
#include "tests/support/WindowInput.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

constexpr WORD kEntry = 14;
constexpr UINT kDisplayTopic = 0x00;
constexpr UINT kHelpContext = 0x0F;
constexpr UINT kCloseAll = 0x12;

/// What the noting engine in `file` was called with last; it is loaded by now.
const HelpCall& last_call(const char* file)
{
    const auto get = reinterpret_cast<LastHelpCall>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleA(file), "zmr_last_help_call")));
    return *get();
}

/// Both settings of the class as they were, at the end of a test.
class GHelpState : public testing::Test {
protected:
    void TearDown() override
    {
        GHelp::UseHTML(true);
        GHelp::PointedWindow(nullptr);
    }
};

}  // namespace

TEST_F(GHelpState, Defaults_HtmlAndNoWindow)
{
    EXPECT_TRUE(GHelp::UseHTML());
    EXPECT_TRUE(GHelp::gUseHTML);
    EXPECT_EQ(GHelp::PointedWindow(), nullptr);
}

TEST_F(GHelpState, SetValues_AreKept)
{
    GHelp::UseHTML(false);
    GHelp::PointedWindow(::GetDesktopWindow());

    EXPECT_FALSE(GHelp::gUseHTML);
    EXPECT_EQ(GHelp::PointedWindow(), ::GetDesktopWindow());
}

TEST_F(GHelpState, Translate_IndexIs2AndUnknownIsNone)
{
    EXPECT_EQ(GHelp::TranslateWinHelpCmdToHTMLHelpCmd(HELP_INDEX), 2u);
    EXPECT_EQ(GHelp::TranslateWinHelpCmdToHTMLHelpCmd(HELP_CONTEXT), 0x0Fu);
    EXPECT_EQ(GHelp::TranslateWinHelpCmdToHTMLHelpCmd(HELP_SETPOPUP_POS), 0xFFFFFFFFu);
    EXPECT_EQ(GHelp::TranslateWinHelpCmdToHTMLHelpCmd(0x7777), 0xFFFFFFFFu);
}

TEST_F(GHelpState, CallHelp_HtmlFileThatIsMissing_False)
{
    EXPECT_FALSE(GHelp::CallHelp(nullptr, "C:\\no such folder\\none.chm", kHelpContext, 1));
}

// data/help.chm is what chmcmd of Free Pascal makes of data/help.hhp.
TEST_F(GHelpState, CallHelp_HtmlFileWithTheTopic_TrueAndShown)
{
    EXPECT_TRUE(GHelp::CallHelp(nullptr, ZMR_TEST_DATA "/help.chm", kHelpContext, 1));

    EXPECT_NE(visible_window("HH Parent"), nullptr);
    static_cast<void>(GHelp::CallHelp(nullptr, nullptr, kCloseAll, 0));
    EXPECT_EQ(visible_window("HH Parent"), nullptr);
}

TEST_F(GHelpState, CallHelp_QuitOfTheClassicEngine_TrueWithoutStartingIt)
{
    GHelp::UseHTML(false);

    EXPECT_TRUE(GHelp::CallHelp(nullptr, "none.hlp", HELP_QUIT, 0));
}

TEST(HelpEngine, Present_IsHandedTheRequestAsItStands)
{
    zmr::HelpEngine engine(ZMR_HELP_ENGINE, kEntry);
    constexpr DWORD_PTR kWide = 0x1234'5678'9ABC;

    EXPECT_TRUE(engine.call(::GetDesktopWindow(), "scene.chm", kHelpContext, kWide));

    const HelpCall& call = last_call(ZMR_HELP_ENGINE);
    EXPECT_EQ(call.window, ::GetDesktopWindow());
    EXPECT_STREQ(call.file, "scene.chm");
    EXPECT_EQ(call.command, kHelpContext);
    EXPECT_EQ(call.data, kWide) << "an address stays whole";
}

TEST(HelpEngine, PresentButRefuses_False)
{
    zmr::HelpEngine engine(ZMR_HELP_ENGINE, kEntry);

    EXPECT_FALSE(engine.call(nullptr, "refused.chm", kDisplayTopic, 0));

    EXPECT_EQ(last_call(ZMR_HELP_ENGINE).calls, 1);
}

TEST(HelpEngine, Absent_EachCallLooksForItAgain)
{
    const TemporaryFolder folder;
    const std::string file = folder.file("engine.dll");
    zmr::HelpEngine engine(file.c_str(), kEntry);
    EXPECT_FALSE(engine.call(nullptr, "scene.chm", kDisplayTopic, 0));
    EXPECT_FALSE(engine.call(nullptr, "scene.chm", kDisplayTopic, 0));

    std::filesystem::copy_file(ZMR_HELP_ENGINE, file);

    EXPECT_TRUE(engine.call(nullptr, "scene.chm", kDisplayTopic, 0));
}

TEST(HelpEngine, LoadedButWithoutTheEntry_FalseAndNotAskedAgain)
{
    zmr::HelpEngine engine(ZMR_HELP_MODULE_NONE, kEntry);

    EXPECT_FALSE(engine.call(nullptr, "scene.chm", kDisplayTopic, 0));
    EXPECT_FALSE(engine.call(nullptr, "scene.chm", kDisplayTopic, 0));

    EXPECT_NE(::GetModuleHandleA(ZMR_HELP_MODULE_NONE), nullptr) << "it stays loaded";
}

TEST(HelpEngine, LoadsAtTheFirstCallAndUnloadsWithTheEngine)
{
    {
        zmr::HelpEngine engine(ZMR_HELP_ENGINE, kEntry);
        EXPECT_EQ(::GetModuleHandleA(ZMR_HELP_ENGINE), nullptr);
        EXPECT_TRUE(engine.call(nullptr, "scene.chm", kDisplayTopic, 0));
        EXPECT_NE(::GetModuleHandleA(ZMR_HELP_ENGINE), nullptr);
    }
    EXPECT_EQ(::GetModuleHandleA(ZMR_HELP_ENGINE), nullptr);
}
