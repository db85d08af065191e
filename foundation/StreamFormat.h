#pragma once

#include <cstddef>
#include <cstdint>

// The numbers of the typed streams' encoding that reader and writer share; docs/stream-format.md
// tells it whole.
namespace zmr {

// The first byte of a string is its length, or one of these.
constexpr std::uint32_t kLongString = 254;  ///< The length follows in 32 bits.
constexpr std::uint32_t kNullString = 255;

// The first byte of an object pointer.
constexpr unsigned char kNullPointer = 0;
constexpr unsigned char kKnownObject = 1;  ///< The object's number follows in 32 bits.
constexpr unsigned char kNewClass = 2;     ///< The class name follows; it gets the next number.
constexpr unsigned char kFirstClassTag =
    3;                                     ///< That plus the class's number, up to kWideClass - 1.
constexpr unsigned char kWideClass = 255;  ///< The class's number follows in 16 bits.
constexpr std::uint32_t kClassesInTag = kWideClass - kFirstClassTag;

constexpr std::uint32_t kMaxClasses = 65'000;  ///< Classes in one stream.
constexpr std::uint32_t kMaxClassNameBytes = 1'000;

}  // namespace zmr
