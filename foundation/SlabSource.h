#pragma once

#include <cstddef>

namespace zmr {

/// Gives the slabs that an ObjectPool cuts its blocks from. Any thread.
class SlabSource {
public:
    /// Of a slab, and what its address is a multiple of.
    static constexpr std::size_t kSlabBytes = 64 * 1024;

    /// Memory for one slab, with any contents; null when there is none.
    [[nodiscard]] virtual void* take() noexcept = 0;
    virtual void give_back(void* slab) noexcept = 0;

    /// The system's memory, a page of which is taken from it at the first use.
    static SlabSource& System();

protected:
    ~SlabSource() = default;
};

}  // namespace zmr
