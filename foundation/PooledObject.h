#pragma once

#include "platform/Export.h"

#include <cstddef>
#include <new>

namespace zmr {

/// A base without fields: objects of the classes that derive from it, modules' too, get their
/// memory from one pool of the library. Up to 256 bytes they lie side by side, and making and
/// ending one on the thread that loaded the library takes a dozen instructions; larger ones, and
/// all where a sanitizer watches, come from ::operator new. Any thread may make one, and end it.
/// What ended leaves its memory for the next ones, until the library ends. Out of memory it does
/// what ::operator new does. Arrays are not the pool's; new (std::nothrow) is not offered.
class ZMR_GV_API PooledObject {
public:
    [[nodiscard]] static void* operator new(std::size_t size);
    static void operator delete(void* object, std::size_t size) noexcept;
    // Of a wider alignment than usual: by the global operators.
    [[nodiscard]] static void* operator new(std::size_t size, std::align_val_t alignment)
    {
        return ::operator new(size, alignment);
    }
    static void operator delete(void* object, std::size_t, std::align_val_t alignment) noexcept
    {
        ::operator delete(object, alignment);
    }
    // In memory of the caller's.
    [[nodiscard]] static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void*, void*) noexcept {}

protected:
    PooledObject() = default;
    ~PooledObject() = default;
    PooledObject(const PooledObject&) = default;
    PooledObject& operator=(const PooledObject&) = default;
};

}  // namespace zmr
