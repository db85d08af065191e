#include "foundation/PointerNumbers.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace {

/// Addresses that are only compared, never followed.
const void* address(std::uintptr_t value)
{
    return reinterpret_cast<const void*>(value);
}

/// `count` addresses from `start` on, `step` bytes apart.
std::vector<const void*> addresses(std::uintptr_t start, std::uintptr_t step, std::uint32_t count)
{
    std::vector<const void*> all;
    for (std::uint32_t number = 0; number < count; ++number)
        all.push_back(address(start + number * step));
    return all;
}

}  // namespace

TEST(PointerNumbers, NothingAdded_NothingIsFound)
{
    const zmr::PointerNumbers numbers;

    EXPECT_EQ(numbers.find(address(64)), zmr::PointerNumbers::kAbsent);
}

TEST(PointerNumbers, AddressesAtAnyDistance_KeepTheirNumbers)
{
    constexpr std::uint32_t kCount = 3000;
    // Neighbours; more than one in a place; all of them in one place, at any size of the table.
    for (const std::uintptr_t step : {64u, 32u, 16u, 1u, 4096u, 1u << 20}) {
        const auto all = addresses(1 << 12, step, kCount);
        zmr::PointerNumbers numbers;
        for (const void* each : all)
            ASSERT_EQ(numbers.add(each), zmr::PointerNumbers::kAbsent) << step;

        for (std::uint32_t number = 0; number < kCount; ++number) {
            ASSERT_EQ(numbers.find(all[number]), number) << step;
            ASSERT_EQ(numbers.add(all[number]), number) << step;
        }
        EXPECT_EQ(numbers.find(address((1 << 12) + step * kCount)), zmr::PointerNumbers::kAbsent);
    }
}
