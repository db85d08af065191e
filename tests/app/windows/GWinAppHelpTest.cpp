#include "app/GWinApp.h"

#include "platform/AfxState.h"
#include "platform/PlatformIds.h"
#include "platform/PlatformMessages.h"
#include "settings/GHelp.h"
#include "tests/TemporaryFolder.h"
#include "tests/app/windows/TestHost.h"
#include "tests/settings/help_module/engine.h"
#include "tests/support/WindowInput.h"

#include "foundation/Redirection.h"
#include "foundation/fpstream.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

// The way of a request for help from a window to an engine. The HTML engine is one that notes what
// it is asked; the classic one is a window of the class by which the system finds that engine.

namespace {

constexpr UINT kHtmlContext = 0x0F;
constexpr UINT kHtmlContents = 0x00;
constexpr DWORD_PTR kTopic = 0x10123;
constexpr DWORD_PTR kTopicOfControl = 0x50007;

/// Loads the noting engine, which has the name of the system's. Wine prefers its own, unless it is
/// told otherwise.
HMODULE load_noting_engine()
{
    constexpr const char* kOverrides = "Software\\Wine\\DllOverrides";
    constexpr const char* kName = "hhctrl.ocx";
    constexpr char kNative[] = "native";
    EXPECT_EQ(
        ::RegSetKeyValueA(HKEY_CURRENT_USER, kOverrides, kName, REG_SZ, kNative, sizeof kNative),
        ERROR_SUCCESS);
    const HMODULE engine = ::LoadLibraryA(ZMR_HTML_HELP_ENGINE);
    ::RegDeleteKeyValueA(HKEY_CURRENT_USER, kOverrides, kName);
    return engine;
}

/// What the engine was called with last. It is in memory before anybody asks for the system's, and
/// who does gets it.
const HelpCall& last_call()
{
    static const auto get = reinterpret_cast<LastHelpCall>(
        reinterpret_cast<void*>(::GetProcAddress(load_noting_engine(), "zmr_last_help_call")));
    static const HelpCall none{};
    EXPECT_NE(get, nullptr) << ZMR_HTML_HELP_ENGINE;
    return get != nullptr ? *get() : none;
}

/// A host that says which help file each window has.
class HelpHost : public TestHost {
public:
    std::vector<HWND> asked;             ///< The windows whose files were asked for.
    const char* help_file = "host.chm";  ///< Null: the application's own.

protected:
    GFile help_file_for_window(HWND window) override
    {
        asked.push_back(window);
        return help_file != nullptr ? GFile(help_file) : GWinApp::help_file_for_window(window);
    }
};

/// A window that notes the messages that are sent to it.
class NotingWindow : public CWnd {
public:
    std::vector<UINT> seen;

    [[nodiscard]] bool has_seen(UINT message) const
    {
        return std::find(seen.begin(), seen.end(), message) != seen.end();
    }

protected:
    LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override
    {
        seen.push_back(message);
        return CWnd::WindowProc(message, wparam, lparam);
    }
};

/// A control that has a topic, as those of dialogs do.
class TopicControl : public CWnd {
protected:
    DECLARE_MESSAGE_MAP()

    LRESULT OnCommandHelp(WPARAM, LPARAM)
    {
        GHelp::PointedWindow(m_hWnd);
        AfxGetApp()->WinHelp(kTopicOfControl, HELP_CONTEXT);
        return TRUE;
    }
};

BEGIN_MESSAGE_MAP(TopicControl, CWnd)
    ON_MESSAGE(WM_COMMANDHELP, &TopicControl::OnCommandHelp)
END_MESSAGE_MAP()

class GWinAppHelpTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(host_.InitInstance());
        host_.show_boxes = false;
        calls_before_ = last_call().calls;
    }
    void TearDown() override
    {
        GHelp::UseHTML(true);
        GHelp::PointedWindow(nullptr);
        fpbase::SetRedirectionFile(nullptr);
        if (host_.m_pMainWnd != nullptr)
            host_.m_pMainWnd->DestroyWindow();
        MSG message;
        while (::PeekMessage(&message, nullptr, 0, 0, PM_REMOVE)) {
        }
        host_.ExitInstance();
    }
    /// How often the engine was called in this test.
    [[nodiscard]] int calls() const { return last_call().calls - calls_before_; }

    HelpHost host_;

private:
    int calls_before_ = 0;
};

/// What the classic engine is sent: the head of a request.
struct ClassicRequest {
    WORD size;
    WORD command;
    LONG data;
};

