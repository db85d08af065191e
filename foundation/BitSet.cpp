#include "foundation/BitSet.h"

#include "foundation/GException.h"

#include <algorithm>
#include <new>

namespace {

constexpr std::uint32_t kAllOnes = 0xFFFFFFFF;

/// The lowest `count` bits, below 32.
std::uint32_t low_bits(std::uint64_t count)
{
    return (std::uint32_t{1} << count) - 1;
}

}  // namespace

void BitSet::resize(std::uint64_t bits)
{
    if (bits > kMaxBits)
        throw OutOfMemory_Exception();
    try {
        words.resize(static_cast<std::size_t>((bits + kWordBits - 1) / kWordBits));
    } catch (const std::bad_alloc&) {
        throw OutOfMemory_Exception();
    }
    size = bits;
    if (bits % kWordBits != 0)
        words.back() &= low_bits(bits % kWordBits);
}

void BitSet::set_range(std::uint64_t from, std::uint64_t to, bool value)
{
    to = std::min(to, size);
    while (from < to) {
        const auto word = static_cast<std::size_t>(from / kWordBits);
        const std::uint64_t first = from % kWordBits;
        const std::uint64_t number = std::min(to - from, kWordBits - first);
        const std::uint32_t bits = (number == kWordBits ? kAllOnes : low_bits(number)) << first;
        words[word] = value ? words[word] | bits : words[word] & ~bits;
        from += number;
    }
}

BitSet& BitSet::operator+=(std::uint64_t bit)
{
    if (bit < size)
        set_range(bit, bit + 1, true);
    return *this;
}

BitSet& BitSet::operator-=(std::uint64_t bit)
{
    if (bit < size)
        set_range(bit, bit + 1, false);
    return *this;
}
