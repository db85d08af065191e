#include "foundation/ObjectPool.h"

#include <algorithm>
#include <limits>
#include <new>

namespace zmr {

namespace {

/// Blocks are linked in pieces of a page: few lines of memory are fetched before their time.
constexpr std::size_t kLinkedBytes = 4096;
/// In `watch` of a slab that stays where it is.
constexpr std::uint32_t kNever = std::numeric_limits<std::uint32_t>::max();

}  // namespace

/// Full from the start, so that `take` needs no test for a first slab.
constinit ObjectPool::Slab ObjectPool::no_slab;

ObjectPool::Lists::Lists(SlabSource& source, const void* user) : source_(source), user_(user)
{
    std::fill(std::begin(current_), std::end(current_), &no_slab);
}

void* ObjectPool::Lists::take_from_next(std::size_t kind)
{
    Slab*& current = current_[kind];
    if (current->free == nullptr && current->linked == current->capacity) {
        Slab* const next = next_slab(kind);
        if (next == nullptr)
            return nullptr;
        if (current != &no_slab)
            current->watch = current->capacity - 1;
        next->watch = kNever;
        current = next;
    }
    if (current->free == nullptr)
        LinkSome(*current);
    return take(kind);
}

/// Puts blocks that were never in use into the list, which is empty.
void ObjectPool::Lists::LinkSome(Slab& slab)
{
    const std::size_t size = (slab.kind + 1) * kStep;
    const auto number =
        std::min(slab.capacity - slab.linked, static_cast<std::uint32_t>(kLinkedBytes / size));
    char* const first = reinterpret_cast<char*>(&slab + 1) + slab.linked * size;
    char* last = first + (number - 1) * size;
    Block* behind = nullptr;
    for (; last >= first; last -= size)
        behind = ::new (last) Block{behind};
    slab.free = behind;
    slab.linked += number;
}

/// A slab with room for blocks of this kind, which stands in no list then; null without memory.
ObjectPool::Slab* ObjectPool::Lists::next_slab(std::size_t kind)
{
    if (Slab* const slab = with_room_[kind]) {
        take_out(*slab);
        return slab;
    }
    Slab* const slab = empty_slab();
    if (slab == nullptr)
        return nullptr;
    *slab = {.user = user_, .kind = static_cast<std::uint16_t>(kind), .behind = slab->behind};
    const std::size_t front = reinterpret_cast<std::uintptr_t>(slab + 1) % SlabSource::kSlabBytes;
    slab->capacity =
        static_cast<std::uint16_t>((SlabSource::kSlabBytes - front) / ((kind + 1) * kStep));
    return slab;
}

/// Null without memory.
ObjectPool::Slab* ObjectPool::Lists::empty_slab()
{
    if (Slab* const slab = empty_) {
        empty_ = slab->next;
        return slab;
    }
    void* const memory = source_.take();
    if (memory == nullptr)
        return nullptr;
    auto* const slab = ::new (&slab_of(memory)) Slab;
    slab->behind = all_;
    all_ = slab;
    return slab;
}

bool ObjectPool::Lists::has(const Slab* slab) const
{
    const Slab* one = all_;
    while (one != nullptr && one != slab)
        one = one->behind;
    return one != nullptr;
}

/// For a slab with `watch` blocks in use: it was full, or is empty now.
void ObjectPool::Lists::move_slab(Slab& slab)
{
    if (slab.used == 0) {
        take_out(slab);
        slab.next = empty_;
        empty_ = &slab;
        return;
    }
    slab.watch = 0;
    Slab*& first = with_room_[slab.kind];
    slab.previous = nullptr;
    slab.next = first;
    if (first != nullptr)
        first->previous = &slab;
    first = &slab;
}

/// Out of those with room.
void ObjectPool::Lists::take_out(Slab& slab)
{
    if (slab.previous != nullptr)
        slab.previous->next = slab.next;
    else
        with_room_[slab.kind] = slab.next;
    if (slab.next != nullptr)
        slab.next->previous = slab.previous;
}

void ObjectPool::Lists::give_back()
{
    for (Slab*& current : current_) {
        if (current != &no_slab && current->used == 0)
            current = &no_slab;
    }
    empty_ = nullptr;
    for (Slab** link = &all_; *link != nullptr;) {
        Slab* const slab = *link;
        if (slab->used > 0) {
            link = &slab->behind;
            continue;
        }
        *link = slab->behind;
        const auto address = reinterpret_cast<std::uintptr_t>(slab);
        source_.give_back(reinterpret_cast<void*>(address - address % SlabSource::kSlabBytes));
    }
}

ObjectPool::ObjectPool(SlabSource& source)
    : owner_(thread_mark()), own_(source, owner_), others_(source, nullptr)
{
}

void* ObjectPool::allocate_slowly(std::size_t kind)
{
    for (;;) {
        if (void* const block = try_allocate(kind))
            return block;
        const std::new_handler handler = std::get_new_handler();
        if (handler == nullptr)
            throw std::bad_alloc();
        handler();
    }
}

void* ObjectPool::try_allocate(std::size_t kind)
{
    if (owner_ == thread_mark()) {
        take_freed_by_others();
        return own_.take_from_next(kind);
    }
    const std::lock_guard lock(mutex_);
    others_came_ = true;
    return others_.take_from_next(kind);
}

void ObjectPool::free_for_others(Slab& slab, void* memory) noexcept
{
    if (slab.user == nullptr) {
        const std::lock_guard lock(mutex_);
        others_.put(slab, memory);
        return;
    }
    auto* const block = ::new (memory) Block{freed_by_others_.load(std::memory_order_relaxed)};
    while (!freed_by_others_.compare_exchange_weak(block->next, block, std::memory_order_release,
                                                   std::memory_order_relaxed)) {
    }
}

bool ObjectPool::free_if_own(void* block) noexcept
{
    Slab& slab = slab_of(block);  // not looked at before it is known
    if (owner_ == thread_mark()) {
        const bool found = own_.has(&slab);
        if (found)
            own_.put(slab, block);
        return found;
    }
    const std::lock_guard lock(mutex_);
    const bool found = others_.has(&slab);
    if (found)
        others_.put(slab, block);
    return found;
}

void ObjectPool::take_freed_by_others()
{
    if (freed_by_others_.load(std::memory_order_relaxed) == nullptr)
        return;
    Block* block = freed_by_others_.exchange(nullptr, std::memory_order_acquire);
    while (block != nullptr) {
        Block* const next = block->next;
        own_.put(slab_of(block), block);
        block = next;
    }
}

void ObjectPool::give_back() noexcept
{
    if (owner_ == thread_mark()) {
        take_freed_by_others();
        own_.give_back();
    }
    if (!others_came_)
        return;
    const std::lock_guard lock(mutex_);
    others_.give_back();
}

}  // namespace zmr
