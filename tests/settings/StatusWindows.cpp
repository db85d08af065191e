#include "tests/settings/StatusWindows.h"

#include "platform/CPaintDC.h"
#include "platform/CRect.h"

BEGIN_MESSAGE_MAP(StatusOwner, CWnd)
    ON_MESSAGE(MsgBox::kUpdateMessage, &StatusOwner::OnStatus)
END_MESSAGE_MAP()

BEGIN_MESSAGE_MAP(StatusPane, CWnd)
    ON_MESSAGE(WM_SETTEXT, &StatusPane::OnSetText)
    ON_WM_PAINT()
END_MESSAGE_MAP()

bool StatusOwner::open()
{
    return CreateEx(0, AfxRegisterWndClass(0), "Status", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 40, 40,
                    400, 300, nullptr, nullptr) != 0;
}

LRESULT StatusOwner::OnStatus(WPARAM line, LPARAM)
{
    told.push_back(static_cast<unsigned>(line));
    return answers ? MsgBox::ProseedUpdateSBMessage(static_cast<unsigned>(line)) : 0;
}

bool StatusPane::open(CWnd* parent, int top)
{
    const CRect place(0, top, 200, top + 20);
    return Create(nullptr, "", WS_CHILD | WS_VISIBLE, place, parent, 100) != 0;
}

std::string StatusPane::text() const
{
    char text[2048] = "";
    ::GetWindowTextA(m_hWnd, text, sizeof text);
    return text;
}

LRESULT StatusPane::OnSetText(WPARAM, LPARAM text)
{
    texts.emplace_back(reinterpret_cast<const char*>(text));
    const LRESULT result = Default();
    Invalidate();
    return result;
}

void StatusPane::OnPaint()
{
    const CPaintDC dc(this);
    ++paints;
}

bool pump_until(const std::function<bool()>& condition, ULONGLONG limit_ms)
{
    const ULONGLONG last = ::GetTickCount64() + limit_ms;
    while (!condition()) {
        if (::GetTickCount64() >= last)
            return false;
        ::MsgWaitForMultipleObjectsEx(0, nullptr, 5, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
        pump_all();
    }
    return true;
}

void pump_all()
{
    MSG message;
    while (::PeekMessage(&message, nullptr, 0, 0, PM_REMOVE)) {
        ::TranslateMessage(&message);
        ::DispatchMessage(&message);
    }
}
