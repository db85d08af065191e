#pragma once

namespace zmr {

/// What no other thread that runs has; never null. One move.
[[nodiscard]] inline const void* thread_mark()
{
    return __builtin_thread_pointer();
}

}  // namespace zmr
