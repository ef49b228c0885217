#include <trovan/TypedArrays.h>

#include <cmath>
#include <concepts>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>

#include "ArrayKernels.h"
#include "Elements.h"
#include "PlainLoops.h"
#include "Truncate.h"

namespace trovan {
namespace {

using corvel::CPrimData;
using corvel::CPrimType;
using lattice::Load;

// The place of a value on the range of the integer type T, before truncation. Multiplies first,
// from left to right: another order rounds differently.
template <std::integral T>
double Scaled(double value, double minValue, double maxValue) {
  const double range = maxValue - minValue;
  if constexpr (std::same_as<T, std::int64_t>) {
    return (value - minValue) * 4294967295.0 * 4294967295.0 / range;
  } else {
    constexpr double kSpan = std::numeric_limits<std::make_unsigned_t<T>>::max();
    return (value - minValue) * kSpan / range + std::numeric_limits<T>::min();
  }
}

double MeanStep(CPrimType type, std::size_t n, const void* values) {
  const auto* const bytes = static_cast<const unsigned char*>(values);
  const std::size_t last = (n - 1) * static_cast<std::size_t>(type.Size());
  return (CPrimData::GetWideReal(type, bytes + last) - CPrimData::GetWideReal(type, bytes)) /
         static_cast<double>(n - 1);
}

// Whether each step is the one whole number. Differences wrap around at 64 bits.
template <std::integral T>
bool ShareWholeStep(const void* values, std::size_t n, double meanStep) {
  const std::int64_t step = corvel::TruncateToInt64(meanStep);
  if (meanStep != static_cast<double>(step)) return false;
  const auto* const bytes = static_cast<const unsigned char*>(values);
  const auto bits = [bytes](std::size_t i) {
    return static_cast<std::uint64_t>(static_cast<std::int64_t>(Load<T>(bytes + i * sizeof(T))));
  };
  for (std::size_t i = 1; i < n; ++i) {
    if (bits(i) - bits(i - 1) != static_cast<std::uint64_t>(step)) return false;
  }
  return true;
}

}  // namespace

void PTConvertByTruncation(CPrimType fromType, CPrimType toType, void* src, void* dst) {
  if (fromType == toType) {
    if (const int size = fromType.Size(); size > 0) {
      std::memmove(dst, src, static_cast<std::size_t>(size));
    }
    return;
  }
  lattice::WithElementType(toType, [&]<typename T>(lattice::Element<T>) {
    lattice::Store(dst, lattice::FromDouble<T>(CPrimData::GetWideReal(fromType, src)));
  });
}

void PTScaleDoubleToOtherType(CPrimType type, void* dst, double value, double minValue,
                              double maxValue) {
  lattice::WithElementType(type, [&]<typename T>(lattice::Element<T>) {
    if constexpr (std::integral<T>) {
      lattice::Store(dst, lattice::FromDouble<T>(Scaled<T>(value, minValue, maxValue)));
    } else {
      lattice::Store(dst, lattice::FromDouble<T>(value));
    }
  });
}

bool IsEquallySpaced(CPrimType type, std::size_t n, const void* values, double tolerancePercent) {
  if (n <= 1) return true;
  const double step = MeanStep(type, n, values);
  const double allowed = tolerancePercent / 100.0 * step;
  // Values of no element type are all 0, and so is their step.
  return lattice::WithElementType(type, true, [&]<typename T>(lattice::Element<T>) {
    if constexpr (std::integral<T>) {
      return ShareWholeStep<T>(values, n, step);
    } else {
      return lattice::AllStepsWithin<T>(values, n, step, allowed);
    }
  });
}

double MaxDeviationFromUniform(CPrimType type, std::size_t n, const void* values) {
  if (n <= 1) return 0.0;
  const double step = MeanStep(type, n, values);
  const double worst = lattice::WithElementType(type, 0.0, [&]<typename T>(lattice::Element<T>) {
    if constexpr (std::integral<T>) {
      const auto* const bytes = static_cast<const unsigned char*>(values);
      return lattice::WorstOfEachStep<T>(bytes, 1, n, step, 0.0);
    } else {
      return lattice::WorstStepError<T>(values, n, step);
    }
  });
  return std::fabs(worst / step) * 100.0;
}

}  // namespace trovan
