#include "platform/AfxOle.h"

#include "platform/ThreadState.h"

#include <ole2.h>

#include <utility>

BOOL AfxOleInit()
{
    bool& started = zmr::ThreadState::current().ole_started;
    if (!started)
        started = SUCCEEDED(::OleInitialize(nullptr));
    return started ? TRUE : FALSE;
}

void AfxOleTerm(BOOL just_revoke)
{
    if (!just_revoke && std::exchange(zmr::ThreadState::current().ole_started, false))
        ::OleUninitialize();
}
