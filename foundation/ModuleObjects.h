#pragma once

#include "platform/Export.h"
#include "platform/PlatformTypes.h"

#include <atomic>

namespace zmr {

/// How many objects of a module's counted classes live. One for each module, made as it loads.
class ModuleObjects {
public:
    ModuleObjects() { Enroll(*this); }
    ~ModuleObjects() { Leave(*this); }
    ModuleObjects(const ModuleObjects&) = delete;
    ModuleObjects& operator=(const ModuleObjects&) = delete;

    /// How many objects of counted classes of `module` live; 0 for a module that counts none.
    [[nodiscard]] static ZMR_GV_API long Living(HINSTANCE module);

    std::atomic<long> living = 0;

private:
    static ZMR_GV_API void Enroll(ModuleObjects& objects);
    static ZMR_GV_API void Leave(ModuleObjects& objects);
};

#if defined(__ELF__)
__attribute__((visibility("hidden")))
#endif
inline ModuleObjects this_module_objects;

/// Counts the objects of `Class` for the module that this is compiled in, so that its code stays as
/// long as they live: GDynamicLinkLibrary unloads it once the last one is gone. A member of the
/// class takes no room:
///     [[no_unique_address]] zmr::CountedObject<SceneMesh> counted_;
/// Costs an atomic addition at an object's begin and end.
template <class Class>
class CountedObject {
public:
    CountedObject() noexcept { ++this_module_objects.living; }
    CountedObject(const CountedObject&) noexcept : CountedObject() {}
    CountedObject& operator=(const CountedObject&) noexcept { return *this; }
    ~CountedObject() { --this_module_objects.living; }
};

}  // namespace zmr
