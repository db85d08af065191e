#include "platform/CButton.h"
#include "platform/CToolTipCtrl.h"
#include "tests/platform/windows/FrameHost.h"
#include "tests/platform/windows/TestApplication.h"
#include "tests/support/ResourceLedger.h"
#include "tests/support/WindowInput.h"

namespace {

class ToolTips : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(frame.LoadFrame(kFrameId));
        frame.MoveWindow(60, 60, 500, 400);
        ASSERT_TRUE(
            open.Create("Open", WS_CHILD | WS_VISIBLE, CRect(20, 20, 120, 50), &frame, kOpen));
        ASSERT_TRUE(
            other.Create("Other", WS_CHILD | WS_VISIBLE, CRect(20, 120, 120, 150), &frame, 0xFFFF));
        frame.ShowWindow(SW_SHOW);
        frame.UpdateWindow();
        // The mouse rests far from any tool, and the window is active.
        ASSERT_TRUE(WindowInput().click(middle_of(frame.m_hWnd)).play_until([&] {
            return ::GetActiveWindow() == frame.m_hWnd;
        }));
    }
    void TearDown() override { CWnd::CancelToolTips(); }

    [[nodiscard]] static bool is_shown() { return visible_window(TOOLTIPS_CLASS) != nullptr; }
    [[nodiscard]] static std::string text_shown()
    {
        const HWND tip = visible_window(TOOLTIPS_CLASS);
        char text[200] = "";
        if (tip != nullptr)
            ::GetWindowText(tip, text, sizeof text);
        return text;
    }

    HostFrame frame;
    CButton open;
    CButton other;
};

}  // namespace

TEST_F(ToolTips, HitTest_ChildrenWithAnIdAreTools)
{
    TOOLINFO tool{};
    EXPECT_EQ(frame.OnToolHitTest(CPoint(50, 30), &tool), static_cast<int>(kOpen));
    EXPECT_EQ(tool.hwnd, frame.m_hWnd);
    EXPECT_EQ(tool.uId, reinterpret_cast<UINT_PTR>(open.m_hWnd));
    EXPECT_NE(tool.uFlags & TTF_IDISHWND, 0u);
    EXPECT_EQ(tool.lpszText, LPSTR_TEXTCALLBACK);
    EXPECT_EQ(frame.OnToolHitTest(CPoint(50, 130), &tool), -1) << "without an id of its own";
    EXPECT_EQ(frame.OnToolHitTest(CPoint(300, 300), nullptr), -1);
}

TEST_F(ToolTips, MouseRestsOnAButton_ItsCommandsTipIsShownUntilItLeaves)
{
    frame.EnableToolTips();
    EXPECT_TRUE(WindowInput().move_to(middle_of(open.m_hWnd)).play_until(is_shown));
    EXPECT_EQ(text_shown(), "Open");
    EXPECT_TRUE(
        WindowInput().move_to(middle_of(frame.m_hWnd)).play_until([] { return !is_shown(); }));
}

TEST_F(ToolTips, Press_EndsTheTip)
{
    frame.EnableToolTips();
    EXPECT_TRUE(WindowInput().move_to(middle_of(open.m_hWnd)).play_until(is_shown));
    EXPECT_TRUE(WindowInput().press_left().release_left().play_until([] { return !is_shown(); }));
}

TEST_F(ToolTips, WithoutEnabling_NoTipIsMade)
{
    EXPECT_TRUE(WindowInput().move_to(middle_of(open.m_hWnd)).play_until([&] {
        return ::GetCapture() == nullptr;
    }));
    the_application().pump_all();
    EXPECT_EQ(::FindWindow(TOOLTIPS_CLASS, "Open"), nullptr);
    EXPECT_FALSE(is_shown());
}

TEST_F(ToolTips, EndOfTheFrame_EndsTheTipToo)
{
    frame.EnableToolTips();
    EXPECT_TRUE(WindowInput().move_to(middle_of(open.m_hWnd)).play_until(is_shown));
    const HWND tip = visible_window(TOOLTIPS_CLASS);
    frame.DestroyWindow();
    EXPECT_FALSE(::IsWindow(tip));
}

TEST_F(ToolTips, Control_ToolsTextsAndForm)
{
    CToolTipCtrl tip;
    ASSERT_TRUE(tip.Create(&frame, TTS_ALWAYSTIP));
    EXPECT_TRUE(tip.AddTool(&open, "press me"));
    const CRect area(200, 200, 250, 250);
    EXPECT_TRUE(tip.AddTool(&frame, "area", area, 7));
    EXPECT_EQ(tip.GetToolCount(), 2);
    CString text;
    tip.GetText(text, &open);
    EXPECT_STREQ(text, "press me");
    tip.UpdateTipText("again", &open);
    tip.GetText(text, &open);
    EXPECT_STREQ(text, "again");
    TOOLINFO tool{};
    EXPECT_TRUE(tip.HitTest(&frame, CPoint(220, 220), tool));
    EXPECT_EQ(tool.uId, 7u);
    tip.SetToolRect(&frame, 7, CRect(0, 0, 5, 5));
    EXPECT_FALSE(tip.HitTest(&frame, CPoint(220, 220), tool));
    ASSERT_TRUE(tip.GetToolInfo(tool, &frame, 7));
    EXPECT_EQ(tool.rect.right, 5);
    tip.SetMaxTipWidth(123);
    EXPECT_EQ(tip.GetMaxTipWidth(), 123);
    tip.SetDelayTime(TTDT_AUTOPOP, 4321);
    EXPECT_EQ(tip.GetDelayTime(TTDT_AUTOPOP), 4321);
    tip.SetTipBkColor(RGB(1, 2, 3));
    EXPECT_EQ(tip.GetTipBkColor(), RGB(1, 2, 3));
    tip.DelTool(&frame, 7);
    EXPECT_EQ(tip.GetToolCount(), 1);
    EXPECT_TRUE(tip.AddTool(&frame, kOverwrite, CRect(0, 0, 9, 9), 8));
    tip.GetText(text, &frame, 8);
    EXPECT_STREQ(text, "OVR") << "of the string table";
}

TEST_F(ToolTips, OpenedAndClosedManyTimes_NothingIsLeft)
{
    CToolTipCtrl tip;
    EXPECT_EQ(what_leaks([&] {
                  tip.Create(&frame);
                  tip.AddTool(&open, "press me");
                  tip.DestroyWindow();
              }),
              "");
}

TEST(ToolTipsOfFrames, FramesThatShowedATip_LeaveNothing)
{
    int shown = 0;
    const auto open_and_close = [&] {
        HostFrame frame;
        ASSERT_TRUE(frame.LoadFrame(kFrameId));
        CButton button;
        ASSERT_TRUE(
            button.Create("Open", WS_CHILD | WS_VISIBLE, CRect(0, 0, 90, 30), &frame, kOpen));
        frame.EnableToolTips();
        frame.ShowWindow(SW_SHOW);
        MSG move{};
        move.hwnd = button.m_hWnd;
        move.message = WM_MOUSEMOVE;
        move.lParam = MAKELPARAM(20, 20);
        frame.PreTranslateMessage(&move);
        const HWND tip = ::FindWindow(TOOLTIPS_CLASS, nullptr);
        shown += tip != nullptr && ::GetWindow(tip, GW_OWNER) == frame.m_hWnd ? 1 : 0;
    };
    constexpr int kTurns = 200;
    EXPECT_EQ(what_leaks(open_and_close, kTurns), "");
    EXPECT_GT(shown, kTurns);
}
