#pragma once

#include "platform/Export.h"

class GObject;

/// A tracking pointer: reads null once its target is gone. A plain record of five pointer-sized
/// words without virtual operations; records with more fields derive from it. Setting and
/// releasing cost a few writes and allocate nothing. User-interface thread.
class ZMR_GV_API GPointer {
public:
    GPointer() = default;
    /// Unhooks itself.
    ~GPointer() { remove_from_list(); }
    /// Follows the same target; nothing when `other` is unhooked.
    GPointer(const GPointer& other);
    GPointer& operator=(const GPointer& other);

    /// Unhooks this pointer from its target's list; the target words keep their value, which must
    /// not be followed any more. Does nothing when it is not hooked.
    void remove_from_list();
    /// Follows `new_object` instead; null follows nothing. `new_target` is what `target` will read:
    /// the address under which the holder knows the object, null exactly when `new_object` is.
    void set(void* new_target, GObject* new_object);

    GPointer* previous =
        nullptr;                ///< In the target's list; itself at the head, null when unhooked.
    void* target = nullptr;     ///< The target, null once it is gone.
    GObject* object = nullptr;  ///< The same target as an object.
    GPointer* next = nullptr;
    void* spare = nullptr;  ///< At the holder's disposal.

protected:
    /// Hooks this pointer to the target stored in `target` and `object`. It must not be hooked. A
    /// target that is not tracked or is ending leaves both words null.
    void link_object();
};

/// A GPointer to a `T`, which derives from GObject.
template <class T>
class TGPointer : private GPointer {
public:
    TGPointer() = default;
    explicit TGPointer(T* followed) { set(followed, followed); }
    TGPointer& operator=(T* followed)
    {
        set(followed, followed);
        return *this;
    }
    [[nodiscard]] T* get() const { return static_cast<T*>(target); }
    T* operator->() const { return get(); }
    T& operator*() const { return *get(); }
    explicit operator bool() const { return target != nullptr; }
};
