#include "foundation/GDynamicLinkLibrary.h"

#include "foundation/Immortal.h"
#include "foundation/ModuleObjects.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace {

// What was let go while objects of it lived, in that order; once for each time.
constinit zmr::Immortal<std::vector<HINSTANCE>> g_waiting;

}  // namespace

GDynamicLinkLibrary::GDynamicLinkLibrary(const char* name, int flags)
{
    load(name, flags);
}

GDynamicLinkLibrary::~GDynamicLinkLibrary()
{
    unload();
}

long GDynamicLinkLibrary::UnloadWaiting()
{
    std::vector<HINSTANCE>& waiting = *g_waiting;
    for (;;) {
        const auto found = std::find_if(waiting.begin(), waiting.end(), [](HINSTANCE library) {
            return zmr::ModuleObjects::Living(library) == 0;
        });
        if (found == waiting.end())
            return static_cast<long>(waiting.size());
        const HINSTANCE library = *found;
        waiting.erase(found);
        Free(library);  // what runs as it goes may come back here
    }
}

void GDynamicLinkLibrary::unload()
{
    if (const HINSTANCE library = std::exchange(module, nullptr)) {
        if (zmr::ModuleObjects::Living(library) == 0)
            Free(library);
        else
            g_waiting->push_back(library);
    }
    UnloadWaiting();
}
