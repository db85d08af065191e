#include "platform/CEdit.h"
#include "platform/CHeaderCtrl.h"
#include "platform/CImageList.h"
#include "platform/CListCtrl.h"
#include "tests/platform/windows/ControlHost.h"
#include "tests/support/ResourceLedger.h"

#include <string>

namespace {

class ListTest : public ControlTest {
protected:
    void SetUp() override
    {
        ControlTest::SetUp();
        ASSERT_TRUE(list.Create(kChild | LVS_REPORT | LVS_EDITLABELS | LVS_SHOWSELALWAYS,
                                CRect(0, 0, 300, 200), &host, kId));
    }

    CListCtrl list;
};

/// A library of a million entries as a virtual list shows it.
class VirtualParent : public CWnd {
public:
    int asked = 0;
    int last_asked = -1;

protected:
    DECLARE_MESSAGE_MAP()

    void OnGetDisplayInfo(NMHDR* header, LRESULT* result)
    {
        LVITEM& item = reinterpret_cast<NMLVDISPINFO*>(header)->item;
        ++asked;
        last_asked = item.iItem;
        if ((item.mask & LVIF_TEXT) != 0) {
            text_ = "entry " + std::to_string(item.iItem);
            item.pszText = text_.data();
        }
        *result = 0;
    }

private:
    std::string text_;
};

BEGIN_MESSAGE_MAP(VirtualParent, CWnd)
    ON_NOTIFY(LVN_GETDISPINFOA, 1001, &VirtualParent::OnGetDisplayInfo)
END_MESSAGE_MAP()

}  // namespace

TEST_F(ListTest, ColumnsAndSubItems)
{
    EXPECT_EQ(list.InsertColumn(0, "Name", LVCFMT_LEFT, 120), 0);
    EXPECT_EQ(list.InsertColumn(1, "Size", LVCFMT_RIGHT, 60, 1), 1);
    EXPECT_EQ(list.GetColumnWidth(0), 120);
    EXPECT_TRUE(list.SetColumnWidth(1, 77));
    EXPECT_EQ(list.GetColumnWidth(1), 77);
    EXPECT_EQ(list.InsertItem(0, "saw"), 0);
    EXPECT_TRUE(list.SetItemText(0, 1, "12 KB"));
    EXPECT_STREQ(list.GetItemText(0, 1), "12 KB");
    EXPECT_STREQ(list.GetItemText(0, 0), "saw");
    CHeaderCtrl* const header = list.GetHeaderCtrl();
    ASSERT_NE(header, nullptr);
    EXPECT_EQ(header->GetItemCount(), 2);
    const int backwards[] = {1, 0};
    EXPECT_TRUE(list.SetColumnOrderArray(2, backwards));
    int order[2] = {};
    EXPECT_TRUE(list.GetColumnOrderArray(order, 2));
    EXPECT_EQ(order[0], 1);
    CRect rect;
    ASSERT_TRUE(list.GetSubItemRect(0, 1, LVIR_BOUNDS, rect));
    EXPECT_EQ(rect.Width(), 77);
    EXPECT_TRUE(list.DeleteColumn(1));
    EXPECT_EQ(header->GetItemCount(), 1);
}

TEST_F(ListTest, LongText_IsReadWhole)
{
    list.InsertColumn(0, "Name", LVCFMT_LEFT, 120);
    const std::string text(1000, 'x');
    list.InsertItem(0, text.c_str());
    EXPECT_EQ(list.GetItemText(0, 0).GetLength(), 1000);
    char room[5] = "";
    EXPECT_EQ(list.GetItemText(0, 0, room, 5), 4);
    EXPECT_STREQ(room, "xxxx");
}

TEST_F(ListTest, ItemsDataAndOrder)
{
    list.InsertColumn(0, "Name", LVCFMT_LEFT, 120);
    for (const char* const name : {"saw", "axe", "hammer"}) {
        const int at = list.InsertItem(list.GetItemCount(), name);
        EXPECT_TRUE(list.SetItemData(at, static_cast<DWORD_PTR>(name[0])));
    }
    EXPECT_EQ(list.GetItemData(2), static_cast<DWORD_PTR>('h'));
    const auto by_data = [](LPARAM a, LPARAM b, LPARAM) { return static_cast<int>(a - b); };
    EXPECT_TRUE(list.SortItems(+by_data, 0));
    EXPECT_STREQ(list.GetItemText(0, 0), "axe");
    LVFINDINFO wanted{};
    wanted.flags = LVFI_STRING;
    wanted.psz = "saw";
    EXPECT_EQ(list.FindItem(&wanted), 2);
    EXPECT_TRUE(list.DeleteItem(0));
    EXPECT_EQ(list.GetItemCount(), 2);
    EXPECT_TRUE(list.DeleteAllItems());
    EXPECT_EQ(list.GetItemCount(), 0);
}

