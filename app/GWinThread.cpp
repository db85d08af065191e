#include "app/GWinThread.h"

#include "app/GWinApp.h"
#include "app/ThreadBody.h"
#include "platform/CException.h"
#include "platform/FaultGuard.h"
#include "platform/FaultTranslation.h"

#include "foundation/GException.h"
#include "settings/MessageFlags.h"
#include "settings/MsgBox.h"

#include <objbase.h>

IMPLEMENT_DYNCREATE(GWinThread, CWinThread)

BEGIN_MESSAGE_MAP(GWinThread, CWinThread)
END_MESSAGE_MAP()

class GWinThread::Surroundings final : public zmr::ThreadSurroundings {
public:
    explicit Surroundings(GWinThread& thread) : thread_(thread) {}

    void translate_faults() override { AfxSetFaultTranslator(&GWinApp::SeTranslatorFunc); }
    void signal_start() override { thread_.started_.SetEvent(); }
    void join_services() override { joined_ = SUCCEEDED(::CoInitialize(nullptr)); }
    void leave_services() override
    {
        if (joined_)
            ::CoUninitialize();
    }
    void show(const GLibraryException& failure) override
    {
        MsgBox::message_box(failure.message_text.text, zmr::kMessageReport);
    }
    void report(CException& failure) override { failure.ReportError(); }

private:
    GWinThread& thread_;
    bool joined_ = false;
};

GWinThread::GWinThread() = default;

GWinThread::GWinThread(unsigned (*function)(void*), void* parameter, unsigned long flags,
                       int priority, unsigned int stack_size, SECURITY_ATTRIBUTES* security)
    : function_(function)
{
    m_pThreadParams = parameter;
    if (!CreateThread(flags | CREATE_SUSPENDED, stack_size, security)) {
        started_.SetEvent();  // nobody waits for what will not come
        return;
    }
    SetThreadPriority(priority);
    if ((flags & CREATE_SUSPENDED) == 0)
        ResumeThread();  // from here on the object may be gone
}

BOOL GWinThread::InitInstance()
{
    return TRUE;
}

int GWinThread::Run()
{
    if (function_ == nullptr) {
        started_.SetEvent();
        return static_cast<int>(zmr::kThreadFailed);
    }
    Surroundings surroundings(*this);
    const auto guarded_function = [](void* of) {
        const auto* const thread = static_cast<const GWinThread*>(of);
        return zmr::guarded([thread] { return thread->function_(thread->m_pThreadParams); });
    };
    return static_cast<int>(zmr::run_thread_body(guarded_function, this, surroundings));
}

int GWinThread::ExitInstance()
{
    started_.SetEvent();  // an heir may have refused to start
    return CWinThread::ExitInstance();
}
