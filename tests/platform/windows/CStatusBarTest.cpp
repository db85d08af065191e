#include "platform/CStatusBar.h"

#include "platform/CFont.h"
#include "tests/platform/windows/FrameHost.h"
#include "tests/platform/windows/TestApplication.h"

namespace {

/// Counts its paintings.
class CountedBar : public CStatusBar {
public:
    int paintings = 0;

protected:
    LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override
    {
        paintings += message == WM_PAINT ? 1 : 0;
        return CStatusBar::WindowProc(message, wparam, lparam);
    }
};

class StatusBarTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(frame.LoadFrame(kFrameId));
        frame.MoveWindow(60, 60, 640, 300);
        ASSERT_TRUE(bar.Create(&frame));
        const UINT panes[] = {ID_SEPARATOR, kObjects, kOverwrite};
        ASSERT_TRUE(bar.SetIndicators(panes, 3));
        frame.ShowWindow(SW_SHOW);
        frame.UpdateWindow();
    }

    /// The text that the control itself shows.
    [[nodiscard]] std::string shown(int pane)
    {
        char text[256] = "";
        ::SendMessage(bar.m_hWnd, SB_GETTEXT, static_cast<WPARAM>(pane),
                      reinterpret_cast<LPARAM>(text));
        return text;
    }
    [[nodiscard]] CRect place(int pane)
    {
        CRect rect;
        bar.GetItemRect(pane, rect);
        return rect;
    }

    HostFrame frame;
    CountedBar bar;
};

}  // namespace

TEST_F(StatusBarTest, LiesAtTheBottomAsHighAsItsFontNeeds)
{
    CRect client;
    frame.GetClientRect(client);
    CRect rect;
    bar.GetWindowRect(rect);
    frame.ScreenToClient(rect);
    EXPECT_EQ(rect.bottom, client.bottom);
    EXPECT_EQ(rect.Width(), client.Width());
    EXPECT_EQ(rect.Height(), bar.CalcFixedLayout(TRUE, TRUE).cy);
    EXPECT_GE(rect.Height(), 13 + 4);
    EXPECT_NE(bar.GetStyle() & SBARS_SIZEGRIP, 0u) << "the frame can be sized";
}

TEST_F(StatusBarTest, FirstPaneStretches_TheOthersFitTheirTexts)
{
    EXPECT_EQ(bar.GetCount(), 3);
    EXPECT_EQ(bar.CommandToIndex(kOverwrite), 2);
    EXPECT_EQ(bar.CommandToIndex(1), -1);
    EXPECT_EQ(bar.GetItemID(1), kObjects);
    UINT id = 0;
    UINT style = 0;
    int width = 0;
    bar.GetPaneInfo(1, id, style, width);
    EXPECT_EQ(place(1).Width(), width + 2 * 3);
    const int first = place(0).Width();
    const int second = place(1).Width();
    frame.MoveWindow(60, 60, 740, 300);
    EXPECT_EQ(place(0).Width(), first + 100);
    EXPECT_EQ(place(1).Width(), second);
    CRect client;
    bar.GetClientRect(client);
    EXPECT_LE(place(2).right, client.right - ::GetSystemMetrics(SM_CXVSCROLL)) << "the grip";
}

TEST_F(StatusBarTest, LargerFont_HigherBarAndWiderPanes)
{
    // The heights of text at 96 and at 144 dots per inch.
    LOGFONT description{};
    ::lstrcpyn(description.lfFaceName, "Tahoma", LF_FACESIZE);
    int height[2] = {};
    int width[2] = {};
    int turn = 0;
    CFont fonts[2];
    for (const int dpi : {96, 144}) {
        description.lfHeight = -::MulDiv(8, dpi, 72);
        ASSERT_TRUE(fonts[turn].CreateFontIndirect(&description));
        bar.SetFont(&fonts[turn]);
        frame.SendMessage(WM_IDLEUPDATECMDUI, TRUE);
        CRect rect;
        bar.GetWindowRect(rect);
        height[turn] = rect.Height();
        width[turn] = place(1).Width();
        ++turn;
    }
    EXPECT_GT(height[1], height[0]);
    EXPECT_GT(width[1], width[0]);
    bar.SendMessage(SB_SETMINHEIGHT, 60);
    EXPECT_EQ(bar.CalcFixedLayout(TRUE, TRUE).cy, 60);
}

