// Doubles as whole numbers. Each function has a result for every double, the one that the
// conversion of x86-64 processors gives (Intel, "CVTTSD2SI"); a plain cast of what does not fit
// would be undefined.
//
//   TruncateToInt32(-2.9);  // -2
//   TruncateToInt32(1e10);  // -2147483648
#pragma once

#include <cstdint>
#include <limits>

namespace corvel {

// Truncated toward zero. What does not fit, NaN included, gives the most negative value.
constexpr std::int32_t TruncateToInt32(double value) {
  const bool fits = value > -2147483649.0 && value < 2147483648.0;  // false for NaN
  return fits ? static_cast<std::int32_t>(value) : std::numeric_limits<std::int32_t>::min();
}

// The same. No double lies strictly between -2^63 - 1 and -2^63.
constexpr std::int64_t TruncateToInt64(double value) {
  constexpr double kTwoTo63 = 9223372036854775808.0;
  const bool fits = value >= -kTwoTo63 && value < kTwoTo63;  // false for NaN
  return fits ? static_cast<std::int64_t>(value) : std::numeric_limits<std::int64_t>::min();
}

}  // namespace corvel
