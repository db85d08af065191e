#include "platform/CButton.h"
#include "platform/CEdit.h"
#include "platform/CHeaderCtrl.h"
#include "platform/CProgressCtrl.h"
#include "platform/CScrollBar.h"
#include "platform/CSpinButtonCtrl.h"
#include "platform/CStatic.h"
#include "platform/CStatusBarCtrl.h"
#include "tests/platform/windows/ControlHost.h"
#include "tests/platform/windows/TestApplication.h"
#include "tests/support/ResourceLedger.h"
#include "tests/support/WindowInput.h"

namespace {

using Controls = ControlTest;

constexpr COLORREF kDrawn = RGB(10, 200, 30);

/// Fills what it is told to draw.
template <class Control>
class Drawn : public Control {
public:
    int drawn = 0;
    void DrawItem(LPDRAWITEMSTRUCT item) override
    {
        ++drawn;
        const HBRUSH brush = ::CreateSolidBrush(kDrawn);
        ::FillRect(item->hDC, &item->rcItem, brush);
        ::DeleteObject(brush);
    }
};

COLORREF pixel(const CWnd& window, int x, int y)
{
    const HDC dc = ::GetDC(window.m_hWnd);
    const COLORREF color = ::GetPixel(dc, x, y);
    ::ReleaseDC(window.m_hWnd, dc);
    return color;
}

class Clicks : public CWnd {
public:
    int clicks = 0;
    CString last;

protected:
    DECLARE_MESSAGE_MAP()

    void OnClick() { ++clicks; }
    void OnChange() { GetDlgItemText(ControlId, last); }

public:
    static constexpr int ControlId = 1001;
};

BEGIN_MESSAGE_MAP(Clicks, CWnd)
    ON_BN_CLICKED(1001, &Clicks::OnClick)
    ON_EN_CHANGE(1001, &Clicks::OnChange)
END_MESSAGE_MAP()

}  // namespace

TEST_F(Controls, Static_TextAndPictureAndNoIdOfItsOwn)
{
    CStatic label;
    ASSERT_TRUE(label.Create("Name:", kChild, place, &host));
    CString text;
    label.GetWindowText(text);
    EXPECT_STREQ(text, "Name:");
    EXPECT_EQ(LOWORD(label.GetDlgCtrlID()), 0xFFFF);

    CStatic picture;
    ASSERT_TRUE(picture.Create("", kChild | SS_ICON, place, &host));
    const HICON icon = ::LoadIcon(nullptr, IDI_APPLICATION);
    EXPECT_EQ(picture.SetIcon(icon), nullptr);
    EXPECT_EQ(picture.GetIcon(), icon);
}

TEST_F(Controls, OwnerDrawnStaticAndButton_DrawThemselvesByReflection)
{
    Drawn<CStatic> label;
    ASSERT_TRUE(label.Create("", kChild | SS_OWNERDRAW, CRect(0, 0, 50, 20), &host));
    Drawn<CButton> button;
    ASSERT_TRUE(button.Create("", kChild | BS_OWNERDRAW, CRect(0, 30, 50, 60), &host, kId));
    host.RedrawWindow(nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);

    EXPECT_GE(label.drawn, 1);
    EXPECT_GE(button.drawn, 1);
    EXPECT_EQ(pixel(label, 10, 10), kDrawn);
    EXPECT_EQ(pixel(button, 10, 10), kDrawn);
}

TEST_F(Controls, Button_ChecksStatesAndStyle)
{
    CButton box;
    ASSERT_TRUE(box.Create("Box", kChild | BS_AUTO3STATE, place, &host, kId));
    EXPECT_EQ(box.GetButtonStyle(), static_cast<UINT>(BS_AUTO3STATE));
    EXPECT_EQ(box.GetCheck(), 0);
    for (const int check : {1, 2, 0}) {
        box.SetCheck(check);
        EXPECT_EQ(box.GetCheck(), check);
    }
    box.SetState(TRUE);
    EXPECT_NE(box.GetState() & BST_PUSHED, 0u);
    box.SetState(FALSE);
    EXPECT_EQ(box.GetState() & BST_PUSHED, 0u);
    box.SetButtonStyle(BS_PUSHBUTTON);
    EXPECT_EQ(box.GetButtonStyle(), static_cast<UINT>(BS_PUSHBUTTON));
}

TEST(ControlsInput, ClickWithTheMouse_ReachesTheParentsHandlerOnce)
{
    Clicks parent;
    ASSERT_TRUE(parent.CreateEx(0, nullptr, "", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                                CRect(50, 50, 300, 250), nullptr, 0));
    CButton button;
    ASSERT_TRUE(button.Create("Press", WS_CHILD | WS_VISIBLE, CRect(10, 10, 110, 40), &parent,
                              Clicks::ControlId));
    parent.UpdateWindow();

    EXPECT_TRUE(WindowInput().click(middle_of(button.m_hWnd)).play_until([&] {
        return parent.clicks > 0;
    }));
    EXPECT_EQ(parent.clicks, 1);
}

