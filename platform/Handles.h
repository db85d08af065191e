#pragma once

#include "platform/Windows.h"

#include <cstddef>
#include <utility>

// Owners of handles, one type for each way of closing. Those of drawing are in HandlesGdi.h, those
// of menus, icons and hooks in HandlesUser.h. Closing anything by hand outside these files is a
// mistake.

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

struct CloseFind {
    static void close(HANDLE search) noexcept { ::FindClose(search); }
};
/// A search of FindFirstFile. Its "invalid" value is not null either.
using OwnedFind = Owned<HANDLE, CloseFind>;

struct CloseModule {
    static void close(HMODULE module) noexcept { ::FreeLibrary(module); }
};
/// A module that LoadLibrary gave.
using OwnedModule = Owned<HMODULE, CloseModule>;

struct CloseKey {
    static void close(HKEY key) noexcept { ::RegCloseKey(key); }
};
using OwnedRegistryKey = Owned<HKEY, CloseKey>;

struct CloseGlobal {
    static void close(HGLOBAL block) noexcept { ::GlobalFree(block); }
};
/// A block of GlobalAlloc. Release it where the system takes it over, as the clipboard does.
using OwnedGlobal = Owned<HGLOBAL, CloseGlobal>;

/// Locks a block of GlobalAlloc for the life of this object and sees a `T` at its begin.
template <class T>
class GlobalLockOf {
public:
    /// A block that is null, or shorter than a `T`, gives null.
    explicit GlobalLockOf(HGLOBAL block)
    {
        if (block == nullptr || ::GlobalSize(block) < sizeof(T))
            return;
        block_ = block;
        items_ = static_cast<T*>(::GlobalLock(block));
    }
    ~GlobalLockOf()
    {
        if (items_ == nullptr)
            return;
        const DWORD kept = ::GetLastError();
        ::GlobalUnlock(block_);
        ::SetLastError(kept);
    }
    GlobalLockOf(const GlobalLockOf&) = delete;
    GlobalLockOf& operator=(const GlobalLockOf&) = delete;

    [[nodiscard]] T* get() const { return items_; }
    /// How many items of this type lie in the block; the system may have rounded its size up.
    [[nodiscard]] std::size_t count() const
    {
        return items_ != nullptr ? ::GlobalSize(block_) / sizeof(T) : 0;
    }

private:
    HGLOBAL block_ = nullptr;
    T* items_ = nullptr;
};

}  // namespace zmr
