#include "tests/platform/windows/TestApplication.h"

#include <utility>

namespace {

TestApplication only;

}  // namespace

TestApplication& the_application()
{
    return only;
}

int TestApplication::DoMessageBox(LPCTSTR text, UINT, UINT)
{
    boxes_.emplace_back(text);
    return box_answer;
}

std::vector<std::string> TestApplication::take_boxes()
{
    return std::exchange(boxes_, {});
}

bool TestApplication::pump_until(const std::function<bool()>& condition)
{
    const ULONGLONG last = ::GetTickCount64() + 10'000;
    while (!condition()) {
        const ULONGLONG now = ::GetTickCount64();
        if (now >= last)
            return false;
        ::MsgWaitForMultipleObjectsEx(0, nullptr, 20, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
        pump_all();
    }
    return true;
}

void TestApplication::pump_all()
{
    MSG message;
    while (::PeekMessage(&message, nullptr, 0, 0, PM_NOREMOVE))
        if (!PumpMessage())
            return;
}

void TestApplication::idle()
{
    for (LONG count = 0; OnIdle(count); ++count) {
    }
}
