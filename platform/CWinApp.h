#pragma once

#include "platform/AfxState.h"
#include "platform/CRecentFileList.h"
#include "platform/CWinThread.h"

#include <memory>

/// The program: its first thread, its command line and its resources. A host derives from it and
/// has one object of its class with static life, whose InitInstance opens the main window;
/// AfxWinMain runs it.
class ZMR_GV_API CWinApp : public CWinThread {
    DECLARE_DYNAMIC(CWinApp)

public:
    /// The one object of the program. `name` is the application's name in captions; null takes the
    /// program file's.
    explicit CWinApp(LPCTSTR name = nullptr);
    ~CWinApp() override;

    BOOL InitInstance() override;
    int Run() override;
    int ExitInstance() override;
    BOOL OnIdle(LONG count) override;
    LRESULT ProcessWndProcException(CException* failure, const MSG* message) override;

    /// Shows a message box owned by the window that is in front, with the application's name as its
    /// caption and an icon by the kind of buttons unless `type` names one. Frames are modeless
    /// while it shows. The box's answer; 0 when it cannot be shown.
    virtual int DoMessageBox(LPCTSTR text, UINT type, UINT help);
    /// Enables or disables the in-place active windows around a modal state; the base does nothing.
    virtual void EnableModeless(BOOL enable);
    /// 1 shows the hourglass, -1 ends one showing, 0 shows it again while there is one.
    virtual void DoWaitCursor(int code);
    virtual void WinHelp(DWORD_PTR data, UINT command);

    // Handlers that a host's map may name: the main window's, where that is a frame.

    /// As CFrameWnd::OnHelp. Without a frame the main window is asked, then ID_DEFAULT_HELP.
    void OnHelp();
    void OnContextHelp();  ///< As CFrameWnd::OnContextHelp; nothing without a frame.
    void OnHelpIndex();
    void OnHelpFinder();
    void OnHelpUsing();
    /// For hosts that call it at their start: dialogs look so anyway.
    BOOL Enable3dControls() { return TRUE; }

    [[nodiscard]] HICON LoadIcon(LPCTSTR name) const;
    [[nodiscard]] HICON LoadIcon(UINT id) const { return LoadIcon(MAKEINTRESOURCE(id)); }
    [[nodiscard]] HICON LoadStandardIcon(LPCTSTR name) const { return ::LoadIcon(nullptr, name); }
    [[nodiscard]] HCURSOR LoadCursor(LPCTSTR name) const;
    [[nodiscard]] HCURSOR LoadCursor(UINT id) const { return LoadCursor(MAKEINTRESOURCE(id)); }
    [[nodiscard]] HCURSOR LoadStandardCursor(LPCTSTR name) const
    {
        return ::LoadCursor(nullptr, name);
    }

    /// Puts a file in front of the recent ones, where there is a list of them.
    virtual void AddToRecentFileList(LPCTSTR path);
    /// Opens a file that was chosen among the recent ones. FALSE when it cannot be opened: it is
    /// taken off the list then. The base opens nothing, and is TRUE.
    virtual BOOL OpenDocumentFile(LPCTSTR path);

    std::unique_ptr<CRecentFileList> m_pRecentFileList;
    UINT m_nNumPreviewPages = 0;
    HINSTANCE m_hInstance = nullptr;
    LPCTSTR m_lpCmdLine = "";  ///< Without the program's own name.
    int m_nCmdShow = SW_SHOWNORMAL;
    LPCTSTR m_pszAppName = nullptr;
    LPCTSTR m_pszExeName = nullptr;       ///< Without folder and extension.
    LPCTSTR m_pszHelpFilePath = nullptr;  ///< The program's path with the extension of help files.
    BOOL m_bHelpMode = FALSE;             ///< The next click asks for help.
    DWORD m_dwPromptContext = 0;          ///< The help context of the message box that is open.

protected:
    DECLARE_MESSAGE_MAP()

    /// ID_APP_EXIT: closes the main window.
    void OnAppExit();
    /// ID_FILE_MRU_FILE1 and the fifteen commands behind it: the recent files.
    void OnUpdateRecentFileMenu(CCmdUI* state);
    void OnOpenRecentFile(UINT id);

private:
    CString app_name_;
    CString exe_name_;
    CString help_path_;
    int wait_cursors_ = 0;
    HCURSOR cursor_before_wait_ = nullptr;
};

/// Runs the program's CWinApp: InitInstance, Run and ExitInstance. What WinMain returns.
ZMR_GV_API int AfxWinMain(HINSTANCE instance, HINSTANCE previous, LPSTR command_line, int show);
/// A message box by the application's DoMessageBox, or a plain one when there is none.
ZMR_GV_API int AfxMessageBox(LPCTSTR text, UINT type = MB_OK, UINT help = 0);
ZMR_GV_API int AfxMessageBox(UINT text_id, UINT type = MB_OK, UINT help = static_cast<UINT>(-1));

namespace zmr {

/// The window that a modal window of this thread is to be owned by: `wanted`, else the main
/// window's last active popup, brought to the top level. In `disabled`, where given, the outermost
/// window that must be disabled meanwhile by who shows it, or null.
[[nodiscard]] ZMR_GV_API HWND safe_owner(HWND wanted, HWND* disabled = nullptr);

}  // namespace zmr
