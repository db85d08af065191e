#include "foundation/GDynamicLinkLibrary.h"

#include "foundation/PathSyntax.h"
#include "foundation/SharedObjectFile.h"

#include <dlfcn.h>

#include <cstdio>
#include <string>

namespace {

// Without a destructor: the system keeps a library in memory as long as a thread lives that has a
// value with one.
thread_local char last_error[1024];

void note_error(const char* text)
{
    std::snprintf(last_error, sizeof last_error, "%s", text);
}

}  // namespace

void GDynamicLinkLibrary::Free(HINSTANCE library)
{
    ::dlclose(library);
}

bool GDynamicLinkLibrary::load(const char* name, int)
{
    unload();
    if (name == nullptr || *name == '\0') {  // an empty name would stand for the program itself
        note_error("no name was given");
        return false;
    }
    const std::string path = zmr::system_path(name);
    // A name without a directory is looked for by the system.
    if (path.find('/') != std::string::npos && zmr::is_cut_shared_object(path)) {
        note_error("a part of the file is missing");
        return false;
    }
    module = static_cast<HINSTANCE>(::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL));
    if (module == nullptr)
        note_error(::dlerror());
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
