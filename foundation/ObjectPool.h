#pragma once

#include "foundation/SlabSource.h"
#include "foundation/ThreadMarkOfLane.h"

#include <atomic>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <mutex>

namespace zmr {

/// Blocks of up to kLargest bytes for objects that come and go in great numbers. Each slab holds
/// blocks of one size, rounded up to 8 bytes, with nothing between them: those of 64 bytes are
/// lines of the cache. Fresh ones come in the order of their addresses, freed ones last in, first
/// out. A slab without a block in use serves any size again; its memory stays with the pool.
///
/// Any thread may take and free blocks, also those of another one. The thread that makes the pool
/// owns it: what it does with its own blocks is a dozen instructions, none of them locked. The
/// others share a lock; the owner's blocks that they free wait until it has none left.
class ObjectPool {
public:
    static constexpr std::size_t kLargest = 256;

    /// `source` outlives the pool.
    explicit ObjectPool(SlabSource& source);
    /// As give_back.
    ~ObjectPool() { give_back(); }
    ObjectPool(const ObjectPool&) = delete;
    ObjectPool& operator=(const ObjectPool&) = delete;

    /// A block for an object of `size` bytes, 1 to kLargest, and of no wider alignment than its
    /// size tells. Without memory it calls the process's new-handler, and throws std::bad_alloc
    /// when there is none.
    [[nodiscard]] void* allocate(std::size_t size)
    {
        assert(size > 0 && size <= kLargest);
        if (owner_ == thread_mark()) [[likely]] {
            if (void* block = own_.take(kind_of(size))) [[likely]]
                return block;
        }
        return allocate_slowly(kind_of(size));
    }
    /// `block` comes from `allocate`.
    void free(void* block) noexcept
    {
        Slab& slab = slab_of(block);
        if (slab.user == thread_mark()) [[likely]]
            own_.put(slab, block);
        else
            free_for_others(slab, block);
    }
    /// Frees a block that this thread has taken; false for memory that is none of the pool's.
    /// Linear in the slabs.
    [[nodiscard]] bool free_if_own(void* block) noexcept;
    /// Gives the slabs back to the source in which no block is in use; on a thread that does not
    /// own the pool, the others' ones alone. The pool goes on working.
    void give_back() noexcept;

private:
    static constexpr std::size_t kStep = 8;
    static constexpr std::size_t kKinds = kLargest / kStep;
    static constexpr std::size_t kLine = 64;

    struct Block {
        Block* next;
    };
    /// Stands in front of the blocks of its slab.
    struct alignas(kLine) Slab {
        Block* free = nullptr;       ///< Those that are linked and not in use.
        const void* user = nullptr;  ///< The thread that owns the pool; null for the others.
        std::uint32_t used = 0;      ///< Blocks in use.
        std::uint32_t watch = 0;     ///< With so many in use, a block that is freed is the last one
                                     ///< in use, or the first one that is not.
        std::uint32_t linked = 0;    ///< Blocks that have been in use or in the list.
        std::uint16_t capacity = 0;
        std::uint16_t kind = 0;
        Slab* next = nullptr;  ///< Among those that have room, or are empty.
        Slab* previous = nullptr;
        Slab* behind = nullptr;  ///< Among all.
    };

    /// The slabs of the owner, or those of the other threads.
    class Lists {
    public:
        Lists(SlabSource& source, const void* user);

        /// Null when the present slab has no free block that is linked.
        [[nodiscard]] void* take(std::size_t kind)
        {
            Slab& slab = *current_[kind];
            Block* const block = slab.free;
            if (block != nullptr) [[likely]] {
                slab.free = block->next;
                ++slab.used;
            }
            return block;
        }
        void put(Slab& slab, void* memory)
        {
            slab.free = ::new (memory) Block{slab.free};
            if (--slab.used == slab.watch) [[unlikely]]
                move_slab(slab);
        }
        /// Looks further, and asks the source; null without memory.
        [[nodiscard]] void* take_from_next(std::size_t kind);
        [[nodiscard]] bool has(const Slab* slab) const;
        void give_back();

    private:
        static void LinkSome(Slab& slab);
        [[nodiscard]] Slab* next_slab(std::size_t kind);
        [[nodiscard]] Slab* empty_slab();
        void move_slab(Slab& slab);
        void take_out(Slab& slab);

        SlabSource& source_;
        const void* user_;
        Slab* current_[kKinds];      ///< What `take` serves from; never null.
        Slab* with_room_[kKinds]{};  ///< The others that have a free block and one in use.
        Slab* empty_ = nullptr;      ///< The others without a block in use.
        Slab* all_ = nullptr;
    };

    [[nodiscard]] static std::size_t kind_of(std::size_t size) { return (size - 1) / kStep; }
    /// Where the slab's front stands, for an address in it. Not always on the same line: all slabs
    /// would share a few places of the caches.
    [[nodiscard]] static Slab& slab_of(void* address)
    {
        constexpr std::uintptr_t kLines = 16;
        const auto number = reinterpret_cast<std::uintptr_t>(address) / SlabSource::kSlabBytes;
        return *reinterpret_cast<Slab*>(number * SlabSource::kSlabBytes + number % kLines * kLine);
    }
    [[nodiscard]] void* allocate_slowly(std::size_t kind);
    [[nodiscard]] void* try_allocate(std::size_t kind);
    void free_for_others(Slab& slab, void* block) noexcept;
    void take_freed_by_others();

    static Slab no_slab;

    const void* const owner_;
    Lists own_;
    std::atomic<Block*> freed_by_others_ = nullptr;  ///< The owner's blocks, of any size.
    std::mutex mutex_;                               ///< Of what follows.
    Lists others_;
    std::atomic<bool> others_came_ = false;
};

}  // namespace zmr
