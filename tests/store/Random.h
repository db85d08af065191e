#pragma once

#include <cstdint>
#include <limits>
#include <random>

namespace zmr {

/// The same numbers of 32 bits from the same seed in both lanes.
class Random {
public:
    using result_type = std::uint32_t;
    explicit Random(std::uint32_t seed = 1) : engine_(seed) {}
    void seed(std::uint32_t seed) { engine_.seed(seed); }
    result_type operator()() { return static_cast<result_type>(engine_()); }
    static constexpr result_type min() { return 0; }
    static constexpr result_type max() { return std::numeric_limits<result_type>::max(); }

private:
    std::mt19937 engine_;
};

}  // namespace zmr
