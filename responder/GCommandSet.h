#pragma once

#include "foundation/BitSet.h"

#include <array>
#include <cstdint>

/// Any state but the first counts as enabled.
enum GCommandState : unsigned {
    command_disabled = 0,
    command_checked = 1,   ///< Enabled, and shown checked.
    command_selected = 2,  ///< Enabled, and shown selected.
    command_enabled = 3    ///< Enabled, neither checked nor selected.
};

namespace zmr {

/// The two bits of each command of a word of a GCommandSet. Shifts by a variable number share their
/// units with the jumps of a loop that reads, loads do not.
inline constexpr auto kBitsOfCommand = [] {
    std::array<std::uint32_t, BitSet::kWordBits / 2> bits{};
    for (std::uint32_t number = 0; number < bits.size(); ++number)
        bits[number] = std::uint32_t{3} << (number * 2);
    return bits;
}();

}  // namespace zmr

/// The states of commands by their ids, two bits for each. It reaches to the highest id that was
/// ever set, and all ids beyond are enabled: keep ids small and dense. Ids are 32 bits wide.
class ZMR_GV_API GCommandSet : public BitSet {
public:
    [[nodiscard]] GCommandState operator[](unsigned long id) const
    {
        const auto number = static_cast<std::uint32_t>(id);
        if (number >= (size + 1) / 2)
            return command_enabled;
        return static_cast<GCommandState>(words[number / kIdsPerWord] >> (number * 2 % kWordBits) &
                                          3U);
    }
    /// Whether the state is any but command_disabled. Faster than asking for the state: it takes
    /// about two thirds of the time, for idle turns that ask for all commands.
    [[nodiscard]] bool enabled(unsigned long id) const
    {
        const auto number = static_cast<std::uint32_t>(id);
        if (number >= (size + 1) / 2)
            return true;
        return (words[number / kIdsPerWord] & zmr::kBitsOfCommand[number % kIdsPerWord]) != 0;
    }
    /// Grows to `id` when it lies beyond the end.
    void set(unsigned long id, GCommandState state);

private:
    static constexpr std::uint32_t kIdsPerWord = kWordBits / 2;
};