/// Stands for the classic engine while it lives.
class ClassicEngine {
public:
    ClassicEngine()
    {
        WNDCLASSA type{};
        type.lpfnWndProc = &procedure;
        type.hInstance = ::GetModuleHandleA(nullptr);
        type.lpszClassName = "MS_WINHELP";
        ::RegisterClassA(&type);
        window_ = ::CreateWindowA("MS_WINHELP", "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr,
                                  type.hInstance, nullptr);
        EXPECT_NE(window_, nullptr);
        requests.clear();
    }
    ~ClassicEngine()
    {
        ::DestroyWindow(window_);
        ::UnregisterClassA("MS_WINHELP", ::GetModuleHandleA(nullptr));
    }
    ClassicEngine(const ClassicEngine&) = delete;
    ClassicEngine& operator=(const ClassicEngine&) = delete;

    static inline std::vector<std::pair<unsigned, LONG>> requests;  ///< Commands and data.

private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
    {
        if (message != WM_COPYDATA)
            return ::DefWindowProcA(window, message, wparam, lparam);
        const auto& copied = *reinterpret_cast<const COPYDATASTRUCT*>(lparam);
        ClassicRequest request{};
        if (copied.cbData >= sizeof request) {
            std::memcpy(&request, copied.lpData, sizeof request);
            requests.emplace_back(request.command, request.data);
        }
        return TRUE;
    }

    HWND window_ = nullptr;
};

}  // namespace

TEST_F(GWinAppHelpTest, Topic_GoesToTheHtmlEngineForTheMainWindow)
{
    HostFrame& frame = host_.open_frame();
    host_.WinHelpA(kTopic, HELP_CONTEXT);

    ASSERT_EQ(calls(), 1);
    EXPECT_EQ(last_call().window, frame.m_hWnd);
    EXPECT_STREQ(last_call().file, "host.chm");
    EXPECT_EQ(last_call().command, kHtmlContext);
    EXPECT_EQ(last_call().data, kTopic);
    EXPECT_TRUE(host_.boxes.empty());
}

TEST_F(GWinAppHelpTest, Contents_AreTheEnginesOwnCommand)
{
    host_.open_frame(SW_HIDE);
    host_.WinHelpA(0, HELP_FINDER);

    ASSERT_EQ(calls(), 1);
    EXPECT_EQ(last_call().command, kHtmlContents);
}

TEST_F(GWinAppHelpTest, CommandThatTheEngineDoesNotHave_DoesNothing)
{
    HostFrame& frame = host_.open_frame(SW_HIDE);
    host_.m_bHelpMode = TRUE;
    GHelp::PointedWindow(frame.m_hWnd);
    host_.WinHelpA(kTopic, HELP_SETPOPUP_POS);

    EXPECT_EQ(calls(), 0);
    EXPECT_TRUE(host_.asked.empty());
    EXPECT_TRUE(host_.boxes.empty());
    EXPECT_TRUE(host_.m_bHelpMode);
    EXPECT_EQ(GHelp::PointedWindow(), frame.m_hWnd);
    host_.m_bHelpMode = FALSE;
}

TEST_F(GWinAppHelpTest, PointedWindow_IsAskedForItsFileAndForgottenBehindTheCall)
{
    HostFrame& frame = host_.open_frame(SW_HIDE);
    GHelp::PointedWindow(frame.m_hWnd);
    host_.WinHelpA(kTopic, HELP_CONTEXT);
    host_.WinHelpA(kTopic, HELP_CONTEXT);

    EXPECT_EQ(host_.asked, (std::vector<HWND>{frame.m_hWnd, nullptr}));
    EXPECT_EQ(GHelp::PointedWindow(), nullptr);
}

TEST_F(GWinAppHelpTest, WithoutAnOverride_TheFileIsTheProgramsWithTheEnginesExtension)
{
    host_.open_frame(SW_HIDE);
    host_.help_file = nullptr;
    host_.m_pszHelpFilePath = "C:\\programs\\scene editor.hlp";
    host_.WinHelpA(kTopic, HELP_CONTEXT);

    ASSERT_EQ(calls(), 1);
    EXPECT_STREQ(last_call().file, "C:\\programs\\scene editor.chm");
}

