#pragma once

#include "foundation/BitSet.h"

#include <cstdint>

/// Any state but the first counts as enabled.
enum GCommandState : unsigned {
    command_disabled = 0,
    command_checked = 1,   ///< Enabled, and shown checked.
    command_selected = 2,  ///< Enabled, and shown selected.
    command_enabled = 3    ///< Enabled, neither checked nor selected.
};

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
    /// Grows to `id` when it lies beyond the end.
    void set(unsigned long id, GCommandState state);

private:
    static constexpr std::uint32_t kIdsPerWord = kWordBits / 2;
};
