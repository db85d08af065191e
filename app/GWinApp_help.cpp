#include "app/GWinApp.h"

#include "platform/AfxState.h"
#include "platform/CFrameWnd.h"
#include "platform/CWaitCursor.h"
#include "platform/PlatformIds.h"
#include "platform/PlatformMessages.h"
#include "settings/GHelp.h"
#include "settings/HelpCommands.h"

namespace {

/// Ends the menus, captures and modes of the window and of all below it.
void cancel_modes(HWND window)
{
    ::SendMessageA(window, WM_CANCELMODE, 0, 0);
    CWnd::SendMessageToDescendants(window, WM_CANCELMODE, 0, 0, TRUE, FALSE);
}

void cancel_modes_for_help(CWnd& main_window)
{
    if (main_window.IsFrameWnd())
        static_cast<CFrameWnd&>(main_window).ExitHelpMode();
    cancel_modes(main_window.m_hWnd);
    cancel_modes(CWnd::GetSafeHandle(main_window.GetTopLevelParent()));
    if (const HWND capture = ::GetCapture())
        ::SendMessageA(capture, WM_CANCELMODE, 0, 0);
}

}  // namespace

void GWinApp::WinHelpA(DWORD_PTR data, UINT command)
{
    command = zmr::help_command_for(data, command);
    if (!GHelp::UseHTML()) {
        CWinApp::WinHelpA(data, command);
        return;
    }
    const unsigned int translated = GHelp::TranslateWinHelpCmdToHTMLHelpCmd(command);
    if (translated == zmr::kNoHelpCommand)
        return;

    CWnd* main_window = AfxGetMainWnd();
    if (CWnd::GetSafeHandle(main_window) == nullptr)
        main_window = nullptr;
    m_bHelpMode = FALSE;
    m_dwPromptContext = 0;
    if (main_window != nullptr)
        main_window->PostMessage(WM_KICKIDLE);
    GFile file = help_file_for_window(GHelp::PointedWindow());
    file.redirect();
    if (!show_help(main_window, file, translated, data))
        AfxMessageBox(AFX_IDP_FAILED_TO_LAUNCH_HELP);
    GHelp::PointedWindow(nullptr);
}

bool GWinApp::show_help(CWnd* main_window, const GFile& file, unsigned int command, DWORD_PTR data)
{
    if (file.is_empty())
        return false;
    const CWaitCursor wait;
    if (main_window == nullptr)
        return GHelp::CallHelp(nullptr, file, command, data);
    cancel_modes_for_help(*main_window);
    const HWND top = CWnd::GetSafeHandle(main_window->GetTopLevelParent());
    return GHelp::CallHelp(top, file, command, data);
}

GFile GWinApp::help_file_for_window(HWND)
{
    GFile file(m_pszHelpFilePath);
    if (GHelp::UseHTML())
        file.replace_extension("chm");
    return file;
}