TEST_F(ListTest, SelectedItems_AreWalkedInOrder)
{
    list.InsertColumn(0, "Name", LVCFMT_LEFT, 120);
    for (int i = 0; i < 6; ++i)
        list.InsertItem(i, "item");
    EXPECT_EQ(list.GetFirstSelectedItemPosition(), nullptr);
    for (const int at : {0, 3, 5})
        EXPECT_TRUE(list.SetItemState(at, LVIS_SELECTED, LVIS_SELECTED));
    EXPECT_EQ(list.GetSelectedCount(), 3u);
    std::string walked;
    for (POSITION position = list.GetFirstSelectedItemPosition(); position != nullptr;)
        walked += std::to_string(list.GetNextSelectedItem(position)) + ' ';
    EXPECT_EQ(walked, "0 3 5 ");
    EXPECT_EQ(list.GetNextItem(0, LVNI_SELECTED), 3);
    EXPECT_EQ(list.GetItemState(3, LVIS_SELECTED), static_cast<UINT>(LVIS_SELECTED));
}

TEST_F(ListTest, ExtendedStyleChecksAndHits)
{
    list.InsertColumn(0, "Name", LVCFMT_LEFT, 120);
    EXPECT_EQ(list.SetExtendedStyle(LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT), 0u);
    EXPECT_EQ(list.GetExtendedStyle(),
              static_cast<DWORD>(LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT));
    list.InsertItem(0, "saw");
    EXPECT_TRUE(list.SetCheck(0));
    EXPECT_TRUE(list.GetCheck(0));
    EXPECT_TRUE(list.SetCheck(0, FALSE));
    EXPECT_FALSE(list.GetCheck(0));
    CRect label;
    ASSERT_TRUE(list.GetItemRect(0, label, LVIR_LABEL));
    UINT flags = 0;
    EXPECT_EQ(list.HitTest(CPoint(label.TopLeft() + CSize(5, 5)), &flags), 0);
    EXPECT_NE(flags & LVHT_ONITEMLABEL, 0u);
    EXPECT_EQ(list.HitTest(CPoint(150, 190)), -1);
}

TEST_F(ListTest, EditLabel_GivesTheField)
{
    list.InsertColumn(0, "Name", LVCFMT_LEFT, 120);
    list.InsertItem(0, "saw");
    list.SetFocus();
    CEdit* const field = list.EditLabel(0);
    ASSERT_NE(field, nullptr);
    CString text;
    field->GetWindowText(text);
    EXPECT_STREQ(text, "saw");
}

TEST_F(ListTest, ImageList_IsSharedWhenTheStyleSaysSo)
{
    CListCtrl shared;
    ASSERT_TRUE(shared.Create(kChild | LVS_ICON | LVS_SHAREIMAGELISTS, place, &host, kId + 1));
    CImageList pictures;
    ASSERT_TRUE(pictures.Create(32, 32, ILC_COLOR24, 1, 1));
    EXPECT_EQ(shared.SetImageList(&pictures, LVSIL_NORMAL), nullptr);
    EXPECT_EQ(shared.GetImageList(LVSIL_NORMAL), &pictures);
    EXPECT_EQ(shared.InsertItem(0, "saw", 0), 0);
    shared.DestroyWindow();
    EXPECT_EQ(pictures.GetImageCount(), 0);
    EXPECT_TRUE(pictures.DeleteImageList());
}

TEST(VirtualList, AMillionEntries_AsksOnlyForWhatIsInView)
{
    VirtualParent parent;
    ASSERT_TRUE(parent.CreateEx(0, nullptr, "", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                                CRect(100, 100, 500, 400), nullptr, 0));
    CListCtrl list;
    ASSERT_TRUE(list.Create(WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_OWNERDATA,
                            CRect(0, 0, 300, 200), &parent, 1001));
    list.InsertColumn(0, "Name", LVCFMT_LEFT, 120);
    EXPECT_TRUE(list.SetItemCountEx(1'000'000));
    EXPECT_EQ(list.GetItemCount(), 1'000'000);
    list.RedrawWindow();
    EXPECT_GT(parent.asked, 0);
    EXPECT_LT(parent.asked, 500);
    EXPECT_STREQ(list.GetItemText(999'999, 0), "entry 999999");
    EXPECT_TRUE(list.EnsureVisible(500'000, FALSE));
    list.RedrawWindow();
    EXPECT_LE(list.GetTopIndex(), 500'000);
    EXPECT_GT(list.GetTopIndex() + list.GetCountPerPage(), 500'000);
    list.SetItemState(500'000, LVIS_SELECTED, LVIS_SELECTED);
    EXPECT_EQ(list.GetNextItem(-1, LVNI_SELECTED), 500'000);
    EXPECT_TRUE(list.SetItemCountEx(10));
    EXPECT_EQ(list.GetItemCount(), 10);
}

TEST_F(ListTest, OpenedFilledAndClosedManyTimes_NothingIsLeft)
{
    CListCtrl other;
    EXPECT_EQ(what_leaks([&] {
                  other.Create(kChild | LVS_REPORT, place, &host, kId + 1);
                  other.InsertColumn(0, "Name");
                  other.InsertItem(0, "saw");
                  other.DestroyWindow();
              }),
              "");
}
