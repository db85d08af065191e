#pragma once

#include "platform/Windows.h"

#include <utility>

namespace zmr {

/// Owns a handle of the system and closes it by `Closer::close(handle)`. Move-only; null owns
/// nothing. Closing keeps the calling thread's last-error code, so that a failure can still be read
/// behind it.
template <class Handle, class Closer>
class Owned {
public:
    Owned() = default;
    explicit Owned(Handle handle) : handle_(handle) {}
    ~Owned() { reset(); }
    Owned(Owned&& other) noexcept : handle_(other.release()) {}
    Owned& operator=(Owned&& other) noexcept
    {
        if (this != &other)
            reset(other.release());
        return *this;
    }
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;

    [[nodiscard]] Handle get() const { return handle_; }
    explicit operator bool() const { return handle_ != Handle{}; }
    /// Gives the handle up to the caller.
    [[nodiscard]] Handle release() { return std::exchange(handle_, Handle{}); }
    /// Closes what is owned and takes `handle` over.
    void reset(Handle handle = Handle{})
    {
        const Handle former = std::exchange(handle_, handle);
        if (former == Handle{})
            return;
        const DWORD kept = ::GetLastError();
        Closer::close(former);
        ::SetLastError(kept);
    }

private:
    Handle handle_{};
};

struct CloseKernelHandle {
    static void close(HANDLE handle) noexcept { ::CloseHandle(handle); }
};
/// A handle that CloseHandle ends: files, events, threads, processes. CreateFile's "invalid" value
/// is not null: test for it before the handle is put in here.
using OwnedKernelHandle = Owned<HANDLE, CloseKernelHandle>;

}  // namespace zmr
