#include "platform/CComboBox.h"
#include "platform/CListBox.h"
#include "tests/platform/windows/ControlHost.h"
#include "tests/support/ResourceLedger.h"

#include <cstring>
#include <string>
#include <vector>

namespace {

using ListBoxes = ControlTest;
using Calls = std::vector<std::string>;

/// A list that draws and orders its own items: by the number that each has.
template <class Base>
class NumberList : public Base {
public:
    Calls calls;
    UINT height = 23;

    void DrawItem(LPDRAWITEMSTRUCT item) override
    {
        calls.push_back("draw " + std::to_string(item->itemData));
    }
    void MeasureItem(LPMEASUREITEMSTRUCT item) override { item->itemHeight = height; }
    int CompareItem(LPCOMPAREITEMSTRUCT items) override
    {
        return static_cast<int>(items->itemData1) - static_cast<int>(items->itemData2);
    }
    void DeleteItem(LPDELETEITEMSTRUCT item) override
    {
        calls.push_back("delete " + std::to_string(item->itemData));
    }
};

/// A parent that notes what its list did not keep.
class Parent : public CWnd {
public:
    Calls calls;

protected:
    DECLARE_MESSAGE_MAP()

    void OnDrawItem(int, LPDRAWITEMSTRUCT item)
    {
        calls.push_back("draw");
        CWnd::OnDrawItem(0, item);
    }
    void OnChoice() { calls.push_back("choice"); }
};

BEGIN_MESSAGE_MAP(Parent, CWnd)
    ON_WM_DRAWITEM()
    ON_LBN_SELCHANGE(1001, &Parent::OnChoice)
END_MESSAGE_MAP()

LPCTSTR number(int value)
{
    return reinterpret_cast<LPCTSTR>(static_cast<INT_PTR>(value));
}

}  // namespace

TEST_F(ListBoxes, List_ItemsTextsAndData)
{
    CListBox list;
    ASSERT_TRUE(list.Create(kChild | LBS_HASSTRINGS, place, &host, kId));
    EXPECT_EQ(list.AddString("axe"), 0);
    EXPECT_EQ(list.AddString("saw"), 1);
    EXPECT_EQ(list.InsertString(1, "hammer"), 1);
    EXPECT_EQ(list.GetCount(), 3);
    CString text = "before";
    list.GetText(1, text);
    EXPECT_STREQ(text, "hammer");
    EXPECT_EQ(list.GetTextLen(1), 6);
    list.GetText(9, text);
    EXPECT_STREQ(text, "") << "no such item";
    EXPECT_NE(list.SetItemData(2, 0x123456789AULL), LB_ERR);
    EXPECT_EQ(list.GetItemData(2), 0x123456789AULL);
    EXPECT_EQ(list.FindString(-1, "ha"), 1);
    EXPECT_EQ(list.FindStringExact(-1, "ha"), LB_ERR);
    EXPECT_EQ(list.SelectString(-1, "sa"), 2);
    EXPECT_EQ(list.GetCurSel(), 2);
    EXPECT_EQ(list.DeleteString(0), 2);
    list.ResetContent();
    EXPECT_EQ(list.GetCount(), 0);
    EXPECT_EQ(list.GetCurSel(), LB_ERR);
}

TEST_F(ListBoxes, List_SeveralSelected)
{
    CListBox list;
    ASSERT_TRUE(list.Create(kChild | LBS_EXTENDEDSEL, place, &host, kId));
    for (const char* const text : {"a", "b", "c", "d"})
        list.AddString(text);
    list.SelItemRange(TRUE, 1, 2);
    list.SetSel(3);
    list.SetSel(1, FALSE);
    EXPECT_EQ(list.GetSelCount(), 2);
    int chosen[4] = {};
    EXPECT_EQ(list.GetSelItems(4, chosen), 2);
    EXPECT_EQ(chosen[0], 2);
    EXPECT_EQ(chosen[1], 3);
    list.SetCaretIndex(1);
    EXPECT_EQ(list.GetCaretIndex(), 1);
    list.SetAnchorIndex(2);
    EXPECT_EQ(list.GetAnchorIndex(), 2);
}

TEST_F(ListBoxes, List_PlacesExtentAndTabStops)
{
    CListBox list;
    ASSERT_TRUE(list.Create(kChild | WS_HSCROLL | LBS_USETABSTOPS, place, &host, kId));
    for (int i = 0; i < 40; ++i)
        list.AddString("item");
    list.SetHorizontalExtent(777);
    EXPECT_EQ(list.GetHorizontalExtent(), 777);
    list.SetTopIndex(5);
    EXPECT_EQ(list.GetTopIndex(), 5);
    CRect rect;
    ASSERT_NE(list.GetItemRect(6, rect), LB_ERR);
    BOOL outside = TRUE;
    EXPECT_EQ(list.ItemFromPoint(rect.CenterPoint(), outside), 6u);
    EXPECT_FALSE(outside);
    EXPECT_TRUE(list.SetTabStops(20));
    list.SetItemHeight(0, 31);
    EXPECT_EQ(list.GetItemHeight(0), 31);
}

