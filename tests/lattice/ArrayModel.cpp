#include "ArrayModel.h"

#include <algorithm>
#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "support/Random.h"

namespace trovan::test {
namespace {

using corvel::CPrimData;
using corvel::CPrimType;

// Two to the power of the exponent.
double Power(int exponent) { return std::ldexp(1.0, exponent); }

// The two's complement of the truncated number, or that of the most negative one of the width.
std::uint64_t TruncatedBits(double value, int width) {
  const double whole = std::trunc(value);
  if (std::isnan(whole) || whole < -Power(width - 1) || whole >= Power(width - 1)) {
    return ~std::uint64_t{0} << (width - 1);
  }
  const auto size = static_cast<std::uint64_t>(std::fabs(whole));
  return whole < 0 ? ~size + 1 : size;
}

// Byte by byte, the lowest first as the machine has it.
void StoreLowBytes(void* dst, std::uint64_t bits, std::size_t size) {
  std::memcpy(dst, &bits, size);
}

// By way of text, which the C library rounds for us and knows how to overflow.
float NearestFloat(double value) {
  if (std::isnan(value)) return static_cast<float>(value);
  char text[64];
  std::snprintf(text, sizeof text, "%a", value);
  return std::strtof(text, nullptr);
}

double Real(CPrimType type, const void* values, std::size_t i) {
  const auto size = static_cast<std::size_t>(type.Size());
  return CPrimData::GetWideReal(type, static_cast<const unsigned char*>(values) + i * size);
}

std::uint64_t WideBits(CPrimType type, const void* values, std::size_t i) {
  const auto size = static_cast<std::size_t>(type.Size());
  return static_cast<std::uint64_t>(
      CPrimData::GetWideInt(type, static_cast<const unsigned char*>(values) + i * size));
}

double MeanStep(CPrimType type, std::size_t n, const void* values) {
  return (Real(type, values, n - 1) - Real(type, values, 0)) / static_cast<double>(n - 1);
}

}  // namespace

void ModelStore(CPrimType type, void* dst, double value) {
  const auto size = static_cast<std::size_t>(type.Size());
  switch (static_cast<int>(type.Type())) {
    case 0:
    case 1:
    case 2:
    case 3:
    case 4:
      return StoreLowBytes(dst, TruncatedBits(value, 32), size);
    case 5:
    case 6:
      return StoreLowBytes(dst, TruncatedBits(value, 64), size);
    case 7: {
      const float nearest = NearestFloat(value);
      std::memcpy(dst, &nearest, size);
      return;
    }
    case 8:
      std::memcpy(dst, &value, size);
      return;
    default:
      return;
  }
}

void ModelConvert(CPrimType from, CPrimType to, const void* src, void* dst) {
  if (from == to) {
    std::copy_n(static_cast<const unsigned char*>(src), from.Size(),
                static_cast<unsigned char*>(dst));
  } else {
    ModelStore(to, dst, CPrimData::GetWideReal(from, src));
  }
}

void ModelScale(CPrimType type, void* dst, double value, double minValue, double maxValue) {
  const double range = maxValue - minValue;
  double scaled = value;
  switch (static_cast<int>(type.Type())) {
    case 0:
      scaled = (value - minValue) * 255.0 / range - 128.0;
      break;
    case 1:
      scaled = (value - minValue) * 255.0 / range;
      break;
    case 2:
      scaled = (value - minValue) * 65535.0 / range - 32768.0;
      break;
    case 3:
      scaled = (value - minValue) * 65535.0 / range;
      break;
    case 4:
      scaled = (value - minValue) * 4294967295.0 / range - 2147483648.0;
      break;
    case 5:
      scaled = (value - minValue) * 4294967295.0 / range;
      break;
    case 6:
      scaled = (value - minValue) * 4294967295.0 * 4294967295.0 / range;
      break;
    default:
      break;
  }
  ModelStore(type, dst, scaled);
}

bool ModelIsEquallySpaced(CPrimType type, std::size_t n, const void* values,
                          double tolerancePercent) {
  if (n == 1) return true;
  const double step = MeanStep(type, n, values);
  if (type == corvel::kFloat || type == corvel::kDouble) {
    const double allowed = tolerancePercent / 100.0 * step;
    for (std::size_t i = 1; i < n; ++i) {
      const double error = std::fabs(Real(type, values, i) - Real(type, values, i - 1) - step);
      if (error > allowed) return false;
    }
    return true;
  }
  if (std::isnan(step) || step != std::trunc(step) || std::fabs(step) > Power(63) ||
      step == Power(63)) {
    return false;
  }
  const std::uint64_t whole = TruncatedBits(step, 64);
  for (std::size_t i = 1; i < n; ++i) {
    if (WideBits(type, values, i) - WideBits(type, values, i - 1) != whole) return false;
  }
  return true;
}

double ModelMaxDeviation(CPrimType type, std::size_t n, const void* values) {
  if (n == 1) return 0.0;
  const double step = MeanStep(type, n, values);
  double worst = 0.0;
  for (std::size_t i = 1; i < n; ++i) {
    const double error = std::fabs(Real(type, values, i) - Real(type, values, i - 1) - step);
    if (!std::isnan(error) && error > worst) worst = error;
  }
  return std::fabs(worst / step) * 100.0;
}

bool ModelFilterInvalid(void* data, corvel::PrimType type, std::size_t n, double replacement) {
  if (type != corvel::kFloat && type != corvel::kDouble) return false;
  const auto size = static_cast<std::size_t>(CPrimType(type).Size());
  std::size_t count = 0;
  for (std::size_t i = 0; i < n; ++i) {
    if (std::isfinite(Real(type, data, i))) continue;
    ModelStore(type, static_cast<unsigned char*>(data) + i * size, replacement);
    ++count;
  }
  return count != 0;
}

bool ModelFilterOutOfRange(void* data, corvel::PrimType type, std::size_t n, double replacement,
                           double minValue, double maxValue) {
  const int number = type;
  const bool isHandled = number == 8 || number == 7 || (number >= 2 && number <= 5);
  if (!isHandled) return false;
  const auto size = static_cast<std::size_t>(CPrimType(type).Size());
  std::size_t count = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const double value = Real(type, data, i);
    if (!(value > maxValue || minValue > value)) continue;
    ModelStore(type, static_cast<unsigned char*>(data) + i * size, replacement);
    ++count;
  }
  return count != 0;
}

