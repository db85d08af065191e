#include "platform/CEdit.h"
#include "platform/CImageList.h"
#include "platform/CTreeCtrl.h"
#include "tests/platform/windows/ControlHost.h"
#include "tests/support/ResourceLedger.h"

#include <string>
#include <vector>

namespace {

class TreeTest : public ControlTest {
protected:
    void SetUp() override
    {
        ControlTest::SetUp();
        ASSERT_TRUE(tree.Create(
            kChild | TVS_HASBUTTONS | TVS_LINESATROOT | TVS_EDITLABELS | TVS_SHOWSELALWAYS,
            CRect(0, 0, 200, 200), &host, kId));
    }

    CTreeCtrl tree;
};

/// A tree that is asked first about its own notifications.
class AskedTree : public CTreeCtrl {
public:
    std::vector<std::string>* calls = nullptr;
    bool keep = false;

protected:
    DECLARE_MESSAGE_MAP()

    BOOL OnChange(NMHDR*, LRESULT*)
    {
        calls->push_back("tree");
        return keep;
    }
};

BEGIN_MESSAGE_MAP(AskedTree, CTreeCtrl)
    ON_NOTIFY_REFLECT_EX(TVN_SELCHANGEDA, &AskedTree::OnChange)
END_MESSAGE_MAP()

class AskedParent : public CWnd {
public:
    std::vector<std::string> calls;

protected:
    DECLARE_MESSAGE_MAP()

    void OnChange(NMHDR*, LRESULT*) { calls.push_back("parent"); }
};

BEGIN_MESSAGE_MAP(AskedParent, CWnd)
    ON_NOTIFY(TVN_SELCHANGEDA, 1001, &AskedParent::OnChange)
END_MESSAGE_MAP()

}  // namespace

TEST_F(TreeTest, InsertItem_FormsRelativesAndOrder)
{
    const HTREEITEM tools = tree.InsertItem("Tools");
    const HTREEITEM saw = tree.InsertItem("Saw", tools);
    const HTREEITEM axe = tree.InsertItem("Axe", tools, TVI_FIRST);
    const HTREEITEM trees = tree.InsertItem("Trees", 3, 4);

    EXPECT_EQ(tree.GetCount(), 4u);
    EXPECT_EQ(tree.GetRootItem(), tools);
    EXPECT_EQ(tree.GetChildItem(tools), axe);
    EXPECT_EQ(tree.GetNextSiblingItem(axe), saw);
    EXPECT_EQ(tree.GetPrevSiblingItem(saw), axe);
    EXPECT_EQ(tree.GetParentItem(saw), tools);
    EXPECT_EQ(tree.GetNextItem(tools, TVGN_NEXT), trees);
    EXPECT_TRUE(tree.ItemHasChildren(tools));
    EXPECT_FALSE(tree.ItemHasChildren(trees));
    EXPECT_EQ(tree.GetParentItem(tools), nullptr);
    int image = 0;
    int selected = 0;
    ASSERT_TRUE(tree.GetItemImage(trees, image, selected));
    EXPECT_EQ(image, 3);
    EXPECT_EQ(selected, 4);
}

TEST_F(TreeTest, Items_TextDataAndState)
{
    const HTREEITEM item = tree.InsertItem(TVIF_TEXT | TVIF_PARAM | TVIF_STATE, "Saw", 0, 0,
                                           TVIS_BOLD, TVIS_BOLD, 0x1234567890, TVI_ROOT, TVI_LAST);
    EXPECT_STREQ(tree.GetItemText(item), "Saw");
    EXPECT_EQ(tree.GetItemData(item), 0x1234567890u);
    EXPECT_EQ(tree.GetItemState(item, TVIS_BOLD | TVIS_CUT), static_cast<UINT>(TVIS_BOLD));
    EXPECT_TRUE(tree.SetItemState(item, TVIS_CUT, TVIS_CUT | TVIS_BOLD));
    EXPECT_EQ(tree.GetItemState(item, TVIS_BOLD | TVIS_CUT), static_cast<UINT>(TVIS_CUT));
    EXPECT_TRUE(tree.SetItemText(item, "Gr\xC3\xBCn"));
    EXPECT_STREQ(tree.GetItemText(item), "Gr\xC3\xBCn");
    EXPECT_TRUE(tree.SetItemData(item, 5));
    EXPECT_EQ(tree.GetItemData(item), 5u);
}

TEST_F(TreeTest, SelectionExpansionAndView)
{
    const HTREEITEM tools = tree.InsertItem("Tools");
    const HTREEITEM saw = tree.InsertItem("Saw", tools);
    EXPECT_EQ(tree.GetSelectedItem(), nullptr);
    EXPECT_TRUE(tree.SelectItem(saw));
    EXPECT_EQ(tree.GetSelectedItem(), saw);
    EXPECT_NE(tree.GetItemState(tools, TVIS_EXPANDED), 0u) << "opened to show it";
    EXPECT_TRUE(tree.Expand(tools, TVE_COLLAPSE));
    EXPECT_EQ(tree.GetItemState(tools, TVIS_EXPANDED), 0u);
    const HTREEITEM trees = tree.InsertItem("Trees");
    EXPECT_TRUE(tree.SelectDropTarget(trees));
    EXPECT_EQ(tree.GetDropHilightItem(), trees);
    EXPECT_EQ(tree.GetSelectedItem(), tools) << "where the caret went when its item was hidden";
    EXPECT_EQ(tree.GetFirstVisibleItem(), tools);
    EXPECT_TRUE(tree.SelectItem(nullptr));
    EXPECT_EQ(tree.GetSelectedItem(), nullptr);
}

