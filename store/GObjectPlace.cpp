#include "store/GObjectPlace.h"

#include "store/GObjectFilePlacement.h"

namespace {

GObjectPlacement* copy_of(const GObjectPlacement* placement)
{
    if (placement == nullptr)
        return nullptr;
    return zmr::class_cast<GObjectPlacement>(
        const_cast<GObjectPlacement*>(placement)->clone(true));  // `clone` only reads
}

}  // namespace

GObjectPlace::GObjectPlace(const char* file, bool recognise, const GObjectFileFormat* format)
    : placement(new GObjectFilePlacement(file, recognise, format))
{
}

GObjectPlace::GObjectPlace(const GObjectPlace& other) : placement(copy_of(other.placement)) {}

GObjectPlace& GObjectPlace::operator=(const GObjectPlace& other)
{
    if (this != &other)
        *this = copy_of(other.placement);
    return *this;
}

GObjectPlace& GObjectPlace::operator=(GObjectPlacement* new_placement)
{
    if (placement != new_placement)
        GStreamable::Destroy(placement);
    placement = new_placement;
    return *this;
}

GObjectPlace::~GObjectPlace()
{
    GStreamable::Destroy(placement);
}

GObject* GObjectPlace::get(bool shared) const
{
    if (placement == nullptr)
        return nullptr;
    if (shared) {
        if (GObject* const object = placement->get_shared_object())
            return object;
    }
    if (!placement->place_exists())
        placement->change_not_exists();
    return placement->get_object(shared);
}

bool GObjectPlace::put(GObject* object, bool shared) const
{
    return placement != nullptr && placement->put_object(object, shared);
}

const GMetaClass* GObjectPlace::get_class() const
{
    return placement == nullptr ? nullptr : placement->get_object_class_id();
}

bool GObjectPlace::remove() const
{
    return placement != nullptr && placement->remove_object();
}

bool GObjectPlace::copy_to(const GObjectPlace& to) const
{
    if (placement == nullptr || to.placement == nullptr)
        return false;
    bool copied = false;
    if (placement->copy_object_from_to(*placement, *to.placement, copied) ||
        to.placement->copy_object_from_to(*placement, *to.placement, copied))
        return copied;
    GObject* const object = placement->get_object(false);
    copied = object != nullptr && to.placement->put_object(object, false);
    GStreamable::Destroy(zmr::class_cast<GStreamable>(object));
    return copied;
}

bool GObjectPlace::operator==(const GObjectPlace& other) const
{
    if (placement == nullptr || other.placement == nullptr)
        return placement == other.placement;
    return placement->hasTheSameClassAs(other.placement->getMetaClass()) &&
           placement->compare_items(*other.placement);
}
