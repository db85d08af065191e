#pragma once

#include "platform/Export.h"
#include "platform/PlatformTypes.h"

namespace zmr {

/// The handle of the module whose code reads it: one variable per module in both lanes (hidden, so
/// that no linker joins them). Null until the module's entry function stores it.
#if defined(__ELF__)
__attribute__((visibility("hidden")))
#endif
inline HINSTANCE this_module = nullptr;

/// The handle of the module that holds `address`, or null. Not for hot paths.
[[nodiscard]] ZMR_GV_API HINSTANCE module_of_address(const void* address);

}  // namespace zmr

/// A static object whose function runs when its module loads.
class ZMR_GV_API GModuleCtor {
public:
    explicit GModuleCtor(void (*function)());
};

/// A static object whose function runs when its module unloads.
class ZMR_GV_API GModuleDtor {
public:
    explicit GModuleDtor(void (*function)()) : function_(function) {}
    ~GModuleDtor();
    GModuleDtor(const GModuleDtor&) = delete;
    GModuleDtor& operator=(const GModuleDtor&) = delete;

private:
    void (*function_)();
};

/// The base layer's part of the library's entry function: stores `module` on attach (`reason` 1).
/// `process_ends` tells a detach at the end of the process from one by unloading.
ZMR_GV_API void OnDllProcessAttach(HINSTANCE module, unsigned long reason, bool process_ends);

/// Installs the function that is called when an allocation fails; returns the former one.
ZMR_GV_API void (*GSetNewHandler(void (*handler)()))();
