#include "graphics/RowSums.h"

#include <algorithm>
#include <cstring>

#include <immintrin.h>

// Each loop stands once, as a function that is always inlined, and is compiled for two instruction
// sets. Sums of 65,536 rows of 255 * 255 just fit 32 bits without a sign; the additions of the
// vector instructions do not mind which way the numbers are read.

namespace zmr {
namespace {

/// Sums of one tile stay in the first-level cache while the rows pass by.
constexpr std::size_t kTileSums = 2048;

[[gnu::always_inline]] inline void sum_tile(const unsigned char* from, std::size_t stride, int rows,
                                            std::size_t bytes, std::uint32_t* __restrict sums)
{
    std::memset(sums, 0, bytes * sizeof *sums);
    int row = 0;
    for (; row + 4 <= rows; row += 4, from += 4 * stride) {
        const unsigned char* row1 = from + stride;
        const unsigned char* row2 = row1 + stride;
        const unsigned char* row3 = row2 + stride;
        for (std::size_t index = 0; index < bytes; ++index)
            sums[index] +=
                static_cast<std::uint16_t>(static_cast<std::uint16_t>(from[index] + row1[index]) +
                                           static_cast<std::uint16_t>(row2[index] + row3[index]));
    }
    for (; row < rows; ++row, from += stride)
        for (std::size_t index = 0; index < bytes; ++index)
            sums[index] += from[index];
}

[[gnu::always_inline]] inline void sum_bytes_in_tiles(const unsigned char* from, std::size_t stride,
                                                      int rows, std::size_t bytes,
                                                      std::uint32_t* sums)
{
    for (std::size_t done = 0; done < bytes; done += kTileSums)
        sum_tile(from + done, stride, rows, std::min(kTileSums, bytes - done), sums + done);
}

[[gnu::always_inline]] inline void combine_sums(const std::uint32_t* middle,
                                                const std::uint32_t* first, float first_weight,
                                                const std::uint32_t* last, float last_weight,
                                                std::size_t count, float* __restrict to)
{
    // Single rows are below 2^16, so that the cheaper conversion of signed numbers serves; the
    // middle is cut in halves, as its sums need all 32 bits.
    for (std::size_t index = 0; index < count; ++index) {
        const auto high = static_cast<float>(static_cast<std::int32_t>(middle[index] >> 16));
        const auto low = static_cast<float>(static_cast<std::int32_t>(middle[index] & 0xffff));
        to[index] = high * 65536.0f + low +
                    static_cast<float>(static_cast<std::int32_t>(first[index])) * first_weight +
                    static_cast<float>(static_cast<std::int32_t>(last[index])) * last_weight;
    }
}

/// One pixel of 1 or 2 rows, in pairs of 16 bits: each part times its alpha, alpha times 255.
[[gnu::always_inline]] inline __m128i products(__m128i pairs)
{
    const __m128i full = _mm_set_epi16(255, 255, 0, 0, 0, 0, 0, 0);
    const __m128i alpha = _mm_or_si128(_mm_shuffle_epi32(pairs, 0xff), full);
    return _mm_madd_epi16(pairs, alpha);
}

void add_products(__m128i row0, __m128i row1, std::uint32_t* sums)
{
    const __m128i zero = _mm_setzero_si128();
    const __m128i low = _mm_unpacklo_epi8(row0, row1);
    const __m128i high = _mm_unpackhi_epi8(row0, row1);
    const __m128i pixels[] = {_mm_unpacklo_epi8(low, zero), _mm_unpackhi_epi8(low, zero),
                              _mm_unpacklo_epi8(high, zero), _mm_unpackhi_epi8(high, zero)};
    auto* to = reinterpret_cast<__m128i*>(sums);
    for (const __m128i& pixel : pixels) {
        _mm_storeu_si128(to, _mm_add_epi32(_mm_loadu_si128(to), products(pixel)));
        ++to;
    }
}

__m128i load_pixels(const unsigned char* from, std::size_t pixels)
{
    if (pixels >= 4)
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
    alignas(16) unsigned char bytes[16] = {};
    std::memcpy(bytes, from, pixels * 4);
    return _mm_load_si128(reinterpret_cast<const __m128i*>(bytes));
}

/// The last pixels of a row, fewer than four.
void add_last_pixels(const unsigned char* row0, const unsigned char* row1, std::size_t pixels,
                     std::uint32_t* sums)
{
    alignas(16) std::uint32_t room[16] = {};
    const __m128i second = row1 == nullptr ? _mm_setzero_si128() : load_pixels(row1, pixels);
    add_products(load_pixels(row0, pixels), second, room);
    for (std::size_t index = 0; index < pixels * 4; ++index)
        sums[index] += room[index];
}

void sum_with_alpha_baseline(const unsigned char* from, std::size_t stride, int rows,
                             std::size_t pixels, std::uint32_t* sums)
{
    constexpr std::size_t kTile = kTileSums / 4;
    std::memset(sums, 0, pixels * 4 * sizeof *sums);
    for (std::size_t done = 0; done < pixels; done += kTile) {
        const std::size_t end = std::min(done + kTile, pixels);
        for (int row = 0; row < rows; row += 2) {
            const unsigned char* row0 = from + static_cast<std::size_t>(row) * stride;
            const unsigned char* row1 = row + 1 < rows ? row0 + stride : nullptr;
            std::size_t x = done;
            for (; x + 4 <= end; x += 4)
                add_products(load_pixels(row0 + x * 4, 4),
                             row1 == nullptr ? _mm_setzero_si128() : load_pixels(row1 + x * 4, 4),
                             sums + x * 4);
            if (x < end)
                add_last_pixels(row0 + x * 4, row1 == nullptr ? nullptr : row1 + x * 4, end - x,
                                sums + x * 4);
        }
    }
}

void sum_bytes_baseline(const unsigned char* from, std::size_t stride, int rows, std::size_t bytes,
                        std::uint32_t* sums)
{
    sum_bytes_in_tiles(from, stride, rows, bytes, sums);
}

void combine_baseline(const std::uint32_t* middle, const std::uint32_t* first, float first_weight,
                      const std::uint32_t* last, float last_weight, std::size_t count, float* to)
{
    combine_sums(middle, first, first_weight, last, last_weight, count, to);
}

[[gnu::target("avx2")]] inline __m256i products_avx2(__m128i pairs)
{
    const __m256i full = _mm256_set_epi16(255, 255, 0, 0, 0, 0, 0, 0, 255, 255, 0, 0, 0, 0, 0, 0);
    const __m256i wide = _mm256_cvtepu8_epi16(pairs);
    return _mm256_madd_epi16(wide, _mm256_or_si256(_mm256_shuffle_epi32(wide, 0xff), full));
}

/// Four rows of four pixels.
[[gnu::target("avx2")]] inline void add_four_rows(const unsigned char* row0, std::size_t stride,
                                                  std::uint32_t* sums)
{
    const unsigned char* row2 = row0 + 2 * stride;
    const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(row0));
    const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(row0 + stride));
    const __m128i c = _mm_loadu_si128(reinterpret_cast<const __m128i*>(row2));
    const __m128i d = _mm_loadu_si128(reinterpret_cast<const __m128i*>(row2 + stride));
    auto* to = reinterpret_cast<__m256i*>(sums);
    const __m256i low = _mm256_add_epi32(products_avx2(_mm_unpacklo_epi8(a, b)),
                                         products_avx2(_mm_unpacklo_epi8(c, d)));
    const __m256i high = _mm256_add_epi32(products_avx2(_mm_unpackhi_epi8(a, b)),
                                          products_avx2(_mm_unpackhi_epi8(c, d)));
    _mm256_storeu_si256(to, _mm256_add_epi32(_mm256_loadu_si256(to), low));
    _mm256_storeu_si256(to + 1, _mm256_add_epi32(_mm256_loadu_si256(to + 1), high));
}

