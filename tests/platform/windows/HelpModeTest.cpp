#include "platform/CButton.h"
#include "platform/CControlBar.h"
#include "platform/CMenu.h"
#include "tests/platform/windows/FrameHost.h"
#include "tests/platform/windows/TestApplication.h"
#include "tests/support/WindowInput.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <stdexcept>
#include <thread>

// Help mode of a frame, driven as a person does it, and the other ways to ask for help.

namespace {

constexpr const char* kMenuWindow = "#32768";  // the system's class of popups
constexpr UINT kRun = WM_APP + 1;
constexpr LRESULT kTopic = HID_BASE_CONTROL + 7;

std::string help_about(LRESULT topic)
{
    return "help " + std::to_string(topic);
}

/// A frame whose map names the commands of help.
class HelpFrame : public HostFrame {
public:
    std::function<void()> run;  ///< What kRun does.

protected:
    DECLARE_MESSAGE_MAP()

    LRESULT OnRun(WPARAM, LPARAM)
    {
        run();
        return 0;
    }
};

BEGIN_MESSAGE_MAP(HelpFrame, HostFrame)
    ON_COMMAND(ID_CONTEXT_HELP, &HelpFrame::OnContextHelp)
    ON_COMMAND(ID_HELP_INDEX, &HelpFrame::OnHelpIndex)
    ON_COMMAND(ID_HELP_FINDER, &HelpFrame::OnHelpFinder)
    ON_COMMAND(ID_HELP_USING, &HelpFrame::OnHelpUsing)
    ON_MESSAGE(kRun, &HelpFrame::OnRun)
END_MESSAGE_MAP()

/// A child that has a topic, unless it is taken away, and notes what it is clicked with.
class TopicChild : public CWnd {
public:
    LRESULT topic = kTopic;
    CPoint asked_at{-1, -1};
    int clicks = 0;

protected:
    DECLARE_MESSAGE_MAP()

    LRESULT OnHelpHitTest(WPARAM, LPARAM point)
    {
        asked_at = CPoint(static_cast<short>(LOWORD(point)), static_cast<short>(HIWORD(point)));
        return topic;
    }
    void OnLButtonDown(UINT, CPoint) { ++clicks; }
};

BEGIN_MESSAGE_MAP(TopicChild, CWnd)
    ON_MESSAGE(WM_HELPHITTEST, &TopicChild::OnHelpHitTest)
    ON_WM_LBUTTONDOWN()
END_MESSAGE_MAP()

class ButtonBar : public CControlBar {
public:
    [[nodiscard]] bool open(CWnd* parent)
    {
        return CWnd::Create(nullptr, "", take_bar_style(WS_CHILD | WS_VISIBLE | CBRS_TOP), CRect(),
                            parent, 0xE804) != 0;
    }
    CSize CalcFixedLayout(BOOL, BOOL) override { return {32767, 40}; }
    void OnUpdateCmdUI(CFrameWnd*, BOOL) override {}
};

class HelpMode : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(frame.LoadFrame(kFrameId));
        frame.MoveWindow(60, 60, 500, 400);
        ASSERT_TRUE(
            child.Create(nullptr, "", WS_CHILD | WS_VISIBLE, CRect(50, 50, 250, 150), &frame, 5));
        frame.ShowWindow(SW_SHOW);
        frame.UpdateWindow();
        the_application().m_pMainWnd = &frame;
        ASSERT_TRUE(WindowInput().click(middle_of(frame.m_hWnd)).play_until([&] {
            return ::GetActiveWindow() == frame.m_hWnd;
        }));
        frame.calls.clear();
        child.clicks = 0;
    }
    void TearDown() override
    {
        the_application().m_pMainWnd = nullptr;
        the_application().take_helps();
    }

    /// Shift+F1, and the wait for the mode to be on.
    [[nodiscard]] WindowInput enter()
    {
        return WindowInput().press_key(VK_SHIFT).key(VK_F1).release_key(VK_SHIFT).wait_until(
            [this] { return is_on(); });
    }
    [[nodiscard]] bool is_on() const
    {
        return *const_cast<const volatile BOOL*>(&frame.m_bHelpMode) != FALSE;
    }
    [[nodiscard]] bool capture_is_frames() const
    {
        GUITHREADINFO info{};
        info.cbSize = sizeof info;
        return ::GetGUIThreadInfo(window_thread, &info) && info.hwndCapture == frame.m_hWnd;
    }
    [[nodiscard]] bool is_over_with(const std::string& call) const
    {
        return !is_on() && std::ranges::count(frame.calls, call) > 0;
    }
    [[nodiscard]] int number_of_helps() const { return frame.help_calls; }

    HelpFrame frame;
    TopicChild child;
    const DWORD window_thread = ::GetCurrentThreadId();
};

