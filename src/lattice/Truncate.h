// Doubles as elements of other types. Each function has a result for every double, the one that the
// hardware's conversion gives; a plain cast of what does not fit would be undefined.
#pragma once

#include <cmath>
#include <concepts>
#include <cstdint>
#include <limits>

#include <corvel/Truncate.h>

namespace trovan::lattice {

// The nearest float; infinity for what lies beyond all floats.
inline float NearestFloat(double value) {
  // Halfway between the largest float and the power of two that would follow it. A tie goes to the
  // even neighbour, which here is the power, and that is infinity.
  constexpr double kOverflow = 0x1.ffffffp127;
  constexpr float kLargest = std::numeric_limits<float>::max();
  const double size = std::fabs(value);
  if (size >= kOverflow) {
    return std::copysign(std::numeric_limits<float>::infinity(), value < 0 ? -1.0F : 1.0F);
  }
  if (size > static_cast<double>(kLargest))
    return std::copysign(kLargest, value < 0 ? -1.0F : 1.0F);
  return static_cast<float>(value);
}

// The element of type T that is made from a double. Integers are truncated, without saturation:
// those of up to 32 bits keep the low bits of a conversion to a signed integer of 32 bits, unsigned
// 32-bit ones those of a conversion to 64 bits.
template <typename T>
T FromDouble(double value) {
  if constexpr (std::same_as<T, double>) {
    return value;
  } else if constexpr (std::same_as<T, float>) {
    return NearestFloat(value);
  } else if constexpr (std::same_as<T, std::int64_t> || std::same_as<T, std::uint32_t>) {
    return static_cast<T>(corvel::TruncateToInt64(value));
  } else {
    return static_cast<T>(corvel::TruncateToInt32(value));
  }
}

}  // namespace trovan::lattice
