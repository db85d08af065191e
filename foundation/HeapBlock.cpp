#include "foundation/HeapBlock.h"

#include "foundation/GException.h"

#include <cstdlib>
#include <new>

namespace zmr {

void* allocate_block(std::size_t size)
{
    if (void* block = std::malloc(size == 0 ? 1 : size)) [[likely]]
        return block;
    return resize_block(nullptr, size);
}

void* resize_block(void* block, std::size_t size)
{
    for (;;) {
        if (void* resized = std::realloc(block, size == 0 ? 1 : size))
            return resized;
        const std::new_handler handler = std::get_new_handler();
        if (handler == nullptr)
            throw OutOfMemory_Exception();
        handler();
    }
}

void free_block(void* block) noexcept
{
    std::free(block);
}

}  // namespace zmr