HCURSOR cursor_shown()
{
    CURSORINFO info{};
    info.cbSize = sizeof info;
    ::GetCursorInfo(&info);
    return info.hCursor;
}

}  // namespace

TEST_F(HelpMode, ShiftF1_CursorAsksUntilEscape)
{
    HCURSOR during = nullptr;

    EXPECT_TRUE(enter()
                    .move_to(middle_of(child.m_hWnd))
                    .wait_until([&] {
                        during = cursor_shown();
                        return during == ::LoadCursor(nullptr, IDC_HELP);
                    })
                    .key(VK_ESCAPE)
                    .play_until([&] { return !is_on(); }));

    EXPECT_EQ(during, ::LoadCursor(nullptr, IDC_HELP));
    EXPECT_FALSE(the_application().m_bHelpMode);
    EXPECT_NE(::GetCapture(), frame.m_hWnd);
    EXPECT_EQ(number_of_helps(), 0);
}

TEST_F(HelpMode, Click_AsksTheWindowBelowAndDoesNothingElse)
{
    const CPoint place = middle_of(child.m_hWnd);

    EXPECT_TRUE(enter().click(place).play_until([&] { return is_over_with(help_about(kTopic)); }));

    EXPECT_EQ(child.asked_at, CPoint(100, 50)) << "in the window's own pixels";
    EXPECT_EQ(child.clicks, 0);
    EXPECT_EQ(number_of_helps(), 1);
    EXPECT_TRUE(WindowInput().click(place).play_until([&] { return child.clicks == 1; }))
        << "the next click is a click";
}

TEST_F(HelpMode, ClickOnWindowWithoutTopic_AsksAboutTheFrame)
{
    child.topic = 0;

    EXPECT_TRUE(enter().click(middle_of(child.m_hWnd)).play_until([&] {
        return is_over_with(help_about(HID_BASE_RESOURCE + kFrameId));
    }));
}

TEST_F(HelpMode, ClickOnDisabledWindow_AsksItAllTheSame)
{
    child.EnableWindow(FALSE);

    EXPECT_TRUE(enter().click(middle_of(child.m_hWnd)).play_until([&] {
        return is_over_with(help_about(kTopic));
    }));
}

TEST_F(HelpMode, ClickOnTitle_AsksAboutThatPart)
{
    CRect rect;
    frame.GetWindowRect(rect);
    const CPoint title(rect.left + 150, rect.top + 12);
    ASSERT_EQ(frame.SendMessage(WM_NCHITTEST, 0, MAKELPARAM(title.x, title.y)), HTCAPTION);

    EXPECT_TRUE(enter().click(title).play_until(
        [&] { return is_over_with(help_about(HID_BASE_NCAREAS + HTCAPTION)); }));
}

TEST_F(HelpMode, ClickOnMenu_OpensItAndTheChoiceAsks)
{
    CRect item;
    ::GetMenuItemRect(frame.m_hWnd, frame.GetMenu()->m_hMenu, 0, item);

    EXPECT_TRUE(
        enter()
            .click(item.CenterPoint())
            .wait_until([] { return visible_window(kMenuWindow) != nullptr; })
            .key('O')
            .play_until([&] { return is_over_with(help_about(HID_BASE_COMMAND + kOpen)); }));

    EXPECT_EQ(std::ranges::count(frame.calls, "open"), 0);
}

TEST_F(HelpMode, ChoiceByKeys_Asks)
{
    EXPECT_TRUE(enter().open_menu('F').key('O').play_until(
        [&] { return is_over_with(help_about(HID_BASE_COMMAND + kOpen)); }));

    EXPECT_EQ(std::ranges::count(frame.calls, "open"), 0);
}

TEST_F(HelpMode, MenuClosedWithoutChoice_ModeGoesOn)
{
    bool still_on = false;

    EXPECT_TRUE(enter()
                    .open_menu('F')
                    .key(VK_ESCAPE)
                    .key(VK_ESCAPE)
                    .wait_until([] { return visible_window(kMenuWindow) == nullptr; })
                    .wait_until([&] { return still_on = is_on() && capture_is_frames(); })
                    .click(middle_of(child.m_hWnd))
                    .play_until([&] { return is_over_with(help_about(kTopic)); }));

    EXPECT_TRUE(still_on);
}

