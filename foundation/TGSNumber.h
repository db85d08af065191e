#pragma once

#include <type_traits>

/// A quantity in world units, kept apart from plain numbers until it is converted: `Dimension` 1 is
/// a length, 2 an area, 3 a volume.
template <class T, int Dimension>
class TGSNumber {
public:
    static_assert(std::is_floating_point_v<T>);

    constexpr TGSNumber() = default;
    constexpr explicit TGSNumber(T value) : value_(value) {}
    constexpr operator T() const { return value_; }

private:
    T value_ = 0;
};
