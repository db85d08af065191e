#include "app/GWinApp.h"

#include "app/GRecentFileList.h"

namespace {

constexpr const char* kListSection = "Recent File List";
constexpr const char* kEntryFormat = "File%d";
constexpr int kDisplayLetters = 30;
constexpr const char* kSettingsSection = "Settings";
constexpr const char* kPreviewPages = "PreviewPages";

}  // namespace

void GWinApp::LoadStdProfileSettings(unsigned int count)
{
    m_pRecentFileList.reset();
    if (count != 0) {
        m_pRecentFileList = std::make_unique<GRecentFileList>(
            0, kListSection, kEntryFormat, static_cast<int>(count), kDisplayLetters);
        m_pRecentFileList->ReadList();
    }
    m_nNumPreviewPages = RegistryManager::get()->GetProfileIntA(kSettingsSection, kPreviewPages, 0);
}

void GWinApp::SaveStdProfileSettings()
{
    if (m_pRecentFileList != nullptr)
        m_pRecentFileList->WriteList();
    if (m_nNumPreviewPages != 0)
        RegistryManager::get()->WriteProfileInt(kSettingsSection, kPreviewPages,
                                                static_cast<int>(m_nNumPreviewPages));
}

void GWinApp::AddToRecentFileList(const char* path)
{
    if (!GFile(path).valid())
        return;
    CWinApp::AddToRecentFileList(path);
    SaveStdProfileSettings();
}
