#include "platform/CWinApp.h"

#include "platform/AfxResources.h"
#include "platform/CFrameWnd.h"
#include "platform/CUserException.h"
#include "platform/CWnd.h"
#include "platform/ModuleState.h"
#include "platform/PlatformIds.h"
#include "platform/SystemMessageBox.h"
#include "platform/ThreadState.h"
#include "platform/WideText.h"

#include <string>

IMPLEMENT_DYNAMIC(CWinApp, CWinThread)

BEGIN_MESSAGE_MAP(CWinApp, CCmdTarget)
    ON_COMMAND(ID_APP_EXIT, &CWinApp::OnAppExit)
    ON_COMMAND_RANGE(ID_FILE_MRU_FILE1, ID_FILE_MRU_FILE16, &CWinApp::OnOpenRecentFile)
    ON_UPDATE_COMMAND_UI(ID_FILE_MRU_FILE1, &CWinApp::OnUpdateRecentFileMenu)
END_MESSAGE_MAP()

namespace {

/// The program file's path, in UTF-8.
std::string program_path()
{
    std::wstring wide(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length =
            ::GetModuleFileNameW(nullptr, wide.data(), static_cast<DWORD>(wide.size()));
        if (length < wide.size()) {
            wide.resize(length);
            return zmr::to_utf8(wide);
        }
        wide.resize(wide.size() * 2);
    }
}

int report_in_a_box(const std::string& text, UINT type, UINT help)
{
    return AfxMessageBox(text.c_str(), type, help);
}

/// The icon that goes with the kind of buttons, where `type` names none.
UINT with_icon(UINT type)
{
    if ((type & MB_ICONMASK) != 0)
        return type;
    switch (type & MB_TYPEMASK) {
        case MB_OK:
        case MB_OKCANCEL:
            return type | MB_ICONEXCLAMATION;
        case MB_YESNO:
        case MB_YESNOCANCEL:
            return type | MB_ICONQUESTION;
        default:
            return type;
    }
}

}  // namespace

CWinApp::CWinApp(LPCTSTR name) : app_name_(name)
{
    std::string path = program_path();
    const std::size_t extension = path.find_last_of("./\\");
    if (extension != std::string::npos && path[extension] == '.')
        path.resize(extension);
    exe_name_ = CString(std::string_view(path).substr(path.find_last_of("/\\") + 1));
    help_path_ = CString(path + ".hlp");
    if (app_name_.IsEmpty())
        app_name_ = exe_name_;
    m_pszAppName = app_name_;
    m_pszExeName = exe_name_;
    m_pszHelpFilePath = help_path_;

    m_bAutoDelete = FALSE;
    m_nThreadID = ::GetCurrentThreadId();
    zmr::ModuleState::current().application = this;
    zmr::ThreadState::current().thread = this;
    zmr::set_failure_reporter(&report_in_a_box);
}

CWinApp::~CWinApp()
{
    zmr::set_failure_reporter(nullptr);
    zmr::ModuleState& state = zmr::ModuleState::current();
    if (state.application == this)
        state.application = nullptr;
}

BOOL CWinApp::InitInstance()
{
    return TRUE;
}

int CWinApp::Run()
{
    if (m_pMainWnd == nullptr)
        ::PostQuitMessage(0);  // a program without a window is over
    return CWinThread::Run();
}

int CWinApp::ExitInstance()
{
    return CWinThread::ExitInstance();
}

BOOL CWinApp::OnIdle(LONG count)
{
    return CWinThread::OnIdle(count);
}

LRESULT CWinApp::ProcessWndProcException(CException* failure, const MSG* message)
{
    return CWinThread::ProcessWndProcException(failure, message);
}

int CWinApp::DoMessageBox(LPCTSTR text, UINT type, UINT help)
{
    EnableModeless(FALSE);
    HWND disabled = nullptr;
    const HWND owner = zmr::safe_owner(nullptr, &disabled);
    const DWORD former_context = m_dwPromptContext;
    if (help != 0)
        m_dwPromptContext = HID_BASE_PROMPT + help;
    const int answer = zmr::system_message_box(owner, text, m_pszAppName, with_icon(type));
    m_dwPromptContext = former_context;
    if (disabled != nullptr)
        ::EnableWindow(disabled, TRUE);
    EnableModeless(TRUE);
    return answer;
}

void CWinApp::EnableModeless(BOOL) {}

