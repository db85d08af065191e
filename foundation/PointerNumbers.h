#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace zmr {

/// Numbers addresses from 0 in the order in which they are added: a flat hash table. Addresses are
/// never taken out.
class PointerNumbers {
public:
    static constexpr std::uint32_t kAbsent = 0xFFFFFFFF;

    /// The number of `address`, which is not null, or kAbsent.
    [[nodiscard]] std::uint32_t find(const void* address) const
    {
        if (slots_.empty())
            return kAbsent;
        const Slot& slot = slots_.data()[position(address)];
        return slot.address == nullptr ? kAbsent : slot.number;
    }

    /// The number that `address` has already; kAbsent when this has just given it the next one.
    [[nodiscard]] std::uint32_t add(const void* address)
    {
        if (2 * (std::size_t{count_} + 1) > slots_.size())
            grow();
        Slot& slot = slots_.data()[position(address)];
        if (slot.address != nullptr)
            return slot.number;
        slot = {address, count_++};
        return kAbsent;
    }

private:
    struct Slot {
        const void* address = nullptr;
        std::uint32_t number = 0;
    };
    static constexpr std::size_t kFirstSlots = 64;
    static constexpr std::size_t kSmallestObject = 32;  ///< On the heap, in bytes.

    [[nodiscard]] std::size_t position(const void* address) const
    {
        // First where its neighbours in memory stand too, because they are mostly met in turn; when
        // that is taken, by multiplicative hashing (Knuth, The Art of Computer Programming, 6.4)
        // and on from there, so that no pattern of addresses makes a search long.
        const auto bits = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(address));
        const Slot* slots = slots_.data();
        const std::size_t mask = slots_.size() - 1;
        const std::size_t beside = static_cast<std::size_t>(bits / kSmallestObject) & mask;
        if (slots[beside].address == nullptr || slots[beside].address == address) [[likely]]
            return beside;
        std::size_t at = static_cast<std::size_t>((bits * 0x9E3779B97F4A7C15u) >> shift_);
        while (slots[at].address != nullptr && slots[at].address != address)
            at = (at + 1) & mask;
        return at;
    }

    void grow()
    {
        std::vector<Slot> former(slots_.empty() ? kFirstSlots : 4 * slots_.size());
        former.swap(slots_);
        shift_ = 64 - std::countr_zero(slots_.size());
        for (const Slot& slot : former) {
            if (slot.address != nullptr)
                slots_[position(slot.address)] = slot;
        }
    }

    std::vector<Slot> slots_;  ///< A power of two, at most half full.
    int shift_ = 0;
    std::uint32_t count_ = 0;
};

}  // namespace zmr
