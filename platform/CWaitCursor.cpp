#include "platform/CWaitCursor.h"

#include "platform/CWinApp.h"

namespace {

void tell_application(int code)
{
    if (CWinApp* const application = AfxGetApp(); application != nullptr)
        application->DoWaitCursor(code);
}

}  // namespace

CWaitCursor::CWaitCursor()
{
    tell_application(1);
}

CWaitCursor::~CWaitCursor()
{
    tell_application(-1);
}

void CWaitCursor::Restore()
{
    tell_application(0);
}
