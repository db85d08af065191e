#pragma once

#include "foundation/type_info.h"
#include "platform/Export.h"
#include "platform/PlatformTypes.h"

#include <cstdint>

class GClassDictionary;
class GRTTIObject;

/// One registered class: its name, how it is built, and its bases. Exactly one static object per
/// class, made by G_DEFINE_CLASS; it registers itself at static construction and leaves when its
/// module unloads. Registration runs while a module loads, in one thread; look-ups may run in any
/// thread while no module loads or unloads.
class ZMR_GV_API GMetaClass {
public:
    using Builder = GRTTIObject* (*)();
    using Destroyer = void (*)(GRTTIObject*);

    /// `module` is the address of the variable that will hold the module's handle (it may be null
    /// or hold null: then the module is found by the address of `type`). `builder` and `destroyer`
    /// are null for a class that can't be built by name. `base` is null for the root. Bases may not
    /// be constructed yet: only addresses are stored.
    GMetaClass(HINSTANCE* module, const type_info& type, const char* name, Builder builder,
               Destroyer destroyer, const GMetaClass* base);
    /// The same with `count` bases, at most 8, each passed as exactly a `const GMetaClass*`.
    GMetaClass(HINSTANCE* module, const type_info& type, const char* name, Builder builder,
               Destroyer destroyer, int count, ...);
    ~GMetaClass();
    GMetaClass(const GMetaClass&) = delete;
    GMetaClass& operator=(const GMetaClass&) = delete;

    /// The registered class of that name, or null (also for a null name). One hash probe. Of
    /// several classes with one name the one registered last answers.
    [[nodiscard]] static const GMetaClass* FindByName(const char* name);
    /// The given class when this class is it or derives from it through any base; otherwise null.
    [[nodiscard]] const GMetaClass* isKindOf(const GMetaClass* other) const;
    /// A new object of the class, owned by the caller; null when the class has no builder.
    [[nodiscard]] GRTTIObject* buildObject() const;
    [[nodiscard]] Builder getBuilder() const { return builder_; }
    [[nodiscard]] Destroyer getDestroyer() const { return destroyer_; }
    [[nodiscard]] const type_info& getTypeInfo() const { return type_; }
    /// Inserts the classes derived from this one, itself not included: all descendants with `all`,
    /// else only those that name it as a base.
    void getDerivedClasses(GClassDictionary& dictionary, bool all) const;
    /// The handle of the module that the class lives in; null when the system can't tell.
    [[nodiscard]] HINSTANCE get_module() const;
    [[nodiscard]] int getBaseCount() const { return base_count_; }
    /// Base number `index` in declaration order; null outside the range.
    [[nodiscard]] const GMetaClass* getBase(int index) const;
    /// A small number, unique among the classes of the process that are registered now.
    [[nodiscard]] std::uint32_t ordinal() const { return ordinal_; }

    const char* const name;  ///< The name that stands in files.

private:
    friend class GClassRegistry;
    static constexpr int kMaxBases = 8;

    HINSTANCE* module_;
    const type_info& type_;
    Builder builder_;
    Destroyer destroyer_;
    const GMetaClass* bases_[kMaxBases] = {};
    int base_count_ = 0;
    // The registry's part of an object that is otherwise constant.
    mutable std::uint32_t ordinal_ = 0;
    mutable const GMetaClass* shadowed_ = nullptr;  ///< A class of the same name registered before.
};
