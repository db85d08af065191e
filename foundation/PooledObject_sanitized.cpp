#include "foundation/PooledObject.h"

// A sanitizer sees each object by itself: it finds the use of one that has ended.

namespace zmr {

void* PooledObject::operator new(std::size_t size)
{
    return ::operator new(size);
}

void PooledObject::operator delete(void* object, std::size_t) noexcept
{
    ::operator delete(object);
}

void* PooledObject::operator new(std::size_t size, const std::nothrow_t& tag) noexcept
{
    return ::operator new(size, tag);
}

void PooledObject::operator delete(void* object, const std::nothrow_t& tag) noexcept
{
    ::operator delete(object, tag);
}

}  // namespace zmr
