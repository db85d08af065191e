#include "platform/CWnd.h"

#include "platform/AfxState.h"
#include "platform/CWinThread.h"
#include "platform/ThreadState.h"
#include "platform/WindowProcedure.h"

#include <utility>

IMPLEMENT_DYNCREATE(CWnd, CCmdTarget)

CWnd::~CWnd()
{
    if (m_hWnd != nullptr)
        CWnd::DestroyWindow();
}

BOOL CWnd::CreateEx(DWORD ex_style, LPCTSTR class_name, LPCTSTR title, DWORD style, int x, int y,
                    int width, int height, HWND parent, HMENU id_or_menu, LPVOID parameter)
{
    CREATESTRUCT creation{};
    creation.dwExStyle = ex_style;
    creation.lpszClass = class_name;
    creation.lpszName = title;
    creation.style = static_cast<LONG>(style);
    creation.x = x;
    creation.y = y;
    creation.cx = width;
    creation.cy = height;
    creation.hwndParent = parent;
    creation.hMenu = id_or_menu;
    creation.hInstance = AfxGetInstanceHandle();
    creation.lpCreateParams = parameter;
    if (m_hWnd != nullptr)
        return FALSE;
    if (!PreCreateWindow(creation)) {
        PostNcDestroy();
        return FALSE;
    }
    if (creation.lpszClass == nullptr)
        creation.lpszClass = zmr::default_window_class();

    AfxHookWindowCreate(this);
    const HWND made = ::CreateWindowEx(creation.dwExStyle, creation.lpszClass, creation.lpszName,
                                       static_cast<DWORD>(creation.style), creation.x, creation.y,
                                       creation.cx, creation.cy, creation.hwndParent,
                                       creation.hMenu, creation.hInstance, creation.lpCreateParams);
    if (!AfxUnhookWindowCreate())
        PostNcDestroy();  // the system refused before there was a window
    zmr::rethrow_pending();
    return made != nullptr;
}

BOOL CWnd::CreateEx(DWORD ex_style, LPCTSTR class_name, LPCTSTR title, DWORD style,
                    const RECT& rect, CWnd* parent, UINT id, LPVOID parameter)
{
    return CreateEx(ex_style, class_name, title, style, rect.left, rect.top, rect.right - rect.left,
                    rect.bottom - rect.top, parent != nullptr ? parent->m_hWnd : nullptr,
                    reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), parameter);
}

BOOL CWnd::Create(LPCTSTR class_name, LPCTSTR title, DWORD style, const RECT& rect, CWnd* parent,
                  UINT id, LPVOID parameter)
{
    return CreateEx(0, class_name, title, style | WS_CHILD, rect, parent, id, parameter);
}

BOOL CWnd::PreCreateWindow(CREATESTRUCT&)
{
    return TRUE;
}

BOOL CWnd::DestroyWindow()
{
    if (m_hWnd == nullptr)
        return FALSE;
    const HWND window = m_hWnd;
    // An object that only stands for a window has no part in its messages.
    const bool stands_for_it =
        reinterpret_cast<WNDPROC>(::GetWindowLongPtr(window, GWLP_WNDPROC)) != &AfxWndProc;
    const BOOL done = ::DestroyWindow(window);
    if (stands_for_it && m_hWnd == window)
        Detach();
    return done;
}

BOOL CWnd::SubclassWindow(HWND window)
{
    if (m_hWnd != nullptr || window == nullptr || FromHandlePermanent(window) != nullptr)
        return FALSE;
    DWORD process = 0;
    ::GetWindowThreadProcessId(window, &process);
    if (process != ::GetCurrentProcessId() || !Attach(window))
        return FALSE;
    PreSubclassWindow();
    const auto former = reinterpret_cast<WNDPROC>(
        ::SetWindowLongPtr(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&AfxWndProc)));
    if (former != &AfxWndProc)
        former_procedure_ = former;
    return TRUE;
}

BOOL CWnd::SubclassDlgItem(UINT id, CWnd* parent)
{
    return SubclassWindow(::GetDlgItem(parent->m_hWnd, static_cast<int>(id)));
}

HWND CWnd::UnsubclassWindow()
{
    if (m_hWnd != nullptr && former_procedure_ != nullptr)
        ::SetWindowLongPtr(m_hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(former_procedure_));
    former_procedure_ = nullptr;
    return Detach();
}

BOOL CWnd::Attach(HWND window)
{
    if (window == nullptr || m_hWnd != nullptr)
        return FALSE;
    zmr::ThreadState::current().windows.set_permanent(window, this);
    m_hWnd = window;
    return TRUE;
}

HWND CWnd::Detach()
{
    const HWND window = std::exchange(m_hWnd, nullptr);
    if (window != nullptr)
        zmr::ThreadState::current().windows.remove_permanent(window);
    return window;
}

CWnd* CWnd::FromHandle(HWND window)
{
    return zmr::ThreadState::current().windows.from_handle<&CWnd::m_hWnd>(window);
}

CWnd* CWnd::FromHandlePermanent(HWND window)
{
    return zmr::ThreadState::current().windows.find_permanent(window);
}

void CWnd::OnNcDestroy()
{
    // The end of a thread's main window is the end of its message loop.
    if (CWinThread* const thread = AfxGetThread(); thread != nullptr) {
        if (thread->m_pMainWnd == this) {
            thread->m_pMainWnd = nullptr;
            if (thread->m_pActiveWnd == this)
                thread->m_pActiveWnd = nullptr;
            ::PostQuitMessage(0);
        } else if (thread->m_pActiveWnd == this) {
            thread->m_pActiveWnd = nullptr;
        }
    }
    if (m_nFlags & WF_TOOLTIPS)
        EnableToolTips(FALSE);

    const HWND window = m_hWnd;
    Default();
    if (m_hWnd == window) {
        if (former_procedure_ != nullptr)
            ::SetWindowLongPtr(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(former_procedure_));
        Detach();
    }
    former_procedure_ = nullptr;
    owner_ = nullptr;
    PostNcDestroy();
}
