#include "tests/support/ResourceLedger.h"

#include <windows.h>

#include <winternl.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace {

bool is_ours(HWND window)
{
    DWORD process = 0;
    ::GetWindowThreadProcessId(window, &process);
    return process == ::GetCurrentProcessId();
}

BOOL CALLBACK count_child(HWND, LPARAM counter)
{
    ++*reinterpret_cast<int*>(counter);
    return TRUE;
}

BOOL CALLBACK count_with_children(HWND window, LPARAM counter)
{
    if (!is_ours(window))
        return TRUE;
    count_child(window, counter);
    ::EnumChildWindows(window, count_child, counter);
    return TRUE;
}

int count_windows()
{
    int count = 0;
    ::EnumWindows(count_with_children, reinterpret_cast<LPARAM>(&count));
    for (HWND window = nullptr;
         (window = ::FindWindowExA(HWND_MESSAGE, window, nullptr, nullptr)) != nullptr;)
        count_with_children(window, reinterpret_cast<LPARAM>(&count));
    return count;
}

/// Handles of windows, menus, icons and cursors are even numbers; their lower word is enough.
constexpr std::uintptr_t kFirstUserHandle = 0x20;
constexpr std::uintptr_t kLastUserHandle = 0xFFFE;

int count_menus()
{
    int count = 0;
    for (std::uintptr_t handle = kFirstUserHandle; handle <= kLastUserHandle; handle += 2)
        if (::IsMenu(reinterpret_cast<HMENU>(handle)))
            ++count;
    return count;
}

int count_icons()
{
    int count = 0;
    for (std::uintptr_t handle = kFirstUserHandle; handle <= kLastUserHandle; handle += 2) {
        ICONINFO info{};
        if (!::GetIconInfo(reinterpret_cast<HICON>(handle), &info))
            continue;
        ++count;
        if (info.hbmColor != nullptr)
            ::DeleteObject(info.hbmColor);
        ::DeleteObject(info.hbmMask);
    }
    return count;
}

/// An entry of the table of drawing objects that a process shares with the system.
struct DrawingEntry {
    std::uint64_t object;
    std::uint32_t owner;
    std::uint16_t unique;
    std::uint8_t type;
    std::uint8_t flags;
    std::uint64_t user;
};
constexpr std::size_t kTablePlace = 0xF8;  ///< Of the table's address, in the process's block.
constexpr unsigned kTableSize = 0x10000;

int count_drawing_objects()
{
    // The plain question has no answer under Wine.
    if (const DWORD told = ::GetGuiResources(::GetCurrentProcess(), GR_GDIOBJECTS); told != 0)
        return static_cast<int>(told);
    const auto* const block =
        reinterpret_cast<const BYTE*>(::NtCurrentTeb()->ProcessEnvironmentBlock);
    const auto* const table = *reinterpret_cast<const DrawingEntry* const*>(block + kTablePlace);
    int count = 0;
    for (unsigned i = 0; i < kTableSize; ++i) {
        if (table[i].unique == 0)
            continue;
        const std::uintptr_t handle = i | std::uintptr_t{table[i].unique} << 16;
        if (::GetObjectType(reinterpret_cast<HGDIOBJ>(handle)) != 0)
            ++count;
    }
    return count;
}

/// A line of the system's list of all handles, as its information class 64 gives it.
struct HandleEntry {
    void* object;
    ULONG_PTR process;
    ULONG_PTR handle;
    ULONG access;
    USHORT creator;
    USHORT type;
    ULONG attributes;
    ULONG reserved;
};
struct HandleList {
    ULONG_PTR count;
    ULONG_PTR reserved;
    HandleEntry entries[1];
};
constexpr int kExtendedHandles = 64;

using QueryFunction = NTSTATUS(NTAPI*)(int, void*, ULONG, ULONG*);

/// -1 when the system does not tell.
int count_kernel_handles()
{
    static const auto query = reinterpret_cast<QueryFunction>(reinterpret_cast<void*>(
        ::GetProcAddress(::GetModuleHandleA("ntdll"), "NtQuerySystemInformation")));
    if (query == nullptr)
        return -1;
    // Static, so that the counting itself takes nothing from the heap that it will count.
    static std::vector<char> buffer(1U << 22);
    ULONG used = 0;
    if (query(kExtendedHandles, buffer.data(), static_cast<ULONG>(buffer.size()), &used) < 0)
        return -1;
    const auto* const list = reinterpret_cast<const HandleList*>(buffer.data());
    int count = 0;
    for (ULONG_PTR i = 0; i < list->count; ++i)
        if (list->entries[i].process == ::GetCurrentProcessId())
            ++count;
    return count;
}

std::size_t count_heap_bytes()
{
    std::array<HANDLE, 64> heaps{};
    const DWORD count = ::GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
    std::size_t bytes = 0;
    for (DWORD i = 0; i < count && i < heaps.size(); ++i) {
        PROCESS_HEAP_ENTRY entry{};
        ::HeapLock(heaps[i]);
        while (::HeapWalk(heaps[i], &entry))
            if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0)
                bytes += entry.cbData;
        ::HeapUnlock(heaps[i]);
    }
    return bytes;
}

void tell_growth(std::string& text, const char* name, long long before, long long after,
                 long long allowed)
{
    if (after - before <= allowed)
        return;
    text +=
        std::string(name) + ": " + std::to_string(before) + " to " + std::to_string(after) + "\n";
}

}  // namespace

ResourceCounts count_resources()
{
    return {.windows = count_windows(),
            .menus = count_menus(),
            .icons = count_icons(),
            .drawing_objects = count_drawing_objects(),
            .kernel_handles = count_kernel_handles(),
            .heap_bytes = count_heap_bytes()};
}

int leak_turns()
{
    const char* const wanted = std::getenv("ZMR_LEAK_TURNS");
    return wanted == nullptr ? 200 : std::atoi(wanted);
}

std::string what_leaks(const std::function<void()>& action, int turns, int heap_bytes_per_turn)
{
    constexpr int kFirstTurns = 20;
    static_cast<void>(count_resources());  // the counting warms up as well
    for (int turn = 0; turn < kFirstTurns; ++turn)
        action();
    const ResourceCounts before = count_resources();
    for (int turn = 0; turn < turns; ++turn)
        action();
    const ResourceCounts after = count_resources();

    std::string grown;
    tell_growth(grown, "windows", before.windows, after.windows, 0);
    tell_growth(grown, "menus", before.menus, after.menus, 0);
    tell_growth(grown, "icons and cursors", before.icons, after.icons, 0);
    tell_growth(grown, "drawing objects", before.drawing_objects, after.drawing_objects, 0);
    tell_growth(grown, "kernel handles", before.kernel_handles, after.kernel_handles, 0);
    tell_growth(grown, "heap bytes", static_cast<long long>(before.heap_bytes),
                static_cast<long long>(after.heap_bytes),
                std::max(static_cast<long long>(turns) * heap_bytes_per_turn, 2048LL));
    return grown;
}
