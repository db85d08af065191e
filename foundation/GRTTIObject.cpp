#include "foundation/GRTTIObject.h"

constinit const type_info GRTTIObject::gTypeInfo_("GRTTIObject");
const GMetaClass GRTTIObject::metaclass_(&zmr::this_module, gTypeInfo_, "GRTTIObject", nullptr,
                                         nullptr, nullptr);

const GMetaClass* GRTTIObject::getMetaClass() const
{
    return &metaclass_;
}

const type_info& GRTTIObject::getTypeInfo_() const
{
    return gTypeInfo_;
}

void* GRTTIObject::cast_to_(const type_info& type) const
{
    return type == gTypeInfo_ ? const_cast<GRTTIObject*>(this) : nullptr;
}
