#include "platform/CWinApp.h"

#include "platform/CCmdUI.h"
#include "platform/PlatformIds.h"

void CWinApp::AddToRecentFileList(LPCTSTR path)
{
    if (m_pRecentFileList != nullptr)
        m_pRecentFileList->Add(path);
}

BOOL CWinApp::OpenDocumentFile(LPCTSTR)
{
    return TRUE;
}

void CWinApp::OnUpdateRecentFileMenu(CCmdUI* state)
{
    if (m_pRecentFileList != nullptr)
        m_pRecentFileList->UpdateMenu(state);
    else
        state->Enable(FALSE);
}

void CWinApp::OnOpenRecentFile(UINT id)
{
    if (m_pRecentFileList == nullptr)
        return;
    const int index = m_pRecentFileList->IndexOfItem(static_cast<int>(id - ID_FILE_MRU_FILE1));
    if (index < 0)
        return;
    const CString path = (*m_pRecentFileList)[index];  // opening it may change the list
    if (!OpenDocumentFile(path))
        m_pRecentFileList->RemoveName(path);
}
