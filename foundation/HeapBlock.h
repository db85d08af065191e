#pragma once

#include <cstddef>

namespace zmr {

/// Memory of malloc's that goes through the process's new-handler: a failed allocation calls it and
/// tries again, and without a handler throws OutOfMemory_Exception. Free it with std::free. A size
/// of 0 counts as 1.
[[nodiscard]] void* allocate_block(std::size_t size);
/// The same for a block that changes its size and may move; `block` stays as it was when this
/// throws. A null `block` is a new one.
[[nodiscard]] void* resize_block(void* block, std::size_t size);

}  // namespace zmr
