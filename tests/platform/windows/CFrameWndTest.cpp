#include "platform/CFrameWnd.h"

#include "platform/CButton.h"
#include "platform/CMenu.h"
#include "platform/CStatusBar.h"
#include "tests/platform/windows/FrameHost.h"
#include "tests/platform/windows/TestApplication.h"
#include "tests/support/ResourceLedger.h"
#include "tests/support/WindowInput.h"

#include <algorithm>

namespace {

class FrameTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(frame.LoadFrame(kFrameId));
        frame.MoveWindow(60, 60, 500, 400);
        frame.ShowWindow(SW_SHOW);
        frame.UpdateWindow();
    }

    /// Opens the first popup as the system does, by the message alone.
    [[nodiscard]] CMenu* file_menu()
    {
        CMenu* const menu = frame.GetMenu()->GetSubMenu(0);
        frame.SendMessage(WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(menu->m_hMenu), 0);
        return menu;
    }
    [[nodiscard]] static bool is_grey(CMenu* menu, UINT id)
    {
        return (menu->GetMenuState(id, MF_BYCOMMAND) & (MF_GRAYED | MF_DISABLED)) != 0;
    }

    HostFrame frame;
};

/// A bar of a fixed size, which notes when it is brought up to date.
class PlainBar : public CControlBar {
public:
    int updates = 0;
    CSize size{40, 30};

    [[nodiscard]] bool open(CWnd* parent, DWORD style, UINT id)
    {
        return CWnd::Create(nullptr, "", take_bar_style(style), CRect(), parent, id) != 0;
    }
    CSize CalcFixedLayout(BOOL stretch, BOOL horizontal) override
    {
        const CSize endless = CControlBar::CalcFixedLayout(stretch, horizontal);
        return {std::max(endless.cx, size.cx), std::max(endless.cy, size.cy)};
    }
    void OnUpdateCmdUI(CFrameWnd*, BOOL) override { ++updates; }
    using CControlBar::m_dwStyle;
};

/// A window that has help of its own.
class HelpChild : public CWnd {
public:
    int asked = 0;
    LRESULT answer = TRUE;

protected:
    DECLARE_MESSAGE_MAP()

    LRESULT OnCommandHelp(WPARAM, LPARAM)
    {
        ++asked;
        return answer;
    }
};

BEGIN_MESSAGE_MAP(HelpChild, CWnd)
    ON_MESSAGE(WM_COMMANDHELP, &HelpChild::OnCommandHelp)
END_MESSAGE_MAP()

constexpr const char* kMenuWindow = "#32768";  // the system's class of popups

CRect place_of(const CWnd& window)
{
    CRect rect;
    window.GetWindowRect(rect);
    ::MapWindowPoints(nullptr, ::GetParent(window.m_hWnd), reinterpret_cast<LPPOINT>(&rect), 2);
    return rect;
}

}  // namespace

TEST_F(FrameTest, LoadFrame_TitleMenuKeysAndIconOfTheResources)
{
    CString title;
    frame.GetWindowText(title);
    EXPECT_STREQ(title, "Scene Editor");
    EXPECT_STREQ(frame.GetTitle(), "Scene Editor");
    ASSERT_NE(frame.GetMenu(), nullptr);
    EXPECT_EQ(frame.GetMenu()->GetMenuItemCount(), 1);
    EXPECT_NE(frame.m_hAccelTable, nullptr);
    EXPECT_FALSE(frame.LoadAccelTable(MAKEINTRESOURCE(kFrameId))) << "there are keys already";
    EXPECT_NE(::GetClassLongPtr(frame.m_hWnd, GCLP_HICON), 0u);
}

