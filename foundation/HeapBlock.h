#pragma once

#include "platform/Export.h"

#include <cstddef>

namespace zmr {

/// Memory of malloc's that goes through the process's new-handler: a failed allocation calls it and
/// tries again, and without a handler throws OutOfMemory_Exception. Free it with free_block. A size
/// of 0 counts as 1.
[[nodiscard]] ZMR_GV_API void* allocate_block(std::size_t size);
/// The same for a block that changes its size and may move; `block` stays as it was when this
/// throws. A null `block` is a new one.
[[nodiscard]] ZMR_GV_API void* resize_block(void* block, std::size_t size);
/// Frees a block; null is ignored.
ZMR_GV_API void free_block(void* block) noexcept;

}  // namespace zmr