TEST_F(HelpMode, KeyOfACommand_AsksAboutTheCommand)
{
    EXPECT_TRUE(enter().press_key(VK_CONTROL).key('O').release_key(VK_CONTROL).play_until([&] {
        return is_over_with(help_about(HID_BASE_COMMAND + kOpen));
    }));

    EXPECT_EQ(std::ranges::count(frame.calls, "open"), 0);
}

TEST_F(HelpMode, ShiftF1Again_EndsIt)
{
    EXPECT_TRUE(enter().press_key(VK_SHIFT).key(VK_F1).release_key(VK_SHIFT).play_until(
        [&] { return !is_on(); }));

    EXPECT_EQ(number_of_helps(), 0);
}

TEST_F(HelpMode, NothingHasATopic_ModeGoesOn)
{
    frame.m_nIDHelp = 0;
    child.topic = 0;
    bool asked_and_on = false;

    EXPECT_TRUE(enter()
                    .click(middle_of(child.m_hWnd))
                    .wait_until([&] { return child.asked_at.x >= 0; })
                    .wait_until([&] { return asked_and_on = is_on(); })
                    .key(VK_ESCAPE)
                    .play_until([&] { return !is_on(); }));

    EXPECT_TRUE(asked_and_on);
    EXPECT_EQ(number_of_helps(), 0);
}

TEST_F(HelpMode, RightButton_DoesNothing)
{
    EXPECT_TRUE(
        enter().right_click(middle_of(child.m_hWnd)).click(middle_of(child.m_hWnd)).play_until([&] {
            return is_over_with(help_about(kTopic));
        }));

    EXPECT_EQ(number_of_helps(), 1);
}

TEST_F(HelpMode, Prompt_ShownWhileItIsOn)
{
    UINT during = 0;

    EXPECT_TRUE(enter()
                    .wait_until([&] {
                        during = frame.m_nIDLastMessage;
                        return true;
                    })
                    .key(VK_ESCAPE)
                    .play_until([&] { return frame.m_nIDLastMessage == AFX_IDS_IDLEMESSAGE; }));

    EXPECT_EQ(during, static_cast<UINT>(AFX_IDS_HELPMODEMESSAGE));
}

TEST_F(HelpMode, CancelMode_EndsIt)
{
    EXPECT_TRUE(enter()
                    .wait_until([&] { return ::PostMessage(frame.m_hWnd, WM_CANCELMODE, 0, 0); })
                    .play_until([&] { return !is_on(); }));
    EXPECT_EQ(number_of_helps(), 0);
}

TEST_F(HelpMode, AnotherWindowIsActivated_EndsIt)
{
    CWnd other;
    ASSERT_TRUE(other.CreateEx(0, AfxRegisterWndClass(0), "", WS_POPUP | WS_VISIBLE, 600, 60, 100,
                               100, nullptr, nullptr));
    frame.SetActiveWindow();
    bool was_on = false;
    frame.run = [&] {
        was_on = is_on();
        other.SetActiveWindow();
    };
    frame.PostMessage(kRun);

    frame.OnContextHelp();

    EXPECT_TRUE(was_on);
    EXPECT_FALSE(is_on());
}

TEST_F(HelpMode, FrameDestroyedMeanwhile_LoopEnds)
{
    frame.run = [&] { frame.DestroyWindow(); };
    frame.PostMessage(kRun);

    frame.OnContextHelp();

    EXPECT_EQ(frame.m_hWnd, nullptr);
    EXPECT_FALSE(the_application().m_bHelpMode);
}

TEST_F(HelpMode, FrameDeletesItselfMeanwhile_LoopEnds)
{
    auto* const passing = new CFrameWnd;  // its window's end deletes it
    ASSERT_TRUE(passing->LoadFrame(kFrameId));
    passing->PostMessage(WM_CLOSE);

    passing->OnContextHelp();

    EXPECT_FALSE(the_application().m_bHelpMode);
}

