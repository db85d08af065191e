#include "foundation/GPointer.h"

#include "foundation/GObject.h"

GPointer::GPointer(const GPointer& other)
{
    if (other.previous != nullptr)
        set(other.target, other.object);
}

GPointer& GPointer::operator=(const GPointer& other)
{
    if (this == &other)
        return *this;
    if (other.previous != nullptr)
        set(other.target, other.object);
    else
        set(nullptr, nullptr);
    return *this;
}

void GPointer::remove_from_list()
{
    if (previous == nullptr)
        return;
    const bool head = previous == this;
    if (head)
        object->pointers_ = next;
    else
        previous->next = next;
    if (next != nullptr)
        next->previous = head ? next : previous;
    previous = nullptr;
    next = nullptr;
}

void GPointer::set(void* new_target, GObject* new_object)
{
    remove_from_list();
    target = new_target;
    object = new_object;
    link_object();
}

void GPointer::link_object()
{
    constexpr unsigned char kNoPointers = GObject::kNotTracked | GObject::kEnding;
    if (object == nullptr || (object->object_flags_ & kNoPointers) != 0) {
        target = nullptr;
        object = nullptr;
        return;
    }
    previous = this;
    next = object->pointers_;
    if (next != nullptr)
        next->previous = this;
    object->pointers_ = this;
}
