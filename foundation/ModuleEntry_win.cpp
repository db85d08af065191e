#include "platform/Windows.h"

#include "foundation/GModuleHooks.h"

// The entry function of the dynamic library; programs that take the folders' objects in directly
// do without it.
extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved)
{
    OnDllProcessAttach(module, reason, reserved != nullptr);
    return TRUE;
}