TEST_F(HelpMode, Quit_EndsItAndStaysInTheQueue)
{
    ::PostQuitMessage(7);

    frame.OnContextHelp();

    EXPECT_FALSE(is_on());
    MSG message{};
    ASSERT_TRUE(::PeekMessage(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
    EXPECT_EQ(message.wParam, 7u);
}

TEST_F(HelpMode, HandlerThrows_ModeEndsAndTheExceptionGoesOn)
{
    frame.run = [] { throw std::runtime_error("from a handler"); };
    frame.PostMessage(kRun);

    EXPECT_THROW(frame.OnContextHelp(), std::runtime_error);

    EXPECT_FALSE(is_on());
    EXPECT_FALSE(the_application().m_bHelpMode);
    EXPECT_NE(::GetCapture(), frame.m_hWnd);
}

TEST_F(HelpMode, DisabledFrame_DoesNotEnter)
{
    frame.EnableWindow(FALSE);

    frame.OnContextHelp();

    EXPECT_FALSE(frame.CanEnterHelpMode());
    EXPECT_EQ(::GetCapture(), nullptr);
    frame.EnableWindow(TRUE);
    EXPECT_TRUE(frame.CanEnterHelpMode());
}

TEST_F(HelpMode, ApplicationsHandler_IsTheMainFrames)
{
    bool was_on = false;
    frame.run = [&] {
        was_on = is_on();
        frame.ExitHelpMode();
    };
    frame.PostMessage(kRun);

    the_application().OnContextHelp();

    EXPECT_TRUE(was_on);
    EXPECT_FALSE(is_on());
}

TEST_F(HelpMode, OtherCommandsOfHelp_GoToTheEngine)
{
    frame.SendMessage(WM_COMMAND, ID_HELP_INDEX);
    EXPECT_EQ(frame.calls.back(), "help 0");
    the_application().OnHelpIndex();
    the_application().OnHelpFinder();
    the_application().OnHelpUsing();

    EXPECT_EQ(the_application().take_helps(),
              (std::vector<UINT>{HELP_INDEX, HELP_FINDER, HELP_HELPONHELP}));
}

TEST_F(HelpMode, HelpKeyWhileABoxIsOpen_AsksAboutTheBox)
{
    the_application().m_dwPromptContext = HID_BASE_PROMPT + 77;
    frame.OnHelp();
    EXPECT_EQ(frame.calls.back(), help_about(HID_BASE_PROMPT + 77));

    the_application().m_dwPromptContext = HID_BASE_PROMPT + AFX_IDP_FAILED_TO_LAUNCH_HELP;
    frame.OnHelp();
    EXPECT_EQ(number_of_helps(), 1) << "the box that there is no help has none";
    the_application().m_dwPromptContext = 0;
}

TEST_F(HelpMode, MessageBox_HasItsContextWhileItIsOpen)
{
    DWORD during = 0;
    std::jthread user([&] {
        const ULONGLONG last = ::GetTickCount64() + 10'000;
        while (::GetTickCount64() < last) {
            if (const HWND box = visible_window("#32770")) {
                during = the_application().m_dwPromptContext;
                ::PostMessage(box, WM_COMMAND, IDOK, 0);
                return;
            }
            ::Sleep(5);
        }
    });

    EXPECT_EQ(the_application().CWinApp::DoMessageBox("text", MB_OK, 77), IDOK);
    user.join();

    EXPECT_EQ(during, HID_BASE_PROMPT + 77u);
    EXPECT_EQ(the_application().m_dwPromptContext, 0u);
}

TEST_F(HelpMode, HitTestOfABar_IsTheCommandOfTheButton)
{
    ButtonBar bar;
    ASSERT_TRUE(bar.open(&frame));
    frame.RecalcLayout();
    CButton button;
    ASSERT_TRUE(button.Create("", WS_CHILD | WS_VISIBLE, CRect(10, 5, 60, 30), &bar, kOpen));

    EXPECT_EQ(bar.SendMessage(WM_HELPHITTEST, 0, MAKELPARAM(20, 10)),
              static_cast<LRESULT>(HID_BASE_COMMAND + kOpen));
    EXPECT_EQ(bar.SendMessage(WM_HELPHITTEST, 0, MAKELPARAM(200, 10)), 0);
    EXPECT_TRUE(enter().click(middle_of(button.m_hWnd)).play_until([&] {
        return is_over_with(help_about(HID_BASE_COMMAND + kOpen));
    }));
    EXPECT_EQ(std::ranges::count(frame.calls, "open"), 0);
}
