#pragma once

#include <cstdint>

extern "C" __declspec(dllimport) unsigned long __stdcall GetCurrentThreadId();

namespace zmr {

/// What no other thread that runs has; never null. The system reads it from the thread's block.
[[nodiscard]] inline const void* thread_mark()
{
    return reinterpret_cast<const void*>(std::uintptr_t{::GetCurrentThreadId()});
}

}  // namespace zmr
