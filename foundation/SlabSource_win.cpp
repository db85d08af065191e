#include "foundation/SlabSource.h"

#include "platform/Windows.h"

namespace zmr {

namespace {

/// The system gives whole pieces of 64 KiB, at their multiples.
class SystemSlabs final : public SlabSource {
public:
    void* take() noexcept override
    {
        return ::VirtualAlloc(nullptr, kSlabBytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
    }
    void give_back(void* slab) noexcept override { ::VirtualFree(slab, 0, MEM_RELEASE); }
};

constinit SystemSlabs g_system_slabs;

}  // namespace

SlabSource& SlabSource::System()
{
    return g_system_slabs;
}

}  // namespace zmr
