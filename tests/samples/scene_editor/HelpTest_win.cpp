// Where F1 and the other ways to the help lead: what the help engine is asked for. The engine is
// one that notes, found in the program's own folder before the system's.
#include "EditorDriver.h"
#include "SampleLibrary.h"
#include "platform/PlatformIds.h"
#include "scene_editor/resource.h"
#include "tests/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <functional>
#include <optional>
#include <sstream>

namespace {

constexpr unsigned kDisplayTopic = 0x00;
constexpr unsigned kHelpContext = 0x0F;
constexpr const char* kFailure = "The help can't be shown.";
constexpr const char* kProgram = "Software\\Wine\\AppDefaults\\noted_editor.exe";
constexpr const char* kOverrides = "Software\\Wine\\AppDefaults\\noted_editor.exe\\DllOverrides";

struct Call {
    unsigned command = 0;
    std::uint64_t topic = 0;
    std::string file;
};

class Help : public testing::Test {
protected:
    Help() { ::SetEnvironmentVariableA("ZMR_HELP_CALLS", calls_.c_str()); }
    ~Help() override
    {
        ::SetEnvironmentVariableA("ZMR_HELP_CALLS", nullptr);
        ::SetEnvironmentVariableA("ZMR_HELP_REFUSES", nullptr);
    }

    // Wine prefers its own engine, unless it is told otherwise for a program of that name.
    static void SetUpTestSuite()
    {
        constexpr const char* kNative = "native";
        EXPECT_EQ(::RegSetKeyValueA(HKEY_CURRENT_USER, kOverrides, "hhctrl.ocx", REG_SZ, kNative,
                                    static_cast<DWORD>(std::strlen(kNative) + 1)),
                  ERROR_SUCCESS);
    }
    static void TearDownTestSuite() { ::RegDeleteTreeA(HKEY_CURRENT_USER, kProgram); }

    void start(const std::vector<std::string>& words)
    {
        editor.emplace(words);
        ASSERT_TRUE(editor->has_window());
    }
    void start_on_a_library()
    {
        ASSERT_NO_FATAL_FAILURE(start({library.file()}));
        ASSERT_TRUE(EditorDriver::wait_for([this] { return editor->has_focus(IDC_ENTRIES); }));
        ASSERT_TRUE(EditorDriver::wait_for([this] { return editor->previewed() == "deep"; }));
    }
    [[nodiscard]] std::vector<Call> calls() const
    {
        std::vector<Call> found;
        std::ifstream in(calls_);
        std::string line;
        while (std::getline(in, line)) {
            if (in.eof())
                break;  // still being written
            std::istringstream words(line);
            Call call;
            words >> call.command >> std::hex >> call.topic >> std::ws;
            std::getline(words, call.file);
            found.push_back(call);
        }
        return found;
    }
    /// Does something until the engine is asked once more; presses may be lost while the system
    /// still tells of a window that has closed.
    void expect_asked(unsigned command, std::uint64_t topic, const std::function<void()>& act)
    {
        constexpr int kTries = 5;
        constexpr DWORD kTryMs = 3'000;
        const std::size_t before = calls().size();
        const auto is_asked = [&] { return calls().size() > before; };
        for (int tries = 0; tries < kTries && !is_asked(); ++tries) {
            act();
            EditorDriver::wait_for(is_asked, kTryMs);
        }
        ASSERT_TRUE(is_asked());
        EXPECT_EQ(calls().back().command, command);
        EXPECT_EQ(calls().back().topic, topic);
        EXPECT_THAT(calls().back().file, testing::EndsWith("with_help\\noted_editor.chm"));
        EXPECT_TRUE(editor->is_alive());
        EXPECT_EQ(calls().size(), before + 1) << "asked once";
    }
    void close() { EXPECT_EQ(editor->close(), 0); }

    const SampleLibrary library;
    std::optional<EditorDriver> editor;

private:
    TemporaryFolder folder_;
    std::string calls_ = folder_.file("calls.txt");
};

}  // namespace

