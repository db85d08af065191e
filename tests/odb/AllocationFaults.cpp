#include "AllocationFaults.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

// Plain values: they are used before and after everything else of the program.
constinit std::atomic<std::int64_t> alive{0};
constinit std::uint64_t counted = 0;
constinit std::uint64_t failing = 0;  // 0: none
constinit bool lasting = false;
constinit bool refused = false;
constinit int pauses = 0;

bool must_fail()
{
    if (failing == 0 || pauses > 0)
        return false;
    ++counted;
    const bool fails = lasting ? counted >= failing : counted == failing;
    refused = refused || fails;
    return fails;
}

void* take(std::size_t size) noexcept
{
    if (must_fail())
        return nullptr;
    void* const block = std::malloc(size == 0 ? 1 : size);
    if (block != nullptr)
        alive.fetch_add(1, std::memory_order_relaxed);
    return block;
}

void give_back(void* block) noexcept
{
    if (block == nullptr)
        return;
    alive.fetch_sub(1, std::memory_order_relaxed);
    std::free(block);
}

}  // namespace

void AllocationFaults::Arm(std::uint64_t number, Kind kind)
{
    counted = 0;
    refused = false;
    lasting = kind == Kind::Lasting;
    failing = number;
}

bool AllocationFaults::Disarm()
{
    failing = 0;
    return refused;
}

std::uint64_t AllocationFaults::Count()
{
    return counted;
}

std::int64_t AllocationFaults::Alive()
{
    return alive.load(std::memory_order_relaxed);
}

AllocationFaults::Pause::Pause()
{
    ++pauses;
}

AllocationFaults::Pause::~Pause()
{
    --pauses;
}

void* operator new(std::size_t size)
{
    if (void* const block = take(size))
        return block;
    throw std::bad_alloc();
}

void* operator new[](std::size_t size)
{
    return operator new(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return take(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return take(size);
}

void operator delete(void* block) noexcept
{
    give_back(block);
}

void operator delete[](void* block) noexcept
{
    give_back(block);
}

void operator delete(void* block, std::size_t) noexcept
{
    give_back(block);
}

void operator delete[](void* block, std::size_t) noexcept
{
    give_back(block);
}

void operator delete(void* block, const std::nothrow_t&) noexcept
{
    give_back(block);
}

void operator delete[](void* block, const std::nothrow_t&) noexcept
{
    give_back(block);
}
