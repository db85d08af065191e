#include "platform/AfxState.h"

#include "platform/CException.h"
#include "platform/CWinApp.h"
#include "platform/ModuleState.h"
#include "platform/ThreadState.h"

#include <utility>

namespace zmr {

ModuleState& ModuleState::current()
{
    static constinit ModuleState only;
    return only;
}

HINSTANCE own_module()
{
    HINSTANCE module = nullptr;
    constexpr DWORD kHow =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (!::GetModuleHandleExA(kHow, reinterpret_cast<LPCSTR>(&own_module), &module))
        return nullptr;
    return module;
}

void rethrow_pending()
{
    ThreadState& state = ThreadState::current();
    if (state.pending != nullptr)
        std::rethrow_exception(std::exchange(state.pending, nullptr));
}

void keep_exception() noexcept
{
    ThreadState& state = ThreadState::current();
    try {
        try {
            throw;
        } catch (CException* failure) {
            if (state.thread == nullptr)
                throw;
            state.thread->ProcessWndProcException(failure, &state.last_message);
            failure->Delete();
        }
    } catch (...) {
        if (state.pending == nullptr)
            state.pending = std::current_exception();
    }
}

}  // namespace zmr

CWinApp* AfxGetApp()
{
    return zmr::ModuleState::current().application;
}

CWinThread* AfxGetThread()
{
    return zmr::ThreadState::current().thread;
}

CWnd* AfxGetMainWnd()
{
    CWinThread* const thread = AfxGetThread();
    return thread != nullptr ? thread->GetMainWnd() : nullptr;
}

HINSTANCE AfxGetInstanceHandle()
{
    const CWinApp* const application = AfxGetApp();
    if (application != nullptr && application->m_hInstance != nullptr)
        return application->m_hInstance;
    return ::GetModuleHandle(nullptr);
}

HINSTANCE AfxGetResourceHandle()
{
    const HINSTANCE set = zmr::ModuleState::current().resources;
    return set != nullptr ? set : AfxGetInstanceHandle();
}

void AfxSetResourceHandle(HINSTANCE module)
{
    zmr::ModuleState::current().resources = module;
}

void AfxLockTempMaps()
{
    ++zmr::ThreadState::current().temporary_locks;
}

bool AfxUnlockTempMaps()
{
    zmr::ThreadState& state = zmr::ThreadState::current();
    if (state.temporary_locks == 0 || --state.temporary_locks > 0)
        return false;
    state.drop_temporaries();
    return true;
}
