#pragma once

#include "platform/CString.h"
#include "platform/CWnd.h"
#include "platform/PlatformIds.h"
#include "platform/PlatformMessages.h"

#include <vector>

class CControlBar;

/// A window with a title, a menu, keys, and bars at its edges around the pane in the middle (the
/// child with id AFX_IDW_PANE_FIRST). It brings its menus up to date as they open, shows the texts
/// of commands in its message bar, answers for the texts of tips, and is where the route of
/// commands ends before the application.
///
/// Made with new: the object deletes itself when its window has gone, unless an heir's
/// PostNcDestroy does otherwise.
class ZMR_GV_API CFrameWnd : public CWnd {
    DECLARE_DYNCREATE(CFrameWnd)

public:
    CFrameWnd() = default;

    /// The place that leaves position and size to the system.
    static const RECT rectDefault;

    /// Null for `class_name` takes the platform's own class of frames. `menu_name` is looked for
    /// along the chain of modules. FALSE when the menu is missing or the window cannot be made.
    virtual BOOL Create(LPCTSTR class_name, LPCTSTR title, DWORD style = WS_OVERLAPPEDWINDOW,
                        const RECT& rect = rectDefault, CWnd* parent = nullptr,
                        LPCTSTR menu_name = nullptr, DWORD ex_style = 0);
    /// A frame from the resources of one number: the title is the text's first part, and menu, keys
    /// and icon are taken where there are such. FALSE when the window cannot be made.
    virtual BOOL LoadFrame(UINT id, DWORD style = WS_OVERLAPPEDWINDOW, CWnd* parent = nullptr);
    /// FALSE when there are none of that name, or there are keys already.
    BOOL LoadAccelTable(LPCTSTR name);
    [[nodiscard]] virtual HACCEL GetDefaultAccelerator() { return m_hAccelTable; }

    /// Shows the frame, restored when it is an icon, and in front. `how` -1 chooses.
    virtual void ActivateFrame(int how = -1);
    [[nodiscard]] const CString& GetTitle() const { return m_strTitle; }
    void SetTitle(LPCTSTR title) { m_strTitle = title; }
    [[nodiscard]] BOOL IsFrameWnd() const override { return TRUE; }

    // Layout.

    /// Places bars and pane anew. Calls of itself while it runs are dropped.
    virtual void RecalcLayout(BOOL notify = TRUE);
    /// Has RecalcLayout called in the next idle turn.
    void DelayRecalcLayout(BOOL notify = TRUE);
    /// The bar among the children, or null.
    [[nodiscard]] CControlBar* GetControlBar(UINT id) const;
    /// Shows or hides a bar: now, or in the next idle turn.
    void ShowControlBar(CControlBar* bar, BOOL show, BOOL delay);

    // Texts of commands.

    /// The bar that shows them; null when there is none.
    [[nodiscard]] virtual CWnd* GetMessageBar();
    /// The text for a command: that of its number up to the first line feed. Empty when there is
    /// none.
    virtual void GetMessageString(UINT id, CString& text) const;
    void SetMessageText(LPCTSTR text);
    void SetMessageText(UINT id);

    // Menus.

    /// Puts `menu` in place of the frame's own; null: its own again.
    virtual void OnUpdateFrameMenu(HMENU menu);
    /// Has OnUpdateFrameMenu called in the next idle turn.
    virtual void DelayUpdateFrameMenu(HMENU menu);
    [[nodiscard]] HMENU GetDefaultMenu() const { return m_hMenuDefault; }

    // Modal states, which nest.

    /// Disables the enabled windows that the frame owns, until EndModalState. A window that answers
    /// WM_DISABLEMODAL with other than 0 stays as it is.
    virtual void BeginModalState();
    virtual void EndModalState();
    [[nodiscard]] BOOL InModalState() const { return m_cModalStack != 0; }

    // Help. docs/platform.md tells the way of a request. A host's map names the handlers for the
    // commands that it has: ID_HELP, ID_CONTEXT_HELP, ID_HELP_INDEX and so on.

