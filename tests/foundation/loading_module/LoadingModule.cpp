#include "foundation/GStreamable.h"

// A module as a plug-in's author writes it: one class, and one function by name.

#if defined(_WIN32)
#define LOADING_MODULE_EXPORT __declspec(dllexport)
#else
#define LOADING_MODULE_EXPORT __attribute__((visibility("default")))
#endif

namespace {

class LoadedThing : public GStreamable {
    G_DECLARE_CLASS(LoadedThing)
};

G_DEFINE_CLASS(LoadedThing, GStreamable);

}  // namespace

extern "C" LOADING_MODULE_EXPORT int loading_module_number();

int loading_module_number()
{
    return 4711;
}
