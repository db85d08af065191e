#pragma once

#include "foundation/ClassRegistration.h"

#include <type_traits>

/// Root of the object model: an object that knows its registered class and casts by it.
class ZMR_GV_API GRTTIObject {
public:
    virtual ~GRTTIObject() = default;

    /// The class of the most derived object.
    [[nodiscard]] virtual const GMetaClass* getMetaClass() const;
    [[nodiscard]] virtual const type_info& getTypeInfo_() const;
    /// The sub-object of class `type`, adjusted for several bases, or null when the object is not
    /// of that class. Each class answers for itself and then asks its bases in declaration order.
    [[nodiscard]] virtual void* cast_to_(const type_info& type) const;

    [[nodiscard]] const char* getClassName() const { return getMetaClass()->name; }
    /// True when the object's own class is `other`; derived classes do not count.
    [[nodiscard]] bool hasTheSameClassAs(const GMetaClass* other) const
    {
        return getMetaClass() == other;
    }

    static const type_info gTypeInfo_;
    static const GMetaClass metaclass_;

protected:
    GRTTIObject() = default;
    GRTTIObject(const GRTTIObject&) = default;
    GRTTIObject& operator=(const GRTTIObject&) = default;
};

namespace zmr {

/// The root sub-object of `object`, which is not null. Of a class with several bases that have a
/// root each it is the one that cast_to_ gives.
template <class T>
[[nodiscard]] inline GRTTIObject* root_of(T* object)
{
    if constexpr (std::is_convertible_v<T*, GRTTIObject*>)
        return object;
    else
        return static_cast<GRTTIObject*>(object->cast_to_(GRTTIObject::gTypeInfo_));
}

/// `object` as a `T`, or null when it is null or not a `T`.
template <class T>
[[nodiscard]] inline T* class_cast(GRTTIObject* object)
{
    return object == nullptr ? nullptr : static_cast<T*>(object->cast_to_(T::gTypeInfo_));
}
template <class T>
[[nodiscard]] inline const T* class_cast(const GRTTIObject* object)
{
    return object == nullptr ? nullptr : static_cast<const T*>(object->cast_to_(T::gTypeInfo_));
}

}  // namespace zmr
