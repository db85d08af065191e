#include "foundation/ModuleObjects.h"

#include "foundation/GModuleHooks.h"
#include "foundation/Immortal.h"

#include <vector>

namespace {

// Changed only while a module loads or unloads, in one thread.
constinit zmr::Immortal<std::vector<zmr::ModuleObjects*>> g_modules;

}  // namespace

namespace zmr {

long ModuleObjects::Living(HINSTANCE module)
{
    long living = 0;
    for (const ModuleObjects* objects : *g_modules) {
        if (module_of_address(objects) == module)
            living += objects->living;
    }
    return living;
}

void ModuleObjects::Enroll(ModuleObjects& objects)
{
    g_modules->push_back(&objects);
}

void ModuleObjects::Leave(ModuleObjects& objects)
{
    std::erase(*g_modules, &objects);
    if (g_modules->empty())
        g_modules->shrink_to_fit();  // nothing stays behind when the library itself leaves
}

}  // namespace zmr
