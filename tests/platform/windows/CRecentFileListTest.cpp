#include "platform/CRecentFileList.h"

#include "platform/CFrameWnd.h"
#include "platform/CMenu.h"
#include "platform/PlatformIds.h"
#include "tests/TemporaryFolder.h"
#include "tests/platform/windows/TestApplication.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr UINT kFirst = ID_FILE_MRU_FILE1;
constexpr UINT kOther = 41'020;
constexpr const char* kNoFiles = "Recent file";

/// A list that is kept in this object.
class List : public CRecentFileList {
public:
    explicit List(int size, int display_length = 30)
        : CRecentFileList(0, "section", "File%d", size, display_length)
    {
    }
    void ReadList() override { ++reads; }
    void WriteList() override { ++writes; }
    [[nodiscard]] std::vector<std::string> names()
    {
        std::vector<std::string> all;
        for (int i = 0; i < GetSize(); ++i)
            all.emplace_back((*this)[i]);
        return all;
    }

    int reads = 0;
    int writes = 0;
};

using Names = std::vector<std::string>;

/// A frame whose first popup has an item for the recent files between two others.
class RecentFileMenu : public testing::Test {
protected:
    void SetUp() override
    {
        former_window_ = the_application().m_pMainWnd;
        the_application().opened.clear();
        ASSERT_TRUE(popup_.CreatePopupMenu());
        popup_.AppendMenu(MF_STRING, kOther, "Open");
        popup_.AppendMenu(MF_STRING, kFirst, kNoFiles);
        popup_.AppendMenu(MF_STRING, kOther + 1, "Last");
        CMenu bar;
        ASSERT_TRUE(bar.CreateMenu());
        bar.AppendMenu(MF_POPUP, reinterpret_cast<UINT_PTR>(popup_.m_hMenu), "File");
        ASSERT_TRUE(frame_.Create(nullptr, "Recent files"));
        ASSERT_TRUE(frame_.SetMenu(&bar));
        bar.Detach();
        auto list = std::make_unique<List>(4);
        list_ = list.get();
        the_application().m_pRecentFileList = std::move(list);
    }
    void TearDown() override
    {
        the_application().m_pRecentFileList.reset();
        the_application().opens_files = TRUE;
        the_application().m_pMainWnd = former_window_;
        popup_.Detach();  // the bar's, which goes with the window
        frame_.DestroyWindow();
    }
    /// Opens the popup, by the message that the system sends, and tells its items.
    Names open()
    {
        frame_.SendMessage(WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(popup_.m_hMenu), 0);
        Names items;
        for (UINT i = 0; i < static_cast<UINT>(popup_.GetMenuItemCount()); ++i) {
            CString text;
            popup_.GetMenuString(i, text, MF_BYPOSITION);
            items.emplace_back(text);
        }
        return items;
    }
    [[nodiscard]] bool is_grey(UINT id) const
    {
        return (popup_.GetMenuState(id, MF_BYCOMMAND) & (MF_GRAYED | MF_DISABLED)) != 0;
    }
    void choose(UINT id) { frame_.SendMessage(WM_COMMAND, id); }

    /// On the stack, unlike other frames.
    class Frame : public CFrameWnd {
    protected:
        void PostNcDestroy() override {}
    };

    CWnd* former_window_ = nullptr;
    Frame frame_;
    CMenu popup_;
    List* list_ = nullptr;
};

}  // namespace

TEST(CRecentFileList, NewOne_HasEmptyPlaces)
{
    List list(3);

    EXPECT_EQ(list.GetSize(), 3);
    EXPECT_EQ(list.m_nSize, 3);
    EXPECT_EQ(list.names(), (Names{"", "", ""}));
    EXPECT_STREQ(list.m_strSectionName, "section");
    EXPECT_STREQ(list.m_strEntryFormat, "File%d");
}

TEST(CRecentFileList, Add_PutsTheFileInFrontAndDropsTheLast)
{
    List list(3);
    for (const char* const name : {"C:\\a", "C:\\b", "C:\\c", "C:\\d"})
        list.Add(name);

    EXPECT_EQ(list.names(), (Names{"C:\\d", "C:\\c", "C:\\b"}));
}

TEST(CRecentFileList, AddOfAFileThatIsThere_MovesItToTheFront)
{
    List list(4);
    for (const char* const name : {"C:\\a", "C:\\b", "C:\\c", "c:\\A"})
        list.Add(name);

    EXPECT_EQ(list.names(), (Names{"c:\\A", "C:\\c", "C:\\b", ""}));
}

TEST(CRecentFileList, Add_TakesTheFullName)
{
    const TemporaryFolder folder;
    const auto former = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    List list(1);
    list.Add("sub\\..\\\xC3\xA4 & b.odb");
    std::filesystem::current_path(former);

    const std::u8string full = (folder.path() / u8"\u00E4 & b.odb").u8string();
    EXPECT_EQ(list.names(), Names{std::string(full.begin(), full.end())});
}

TEST(CRecentFileList, AddOfNothingOrToNoPlaces_IsIgnored)
{
    List list(2);
    list.Add(nullptr);
    list.Add("");
    EXPECT_EQ(list.names(), (Names{"", ""}));

    for (const int size : {0, -1}) {
        List none(size);
        none.Add("C:\\a");
        EXPECT_EQ(none.GetSize(), 0);
    }
}

TEST(CRecentFileList, Remove_MovesTheOthersUp)
{
    List list(3);
    for (const char* const name : {"C:\\a", "C:\\b", "C:\\c"})
        list.Add(name);
    list.Remove(1);
    EXPECT_EQ(list.names(), (Names{"C:\\c", "C:\\a", ""}));

    list.Remove(-1);
    list.Remove(3);
    EXPECT_EQ(list.names(), (Names{"C:\\c", "C:\\a", ""}));
}

