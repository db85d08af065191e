#include "platform/Windows.h"

#include "foundation/GModuleHooks.h"

HINSTANCE zmr::module_of_address(const void* address)
{
    HMODULE module = nullptr;
    constexpr DWORD kFlags =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (address == nullptr ||
        ::GetModuleHandleExA(kFlags, static_cast<LPCSTR>(address), &module) == 0)
        return nullptr;
    return module;
}
