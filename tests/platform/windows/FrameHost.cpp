#include "tests/platform/windows/FrameHost.h"

#include "platform/CMenu.h"

BEGIN_MESSAGE_MAP(HostFrame, CFrameWnd)
    ON_COMMAND(kOpen, &HostFrame::OnOpen)
    ON_UPDATE_COMMAND_UI(kClose, &HostFrame::OnUpdateClose)
    ON_UPDATE_COMMAND_UI(kChecked, &HostFrame::OnUpdateChecked)
    ON_UPDATE_COMMAND_UI(kRound, &HostFrame::OnUpdateRound)
    ON_UPDATE_COMMAND_UI(kRecent, &HostFrame::OnUpdateRecent)
    ON_UPDATE_COMMAND_UI(kLast, &HostFrame::OnUpdateLast)
    ON_UPDATE_COMMAND_UI(kObjects, &HostFrame::OnUpdateObjects)
    ON_UPDATE_COMMAND_UI(kOverwrite, &HostFrame::OnUpdateOverwrite)
END_MESSAGE_MAP()

void HostFrame::OnUpdateRecent(CCmdUI* state)
{
    if (recent_goes)
        state->m_pMenu->DeleteMenu(state->m_nIndex, MF_BYPOSITION);
}