TEST(CRecentFileList, DisplayName_IsShortenedAndLeavesTheCurrentFolderOut)
{
    List list(3, 20);
    list.Add("C:\\models\\cars\\wheels\\a very long name.odb");
    list.Add("C:\\models\\cars\\wheels\\a.odb");
    CString name;

    EXPECT_TRUE(list.GetDisplayName(name, 0, "D:\\", 3));
    EXPECT_STREQ(name, "C:\\...\\wheels\\a.odb");
    EXPECT_TRUE(list.GetDisplayName(name, 0, "C:\\models\\cars\\wheels", 21));
    EXPECT_STREQ(name, "a.odb");
    EXPECT_TRUE(list.GetDisplayName(name, 1, "D:\\", 3));
    EXPECT_STREQ(name, "a very long name.odb");
    EXPECT_FALSE(list.GetDisplayName(name, 2, "D:\\", 3));
    EXPECT_FALSE(list.GetDisplayName(name, 3, "D:\\", 3));
    EXPECT_FALSE(list.GetDisplayName(name, -1, "D:\\", 3));
}

TEST_F(RecentFileMenu, WithoutFiles_ItsTextIsDisabled)
{
    EXPECT_EQ(open(), (Names{"Open", kNoFiles, "Last"}));
    EXPECT_TRUE(is_grey(kFirst));
}

TEST_F(RecentFileMenu, WithoutAList_ItsTextIsDisabled)
{
    the_application().m_pRecentFileList.reset();

    EXPECT_EQ(open(), (Names{"Open", kNoFiles, "Last"}));
    EXPECT_TRUE(is_grey(kFirst));
    choose(kFirst);
    EXPECT_TRUE(the_application().opened.empty());
}

TEST_F(RecentFileMenu, Files_AreNumberedInThePlaceOfItsItem)
{
    list_->Add("C:\\models\\b.odb");
    list_->Add("C:\\R&D\\a.odb");

    const Names expected{"Open", "&1 C:\\R&&D\\a.odb", "&2 C:\\models\\b.odb", "Last"};
    EXPECT_EQ(open(), expected);
    EXPECT_FALSE(is_grey(kFirst));
    EXPECT_FALSE(is_grey(kFirst + 1));
    EXPECT_EQ(open(), expected);
}

TEST_F(RecentFileMenu, AddedAndRemovedFiles_AreShownAtTheNextOpening)
{
    for (const char* const name : {"C:\\a", "C:\\b", "C:\\c", "C:\\d"})
        list_->Add(name);
    EXPECT_EQ(open(), (Names{"Open", "&1 C:\\d", "&2 C:\\c", "&3 C:\\b", "&4 C:\\a", "Last"}));
    list_->Remove(0);
    list_->Remove(0);
    EXPECT_EQ(open(), (Names{"Open", "&1 C:\\b", "&2 C:\\a", "Last"}));
    list_->Remove(0);
    list_->Remove(0);

    EXPECT_EQ(open(), (Names{"Open", kNoFiles, "Last"}));
    EXPECT_TRUE(is_grey(kFirst));
    list_->Add("C:\\e");
    EXPECT_EQ(open(), (Names{"Open", "&1 C:\\e", "Last"}));
    EXPECT_FALSE(is_grey(kFirst));
}

TEST_F(RecentFileMenu, EmptyPlaces_AreLeftOut)
{
    (*list_)[1] = "C:\\second";
    (*list_)[3] = "C:\\fourth";

    EXPECT_EQ(open(), (Names{"Open", "&1 C:\\second", "&2 C:\\fourth", "Last"}));
    choose(kFirst + 1);
    EXPECT_EQ(the_application().opened, Names{"C:\\fourth"});
}

TEST_F(RecentFileMenu, ChosenFile_IsOpened)
{
    list_->Add("C:\\a");
    list_->Add("C:\\b");
    choose(kFirst + 1);
    choose(kFirst + 2);  // there is none

    EXPECT_EQ(the_application().opened, Names{"C:\\a"});
    EXPECT_EQ(list_->names(), (Names{"C:\\b", "C:\\a", "", ""}));
}

TEST_F(RecentFileMenu, ChosenFileThatDoesNotOpen_IsTakenOff)
{
    list_->Add("C:\\a");
    list_->Add("C:\\b");
    the_application().opens_files = FALSE;
    choose(kFirst + 1);

    EXPECT_EQ(list_->names(), (Names{"C:\\b", "", "", ""}));
}

TEST_F(RecentFileMenu, SixteenFiles_HaveACommandEach)
{
    auto list = std::make_unique<List>(16);
    for (int i = 16; i > 0; --i)
        list->Add(("C:\\file " + std::to_string(i)).c_str());
    the_application().m_pRecentFileList = std::move(list);
    const Names items = open();

    ASSERT_EQ(items.size(), 18u);
    EXPECT_EQ(items[9], "&9 C:\\file 9");
    EXPECT_EQ(items[10], "1&0 C:\\file 10");
    EXPECT_EQ(items[16], "16 C:\\file 16");
    EXPECT_FALSE(is_grey(kFirst + 15));
    choose(kFirst + 15);
    EXPECT_EQ(the_application().opened, Names{"C:\\file 16"});
}

TEST_F(RecentFileMenu, ThousandOpenings_LeaveOneSetOfItems)
{
    list_->Add("C:\\a");
    list_->Add("C:\\b");
    for (int i = 0; i < 1000; ++i)
        ASSERT_EQ(open().size(), 4u);
}