    /// Asks for help about the message box that is open, else about the choice that a menu stands
    /// on, else about the window that has the focus: WM_COMMANDHELP goes up its parents and owners
    /// until one answers, and the command ID_DEFAULT_HELP runs when none does.
    void OnHelp();
    /// Help mode: the cursor becomes a question, and the next click, or choice in a menu, asks for
    /// help about what it points at and does nothing else. Escape, the same command again, another
    /// program's window and WM_CANCELMODE end it without help. Runs a message loop of its own and
    /// returns when the mode is over. Nothing happens when CanEnterHelpMode says no.
    void OnContextHelp();
    void OnHelpIndex();
    void OnHelpFinder();
    void OnHelpUsing();
    /// FALSE while the frame is disabled, in help mode, and where there is no application or the
    /// frame's thread has no object.
    [[nodiscard]] virtual BOOL CanEnterHelpMode() const;
    /// Ends help mode; nothing when it is not on.
    virtual void ExitHelpMode();

    BOOL PreTranslateMessage(MSG* message) override;
    BOOL OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* info) override;

    BOOL m_bAutoMenuEnable = TRUE;  ///< Items without a handler are disabled.
    BOOL m_bHelpMode = FALSE;       ///< The next choice asks for help instead of doing something.
    HACCEL m_hAccelTable = nullptr;
    HMENU m_hMenuDefault = nullptr;
    UINT m_nIDHelp = 0;                           ///< The frame's help context.
    UINT m_nIDTracking = AFX_IDS_IDLEMESSAGE;     ///< The text that is to be shown,
    UINT m_nIDLastMessage = AFX_IDS_IDLEMESSAGE;  ///< and the one that is.

protected:
    DECLARE_MESSAGE_MAP()

    /// The window class for an icon of the resources; null when there is none of that number.
    [[nodiscard]] virtual LPCTSTR GetIconWndClass(DWORD style, UINT id);
    BOOL PreCreateWindow(CREATESTRUCT& creation) override;
    void PostNcDestroy() override;
    BOOL OnCommand(WPARAM wparam, LPARAM lparam) override;

    void OnDestroy();
    void OnClose();
    BOOL OnQueryEndSession();
    void OnSize(UINT kind, int width, int height);
    void OnEnable(BOOL on);
    void OnActivate(UINT state, CWnd* other, BOOL minimised);
    void OnSetFocus(CWnd* former);
    void OnSysCommand(UINT command, LPARAM lparam);
    void OnInitMenuPopup(CMenu* menu, UINT index, BOOL system_menu);
    void OnMenuSelect(UINT item, UINT flags, HMENU menu);
    LRESULT OnIdleUpdateCmdUI(WPARAM disable, LPARAM);
    /// Shows the text of the number, or the text given. The number shown before.
    LRESULT OnSetMessageString(WPARAM id, LPARAM text);
    LRESULT OnPopMessageString(WPARAM id, LPARAM text);
    /// F1: the command ID_HELP when somebody handles it, else OnHelp. Nothing when the key belongs
    /// to help mode.
    BOOL OnHelpInfo(HELPINFO* help);
    LRESULT OnHelpHitTest(WPARAM, LPARAM point);
    LRESULT OnCommandHelp(WPARAM, LPARAM context);
    LRESULT OnExitHelpMode(WPARAM, LPARAM);
    void OnCancelMode();
    /// Answers TTN_NEEDTEXT with the command's text behind its line feed.
    BOOL OnToolTipText(UINT id, NMHDR* header, LRESULT* result);
    /// Shows or hides the bar whose id is the command. FALSE when there is no such bar.
    BOOL OnBarCheck(UINT id);
    void OnUpdateControlBarMenu(CCmdUI* state);
    /// For the status bar's panes about lock keys.
    void OnUpdateKeyIndicator(CCmdUI* state);

    enum IdleFlags { idleMenu = 2, idleLayout = 4, idleNotify = 8 };

    CString m_strTitle;
    CRect m_rectBorder;     ///< What is kept free around the pane.
    UINT m_nIdleFlags = 0;  ///< What the next idle turn does.
    UINT m_cModalStack = 0;

private:
    void update_popup(CMenu* menu);
    void show_prompt_of_tracking();
    /// A menu stands on a command.
    [[nodiscard]] bool is_on_choice() const;
    void run_help_mode();
    /// Asks for help about what lies at a place of the screen.
    void ask_about(CPoint place);

    HMENU delayed_menu_ = nullptr;  ///< For OnUpdateFrameMenu.
    std::vector<HWND> disabled_;    ///< By BeginModalState.
    HWND last_focus_ = nullptr;     ///< Where the focus was within the frame when it lost it.
    BOOL in_layout_ = FALSE;
    CString tip_text_;  ///< Lent to the tip control.
};
