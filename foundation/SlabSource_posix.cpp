#include "foundation/SlabSource.h"

#include <sys/mman.h>

#include <cstdint>

namespace zmr {

namespace {

std::size_t bytes_above_slab(const char* address)
{
    return reinterpret_cast<std::uintptr_t>(address) % SlabSource::kSlabBytes;
}

char* map(std::size_t bytes)
{
    void* const mapped =
        ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return mapped != MAP_FAILED ? static_cast<char*>(mapped) : nullptr;
}

void unmap(char* from, std::size_t bytes)
{
    if (bytes > 0)
        ::munmap(from, bytes);
}

class SystemSlabs final : public SlabSource {
public:
    void* take() noexcept override
    {
        // The system puts the next slab right in front of the former one.
        char* const slab = map(kSlabBytes);
        if (slab == nullptr || bytes_above_slab(slab) == 0)
            return slab;
        unmap(slab, kSlabBytes);
        return take_from_middle();
    }
    void give_back(void* slab) noexcept override { unmap(static_cast<char*>(slab), kSlabBytes); }

private:
    static void* take_from_middle()
    {
        char* const mapped = map(2 * kSlabBytes);
        if (mapped == nullptr)
            return nullptr;
        const std::size_t behind = bytes_above_slab(mapped);
        char* const slab = mapped + (kSlabBytes - behind);
        unmap(mapped, kSlabBytes - behind);
        unmap(slab + kSlabBytes, behind);
        return slab;
    }
};

constinit SystemSlabs g_system_slabs;

}  // namespace

SlabSource& SlabSource::System()
{
    return g_system_slabs;
}

}  // namespace zmr
