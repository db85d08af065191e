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
/// what ::operator new does. Arrays are not the pool's.
class ZMR_GV_API PooledObject {
public:
    [[nodiscard]] static void* operator new(std::size_t size);
    static void operator delete(void* object, std::size_t size) noexcept;
    /// Null when there is no memory.
    [[nodiscard]] static void* operator new(std::size_t size, const std::nothrow_t& tag) noexcept;
    /// For an object whose constructor threw.
    static void operator delete(void* object, const std::nothrow_t& tag) noexcept;
    // Of a wider alignment than usual: by the global operators.
    [[nodiscard]] static void* operator new(std::size_t size, std::align_val_t alignment)
    {
        return ::operator new(size, alignment);
    }
    static void operator delete(void* object, std::size_t, std::align_val_t alignment) noexcept
    {
        ::operator delete(object, alignment);
    }
    [[nodiscard]] static void* operator new(std::size_t size, std::align_val_t alignment,
                                            const std::nothrow_t& tag) noexcept
    {
        return ::operator new(size, alignment, tag);
    }
    static void operator delete(void* object, std::align_val_t alignment,
                                const std::nothrow_t& tag) noexcept
    {
        ::operator delete(object, alignment, tag);
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
