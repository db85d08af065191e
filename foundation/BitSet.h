#pragma once

#include "platform/Export.h"

#include <cstdint>
#include <vector>

/// A set of bits of a chosen size: bit `n` is bit `n % 32` of word `n / 32`. Bits outside the size
/// read as 0, and setting them is ignored: resize first. Bits of the last word behind the size are
/// 0.
class ZMR_GV_API BitSet {
public:
    /// Larger sets throw OutOfMemory_Exception: two bits for each 32-bit number.
    static constexpr std::uint64_t kMaxBits = std::uint64_t{1} << 33;

    BitSet() = default;
    /// `bits` bits, all 0.
    explicit BitSet(std::uint64_t bits) { resize(bits); }

    /// Same size and same bits.
    [[nodiscard]] bool operator==(const BitSet& other) const = default;
    /// New bits are 0.
    void resize(std::uint64_t bits);
    /// Sets the bits from `from` up to `to`, without `to`, to `value`.
    void set_range(std::uint64_t from, std::uint64_t to, bool value);
    /// Sets a bit.
    BitSet& operator+=(std::uint64_t bit);
    /// Clears a bit.
    BitSet& operator-=(std::uint64_t bit);
    [[nodiscard]] bool contains(std::uint64_t bit) const
    {
        return bit < size && (words[bit / kWordBits] >> (bit % kWordBits) & 1u) != 0;
    }

    static constexpr unsigned kWordBits = 32;

    std::uint64_t size = 0;  ///< In bits.
    std::vector<std::uint32_t> words;
};