TEST_F(GWinAppHelpTest, FileThatIsRedirected_IsTheOneThatIsThere)
{
    const TemporaryFolder folder;
    const std::string there = folder.file("scene.chm");
    std::ofstream(there).put('x');
    GFile directory(there.c_str());
    directory.just_directory();
    auto redirection = std::make_unique<RedirectionFile>();
    auto* const item = new RedirectionItem("*.chm");
    item->v_insert(gnewstr(directory.text));
    redirection->v_insert(item);
    fpbase::SetRedirectionFile(std::move(redirection));
    host_.open_frame(SW_HIDE);
    host_.help_file = "scene.chm";
    host_.WinHelpA(kTopic, HELP_CONTEXT);

    ASSERT_EQ(calls(), 1);
    EXPECT_STRNE(last_call().file, "scene.chm");
    EXPECT_TRUE(std::ifstream(last_call().file).good()) << last_call().file;
}

TEST_F(GWinAppHelpTest, HelpModeOfFrameAndApplication_EndsAndAnIdleTurnIsAskedFor)
{
    HostFrame& frame = host_.open_frame(SW_HIDE);
    frame.m_bHelpMode = TRUE;
    host_.m_bHelpMode = TRUE;
    host_.m_dwPromptContext = 4711;
    host_.WinHelpA(kTopic, HELP_CONTEXT);

    EXPECT_FALSE(frame.m_bHelpMode);
    EXPECT_FALSE(host_.m_bHelpMode);
    EXPECT_EQ(host_.m_dwPromptContext, 0u);
    MSG kick{};
    EXPECT_TRUE(::PeekMessage(&kick, frame.m_hWnd, WM_KICKIDLE, WM_KICKIDLE, PM_REMOVE));
    EXPECT_EQ(calls(), 1);
}

TEST_F(GWinAppHelpTest, Modes_EndInTheMainWindowInAllBelowItAndInTheCapture)
{
    HostFrame& frame = host_.open_frame();
    std::vector<UINT> of_frame;
    frame.watch = [&](UINT message, WPARAM) { of_frame.push_back(message); };
    NotingWindow child;
    NotingWindow grandchild;
    NotingWindow aside;
    ASSERT_TRUE(child.Create(nullptr, "", WS_CHILD | WS_VISIBLE, CRect(0, 0, 90, 90), &frame, 5));
    ASSERT_TRUE(
        grandchild.Create(nullptr, "", WS_CHILD | WS_VISIBLE, CRect(0, 0, 40, 40), &child, 6));
    ASSERT_TRUE(aside.CreateEx(0, AfxRegisterWndClass(0), "Aside", WS_POPUP | WS_VISIBLE,
                               CRect(0, 0, 50, 50), nullptr, 0));
    aside.SetCapture();
    host_.WinHelpA(kTopic, HELP_CONTEXT);
    frame.watch = nullptr;

    EXPECT_NE(std::find(of_frame.begin(), of_frame.end(), UINT{WM_CANCELMODE}), of_frame.end());
    EXPECT_TRUE(child.has_seen(WM_CANCELMODE));
    EXPECT_TRUE(grandchild.has_seen(WM_CANCELMODE));
    EXPECT_TRUE(aside.has_seen(WM_CANCELMODE));
    EXPECT_EQ(::GetCapture(), nullptr);
    EXPECT_EQ(calls(), 1);
    aside.DestroyWindow();
}

TEST_F(GWinAppHelpTest, MainWindowThatIsAChild_ItsTopWindowEndsItsModesAndIsTheEngines)
{
    NotingWindow top;
    NotingWindow inner;
    ASSERT_TRUE(top.CreateEx(0, AfxRegisterWndClass(0), "Container", WS_OVERLAPPEDWINDOW,
                             CRect(0, 0, 200, 200), nullptr, 0));
    ASSERT_TRUE(inner.Create(nullptr, "", WS_CHILD | WS_VISIBLE, CRect(0, 0, 90, 90), &top, 5));
    host_.m_pMainWnd = &inner;
    host_.WinHelpA(kTopic, HELP_CONTEXT);
    host_.m_pMainWnd = nullptr;

    EXPECT_TRUE(inner.has_seen(WM_CANCELMODE));
    EXPECT_TRUE(top.has_seen(WM_CANCELMODE));
    ASSERT_EQ(calls(), 1);
    EXPECT_EQ(last_call().window, top.m_hWnd);
    top.DestroyWindow();
}

TEST_F(GWinAppHelpTest, EngineThatRefuses_IsToldInABox)
{
    HostFrame& frame = host_.open_frame(SW_HIDE);
    host_.help_file = "refused.chm";
    GHelp::PointedWindow(frame.m_hWnd);
    host_.WinHelpA(kTopic, HELP_CONTEXT);

    EXPECT_EQ(calls(), 1);
    EXPECT_EQ(host_.boxes, std::vector<std::string>{"The help can't be shown."});
    EXPECT_EQ(GHelp::PointedWindow(), nullptr);
}