TEST(ControlsInput, TypedText_IsInTheFieldAndTold)
{
    Clicks parent;
    ASSERT_TRUE(parent.CreateEx(0, nullptr, "", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                                CRect(50, 50, 300, 250), nullptr, 0));
    CEdit field;
    ASSERT_TRUE(field.Create(WS_CHILD | WS_VISIBLE | WS_BORDER, CRect(10, 10, 150, 40), &parent,
                             Clicks::ControlId));

    EXPECT_TRUE(WindowInput().click(middle_of(field.m_hWnd)).type("Axe 7").play_until([&] {
        return parent.last == "Axe 7";
    }));
    EXPECT_TRUE(field.GetModify());
}

TEST_F(Controls, Edit_SelectionReplacementAndUndo)
{
    CEdit field;
    ASSERT_TRUE(field.Create(kChild | ES_AUTOHSCROLL, place, &host, kId));
    field.SetWindowText("red green");
    field.SetSel(4, 9);
    int first = 0;
    int last = 0;
    field.GetSel(first, last);
    EXPECT_EQ(first, 4);
    EXPECT_EQ(last, 9);
    EXPECT_EQ(field.GetSel(), MAKELONG(4, 9));
    field.ReplaceSel("blue", TRUE);
    CString text;
    field.GetWindowText(text);
    EXPECT_STREQ(text, "red blue");
    EXPECT_TRUE(field.CanUndo());
    EXPECT_TRUE(field.Undo());
    field.GetWindowText(text);
    EXPECT_STREQ(text, "red green");
    field.SetSel(0, -1);
    field.Clear();
    EXPECT_EQ(field.GetWindowTextLength(), 0);
}

TEST_F(Controls, Edit_LinesAreCountedFromZeroAndCopiedWithinTheRoom)
{
    CEdit field;
    ASSERT_TRUE(field.Create(kChild | ES_MULTILINE, place, &host, kId));
    field.SetWindowText("one\r\nthree\r\n");
    EXPECT_EQ(field.GetLineCount(), 3);
    EXPECT_EQ(field.LineIndex(1), 5);
    EXPECT_EQ(field.LineLength(6), 5);
    EXPECT_EQ(field.LineFromChar(7), 1);
    char room[8] = "*******";
    EXPECT_EQ(field.GetLine(1, room, 8), 5);
    EXPECT_EQ(std::string(room, 5), "three");
    char one[2] = {'*', '*'};
    EXPECT_EQ(field.GetLine(1, one, 1), 1);
    EXPECT_EQ(one[0], 't');
    EXPECT_EQ(one[1], '*') << "nothing behind the room is written";
    EXPECT_EQ(field.GetLine(1, one, 0), 0);
}

TEST_F(Controls, Edit_LimitReadOnlyPasswordAndMargins)
{
    CEdit field;
    ASSERT_TRUE(field.Create(kChild, place, &host, kId));
    field.SetLimitText(12);
    EXPECT_EQ(field.GetLimitText(), 12u);
    EXPECT_TRUE(field.SetReadOnly());
    EXPECT_NE(field.GetStyle() & ES_READONLY, 0u);
    field.SetPasswordChar('#');
    EXPECT_EQ(field.GetPasswordChar(), '#');
    field.SetMargins(3, 5);
    EXPECT_EQ(field.GetMargins(), static_cast<DWORD>(MAKELONG(3, 5)));
}

TEST_F(Controls, ScrollBar_PositionRangeAndLimit)
{
    CScrollBar bar;
    ASSERT_TRUE(bar.Create(kChild | SBS_VERT, place, &host, kId));
    bar.SetScrollRange(10, 90);
    int first = 0;
    int last = 0;
    bar.GetScrollRange(&first, &last);
    EXPECT_EQ(first, 10);
    EXPECT_EQ(last, 90);
    bar.SetScrollPos(33);
    EXPECT_EQ(bar.GetScrollPos(), 33);
    SCROLLINFO info{};
    info.fMask = SIF_PAGE;
    info.nPage = 21;
    bar.SetScrollInfo(&info);
    EXPECT_EQ(bar.GetScrollLimit(), 70);
    ASSERT_TRUE(bar.GetScrollInfo(&info));
    EXPECT_EQ(info.nPage, 21u);
    EXPECT_EQ(info.nMax, 90);
}

