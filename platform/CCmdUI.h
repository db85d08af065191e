#pragma once

#include "platform/CCmdTarget.h"

class CMenu;
class CWnd;

/// The state of one command's place in the user interface, while it is brought up to date: a menu
/// item, or a control whose id is the command. Handlers of ON_UPDATE_COMMAND_UI change it by the
/// four functions. Made on the stack by who walks the menu or the bar.
class ZMR_GV_API CCmdUI {
public:
    CCmdUI() = default;
    virtual ~CCmdUI() = default;
    CCmdUI(const CCmdUI&) = delete;
    CCmdUI& operator=(const CCmdUI&) = delete;

    virtual void Enable(BOOL on = TRUE);
    /// 0 clear, 1 set, 2 undetermined (a menu item then shows a set mark).
    virtual void SetCheck(int check = 1);
    /// A check that is drawn as one of several.
    virtual void SetRadio(BOOL on = TRUE);
    virtual void SetText(LPCTSTR text);

    /// For an update handler: the update goes on to the next target of the route.
    void ContinueRouting() { m_bContinueRouting = TRUE; }
    /// Asks `target`'s route to bring the command up to date. Ids 0 and 0xFFFF give TRUE and ask
    /// nobody. With `disable_if_no_handler`, and when no handler called Enable, the command is
    /// enabled exactly when the route has a handler for it. FALSE when nobody updated it.
    BOOL DoUpdate(CCmdTarget* target, BOOL disable_if_no_handler);

    UINT m_nID = 0;                  ///< The command.
    UINT m_nIndex = 0;               ///< The item's place in the menu or the bar,
    UINT m_nIndexMax = 0;            ///< of so many.
    CMenu* m_pMenu = nullptr;        ///< When the place is a menu item,
    CMenu* m_pSubMenu = nullptr;     ///< and that opens this popup,
    CMenu* m_pParentMenu = nullptr;  ///< and the menu is a popup of this one.
    CWnd* m_pOther = nullptr;        ///< When the place is a window.
    BOOL m_bEnableChanged = FALSE;
    BOOL m_bContinueRouting = FALSE;
};
