#pragma once

#include "platform/CObject.h"
#include "platform/MessageMap.h"

/// Who would deal with a command; filled instead of calling when a route is only asked.
struct AFX_CMDHANDLERINFO {
    CCmdTarget* pTarget = nullptr;
    const AFX_MSGMAP_ENTRY* pEntry = nullptr;
};

/// What a route carries for a WM_NOTIFY message.
struct AFX_NOTIFY {
    LRESULT* pResult;
    NMHDR* pNMHDR;
};

/// Base of everything that commands and their updates are routed to. User-interface thread.
class ZMR_GV_API CCmdTarget : public CObject {
    DECLARE_DYNAMIC(CCmdTarget)

public:
    /// Offers a command or a notification to this target: its own message map, and in heirs the
    /// further stops of the route. `code` is CN_COMMAND, CN_UPDATE_COMMAND_UI (`extra` is the
    /// CCmdUI), a control's notification code, or MAKELONG(code, WM_NOTIFY) (`extra` is the
    /// AFX_NOTIFY). With `info` nobody is called: it is filled, and TRUE says that somebody would
    /// have been. FALSE when nobody dealt with it.
    virtual BOOL OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* info);

    /// Shows the hourglass, counting; takes one showing back; shows it again after something else
    /// changed the cursor. See CWaitCursor.
    void BeginWaitCursor();
    void EndWaitCursor();
    void RestoreWaitCursor();

protected:
    CCmdTarget() = default;

    [[nodiscard]] virtual const AFX_MSGMAP* GetMessageMap() const { return GetThisMessageMap(); }
    [[nodiscard]] static const AFX_MSGMAP* GetThisMessageMap();
};