[[gnu::target("avx2")]] void sum_with_alpha_avx2(const unsigned char* from, std::size_t stride,
                                                 int rows, std::size_t pixels, std::uint32_t* sums)
{
    constexpr std::size_t kTile = kTileSums / 4;
    const int fours = rows / 4 * 4;
    const std::size_t even = pixels / 4 * 4;
    // What does not fill four rows of four pixels goes the other way, which also sets the sums.
    sum_with_alpha_baseline(from + static_cast<std::size_t>(fours) * stride, stride, rows - fours,
                            pixels, sums);
    for (std::size_t done = 0; done < even; done += kTile) {
        const std::size_t end = std::min(done + kTile, even);
        for (int row = 0; row < fours; row += 4) {
            const unsigned char* row0 = from + static_cast<std::size_t>(row) * stride;
            for (std::size_t x = done; x < end; x += 4)
                add_four_rows(row0 + x * 4, stride, sums + x * 4);
        }
    }
    for (int row = 0; row < fours && even < pixels; row += 2) {
        const unsigned char* row0 = from + static_cast<std::size_t>(row) * stride + even * 4;
        add_last_pixels(row0, row0 + stride, pixels - even, sums + even * 4);
    }
}

[[gnu::target("avx2")]] void sum_bytes_avx2(const unsigned char* from, std::size_t stride, int rows,
                                            std::size_t bytes, std::uint32_t* sums)
{
    sum_bytes_in_tiles(from, stride, rows, bytes, sums);
}

[[gnu::target("avx2")]] void combine_avx2(const std::uint32_t* middle, const std::uint32_t* first,
                                          float first_weight, const std::uint32_t* last,
                                          float last_weight, std::size_t count, float* to)
{
    combine_sums(middle, first, first_weight, last, last_weight, count, to);
}

constexpr RowSums kBaseline = {&sum_bytes_baseline, &sum_with_alpha_baseline, &combine_baseline};
constexpr RowSums kAvx2 = {&sum_bytes_avx2, &sum_with_alpha_avx2, &combine_avx2};

}  // namespace

const RowSums& RowSums::Best()
{
    static const bool has_avx2 = __builtin_cpu_supports("avx2") != 0;
    return has_avx2 ? kAvx2 : kBaseline;
}

const RowSums& RowSums::Baseline()
{
    return kBaseline;
}

}  // namespace zmr
