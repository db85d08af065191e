#include "platform/CCmdTarget.h"

#include "platform/CCmdUI.h"
#include "platform/CWinApp.h"

IMPLEMENT_DYNAMIC(CCmdTarget, CObject)

const AFX_MSGMAP* CCmdTarget::GetThisMessageMap()
{
    static const AFX_MSGMAP_ENTRY entries[] = {{0, 0, 0, 0, nullptr, nullptr}};
    static const AFX_MSGMAP map = {nullptr, entries};
    return &map;
}

BOOL CCmdTarget::OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* info)
{
    zmr::MessageKey key{WM_COMMAND, static_cast<UINT>(code), id};
    AFX_MESSAGE_CALL message;
    message.id = id;
    if (key.code == CN_UPDATE_COMMAND_UI) {
        message.state = static_cast<CCmdUI*>(extra);
    } else if (HIWORD(code) == WM_NOTIFY) {
        key.message = WM_NOTIFY;
        key.code = static_cast<UINT>(static_cast<int>(static_cast<short>(LOWORD(code))));
        if (extra != nullptr)
            message.header = static_cast<AFX_NOTIFY*>(extra)->pNMHDR;
    }

    const AFX_MSGMAP_ENTRY* const row = zmr::find_entry(GetMessageMap(), key);
    if (row == nullptr)
        return FALSE;
    if (info != nullptr) {
        *info = {this, row};
        return TRUE;
    }
    if (message.state != nullptr)
        message.state->m_bContinueRouting = FALSE;
    const bool done = row->call(this, message);
    if (message.state != nullptr)
        return !message.state->m_bContinueRouting;
    if (message.header != nullptr && static_cast<AFX_NOTIFY*>(extra)->pResult != nullptr)
        *static_cast<AFX_NOTIFY*>(extra)->pResult = message.result;
    return done;
}

void CCmdTarget::BeginWaitCursor()
{
    AfxGetApp()->DoWaitCursor(1);
}

void CCmdTarget::EndWaitCursor()
{
    AfxGetApp()->DoWaitCursor(-1);
}

void CCmdTarget::RestoreWaitCursor()
{
    AfxGetApp()->DoWaitCursor(0);
}