TEST_F(ListBoxes, OwnerDrawnList_MeasuresOrdersDrawsAndFreesByItself)
{
    NumberList<CListBox> list;
    ASSERT_TRUE(list.Create(kChild | LBS_OWNERDRAWFIXED | LBS_SORT, place, &host, kId));
    EXPECT_EQ(list.GetItemHeight(0), 23) << "asked before there is an item";
    for (const int value : {30, 10, 20})
        list.AddString(number(value));
    EXPECT_EQ(list.GetItemData(0), 10u);
    EXPECT_EQ(list.GetItemData(1), 20u);
    EXPECT_EQ(list.GetItemData(2), 30u);
    list.calls.clear();
    list.RedrawWindow();
    EXPECT_EQ(list.calls, (Calls{"draw 10", "draw 20", "draw 30"}));
    list.calls.clear();
    list.DeleteString(1);
    EXPECT_EQ(list.calls.front(), "delete 20");
}

TEST(ListBoxesReflection, ParentsHandlerRunsAndItsBaseAsksTheChild)
{
    Parent parent;
    ASSERT_TRUE(parent.CreateEx(0, nullptr, "", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                                CRect(100, 100, 400, 300), nullptr, 0));
    NumberList<CListBox> list;
    ASSERT_TRUE(list.Create(WS_CHILD | WS_VISIBLE | LBS_OWNERDRAWFIXED | LBS_NOTIFY,
                            CRect(0, 0, 100, 100), &parent, 1001));
    list.AddString(number(5));
    list.calls.clear();
    parent.calls.clear();
    list.RedrawWindow();

    EXPECT_EQ(parent.calls, Calls{"draw"});
    EXPECT_EQ(list.calls, Calls{"draw 5"});
    list.SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    list.SendMessage(WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
    EXPECT_EQ(parent.calls.back(), "choice");
}

TEST_F(ListBoxes, Combo_ItemsChoiceAndField)
{
    CComboBox combo;
    ASSERT_TRUE(combo.Create(kChild | CBS_DROPDOWN | CBS_HASSTRINGS, place, &host, kId));
    EXPECT_EQ(combo.AddString("axe"), 0);
    EXPECT_EQ(combo.InsertString(0, "saw"), 0);
    combo.SetItemData(1, 77);
    EXPECT_EQ(combo.GetItemData(1), 77u);
    CString text;
    combo.GetLBText(1, text);
    EXPECT_STREQ(text, "axe");
    EXPECT_EQ(combo.SelectString(-1, "sa"), 0);
    EXPECT_EQ(combo.GetCurSel(), 0);
    combo.GetWindowText(text);
    EXPECT_STREQ(text, "saw");
    combo.SetEditSel(1, 2);
    EXPECT_EQ(combo.GetEditSel(), static_cast<DWORD>(MAKELONG(1, 2)));
    combo.SetCurSel(-1);
    EXPECT_EQ(combo.GetCurSel(), CB_ERR);
    EXPECT_EQ(combo.DeleteString(0), 1);
    combo.ResetContent();
    EXPECT_EQ(combo.GetCount(), 0);
}

TEST_F(ListBoxes, OwnerDrawnCombo_MeasuresAndOrdersByItself)
{
    NumberList<CComboBox> combo;
    ASSERT_TRUE(
        combo.Create(kChild | CBS_DROPDOWNLIST | CBS_OWNERDRAWFIXED | CBS_SORT, place, &host, kId));
    EXPECT_EQ(combo.GetItemHeight(0), 23);
    for (const int value : {30, 10, 20})
        combo.AddString(number(value));
    EXPECT_EQ(combo.GetItemData(0), 10u);
    EXPECT_EQ(combo.GetItemData(2), 30u);
    combo.calls.clear();
    combo.SetCurSel(2);
    combo.RedrawWindow();
    ASSERT_FALSE(combo.calls.empty());
    EXPECT_EQ(combo.calls.back(), "draw 30");
}

TEST_F(ListBoxes, CancelModes_ClosesAListThatIsOpen)
{
    CComboBox combo;
    ASSERT_TRUE(combo.Create(kChild | CBS_DROPDOWN, place, &host, kId));
    combo.AddString("axe");
    combo.SetFocus();
    combo.ShowDropDown();
    ASSERT_TRUE(combo.GetDroppedState());

    AfxCancelModes(combo.m_hWnd);
    AfxCancelModes(host.m_hWnd);
    EXPECT_FALSE(combo.GetDroppedState());
}

TEST_F(ListBoxes, OpenedFilledAndClosedManyTimes_NothingIsLeft)
{
    CListBox list;
    CComboBox combo;
    EXPECT_EQ(what_leaks([&] {
                  list.Create(kChild, place, &host, kId);
                  list.AddString("axe");
                  list.DestroyWindow();
              }),
              "");
    EXPECT_EQ(what_leaks([&] {
                  combo.Create(kChild | CBS_DROPDOWN, place, &host, kId);
                  combo.AddString("axe");
                  combo.DestroyWindow();
              }),
              "");
}
