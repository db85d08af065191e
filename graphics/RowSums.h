#pragma once

#include <cstddef>
#include <cstdint>

namespace zmr {

/// The inner loops of smooth scaling, for the processor that runs. Sums of up to kMaxRows rows fit
/// their 32 bits. All variants give the same numbers.
struct RowSums {
    static constexpr int kMaxRows = 65536;

    /// sums[i] = the sum of byte i over `rows` rows that lie `stride` bytes apart.
    void (*sum_bytes)(const unsigned char* first, std::size_t stride, int rows, std::size_t bytes,
                      std::uint32_t* sums);
    /// The same for pixels of four bytes, the last one alpha: sums of each colour times its alpha,
    /// and of alpha times 255. Four sums a pixel.
    void (*sum_with_alpha)(const unsigned char* first, std::size_t stride, int rows,
                           std::size_t pixels, std::uint32_t* sums);
    /// to[i] = middle[i] + first[i] * first_weight + last[i] * last_weight.
    void (*combine)(const std::uint32_t* middle, const std::uint32_t* first, float first_weight,
                    const std::uint32_t* last, float last_weight, std::size_t count, float* to);

    /// The fastest variant that this processor has.
    [[nodiscard]] static const RowSums& Best();
    /// The one that every processor has.
    [[nodiscard]] static const RowSums& Baseline();
};

}  // namespace zmr
