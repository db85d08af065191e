#include "foundation/GObject.h"

#include "foundation/GPointer.h"
#include "foundation/GStreamable.h"
#include "foundation/SuspendedDestruction.h"

constinit const type_info GObject::gTypeInfo_("GObject");
const GMetaClass GObject::metaclass_(&zmr::this_module, gTypeInfo_, "GObject", nullptr, nullptr,
                                     &GRTTIObject::metaclass_);

GObject::GObject(const GObject& other)
    : GRTTIObject(other), object_flags_(other.object_flags_ & kNotTracked)
{
}

GObject& GObject::operator=(const GObject& other)
{
    enableSmartPointers((other.object_flags_ & kNotTracked) == 0);
    return *this;
}

/// Whoever knows this object forgets it: what tracks it, or those that wait to be freed.
void GObject::leave_lists()
{
    if ((object_flags_ & kWaiting) != 0)
        SuspendedDestruction::Forget(this);
    else
        release_pointers();
}

const GMetaClass* GObject::getMetaClass() const
{
    return &metaclass_;
}

const type_info& GObject::getTypeInfo_() const
{
    return gTypeInfo_;
}

void* GObject::cast_to_(const type_info& type) const
{
    if (type == gTypeInfo_)
        return const_cast<GObject*>(this);
    return GRTTIObject::cast_to_(type);
}

void GObject::enableSmartPointers(bool enable)
{
    if (enable) {
        object_flags_ = static_cast<unsigned char>(object_flags_ & ~kNotTracked);
        return;
    }
    object_flags_ |= kNotTracked;
    if ((object_flags_ & kWaiting) == 0)
        release_pointers();
}

void GObject::condemn()
{
    if (auto* streamable = zmr::class_cast<GStreamable>(this)) {
        GStreamable::destroy(streamable);
        return;
    }
    if (begin_end())
        finish_end(true);
}

void GObject::finish_end(bool may_wait)
{
    if (pointers_ != nullptr)
        release_pointers();
    if (!may_wait || !SuspendedDestruction::IsEnabled() || !SuspendedDestruction::Add(this))
        delete this;
}

void GObject::release_pointers()
{
    GPointer* pointer = pointers_;
    pointers_ = nullptr;
    while (pointer != nullptr) {
        GPointer* next = pointer->next;
        pointer->previous = nullptr;
        pointer->next = nullptr;
        pointer->target = nullptr;
        pointer->object = nullptr;
        pointer = next;
    }
}