TEST(Frame, CreateWithAMissingMenu_Fails)
{
    HostFrame frame;
    EXPECT_FALSE(frame.Create(nullptr, "x", WS_OVERLAPPEDWINDOW, CFrameWnd::rectDefault, nullptr,
                              MAKEINTRESOURCE(61'000)));
    EXPECT_EQ(frame.m_hWnd, nullptr);
}

TEST(Frame, MadeWithNew_DeletesItselfWithItsWindow)
{
    struct Watched : CFrameWnd {
        explicit Watched(bool& is_gone) : gone(is_gone) {}
        ~Watched() override { gone = true; }
        bool& gone;
    };
    bool gone = false;
    auto* const frame = new Watched(gone);
    ASSERT_TRUE(frame->Create(nullptr, "x"));
    frame->SendMessage(WM_CLOSE);
    EXPECT_TRUE(gone);
}

TEST_F(FrameTest, Popup_ItemsFollowTheirHandlers)
{
    CMenu* const menu = file_menu();
    EXPECT_FALSE(is_grey(menu, kOpen));
    EXPECT_TRUE(is_grey(menu, kClose)) << "its update handler says no";
    EXPECT_TRUE(is_grey(menu, kUnhandled)) << "nobody would run it";
    frame.close_enabled = true;
    EXPECT_FALSE(is_grey(file_menu(), kClose));
    frame.m_bAutoMenuEnable = FALSE;
    menu->EnableMenuItem(kUnhandled, MF_BYCOMMAND | MF_ENABLED);
    EXPECT_FALSE(is_grey(file_menu(), kUnhandled));
}

TEST_F(FrameTest, Popup_ItemWithAPopupIsAskedByItsFirstCommandAndNeverGreyed)
{
    CMenu* const menu = file_menu();
    EXPECT_EQ(frame.calls.front(), "checked of popup: 1");
    EXPECT_EQ(menu->GetMenuState(4, MF_BYPOSITION) & MF_GRAYED, 0u);
    CString text;
    menu->GetMenuString(4, text, MF_BYPOSITION);
    EXPECT_STREQ(text, "&More");

    frame.calls.clear();
    CMenu* const below = menu->GetSubMenu(4);
    frame.SendMessage(WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(below->m_hMenu), 4);
    EXPECT_EQ(frame.calls.front(), "checked of popup: 0");
    below->GetMenuString(0, text, MF_BYPOSITION);
    EXPECT_STREQ(text, "Renamed");
    EXPECT_NE(below->GetMenuState(0, MF_BYPOSITION) & MF_CHECKED, 0u);
    EXPECT_NE(below->GetMenuState(0, MF_BYPOSITION) & MF_GRAYED, 0u);
    MENUITEMINFO info{};
    info.fMask = MIIM_FTYPE | MIIM_STATE;
    ASSERT_TRUE(below->GetMenuItemInfo(1, &info, TRUE));
    EXPECT_NE(info.fType & MFT_RADIOCHECK, 0u);
    EXPECT_NE(info.fState & MFS_CHECKED, 0u);
}

TEST_F(FrameTest, Popup_ItemThatVanishes_TheNextIsStillUpdatedInItsNewPlace)
{
    frame.recent_goes = true;
    static_cast<void>(file_menu());
    EXPECT_EQ(frame.calls.back(), "last at 5 of 6");
}

TEST_F(FrameTest, Key_RunsTheCommandThroughThePump)
{
    EXPECT_TRUE(WindowInput()
                    .click(middle_of(frame.m_hWnd))
                    .press_key(VK_CONTROL)
                    .key('O')
                    .release_key(VK_CONTROL)
                    .play_until([&] { return std::ranges::count(frame.calls, "open") > 0; }));
    EXPECT_EQ(std::ranges::count(frame.calls, "open"), 1);
}

TEST_F(FrameTest, Prompts_FollowTheChoiceInAMenuOpenedByKeys)
{
    CStatusBar bar;
    ASSERT_TRUE(bar.Create(&frame));
    const UINT panes[] = {ID_SEPARATOR};
    ASSERT_TRUE(bar.SetIndicators(panes, 1));
    frame.RecalcLayout();
    // By the system's call, which asks the bar in the bar's own thread.
    const auto bar_shows = [window = bar.m_hWnd](const char* text) {
        return [window, text] {
            char shown[100] = "";
            ::GetWindowText(window, shown, sizeof shown);
            return std::string(shown) == text;
        };
    };

    EXPECT_TRUE(WindowInput()
                    .click(middle_of(frame.m_hWnd))
                    .open_menu('F')
                    .wait_until(bar_shows("Opens a library"))
                    .key(VK_DOWN)
                    .wait_until(bar_shows("Closes it"))
                    .key(VK_ESCAPE)
                    .key(VK_ESCAPE)
                    .play_until(bar_shows("Ready")));
    EXPECT_EQ(frame.m_nIDTracking, static_cast<UINT>(AFX_IDS_IDLEMESSAGE));
}

TEST_F(FrameTest, MenuSelect_SystemCommandsPopupsAndTheEnd)
{
    const auto select = [&](UINT item, UINT flags, HMENU menu) {
        frame.SendMessage(WM_MENUSELECT, MAKEWPARAM(item, flags), reinterpret_cast<LPARAM>(menu));
        return frame.m_nIDTracking;
    };
    const HMENU menu = frame.GetMenu()->m_hMenu;
    EXPECT_EQ(select(kOpen, MF_HILITE, menu), kOpen);
    EXPECT_EQ(select(SC_CLOSE, MF_SYSMENU, menu), static_cast<UINT>(AFX_IDS_SCFIRST + 6));
    EXPECT_EQ(select(0, MF_POPUP, menu), 0u);
    EXPECT_EQ(select(0, 0xFFFF, nullptr), static_cast<UINT>(AFX_IDS_IDLEMESSAGE));
}

TEST_F(FrameTest, MessageString_TextUpToTheLineFeedAndTheFormerNumber)
{
    CString text;
    frame.GetMessageString(kOpen, text);
    EXPECT_STREQ(text, "Opens a library");
    frame.GetMessageString(61'234, text);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(frame.SendMessage(WM_SETMESSAGESTRING, kOpen), AFX_IDS_IDLEMESSAGE);
    EXPECT_EQ(frame.SendMessage(WM_SETMESSAGESTRING, AFX_IDS_IDLEMESSAGE),
              static_cast<LRESULT>(kOpen));
}

TEST_F(FrameTest, ToolTipText_IsThePartBehindTheLineFeed)
{
    NMTTDISPINFOA wanted{};
    wanted.hdr.code = TTN_NEEDTEXTA;
    wanted.hdr.hwndFrom = frame.m_hWnd;
    wanted.hdr.idFrom = kOpen;
    frame.SendMessage(WM_NOTIFY, kOpen, reinterpret_cast<LPARAM>(&wanted));
    EXPECT_STREQ(wanted.lpszText, "Open");
    wanted.hdr.idFrom = kClose;
    frame.SendMessage(WM_NOTIFY, kClose, reinterpret_cast<LPARAM>(&wanted));
    EXPECT_STREQ(wanted.lpszText, "");
}

TEST_F(FrameTest, Layout_BarsAtTheirEdgesAndThePaneInTheRest)
{
    PlainBar top;
    PlainBar left;
    PlainBar bottom;
    CWnd pane;
    ASSERT_TRUE(top.open(&frame, WS_CHILD | WS_VISIBLE | CBRS_TOP, 0xE810));
    ASSERT_TRUE(left.open(&frame, WS_CHILD | WS_VISIBLE | CBRS_LEFT, 0xE811));
    ASSERT_TRUE(bottom.open(&frame, WS_CHILD | WS_VISIBLE | CBRS_BOTTOM, 0xE812));
    ASSERT_TRUE(
        pane.Create(nullptr, "", WS_CHILD | WS_VISIBLE, CRect(), &frame, AFX_IDW_PANE_FIRST));
    frame.RecalcLayout();
    CRect client;
    frame.GetClientRect(client);

    const CRect top_place = place_of(top);
    const CRect bottom_place = place_of(bottom);
    EXPECT_EQ(top_place.Height(), 30);
    EXPECT_EQ(top_place.Width(), client.Width());
    EXPECT_EQ(bottom_place.bottom, client.bottom);
    EXPECT_EQ(place_of(left).Width(), 40);
    EXPECT_EQ(place_of(pane), CRect(40, 30, client.Width(), client.Height() - 30));

    frame.MoveWindow(60, 60, 600, 500);
    frame.GetClientRect(client);
    EXPECT_EQ(place_of(pane), CRect(40, 30, client.Width(), client.Height() - 30));
    frame.m_rectBorder = CRect(1, 2, 3, 4);
    frame.RecalcLayout();
    EXPECT_EQ(place_of(pane), CRect(41, 32, client.Width() - 3, client.Height() - 34));

    CRect rest;
    frame.RepositionBars(0, 0xFFFF, AFX_IDW_PANE_FIRST, CWnd::reposQuery, rest);
    EXPECT_EQ(rest, CRect(40, 30, client.Width(), client.Height() - 30));
    frame.RepositionBars(0, 0xFFFF, AFX_IDW_PANE_FIRST, CWnd::reposQuery, rest, nullptr, FALSE);
    EXPECT_EQ(rest, CRect(0, 0, 80, 60)) << "what the three want together";
}

TEST_F(FrameTest, ShowControlBar_NowAndInTheIdleTurn)
{
    PlainBar bar;
    ASSERT_TRUE(bar.open(&frame, WS_CHILD | WS_VISIBLE | CBRS_TOP, 0xE810));
    CWnd pane;
    ASSERT_TRUE(
        pane.Create(nullptr, "", WS_CHILD | WS_VISIBLE, CRect(), &frame, AFX_IDW_PANE_FIRST));
    frame.RecalcLayout();
    EXPECT_EQ(place_of(pane).top, 30);
    frame.ShowControlBar(&bar, FALSE, FALSE);
    EXPECT_FALSE(bar.IsWindowVisible());
    EXPECT_FALSE(bar.IsVisible());
    EXPECT_EQ(place_of(pane).top, 0);

    frame.ShowControlBar(&bar, TRUE, TRUE);
    EXPECT_TRUE(bar.IsVisible()) << "about to be shown";
    EXPECT_FALSE(bar.IsWindowVisible());
    frame.SendMessage(WM_IDLEUPDATECMDUI, TRUE);
    EXPECT_TRUE(bar.IsWindowVisible());
    EXPECT_EQ(place_of(pane).top, 30);
    EXPECT_EQ(frame.GetControlBar(0xE810), &bar);
    EXPECT_EQ(frame.GetControlBar(0xE8FF), nullptr);
}

TEST_F(FrameTest, BarCheck_TogglesTheBarOfTheCommand)
{
    CStatusBar bar;
    ASSERT_TRUE(bar.Create(&frame));
    frame.SendMessage(WM_COMMAND, ID_VIEW_STATUS_BAR);
    EXPECT_FALSE(bar.IsWindowVisible());
    frame.SendMessage(WM_COMMAND, ID_VIEW_STATUS_BAR);
    EXPECT_TRUE(bar.IsWindowVisible());
}

TEST_F(FrameTest, IdlePass_ReachesVisibleBarsOnly)
{
    PlainBar shown;
    PlainBar hidden;
    ASSERT_TRUE(shown.open(&frame, WS_CHILD | WS_VISIBLE | CBRS_TOP, 0xE810));
    ASSERT_TRUE(hidden.open(&frame, WS_CHILD | CBRS_TOP, 0xE811));
    frame.SendMessageToDescendants(WM_IDLEUPDATECMDUI, TRUE);
    EXPECT_EQ(shown.updates, 1);
    EXPECT_EQ(hidden.updates, 0);
}

TEST_F(FrameTest, Bar_InsideIsWithoutLinesAndBordersAndTurnsWithTheBar)
{
    PlainBar bar;
    ASSERT_TRUE(bar.open(&frame, WS_CHILD | WS_VISIBLE | CBRS_TOP | CBRS_BORDER_LEFT, 0xE810));
    bar.SetBorders(10, 1, 20, 2);
    CRect rect(0, 0, 100, 50);
    bar.CalcInsideRect(rect, TRUE);
    EXPECT_EQ(rect, CRect(11, 1, 80, 47)) << "a line at the left and at the bottom";
    rect = CRect(0, 0, 100, 50);
    bar.CalcInsideRect(rect, FALSE);
    EXPECT_EQ(rect, CRect(2, 10, 98, 29));
    bar.SetBarStyle(CBRS_ALIGN_TOP | CBRS_BORDER_3D | CBRS_BORDER_BOTTOM);
    rect = CRect(0, 0, 100, 50);
    bar.SetBorders();
    bar.CalcInsideRect(rect, TRUE);
    EXPECT_EQ(rect, CRect(0, 0, 100, 48));
}

TEST_F(FrameTest, Bar_HandsWhatItsControlsTellToTheFrame)
{
    PlainBar bar;
    ASSERT_TRUE(bar.open(&frame, WS_CHILD | WS_VISIBLE | CBRS_TOP, 0xE810));
    CButton button;
    ASSERT_TRUE(button.Create("Open", WS_CHILD | WS_VISIBLE, CRect(0, 0, 40, 20), &bar, kOpen));
    button.Click();
    EXPECT_EQ(frame.calls, std::vector<std::string>{"open"});

    NMTTDISPINFOA wanted{};
    wanted.hdr.code = TTN_NEEDTEXTA;
    wanted.hdr.hwndFrom = bar.m_hWnd;
    wanted.hdr.idFrom = reinterpret_cast<UINT_PTR>(button.m_hWnd);
    wanted.uFlags = TTF_IDISHWND;
    bar.SendMessage(WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&wanted));
    EXPECT_STREQ(wanted.lpszText, "Open");
}

TEST_F(FrameTest, BarWithTips_ShowsThoseOfItsControls)
{
    PlainBar bar;
    ASSERT_TRUE(bar.open(&frame, WS_CHILD | WS_VISIBLE | CBRS_TOP | CBRS_TOOLTIPS, 0xE810));
    CButton button;
    ASSERT_TRUE(button.Create("Open", WS_CHILD | WS_VISIBLE, CRect(0, 0, 40, 20), &bar, kOpen));
    frame.RecalcLayout();
    const auto is_shown = [] { return visible_window(TOOLTIPS_CLASS) != nullptr; };
    EXPECT_TRUE(WindowInput()
                    .click(middle_of(frame.m_hWnd))
                    .move_to(middle_of(button.m_hWnd))
                    .play_until(is_shown));
    bar.SetBarStyle(CBRS_TOP);
    EXPECT_EQ(bar.m_nFlags & WF_TOOLTIPS, 0u);
    EXPECT_FALSE(is_shown());
}

TEST_F(FrameTest, BarWithFlyingPrompts_ShowsTheCommandsTextWhileTheMouseIsOnIt)
{
    CStatusBar status;
    ASSERT_TRUE(status.Create(&frame));
    const UINT panes[] = {ID_SEPARATOR};
    ASSERT_TRUE(status.SetIndicators(panes, 1));
    PlainBar bar;
    ASSERT_TRUE(bar.open(&frame, WS_CHILD | WS_VISIBLE | CBRS_TOP | CBRS_FLYBY, 0xE810));
    CButton button;
    ASSERT_TRUE(button.Create("Open", WS_CHILD | WS_VISIBLE, CRect(0, 0, 40, 20), &bar, kOpen));
    frame.RecalcLayout();

    EXPECT_TRUE(WindowInput()
                    .move_to(middle_of(frame.m_hWnd))
                    .move_to(middle_of(button.m_hWnd))
                    .play_until([&] { return status.GetPaneText(0) == "Opens a library"; }));
    EXPECT_TRUE(WindowInput().move_to(middle_of(frame.m_hWnd)).play_until([&] {
        return status.GetPaneText(0) == "Ready";
    }));
}

TEST_F(FrameTest, BarWithLines_DrawsThemAtItsEdges)
{
    PlainBar bar;
    ASSERT_TRUE(bar.open(
        &frame, WS_CHILD | WS_VISIBLE | CBRS_TOP | CBRS_BORDER_TOP | CBRS_BORDER_3D, 0xE810));
    frame.RecalcLayout();
    bar.RedrawWindow();
    const HDC dc = ::GetDC(bar.m_hWnd);
    const COLORREF colors[] = {::GetPixel(dc, 100, 0), ::GetPixel(dc, 100, 1),
                               ::GetPixel(dc, 100, 28), ::GetPixel(dc, 100, 29)};
    ::ReleaseDC(bar.m_hWnd, dc);
    EXPECT_EQ(colors[0], ::GetSysColor(COLOR_BTNSHADOW));
    EXPECT_EQ(colors[1], ::GetSysColor(COLOR_BTNHIGHLIGHT));
    EXPECT_EQ(colors[2], ::GetSysColor(COLOR_BTNSHADOW));
    EXPECT_EQ(colors[3], ::GetSysColor(COLOR_BTNHIGHLIGHT));
}

TEST_F(FrameTest, Route_EndsAtTheApplication)
{
    AFX_CMDHANDLERINFO info;
    EXPECT_TRUE(frame.OnCmdMsg(ID_APP_EXIT, static_cast<int>(CN_COMMAND), nullptr, &info));
    EXPECT_EQ(info.pTarget, &the_application());
    EXPECT_TRUE(frame.OnCmdMsg(kOpen, static_cast<int>(CN_COMMAND), nullptr, &info));
    EXPECT_EQ(info.pTarget, &frame);
    EXPECT_FALSE(frame.OnCmdMsg(kUnhandled, static_cast<int>(CN_COMMAND), nullptr, &info));
}

TEST_F(FrameTest, ModalState_DisablesOwnedWindowsAndNests)
{
    CWnd popup;
    ASSERT_TRUE(
        popup.CreateEx(0, nullptr, "", WS_POPUP | WS_VISIBLE, CRect(0, 0, 50, 50), &frame, 0));
    frame.BeginModalState();
    frame.BeginModalState();
    EXPECT_FALSE(popup.IsWindowEnabled());
    EXPECT_TRUE(frame.InModalState());
    frame.EndModalState();
    EXPECT_FALSE(popup.IsWindowEnabled());
    frame.EndModalState();
    EXPECT_TRUE(popup.IsWindowEnabled());
    EXPECT_FALSE(frame.InModalState());
    frame.EndModalState();
    EXPECT_FALSE(frame.InModalState()) << "one end too many does nothing";
}

TEST_F(FrameTest, DisabledFrame_DisablesWhatItOwns)
{
    CWnd popup;
    ASSERT_TRUE(
        popup.CreateEx(0, nullptr, "", WS_POPUP | WS_VISIBLE, CRect(0, 0, 50, 50), &frame, 0));
    frame.EnableWindow(FALSE);
    EXPECT_FALSE(popup.IsWindowEnabled());
    frame.EnableWindow(TRUE);
    EXPECT_TRUE(popup.IsWindowEnabled());
    frame.EnableWindow(FALSE);
    frame.m_nFlags |= WF_STAYDISABLED;
    frame.EnableWindow(TRUE);
    EXPECT_FALSE(frame.IsWindowEnabled());
}

TEST_F(FrameTest, DelayedMenu_IsPutInByTheIdleTurnAndItsOwnComesBack)
{
    const HMENU own = frame.GetDefaultMenu();
    CMenu other;
    ASSERT_TRUE(other.CreateMenu());
    frame.DelayUpdateFrameMenu(other.m_hMenu);
    EXPECT_EQ(::GetMenu(frame.m_hWnd), own);
    frame.SendMessage(WM_IDLEUPDATECMDUI, TRUE);
    EXPECT_EQ(::GetMenu(frame.m_hWnd), other.m_hMenu);
    frame.OnUpdateFrameMenu(nullptr);
    EXPECT_EQ(::GetMenu(frame.m_hWnd), own);
    frame.OnUpdateFrameMenu(other.m_hMenu);
    frame.DestroyWindow();
    EXPECT_TRUE(::IsMenu(other.m_hMenu)) << "not the window's";
    EXPECT_FALSE(::IsMenu(own));
}

TEST_F(FrameTest, Focus_ComesBackToThePaneOrWhereItWas)
{
    CWnd pane;
    ASSERT_TRUE(pane.Create(nullptr, "", WS_CHILD | WS_VISIBLE, CRect(0, 0, 100, 100), &frame,
                            AFX_IDW_PANE_FIRST));
    ::SetFocus(nullptr);
    frame.SetFocus();
    EXPECT_EQ(::GetFocus(), pane.m_hWnd);
    CWnd field;
    ASSERT_TRUE(field.Create("EDIT", "", WS_CHILD | WS_VISIBLE, CRect(0, 0, 50, 20), &frame, 5));
    field.SetFocus();
    frame.SendMessage(WM_ACTIVATE, WA_INACTIVE);
    pane.SetFocus();
    frame.SetFocus();
    EXPECT_EQ(::GetFocus(), field.m_hWnd);
}

TEST_F(FrameTest, HelpKey_GoesUpFromTheFocusUntilSomebodyAnswers)
{
    HelpChild child;
    ASSERT_TRUE(child.Create(nullptr, "", WS_CHILD | WS_VISIBLE, CRect(0, 0, 100, 100), &frame, 5));
    EXPECT_TRUE(WindowInput().click(middle_of(frame.m_hWnd)).play_until([&] {
        return ::GetActiveWindow() == frame.m_hWnd;
    }));
    child.SetFocus();
    EXPECT_TRUE(WindowInput().key(VK_F1).play_until([&] { return child.asked > 0; }));
    EXPECT_EQ(std::ranges::count_if(
                  frame.calls, [](const std::string& call) { return call.starts_with("help"); }),
              0);
    child.answer = FALSE;
    EXPECT_TRUE(WindowInput().key(VK_F1).play_until([&] { return !frame.calls.empty(); }));
    EXPECT_EQ(frame.calls.back(), "help " + std::to_string(HID_BASE_RESOURCE + kFrameId));
}

TEST_F(FrameTest, HelpKeyInAnOpenMenu_AsksAboutTheChoice)
{
    const std::string wanted = "help " + std::to_string(HID_BASE_COMMAND + kOpen);
    EXPECT_TRUE(WindowInput()
                    .click(middle_of(frame.m_hWnd))
                    .open_menu('F')
                    .key(VK_F1)
                    .wait_until([&] { return frame.help_calls > 0; })
                    .key(VK_ESCAPE)
                    .key(VK_ESCAPE)
                    .play_until([&] { return frame.m_nIDTracking == AFX_IDS_IDLEMESSAGE; }));
    // The system may tell of the key more than once.
    EXPECT_GE(std::ranges::count(frame.calls, wanted), 1);
}

TEST_F(FrameTest, CommandInHelpMode_AsksAboutItselfAndEndsTheMode)
{
    frame.m_bHelpMode = TRUE;
    frame.SendMessage(WM_COMMAND, kOpen);
    EXPECT_EQ(frame.calls,
              std::vector<std::string>{"help " + std::to_string(HID_BASE_COMMAND + kOpen)});
    EXPECT_FALSE(frame.m_bHelpMode);
    frame.SendMessage(WM_COMMAND, kOpen);
    EXPECT_EQ(frame.calls.back(), "open");
}

TEST_F(FrameTest, HelpContext_OfTheFrameAndOfTheChoice)
{
    EXPECT_EQ(frame.SendMessage(WM_HELPHITTEST),
              static_cast<LRESULT>(HID_BASE_RESOURCE + kFrameId));
    frame.m_bHelpMode = TRUE;
    frame.SendMessage(WM_EXITHELPMODE);
    EXPECT_FALSE(frame.m_bHelpMode);
}

TEST(Frame, OpenedAndClosedManyTimes_NothingIsLeft)
{
    EXPECT_EQ(what_leaks([] {
                  auto* const frame = new CFrameWnd;
                  if (!frame->LoadFrame(kFrameId))
                      return;
                  CStatusBar bar;
                  bar.Create(frame);
                  const UINT panes[] = {ID_SEPARATOR, kOverwrite};
                  bar.SetIndicators(panes, 2);
                  frame->RecalcLayout();
                  frame->DestroyWindow();
                  the_application().pump_all();
              }),
              "");
}
