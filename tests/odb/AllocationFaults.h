#pragma once

#include <cstdint>

/// Makes allocations of this program fail on demand: the program that links it gets an operator new
/// of its own. What C libraries take from malloc is not touched. One thread.
class AllocationFaults {
public:
    enum class Kind : std::uint8_t { Once, Lasting };

    /// Lets allocation `number` from now, counted from 1, throw std::bad_alloc; with Lasting all
    /// later ones, too.
    static void Arm(std::uint64_t number, Kind kind);
    /// Ends it. True when an allocation was refused.
    static bool Disarm();
    /// Allocations since Arm, outside of pauses.
    [[nodiscard]] static std::uint64_t Count();
    /// Blocks that are allocated now.
    [[nodiscard]] static std::int64_t Alive();

    /// Nothing fails or counts while it lives. Nests.
    class Pause {
    public:
        Pause();
        ~Pause();
        Pause(const Pause&) = delete;
        Pause& operator=(const Pause&) = delete;
    };
};
