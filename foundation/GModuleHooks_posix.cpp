#include "foundation/GModuleHooks.h"

#include <dlfcn.h>
#include <link.h>

// The map of a loaded object is what dlopen hands out as its handle.
HINSTANCE zmr::module_of_address(const void* address)
{
    Dl_info info{};
    void* map = nullptr;
    if (address == nullptr || ::dladdr1(address, &info, &map, RTLD_DL_LINKMAP) == 0)
        return nullptr;
    return static_cast<HINSTANCE>(map);
}
