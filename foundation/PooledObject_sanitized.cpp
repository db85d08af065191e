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

}  // namespace zmr