TEST_F(TreeTest, HitTest_LabelAndBelow)
{
    const HTREEITEM tools = tree.InsertItem("Tools");
    tree.UpdateWindow();
    CRect label;
    ASSERT_TRUE(tree.GetItemRect(tools, label, TRUE));
    UINT flags = 0;
    EXPECT_EQ(tree.HitTest(label.CenterPoint(), &flags), tools);
    EXPECT_EQ(flags, static_cast<UINT>(TVHT_ONITEMLABEL));
    EXPECT_EQ(tree.HitTest(CPoint(100, 190), &flags), nullptr);
    EXPECT_EQ(flags, static_cast<UINT>(TVHT_NOWHERE));
    const HTREEITEM below = tree.InsertItem("Saw", tools);
    EXPECT_FALSE(tree.GetItemRect(below, label, TRUE)) << "not in view";
}

TEST_F(TreeTest, SortChildren_ByLabelAndByOwnOrder)
{
    const HTREEITEM tools = tree.InsertItem("Tools");
    for (const char* const name : {"saw", "axe", "hammer"})
        tree.SetItemData(tree.InsertItem(name, tools), static_cast<DWORD_PTR>(name[0]));
    EXPECT_TRUE(tree.SortChildren(tools));
    EXPECT_STREQ(tree.GetItemText(tree.GetChildItem(tools)), "axe");
    TVSORTCB backwards{tools, [](LPARAM a, LPARAM b, LPARAM) { return static_cast<int>(b - a); },
                       0};
    EXPECT_TRUE(tree.SortChildrenCB(&backwards));
    EXPECT_STREQ(tree.GetItemText(tree.GetChildItem(tools)), "saw");
}

TEST_F(TreeTest, DeleteItem_WithAllBelow)
{
    const HTREEITEM tools = tree.InsertItem("Tools");
    tree.InsertItem("Saw", tools);
    tree.InsertItem("Trees");
    EXPECT_TRUE(tree.DeleteItem(tools));
    EXPECT_EQ(tree.GetCount(), 1u);
    EXPECT_TRUE(tree.DeleteAllItems());
    EXPECT_EQ(tree.GetRootItem(), nullptr);
}

TEST_F(TreeTest, ImageList_StaysTheCallers)
{
    CImageList pictures;
    ASSERT_TRUE(pictures.Create(16, 16, ILC_COLOR24, 1, 1));
    EXPECT_EQ(tree.SetImageList(&pictures, TVSIL_NORMAL), nullptr);
    EXPECT_EQ(tree.GetImageList(TVSIL_NORMAL), &pictures);
    EXPECT_EQ(tree.SetImageList(nullptr, TVSIL_NORMAL), &pictures);
    EXPECT_EQ(pictures.GetImageCount(), 0);
    EXPECT_TRUE(pictures.DeleteImageList());
}

TEST_F(TreeTest, EditLabel_GivesTheFieldUntilItEnds)
{
    const HTREEITEM item = tree.InsertItem("Saw");
    tree.SetFocus();
    CEdit* const field = tree.EditLabel(item);
    ASSERT_NE(field, nullptr);
    CString text;
    field->GetWindowText(text);
    EXPECT_STREQ(text, "Saw");
    EXPECT_EQ(tree.GetEditControl()->m_hWnd, field->m_hWnd);
    tree.EndEditLabelNow(TRUE);
    EXPECT_EQ(tree.GetEditControl(), nullptr);
}

TEST_F(TreeTest, CheckBoxes_AreStateImages)
{
    tree.ModifyStyle(0, TVS_CHECKBOXES);
    const HTREEITEM item = tree.InsertItem("Saw");
    EXPECT_TRUE(tree.SetCheck(item));
    EXPECT_TRUE(tree.GetCheck(item));
    EXPECT_TRUE(tree.SetCheck(item, FALSE));
    EXPECT_FALSE(tree.GetCheck(item));
}

TEST(TreeReflection, TreeIsAskedFirstAndTheParentWhenItLetsGo)
{
    AskedParent parent;
    ASSERT_TRUE(parent.CreateEx(0, nullptr, "", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                                CRect(100, 100, 400, 300), nullptr, 0));
    AskedTree tree;
    tree.calls = &parent.calls;
    ASSERT_TRUE(tree.Create(WS_CHILD | WS_VISIBLE, CRect(0, 0, 200, 100), &parent, 1001));
    const HTREEITEM first = tree.InsertItem("First");
    const HTREEITEM second = tree.InsertItem("Second");
    parent.calls.clear();

    tree.SelectItem(first);
    EXPECT_EQ(parent.calls, (std::vector<std::string>{"tree", "parent"}));
    tree.keep = true;
    parent.calls.clear();
    tree.SelectItem(second);
    EXPECT_EQ(parent.calls, std::vector<std::string>{"tree"});
}

TEST_F(TreeTest, OpenedFilledAndClosedManyTimes_NothingIsLeft)
{
    CTreeCtrl other;
    EXPECT_EQ(what_leaks([&] {
                  other.Create(kChild, place, &host, kId + 1);
                  other.InsertItem("Saw", other.InsertItem("Tools"));
                  other.DestroyWindow();
              }),
              "");
}