TEST_F(Controls, SpinButton_RangeBaseBuddyAndNegativePositions)
{
    CEdit field;
    ASSERT_TRUE(field.Create(kChild, place, &host, kId));
    CSpinButtonCtrl spin;
    ASSERT_TRUE(spin.Create(kChild | UDS_SETBUDDYINT, place, &host, kId + 1));
    EXPECT_EQ(spin.SetBuddy(&field), nullptr);
    EXPECT_EQ(spin.GetBuddy(), &field);
    spin.SetRange(-100, 200);
    int lower = 0;
    int upper = 0;
    spin.GetRange(lower, upper);
    EXPECT_EQ(lower, -100);
    EXPECT_EQ(upper, 200);
    spin.SetPos(-7);
    EXPECT_EQ(spin.GetPos(), -7);
    CString text;
    field.GetWindowText(text);
    EXPECT_STREQ(text, "-7");
    spin.SetRange32(-1'000'000, 1'000'000);
    spin.GetRange32(lower, upper);
    EXPECT_EQ(lower, -1'000'000);
    EXPECT_EQ(upper, 1'000'000);
    spin.SetPos32(-123'456);
    EXPECT_EQ(spin.GetPos32(), -123'456);
    EXPECT_EQ(spin.GetBase(), 10u);
    spin.SetBase(16);
    EXPECT_EQ(spin.GetBase(), 16u);
    UDACCEL steps[] = {{0, 1}, {2, 10}};
    EXPECT_TRUE(spin.SetAccel(2, steps));
    UDACCEL read[2] = {};
    EXPECT_EQ(spin.GetAccel(2, read), 2u);
    EXPECT_EQ(read[1].nInc, 10u);
}

TEST_F(Controls, Progress_StepsWithinItsRange)
{
    CProgressCtrl bar;
    ASSERT_TRUE(bar.Create(kChild, place, &host, kId));
    bar.SetRange32(0, 50'000);
    int first = -1;
    int last = -1;
    bar.GetRange(first, last);
    EXPECT_EQ(first, 0);
    EXPECT_EQ(last, 50'000);
    bar.SetPos(100);
    bar.SetStep(25);
    EXPECT_EQ(bar.StepIt(), 100);
    EXPECT_EQ(bar.OffsetPos(5), 125);
    EXPECT_EQ(bar.GetPos(), 130);
}

TEST_F(Controls, Header_ItemsAndTheirPlaces)
{
    CHeaderCtrl header;
    ASSERT_TRUE(header.Create(kChild, place, &host, kId));
    HDITEM item{};
    item.mask = HDI_TEXT | HDI_WIDTH;
    char name[] = "Name";
    item.pszText = name;
    item.cxy = 60;
    EXPECT_EQ(header.InsertItem(0, &item), 0);
    EXPECT_EQ(header.InsertItem(1, &item), 1);
    EXPECT_EQ(header.GetItemCount(), 2);
    RECT rect{};
    ASSERT_TRUE(header.GetItemRect(1, &rect));
    EXPECT_EQ(rect.left, 60);
    EXPECT_EQ(header.OrderToIndex(1), 1);
    EXPECT_TRUE(header.DeleteItem(0));
    EXPECT_EQ(header.GetItemCount(), 1);
}

TEST_F(Controls, StatusBarControl_PartsAndTexts)
{
    CStatusBarCtrl bar;
    ASSERT_TRUE(bar.Create(kChild | CCS_BOTTOM, place, &host, kId));
    const int edges[] = {80, 160, -1};
    EXPECT_TRUE(bar.SetParts(3, edges));
    int read[3] = {};
    EXPECT_EQ(bar.GetParts(3, read), 3);
    EXPECT_EQ(read[1], 160);
    EXPECT_TRUE(bar.SetText("objects", 1, SBT_POPOUT));
    int kind = 0;
    EXPECT_STREQ(bar.GetText(1, &kind), "objects");
    EXPECT_EQ(kind, SBT_POPOUT);
    EXPECT_EQ(bar.GetTextLength(1), 7);
    RECT rect{};
    EXPECT_TRUE(bar.GetRect(1, &rect));
    EXPECT_EQ(rect.right, 160);
    EXPECT_FALSE(bar.IsSimple());
}

TEST_F(Controls, OpenedAndClosedManyTimes_NothingIsLeft)
{
    const auto leaks_of = [&](auto& control, auto... arguments) {
        return what_leaks([&] {
            if (control.Create(arguments..., &host, kId))
                control.DestroyWindow();
        });
    };
    CEdit edit;
    CScrollBar bar;
    CSpinButtonCtrl spin;
    CProgressCtrl progress;
    CStatusBarCtrl status;
    CHeaderCtrl header;
    EXPECT_EQ(leaks_of(header, kChild, place), "");
    EXPECT_EQ(leaks_of(edit, kChild, place), "");
    EXPECT_EQ(leaks_of(bar, kChild, place), "");
    EXPECT_EQ(leaks_of(spin, kChild, place), "");
    EXPECT_EQ(leaks_of(progress, kChild, place), "");
    EXPECT_EQ(leaks_of(status, kChild, place), "");
    CStatic label;
    EXPECT_EQ(leaks_of(label, "Name", kChild, place), "");
    CButton button;
    EXPECT_EQ(leaks_of(button, "Press", kChild, place), "");
}