void CWinApp::DoWaitCursor(int code)
{
    wait_cursors_ += code;
    if (wait_cursors_ > 0) {
        const HCURSOR before = ::SetCursor(::LoadCursor(nullptr, IDC_WAIT));
        if (code > 0 && wait_cursors_ == 1)
            cursor_before_wait_ = before;
    } else {
        wait_cursors_ = 0;
        if (code < 0)
            ::SetCursor(cursor_before_wait_);
    }
}

void CWinApp::WinHelp(DWORD_PTR data, UINT command)
{
    CWnd* const main_window = GetMainWnd();
    const HWND window = main_window != nullptr ? main_window->m_hWnd : nullptr;
    if (!::WinHelp(window, m_pszHelpFilePath, command, data))
        AfxMessageBox(AFX_IDP_FAILED_TO_LAUNCH_HELP);
}

void CWinApp::OnHelp()
{
    CWnd* const main_window = GetMainWnd();
    if (CFrameWnd* const frame = DYNAMIC_DOWNCAST(CFrameWnd, main_window))
        frame->OnHelp();
    else if (main_window != nullptr && main_window->SendMessage(WM_COMMANDHELP) == 0)
        main_window->SendMessage(WM_COMMAND, ID_DEFAULT_HELP);
}

void CWinApp::OnContextHelp()
{
    if (CFrameWnd* const frame = DYNAMIC_DOWNCAST(CFrameWnd, GetMainWnd()))
        frame->OnContextHelp();
}

void CWinApp::OnHelpIndex()
{
    WinHelp(0, HELP_INDEX);
}

void CWinApp::OnHelpFinder()
{
    WinHelp(0, HELP_FINDER);
}

void CWinApp::OnHelpUsing()
{
    WinHelp(0, HELP_HELPONHELP);
}

HICON CWinApp::LoadIcon(LPCTSTR name) const
{
    return ::LoadIcon(AfxFindResourceHandle(name, RT_GROUP_ICON), name);
}

HCURSOR CWinApp::LoadCursor(LPCTSTR name) const
{
    return ::LoadCursor(AfxFindResourceHandle(name, RT_GROUP_CURSOR), name);
}

void CWinApp::OnAppExit()
{
    m_pMainWnd->SendMessage(WM_CLOSE);
}

int AfxWinMain(HINSTANCE instance, HINSTANCE, LPSTR command_line, int show)
{
    CWinApp* const application = AfxGetApp();
    if (application == nullptr)
        return -1;
    application->m_hInstance = instance;
    application->m_lpCmdLine = command_line;
    application->m_nCmdShow = show;
    zmr::ThreadState::current().thread = application;
    if (application->InitInstance())
        return application->Run();
    if (application->m_pMainWnd != nullptr)
        application->m_pMainWnd->DestroyWindow();
    return application->ExitInstance();
}

int AfxMessageBox(LPCTSTR text, UINT type, UINT help)
{
    if (CWinApp* const application = AfxGetApp())
        return application->DoMessageBox(text, type, help);
    return zmr::system_message_box(nullptr, text, nullptr, with_icon(type));
}

int AfxMessageBox(UINT text_id, UINT type, UINT help)
{
    CString text;
    text.LoadString(text_id);
    return AfxMessageBox(text, type, help == static_cast<UINT>(-1) ? text_id : help);
}

HWND zmr::safe_owner(HWND wanted, HWND* disabled)
{
    HWND owner = wanted;
    if (owner == nullptr) {
        CWnd* const main_window = AfxGetMainWnd();
        owner = main_window != nullptr ? main_window->m_hWnd : nullptr;
        if (owner != nullptr)
            owner = ::GetLastActivePopup(owner);
    }
    while (owner != nullptr && (::GetWindowLongPtr(owner, GWL_STYLE) & WS_CHILD) != 0)
        owner = ::GetParent(owner);
    if (disabled == nullptr)
        return owner;
    // The top level window of the owner takes input again only after the box: some system would
    // disable the owner alone.
    *disabled = nullptr;
    HWND top = owner;
    while (top != nullptr && ::GetWindow(top, GW_OWNER) != nullptr)
        top = ::GetWindow(top, GW_OWNER);
    if (top != nullptr && top != owner && ::IsWindowEnabled(top)) {
        ::EnableWindow(top, FALSE);
        *disabled = top;
    }
    return owner;
}