TEST_F(Help, F1InAPane_AsksAboutThePane)
{
    ASSERT_NO_FATAL_FAILURE(start_on_a_library());
    expect_asked(kHelpContext, HID_BASE_CONTROL + IDC_ENTRIES, [this] { editor->key(VK_F1); });
    const HWND scene = editor->control(IDC_SCENE);
    ASSERT_TRUE(EditorDriver::wait_for([&] {
        editor->click(scene, 30, 30);
        return editor->has_focus(IDC_SCENE);
    }));
    expect_asked(kHelpContext, HID_BASE_CONTROL + IDC_SCENE, [this] { editor->key(VK_F1); });
    close();
}

TEST_F(Help, F1InAMenu_AsksAboutTheCommand)
{
    ASSERT_NO_FATAL_FAILURE(start_on_a_library());
    const auto stands_on_first = [this] {
        const HWND bar = editor->control(AFX_IDW_STATUS_BAR);
        std::array<char, 256> text{};
        ::SendMessage(bar, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
        return std::string(text.data()) == "Opens a library in place of this one";
    };
    ASSERT_TRUE(editor->choose("f", stands_on_first));
    expect_asked(kHelpContext, HID_BASE_COMMAND + ID_FILE_OPEN, [this] { editor->key(VK_F1); });
    editor->key(VK_ESCAPE);
    editor->key(VK_ESCAPE);
    close();
}

TEST_F(Help, F1InAQuestion_AsksAboutTheQuestion)
{
    ASSERT_NO_FATAL_FAILURE(start_on_a_library());
    editor->key(VK_END);
    ASSERT_TRUE(EditorDriver::wait_for([this] { return editor->previewed() == "Root C"; }));
    editor->key(VK_DELETE);
    ASSERT_TRUE(EditorDriver::wait_for([this] { return !editor->message().empty(); }));
    expect_asked(kHelpContext, HID_BASE_PROMPT + IDP_DELETE_ENTRIES,
                 [this] { editor->key(VK_F1); });
    // The box has a button for it, too (which Wine's leaves without effect).
    EXPECT_NE(editor->dialog_with(IDHELP), nullptr);
    EXPECT_FALSE(editor->message().empty()) << "the question is still open";
    editor->key('N');
    EXPECT_TRUE(EditorDriver::wait_for([this] { return editor->message().empty(); }));
    EXPECT_EQ(editor->rows(), 5);
    close();
}

TEST_F(Help, HelpMode_AsksAboutWhatIsClickedAndDoesNothingElse)
{
    ASSERT_NO_FATAL_FAILURE(start_on_a_library());
    const HWND preview = editor->control(IDC_PREVIEW);
    expect_asked(kHelpContext, HID_BASE_CONTROL + IDC_PREVIEW, [&] {
        editor->key(VK_F1, {VK_SHIFT});
        editor->click(preview, 20, 20);
    });
    EXPECT_TRUE(editor->has_focus(IDC_ENTRIES)) << "the click went nowhere else";
    close();
}

TEST_F(Help, Contents_OpenTheHelp)
{
    ASSERT_NO_FATAL_FAILURE(start_on_a_library());
    const std::size_t before = calls().size();
    ASSERT_TRUE(editor->choose("hc", [&] { return calls().size() > before; }));
    EXPECT_EQ(calls().back().command, kDisplayTopic);
    EXPECT_EQ(calls().back().topic, 0U);
    close();
}

TEST_F(Help, EngineThatRefuses_IsTold)
{
    ::SetEnvironmentVariableA("ZMR_HELP_REFUSES", "yes");
    ASSERT_NO_FATAL_FAILURE(start_on_a_library());
    editor->key(VK_F1);
    EXPECT_TRUE(EditorDriver::wait_for([this] { return editor->message() == kFailure; }));
    // Asking for help about that box asks nothing.
    const std::size_t before = calls().size();
    editor->key(VK_F1);
    editor->key(VK_RETURN);
    EXPECT_TRUE(EditorDriver::wait_for([this] { return editor->message().empty(); }));
    EXPECT_EQ(calls().size(), before);
    close();
}
