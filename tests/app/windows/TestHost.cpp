#include "tests/app/windows/TestHost.h"

#include <utility>

BEGIN_MESSAGE_MAP(HostFrame, CFrameWnd)
    ON_MESSAGE(HostFrame::kRun, &HostFrame::OnRun)
END_MESSAGE_MAP()

LRESULT HostFrame::WindowProc(UINT message, WPARAM wparam, LPARAM lparam)
{
    if (watch)
        watch(message, wparam);
    return CFrameWnd::WindowProc(message, wparam, lparam);
}

LRESULT HostFrame::OnRun(WPARAM, LPARAM)
{
    if (posted.empty())
        return 0;
    const std::function<void()> action = std::move(posted.front());
    posted.pop_front();
    action();
    return 0;
}

BOOL TestHost::InitInstance()
{
    m_hInstance = ::GetModuleHandle(nullptr);
    return GWinApp::InitInstance();
}

BOOL TestHost::OnIdle(LONG count)
{
    idle_counts.push_back(count);
    if (on_idle)
        on_idle(count);
    return GWinApp::OnIdle(count);
}

int TestHost::DoMessageBox(LPCTSTR text, UINT type, UINT help)
{
    if (::GetCurrentThreadId() != m_nThreadID)
        return GWinApp::DoMessageBox(text, type, help);
    boxes.emplace_back(text);
    return show_boxes ? GWinApp::DoMessageBox(text, type, help) : IDYES;
}

HostFrame& TestHost::open_frame(int show)
{
    auto* const frame = new HostFrame;  // deletes itself behind its window
    m_pMainWnd = frame;
    EXPECT_TRUE(frame->Create(nullptr, "Host", WS_OVERLAPPEDWINDOW, CRect(10, 10, 310, 210)));
    frame->ShowWindow(show);
    return *frame;
}

void TestHost::later(std::function<void()> action)
{
    frame().posted.push_back(std::move(action));
    frame().PostMessage(HostFrame::kRun);
}

void TestHost::finish_later()
{
    later([] { ::PostQuitMessage(0); });
}

int TestHost::run_loop()
{
    return Run();
}

bool TestHost::pump_until(const std::function<bool()>& condition)
{
    const ULONGLONG last = ::GetTickCount64() + 10'000;
    while (!condition()) {
        if (::GetTickCount64() >= last)
            return false;
        ::MsgWaitForMultipleObjectsEx(0, nullptr, 20, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
        MSG message;
        while (::PeekMessage(&message, nullptr, 0, 0, PM_NOREMOVE))
            if (!PumpMessage())
                break;
    }
    return true;
}

void Hosted::TearDown()
{
    if (host_.m_pMainWnd != nullptr)
        host_.m_pMainWnd->DestroyWindow();
    MSG message;
    while (::PeekMessage(&message, nullptr, 0, 0, PM_REMOVE)) {
    }
    host_.ExitInstance();
}
