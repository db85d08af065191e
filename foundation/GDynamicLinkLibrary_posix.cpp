#include "foundation/GDynamicLinkLibrary.h"

#include "foundation/PathSyntax.h"

#include <dlfcn.h>

namespace {

thread_local GString last_error;

}  // namespace

void GDynamicLinkLibrary::Free(HINSTANCE library)
{
    ::dlclose(library);
}

bool GDynamicLinkLibrary::load(const char* name, int)
{
    unload();
    if (name == nullptr || *name == '\0') {  // an empty name would stand for the program itself
        last_error = "no name was given";
        return false;
    }
    module =
        static_cast<HINSTANCE>(::dlopen(zmr::system_path(name).c_str(), RTLD_NOW | RTLD_LOCAL));
    if (module == nullptr)
        last_error = ::dlerror();
    return module != nullptr;
}

void* GDynamicLinkLibrary::find_symbol(const char* name) const
{
    return module == nullptr || name == nullptr ? nullptr : ::dlsym(module, name);
}

GString GDynamicLinkLibrary::LastError()
{
    return last_error;
}
