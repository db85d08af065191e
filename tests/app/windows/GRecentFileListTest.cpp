#include "app/GRecentFileList.h"

#include "platform/CMenu.h"
#include "platform/PlatformIds.h"
#include "tests/TemporaryFolder.h"
#include "tests/app/windows/TestHost.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

/// A host whose settings lie in a file.
class RecentFilesOfAHost : public Hosted {
protected:
    void SetUp() override
    {
        Hosted::SetUp();
        RegistryManager::get()->Initialize(nullptr, file_.c_str());
    }
    void TearDown() override
    {
        RegistryManager::get()->Initialize(nullptr, nullptr);
        Hosted::TearDown();
    }
    [[nodiscard]] std::string settings() const
    {
        std::ifstream in(folder_.path() / "settings.ini", std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    void set_settings(const std::string& text) const
    {
        std::ofstream(folder_.path() / "settings.ini", std::ios::binary) << text;
    }

    TemporaryFolder folder_;
    std::string file_ = folder_.file("settings.ini");
};

}  // namespace

TEST_F(RecentFilesOfAHost, CountOfZero_MakesNoListAndWritesNone)
{
    host_.LoadStdProfileSettings(0);
    EXPECT_EQ(host_.m_pRecentFileList, nullptr);
    host_.SaveStdProfileSettings();
    host_.AddToRecentFileList("C:\\a.odb");

    EXPECT_EQ(settings(), "");
}

TEST_F(RecentFilesOfAHost, Load_ReadsTheListAndThePreviewPages)
{
    set_settings(
        "[Recent File List]\r\nFile1=C:\\a\r\nFile3=C:\\c\r\n"
        "[Settings]\r\nPreviewPages=2\r\n");
    host_.LoadStdProfileSettings(4);

    ASSERT_NE(host_.m_pRecentFileList, nullptr);
    EXPECT_EQ(host_.m_pRecentFileList->GetSize(), 4);
    EXPECT_EQ(host_.m_pRecentFileList->m_nMaxDisplayLength, 30);
    EXPECT_STREQ((*host_.m_pRecentFileList)[0], "C:\\a");
    EXPECT_STREQ((*host_.m_pRecentFileList)[1], "");
    EXPECT_STREQ((*host_.m_pRecentFileList)[2], "C:\\c");
    EXPECT_EQ(host_.m_nNumPreviewPages, 2u);
}

TEST_F(RecentFilesOfAHost, ListWithEmptyPlaces_KeepsItsNumbers)
{
    host_.LoadStdProfileSettings(4);
    (*host_.m_pRecentFileList)[1] = "C:\\b";
    (*host_.m_pRecentFileList)[3] = "C:\\d";
    host_.SaveStdProfileSettings();

    EXPECT_EQ(settings(), "[Recent File List]\r\nFile2=C:\\b\r\nFile4=C:\\d\r\n");
    host_.LoadStdProfileSettings(4);
    EXPECT_STREQ((*host_.m_pRecentFileList)[0], "");
    EXPECT_STREQ((*host_.m_pRecentFileList)[3], "C:\\d");
}

TEST_F(RecentFilesOfAHost, AddedFile_IsWrittenAtOnce)
{
    host_.LoadStdProfileSettings(4);
    host_.AddToRecentFileList("C:\\a.odb");
    EXPECT_EQ(settings(), "[Recent File List]\r\nFile1=C:\\a.odb\r\n");

    host_.AddToRecentFileList("C:\\b.odb");
    EXPECT_EQ(settings(), "[Recent File List]\r\nFile1=C:\\b.odb\r\nFile2=C:\\a.odb\r\n");
}

TEST_F(RecentFilesOfAHost, InvalidPath_LeavesTheListAndTheSettings)
{
    host_.LoadStdProfileSettings(4);
    host_.AddToRecentFileList("C:\\a.odb");
    const std::string before = settings();
    for (const char* const path : {"", "C:\\a<b>|.odb", "C:\\a:b"})
        host_.AddToRecentFileList(path);
    host_.AddToRecentFileList(nullptr);

    EXPECT_STREQ((*host_.m_pRecentFileList)[0], "C:\\a.odb");
    EXPECT_STREQ((*host_.m_pRecentFileList)[1], "");
    EXPECT_EQ(settings(), before);
}

TEST_F(RecentFilesOfAHost, PreviewPagesOfZero_LeaveTheStoredNumber)
{
    set_settings("[Settings]\r\nPreviewPages=2\r\n");
    host_.LoadStdProfileSettings(0);
    host_.m_nNumPreviewPages = 0;
    host_.SaveStdProfileSettings();
    EXPECT_EQ(settings(), "[Settings]\r\nPreviewPages=2\r\n");

    host_.m_nNumPreviewPages = 3;
    host_.SaveStdProfileSettings();
    EXPECT_EQ(settings(), "[Settings]\r\nPreviewPages=3\r\n");
}

TEST_F(RecentFilesOfAHost, SecondLoad_TakesTheFormerListsPlace)
{
    host_.LoadStdProfileSettings(4);
    host_.AddToRecentFileList("C:\\a.odb");
    host_.LoadStdProfileSettings(2);
    EXPECT_EQ(host_.m_pRecentFileList->GetSize(), 2);
    EXPECT_STREQ((*host_.m_pRecentFileList)[0], "C:\\a.odb");

    host_.LoadStdProfileSettings(0);
    EXPECT_EQ(host_.m_pRecentFileList, nullptr);
}

TEST_F(RecentFilesOfAHost, SmallerList_DropsWhatHasNoPlaceWhenItIsWritten)
{
    set_settings("[Recent File List]\r\nFile1=C:\\a\r\nFile2=C:\\b\r\nFile3=C:\\c\r\n");
    host_.LoadStdProfileSettings(2);
    host_.SaveStdProfileSettings();

    EXPECT_EQ(settings(), "[Recent File List]\r\nFile1=C:\\a\r\nFile2=C:\\b\r\n");
}

TEST_F(RecentFilesOfAHost, MenuOfTheMainWindow_ShowsThem)
{
    host_.LoadStdProfileSettings(4);
    host_.AddToRecentFileList("C:\\models\\a.odb");
    HostFrame& frame = host_.open_frame();
    CMenu popup;
    ASSERT_TRUE(popup.CreatePopupMenu());
    popup.AppendMenu(MF_STRING, ID_FILE_MRU_FILE1, "Recent file");
    frame.SendMessage(WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(popup.m_hMenu), 0);

    CString text;
    popup.GetMenuString(0, text, MF_BYPOSITION);
    EXPECT_STREQ(text, "&1 C:\\models\\a.odb");
}
