#pragma once

#include "foundation/GMetaClass.h"
#include "foundation/GModuleHooks.h"

#include <type_traits>

// The pair of macros by which a class joins the object model. In the class:
//     class GTimeMark : public GStreamable {
//         G_DECLARE_CLASS(GTimeMark)
// and in its source, with all its registered bases in the order of their declaration:
//     G_DEFINE_CLASS(GTimeMark, GStreamable)
// Instances are built by name with the constructor from GStreamable::StreamableInit if the class
// has one (for objects about to be read, which leaves unset what `read` fills), else with the
// default constructor, protected ones included. A class registers without a builder when it is
// abstract, when it has neither constructor, and when it says so by
//     using NotBuiltByName = GTimeMark;
// which its derived classes do not inherit. The destructor may be protected.

namespace zmr {

/// Asks each base in declaration order for the sub-object of class `type`.
template <class Class, class... Bases>
[[nodiscard]] inline void* cast_through_bases(const Class* object, const type_info& type)
{
    void* found = nullptr;
    static_cast<void>(((found = static_cast<const Bases*>(object)->Bases::cast_to_(type)) || ...));
    return found;
}

template <class Class, class... Bases>
[[nodiscard]] inline GMetaClass make_metaclass(const char* name)
{
    constexpr bool built = Class::template BuildsByName_<Class>();
    return GMetaClass(&this_module, Class::gTypeInfo_, name,
                      built ? &Class::ClassBuilder_ : nullptr,
                      built ? &Class::ClassDestroyer_ : nullptr, static_cast<int>(sizeof...(Bases)),
                      static_cast<const GMetaClass*>(&Bases::metaclass_)...);
}

}  // namespace zmr

#define G_DECLARE_CLASS(Class)                                    \
public:                                                           \
    static const ::type_info gTypeInfo_;                          \
    static const ::GMetaClass metaclass_;                         \
    const ::GMetaClass* getMetaClass() const override;            \
    const ::type_info& getTypeInfo_() const override;             \
    void* cast_to_(const ::type_info& type) const override;       \
    static ::GRTTIObject* ClassBuilder_();                        \
    static void ClassDestroyer_(::GRTTIObject* object);           \
    template <class T>                                            \
    static constexpr bool BuildsByName_()                         \
    {                                                             \
        if constexpr (requires { typename T::NotBuiltByName; }) { \
            if (std::is_same_v<typename T::NotBuiltByName, T>)    \
                return false;                                     \
        }                                                         \
        return requires                                           \
        {                                                         \
            new T(::GStreamable::StreamableInit{});               \
        }                                                         \
        || requires                                               \
        {                                                         \
            new T();                                              \
        };                                                        \
    }                                                             \
                                                                  \
private:

#define G_DEFINE_CLASS(Class, ...)                                                            \
    constinit const ::type_info Class::gTypeInfo_(#Class);                                    \
    const ::GMetaClass Class::metaclass_ = ::zmr::make_metaclass<Class, __VA_ARGS__>(#Class); \
    const ::GMetaClass* Class::getMetaClass() const                                           \
    {                                                                                         \
        return &metaclass_;                                                                   \
    }                                                                                         \
    const ::type_info& Class::getTypeInfo_() const                                            \
    {                                                                                         \
        return gTypeInfo_;                                                                    \
    }                                                                                         \
    void* Class::cast_to_(const ::type_info& type) const                                      \
    {                                                                                         \
        if (&type == &gTypeInfo_)                                                             \
            return const_cast<Class*>(this);                                                  \
        return ::zmr::cast_through_bases<Class, __VA_ARGS__>(this, type);                     \
    }                                                                                         \
    ::GRTTIObject* Class::ClassBuilder_()                                                     \
    {                                                                                         \
        return []<class T>() -> ::GRTTIObject* {                                              \
            if constexpr (!Class::BuildsByName_<T>()) {                                       \
                return nullptr;                                                               \
            } else {                                                                          \
                T* object = nullptr;                                                          \
                if constexpr (requires { new T(::GStreamable::StreamableInit{}); })           \
                    object = new T(::GStreamable::StreamableInit{});                          \
                else                                                                          \
                    object = new T();                                                         \
                return ::zmr::root_of(object);                                                \
            }                                                                                 \
        }.template operator()<Class>();                                                       \
    }                                                                                         \
    void Class::ClassDestroyer_(::GRTTIObject* object)                                        \
    {                                                                                         \
        if (object != nullptr)                                                                \
            delete static_cast<Class*>(object->cast_to_(gTypeInfo_));                         \
    }                                                                                         \
    static_assert(true, "takes the semicolon")
