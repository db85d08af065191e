#include "foundation/GMetaClass.h"

#include "foundation/GClassDictionary.h"
#include "foundation/GClassRegistry.h"
#include "foundation/GModuleHooks.h"

#include <cassert>
#include <cstdarg>

GMetaClass::GMetaClass(HINSTANCE* module, const type_info& type, const char* class_name,
                       Builder builder, Destroyer destroyer, const GMetaClass* base)
    : name(class_name), module_(module), type_(type), builder_(builder), destroyer_(destroyer)
{
    if (base != nullptr)
        bases_[base_count_++] = base;
    GClassRegistry::Get().enroll(*this);
}

GMetaClass::GMetaClass(HINSTANCE* module, const type_info& type, const char* class_name,
                       Builder builder, Destroyer destroyer, int count, ...)
    : name(class_name), module_(module), type_(type), builder_(builder), destroyer_(destroyer)
{
    assert(count >= 0 && count <= kMaxBases);
    std::va_list bases;
    va_start(bases, count);
    while (base_count_ < count && base_count_ < kMaxBases)
        bases_[base_count_++] = va_arg(bases, const GMetaClass*);
    va_end(bases);
    GClassRegistry::Get().enroll(*this);
}

GMetaClass::~GMetaClass()
{
    GClassRegistry::Get().leave(*this);
}

const GMetaClass* GMetaClass::isKindOf(const GMetaClass* other) const
{
    if (this == other)
        return other;
    for (int index = 0; index < base_count_; ++index) {
        if (bases_[index]->isKindOf(other) != nullptr)
            return other;
    }
    return nullptr;
}

GRTTIObject* GMetaClass::buildObject() const
{
    return builder_ == nullptr ? nullptr : builder_();
}

void GMetaClass::getDerivedClasses(GClassDictionary& dictionary, bool all) const
{
    for (const GMetaClass* metaclass : GClassRegistry::Get().classes()) {
        if (metaclass == nullptr || metaclass == this)
            continue;
        bool derived = all && metaclass->isKindOf(this) != nullptr;
        for (int index = 0; !derived && index < metaclass->base_count_; ++index)
            derived = metaclass->bases_[index] == this;
        if (derived)
            dictionary.insert(*metaclass);
    }
}

HINSTANCE GMetaClass::get_module() const
{
    if (module_ != nullptr && *module_ != nullptr)
        return *module_;
    return zmr::module_of_address(&type_);
}

const GMetaClass* GMetaClass::getBase(int index) const
{
    return index >= 0 && index < base_count_ ? bases_[index] : nullptr;
}
