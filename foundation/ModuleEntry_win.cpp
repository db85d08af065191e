#include "platform/AfxResources.h"
#include "platform/Windows.h"

#include "foundation/GModuleHooks.h"

namespace {

AFX_EXTENSION_MODULE extension{};

BOOL attach(HINSTANCE module)
{
    OnDllProcessAttach(module, DLL_PROCESS_ATTACH, false);
    if (!AfxInitExtensionModule(extension, module))
        return FALSE;
    static_cast<void>(new CDynLinkLibrary(extension));  // the chain's
    zmr::this_module = module;
    return TRUE;
}

}  // namespace

// The entry function of the dynamic library; programs that take the folders' objects in directly
// do without it. It runs behind the library's static constructors and in front of its destructors.
extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved)
{
    if (reason == DLL_PROCESS_ATTACH)
        return attach(module);
    // At the process's end other threads have been stopped wherever they were, with their locks.
    if (reason == DLL_PROCESS_DETACH && reserved == nullptr) {
        AfxTermExtensionModule(extension);
        OnDllProcessAttach(module, DLL_PROCESS_DETACH, false);
    }
    return TRUE;
}
