#include "foundation/PooledObject.h"

#include "foundation/ObjectPool.h"

namespace zmr {

namespace {

/// Null until the library has loaded, or an object was made before that.
constinit std::atomic<ObjectPool*> g_pool = nullptr;

ObjectPool& make_pool()
{
    // Never destroyed: static objects of the host end when the library has ended.
    alignas(ObjectPool) static std::byte place[sizeof(ObjectPool)];
    static auto* const made = ::new (place) ObjectPool(SlabSource::System());
    g_pool.store(made, std::memory_order_release);
    return *made;
}

ObjectPool& pool()
{
    ObjectPool* const made = g_pool.load(std::memory_order_acquire);
    return made != nullptr ? *made : make_pool();
}

/// The thread that loads the library owns the pool. The library leaves no memory behind, but for
/// objects that are still there.
struct PoolLife {
    PoolLife() { make_pool(); }
    ~PoolLife() { pool().give_back(); }
} const g_pool_life;

}  // namespace

void* PooledObject::operator new(std::size_t size)
{
    return size <= ObjectPool::kLargest ? pool().allocate(size) : ::operator new(size);
}

void PooledObject::operator delete(void* object, std::size_t size) noexcept
{
    if (size > ObjectPool::kLargest)
        ::operator delete(object);
    else if (object != nullptr)
        pool().free(object);
}

void* PooledObject::operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    try {
        return operator new(size);
    } catch (...) {  // bad_alloc, or what the application's new-handler throws
        return nullptr;
    }
}

/// Nobody tells the size.
void PooledObject::operator delete(void* object, const std::nothrow_t&) noexcept
{
    if (object != nullptr && !pool().free_if_own(object))
        ::operator delete(object);
}

}  // namespace zmr
