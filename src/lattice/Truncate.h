// Doubles as elements of other types. Each function has a result for every double, the one that the
// hardware's conversion gives; a plain cast of what does not fit would be undefined.
#pragma once

#include <cmath>
#include <concepts>
#include <cstdint>
#include <limits>

namespace trovan::lattice {

// Truncated toward zero. What does not fit, NaN included, gives the most negative value.
inline std::int32_t TruncateToInt32(double value) {
  const bool fits = value > -2147483649.0 && value < 2147483648.0;  // false for NaN
  return fits ? static_cast<std::int32_t>(value) : std::numeric_limits<std::int32_t>::min();
}

// The same. No double lies strictly between -2^63 - 1 and -2^63.
inline std::int64_t TruncateToInt64(double value) {
  constexpr double kTwoTo63 = 9223372036854775808.0;
  const bool fits = value >= -kTwoTo63 && value < kTwoTo63;  // false for NaN
  return fits ? static_cast<std::int64_t>(value) : std::numeric_limits<std::int64_t>::min();
}

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
    return static_cast<T>(TruncateToInt64(value));
  } else {
    return static_cast<T>(TruncateToInt32(value));
  }
}

}  // namespace trovan::lattice