TEST_F(StatusBarTest, Texts_AreWrittenOnceAndUnchangedOnesCauseNoPainting)
{
    EXPECT_TRUE(bar.SetPaneText(1, "Objects: 5"));
    EXPECT_EQ(shown(1), "Objects: 5");
    bar.UpdateWindow();
    const int before = bar.paintings;
    EXPECT_TRUE(bar.SetPaneText(1, "Objects: 5"));
    bar.SetPaneStyle(1, bar.GetPaneStyle(1));
    frame.SetMessageText("");
    bar.UpdateWindow();
    EXPECT_EQ(bar.paintings, before);
    EXPECT_TRUE(bar.SetPaneText(1, "Objects: 6"));
    bar.UpdateWindow();
    EXPECT_GT(bar.paintings, before);
    EXPECT_FALSE(bar.SetPaneText(9, "x"));
    EXPECT_STREQ(bar.GetPaneText(9), "");
}

TEST_F(StatusBarTest, TextForLater_IsShownWhenThePaneIsNextWritten)
{
    bar.SetPaneText(1, "first");
    EXPECT_TRUE(bar.SetPaneText(1, "later", FALSE));
    EXPECT_EQ(shown(1), "first");
    EXPECT_STREQ(bar.GetPaneText(1), "later");
    EXPECT_TRUE(bar.SetPaneText(1, "later"));
    EXPECT_EQ(shown(1), "later");
}

TEST_F(StatusBarTest, WindowText_IsThatOfTheMessagePane)
{
    bar.SetWindowText("Ready");
    EXPECT_STREQ(bar.GetPaneText(0), "Ready");
    CString text;
    bar.GetWindowText(text);
    EXPECT_STREQ(text, "Ready");
    EXPECT_EQ(frame.GetMessageBar(), &bar);
    frame.SetMessageText("Loading");
    EXPECT_EQ(shown(0), "Loading");
    frame.SetMessageText(kOpen);
    EXPECT_EQ(shown(0), "Opens a library");
}

TEST_F(StatusBarTest, IdlePass_AsksTheFrameAboutEachPane)
{
    frame.overwrite = false;
    frame.SendMessageToDescendants(WM_IDLEUPDATECMDUI, TRUE);
    EXPECT_EQ(shown(1), "Objects: 7");
    EXPECT_EQ(shown(2), "") << "disabled";
    EXPECT_STREQ(bar.GetPaneText(2), "OVR");
    frame.overwrite = true;
    frame.SendMessageToDescendants(WM_IDLEUPDATECMDUI, TRUE);
    EXPECT_EQ(shown(2), "OVR");
    bar.UpdateWindow();
    const int before = bar.paintings;
    frame.SendMessageToDescendants(WM_IDLEUPDATECMDUI, TRUE);
    bar.UpdateWindow();
    EXPECT_EQ(bar.paintings, before) << "nothing changed";
}

TEST_F(StatusBarTest, PaneInfo_NewWidthAndStyle)
{
    const int before = place(0).Width();
    UINT id = 0;
    UINT style = 0;
    int width = 0;
    bar.GetPaneInfo(1, id, style, width);
    bar.SetPaneInfo(1, id, SBPS_POPOUT, width + 50);
    EXPECT_EQ(place(0).Width(), before - 50);
    EXPECT_EQ(bar.GetPaneStyle(1), SBPS_POPOUT);
}

TEST_F(StatusBarTest, IndicatorWithoutText_Refused)
{
    const UINT panes[] = {ID_SEPARATOR, 61'999};
    EXPECT_FALSE(bar.SetIndicators(panes, 2));
}

TEST_F(StatusBarTest, EmptyPanes_OnDemand)
{
    EXPECT_TRUE(bar.SetIndicators(nullptr, 4));
    EXPECT_EQ(bar.GetCount(), 4);
    bar.SetPaneInfo(2, kObjects, SBPS_NORMAL, 40);
    EXPECT_TRUE(bar.SetPaneText(2, "x"));
    EXPECT_EQ(shown(2), "x");
}