double TroubleDouble(std::mt19937& random) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr double kSpecial[] = {0.0,     kInfinity, NAN,     DBL_MAX,  DBL_MIN,
                                 5e-324,  FLT_MAX,   FLT_MIN, 0x1p-149, 0x1.ffffffp127,
                                 0x1p128, 255.0,     127.0,   32767.0,  65535.0};
  double value = 0.0;
  switch (Below(random, 6)) {
    case 0:
      value = kSpecial[Below(random, std::size(kSpecial))];
      break;
    case 1:  // the bounds of the integer types
      value = Power(static_cast<int>(Below(random, 66)));
      break;
    case 2:
      value = Below(random, 2000) / 2.0;
      break;
    case 3:
      value = std::ldexp(AnyUnsigned(random) / 4294967296.0, static_cast<int>(Below(random, 72)));
      break;
    case 4:
      value = static_cast<double>(std::bit_cast<float>(AnyUnsigned(random)));
      break;
    default:
      value = std::bit_cast<double>(std::uint64_t{AnyUnsigned(random)} << 32 | AnyUnsigned(random));
      break;
  }
  if (OneIn(random, 4)) value = std::nextafter(value, kInfinity);
  if (OneIn(random, 4)) value = std::nextafter(value, -kInfinity);
  if (OneIn(random, 8)) value -= 0.5;
  return OneIn(random, 2) ? value : -value;
}

void SetToTrouble(std::mt19937& random, CPrimType type, void* element) {
  if (OneIn(random, 2)) {
    ModelStore(type, element, TroubleDouble(random));
  } else {
    const std::uint64_t bits = std::uint64_t{AnyUnsigned(random)} << 32 | AnyUnsigned(random);
    StoreLowBytes(element, bits, static_cast<std::size_t>(type.Size()));
  }
}

}  // namespace trovan::test