TEST_F(GWinAppHelpTest, NoFile_IsToldInABoxWithoutAskingTheEngine)
{
    HostFrame& frame = host_.open_frame(SW_HIDE);
    host_.help_file = "";
    GHelp::PointedWindow(frame.m_hWnd);
    host_.WinHelpA(kTopic, HELP_CONTEXT);

    EXPECT_EQ(calls(), 0);
    EXPECT_EQ(host_.boxes, std::vector<std::string>{"The help can't be shown."});
    EXPECT_EQ(GHelp::PointedWindow(), nullptr);
}

TEST_F(GWinAppHelpTest, ProgramWithoutAHelpPath_IsToldInABox)
{
    host_.open_frame(SW_HIDE);
    host_.help_file = nullptr;
    host_.m_pszHelpFilePath = nullptr;
    host_.WinHelpA(kTopic, HELP_CONTEXT);

    EXPECT_EQ(calls(), 0);
    EXPECT_EQ(host_.boxes, std::vector<std::string>{"The help can't be shown."});
}

TEST_F(GWinAppHelpTest, WithoutAMainWindow_TheEngineIsAskedAllTheSame)
{
    host_.WinHelpA(kTopic, HELP_CONTEXT);

    ASSERT_EQ(calls(), 1);
    EXPECT_EQ(last_call().window, nullptr);
    EXPECT_TRUE(host_.boxes.empty());
}

TEST_F(GWinAppHelpTest, ClassicEngine_IsHandedTheCommandAsItStandsAndThePointedWindowStays)
{
    const ClassicEngine engine;
    HostFrame& frame = host_.open_frame(SW_HIDE);
    host_.m_pszHelpFilePath = "C:\\host.hlp";
    GHelp::UseHTML(false);
    GHelp::PointedWindow(frame.m_hWnd);
    host_.WinHelpA(kTopic, HELP_CONTEXT);

    EXPECT_EQ(ClassicEngine::requests,
              (std::vector<std::pair<unsigned, LONG>>{{HELP_CONTEXT, LONG{kTopic}}}));
    EXPECT_EQ(calls(), 0);
    EXPECT_TRUE(host_.asked.empty());
    EXPECT_TRUE(host_.boxes.empty());
    EXPECT_EQ(GHelp::PointedWindow(), frame.m_hWnd);
}

TEST_F(GWinAppHelpTest, ClassicEngine_TopicOfAControlOpensInAWindowOfItsOwn)
{
    const ClassicEngine engine;
    host_.open_frame(SW_HIDE);
    host_.m_pszHelpFilePath = "C:\\host.hlp";
    GHelp::UseHTML(false);
    for (const DWORD_PTR topic : {0x4FFFF, 0x50000, 0x5FFFF, 0x60000})
        host_.WinHelpA(topic, HELP_CONTEXT);

    EXPECT_EQ(ClassicEngine::requests,
              (std::vector<std::pair<unsigned, LONG>>{{HELP_CONTEXT, 0x4FFFF},
                                                      {HELP_CONTEXTPOPUP, 0x50000},
                                                      {HELP_CONTEXTPOPUP, 0x5FFFF},
                                                      {HELP_CONTEXT, 0x60000}}));
}

TEST_F(GWinAppHelpTest, F1InAControl_LeadsToItsTopicInItsFile)
{
    HostFrame& frame = host_.open_frame();
    TopicControl control;
    ASSERT_TRUE(control.Create(nullptr, "", WS_CHILD | WS_VISIBLE | WS_TABSTOP,
                               CRect(0, 0, 200, 150), &frame, 5));
    frame.SetForegroundWindow();
    control.SetFocus();
    ASSERT_TRUE(host_.pump_until([&] { return ::GetFocus() == control.m_hWnd; }));

    EXPECT_TRUE(WindowInput().key(VK_F1).play_until([&] { return calls() > 0; }));

    EXPECT_EQ(calls(), 1);
    EXPECT_EQ(last_call().window, frame.m_hWnd);
    EXPECT_EQ(last_call().command, kHtmlContext);
    EXPECT_EQ(last_call().data, kTopicOfControl);
    EXPECT_EQ(host_.asked, std::vector<HWND>{control.m_hWnd});
    control.DestroyWindow();
}
