#include <trovan/TypedArrays.h>

#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "ArrayModel.h"
#include "NodeArray.h"

#if defined(__x86_64__)
#include <emmintrin.h>
#endif

namespace trovan {
namespace {

using corvel::CPrimType;
using corvel::PrimType;
using enum corvel::PrimType;
using test::NodeArray;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr std::int32_t kMin32 = std::numeric_limits<std::int32_t>::min();
constexpr std::int64_t kMin64 = std::numeric_limits<std::int64_t>::min();

// The element of type `to` that a double becomes.
template <typename T>
T Converted(CPrimType to, double value) {
  T element{};
  PTConvertByTruncation(kDouble, to, &value, &element);
  return element;
}

template <typename T>
T Scaled(CPrimType type, double value, double minValue, double maxValue) {
  T element{};
  PTScaleDoubleToOtherType(type, &element, value, minValue, maxValue);
  return element;
}

TEST(PTConvertByTruncation, TruncatesTowardZeroAndKeepsTheLowBits) {
  const struct {
    double value;
    std::int8_t int8;
    std::uint8_t uint8;
    std::int16_t int16;
    std::uint16_t uint16;
    std::int32_t int32;
    std::uint32_t uint32;
    std::int64_t int64;
  } cases[] = {
      {0.0, 0, 0, 0, 0, 0, 0, 0},
      {-0.0, 0, 0, 0, 0, 0, 0, 0},
      {-0.9, 0, 0, 0, 0, 0, 0, 0},
      {300.7, 44, 44, 300, 300, 300, 300, 300},
      {-1.5, -1, 255, -1, 65535, -1, 4294967295, -1},
      {2147483647.9, -1, 255, -1, 65535, 2147483647, 2147483647, 2147483647},
      {2147483648.0, 0, 0, 0, 0, kMin32, 2147483648, 2147483648},
      {-2147483648.9, 0, 0, 0, 0, kMin32, 2147483648, -2147483648},
      {-2147483649.0, 0, 0, 0, 0, kMin32, 2147483647, -2147483649},
      {4294967295.5, 0, 0, 0, 0, kMin32, 4294967295, 4294967295},
      {4294967296.5, 0, 0, 0, 0, kMin32, 0, 4294967296},
      {9223372036854774784.0, 0, 0, 0, 0, kMin32, 4294966272, 9223372036854774784},
      {9223372036854775808.0, 0, 0, 0, 0, kMin32, 0, kMin64},
      {-9223372036854775808.0, 0, 0, 0, 0, kMin32, 0, kMin64},
      {1e20, 0, 0, 0, 0, kMin32, 0, kMin64},
      {-1e20, 0, 0, 0, 0, kMin32, 0, kMin64},
      {kInfinity, 0, 0, 0, 0, kMin32, 0, kMin64},
      {-kInfinity, 0, 0, 0, 0, kMin32, 0, kMin64},
      {kNaN, 0, 0, 0, 0, kMin32, 0, kMin64},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.value);
    EXPECT_EQ(Converted<std::int8_t>(kInt8, c.value), c.int8);
    EXPECT_EQ(Converted<std::uint8_t>(kUInt8, c.value), c.uint8);
    EXPECT_EQ(Converted<std::int16_t>(kInt16, c.value), c.int16);
    EXPECT_EQ(Converted<std::uint16_t>(kUInt16, c.value), c.uint16);
    EXPECT_EQ(Converted<std::int32_t>(kInt32, c.value), c.int32);
    EXPECT_EQ(Converted<std::uint32_t>(kUInt32, c.value), c.uint32);
    EXPECT_EQ(Converted<std::int64_t>(kInt64, c.value), c.int64);
  }
}

TEST(PTConvertByTruncation, GivesTheNearestFloat) {
  const struct {
    double value;
    float expected;
  } cases[] = {
      {0.1, 0.1F},
      {16777217.0, 16777216.0F},  // a tie goes to the even one
      {16777219.0, 16777220.0F},
      {1e-46, 0.0F},
      {0x1.000001p-149, 0x1p-149F},
      {FLT_MAX, FLT_MAX},
      {0x1.fffffefffffffp127, FLT_MAX},  // less than half a step beyond
      {0x1.ffffffp127, std::numeric_limits<float>::infinity()},
      {-0x1.fffffefffffffp127, -FLT_MAX},
      {-0x1.ffffffp127, -std::numeric_limits<float>::infinity()},
      {DBL_MAX, std::numeric_limits<float>::infinity()},
      {-kInfinity, -std::numeric_limits<float>::infinity()},
  };
  for (const auto& c : cases) EXPECT_EQ(Converted<float>(kFloat, c.value), c.expected) << c.value;
  EXPECT_TRUE(std::signbit(Converted<float>(kFloat, -0.0)));
  EXPECT_TRUE(std::isnan(Converted<float>(kFloat, kNaN)));
}

TEST(PTConvertByTruncation, CopiesTheBytesBetweenEqualTypes) {
  for (int number = 0; number < test::kElementTypes; ++number) {
    const PrimType type{number};
    NodeArray source(type, 1, 1);
    NodeArray target(type, 1, 1);
    // A signalling NaN of floats and doubles, which a load through a register could change.
    const unsigned char bytes[] = {0x55, 0xAA, 0xBF, 0x7F, 0x01, 0x02, 0xF4, 0x7F};
    std::memcpy(source.Data(), bytes, static_cast<std::size_t>(CPrimType(type).Size()));
    PTConvertByTruncation(type, type, source.Data(), target.Data());
    EXPECT_TRUE(target == source) << number;
  }
}

TEST(PTConvertByTruncation, GoesThroughADoubleEvenBetweenIntegers) {
  std::int64_t source = 9007199254740993;  // 2^53 + 1
  std::uint32_t target = 7;
  PTConvertByTruncation(kInt64, kUInt32, &source, &target);
  EXPECT_EQ(target, 0U);
  source = std::numeric_limits<std::int64_t>::max();  // rounds up to 2^63
  std::uint8_t byte = 7;
  PTConvertByTruncation(kInt64, kUInt8, &source, &byte);
  EXPECT_EQ(byte, 0);
}

TEST(PTConvertByTruncation, ConvertsInPlace) {
  double memory = -1.5;
  PTConvertByTruncation(kDouble, kUInt16, &memory, &memory);
  std::uint16_t converted = 0;
  std::memcpy(&converted, &memory, sizeof converted);
  EXPECT_EQ(converted, 65535);
  PTConvertByTruncation(kUInt16, kUInt16, &memory, &memory);
  PTConvertByTruncation(kUInt16, kDouble, &memory, &memory);
  EXPECT_EQ(memory, 65535.0);
}

TEST(PTConvertByTruncation, StoresNothingInWhatIsNoElementType) {
  for (const int number : test::kUnknownTypes) {
    double source = 1.0;
    NodeArray target(kDouble, 1);
    const NodeArray before = target;
    PTConvertByTruncation(kDouble, PrimType{number}, &source, target.Data());
    PTConvertByTruncation(PrimType{number}, PrimType{number}, &source, target.Data());
    PTConvertByTruncation(PrimType{number}, PrimType{12}, &source, target.Data());
    EXPECT_TRUE(target == before) << number;
  }
  PTConvertByTruncation(PrimType{9}, PrimType{9}, nullptr, nullptr);
}

TEST(PTConvertByTruncation, TakesZeroFromWhatIsNoElementType) {
  double target = 1.0;
  PTConvertByTruncation(PrimType{9}, kDouble, nullptr, &target);
  EXPECT_EQ(target, 0.0);
}

#if defined(__x86_64__)
TEST(PTConvertByTruncation, GivesWhatTheProcessorsOwnInstructionsGive) {
  std::mt19937 random(20240611);
  for (int round = 0; round < 100'000; ++round) {
    const volatile double hidden = test::TroubleDouble(random);  // or the compiler would compute
    const double value = hidden;
    ASSERT_EQ(Converted<std::int32_t>(kInt32, value), _mm_cvttsd_si32(_mm_set_sd(value))) << value;
    ASSERT_EQ(Converted<std::int64_t>(kInt64, value), _mm_cvttsd_si64(_mm_set_sd(value))) << value;
    const float nearest = _mm_cvtss_f32(_mm_cvtsd_ss(_mm_setzero_ps(), _mm_set_sd(value)));
    ASSERT_EQ(std::bit_cast<std::uint32_t>(Converted<float>(kFloat, value)),
              std::bit_cast<std::uint32_t>(nearest))
        << value;
  }
}
#endif

TEST(PTScaleDoubleToOtherType, MapsTheEndsToTheEndsOfTheType) {
  EXPECT_EQ(Scaled<std::int8_t>(kInt8, 0, 0, 10), -128);
  EXPECT_EQ(Scaled<std::int8_t>(kInt8, 10, 0, 10), 127);
  EXPECT_EQ(Scaled<std::uint8_t>(kUInt8, -3, -3, 3), 0);
  EXPECT_EQ(Scaled<std::uint8_t>(kUInt8, 3, -3, 3), 255);
  EXPECT_EQ(Scaled<std::int16_t>(kInt16, 0, 0, 10), -32768);
  EXPECT_EQ(Scaled<std::int16_t>(kInt16, 10, 0, 10), 32767);
  EXPECT_EQ(Scaled<std::uint16_t>(kUInt16, 0, 0, 10), 0);
  EXPECT_EQ(Scaled<std::uint16_t>(kUInt16, 10, 0, 10), 65535);
  EXPECT_EQ(Scaled<std::int32_t>(kInt32, 0, 0, 10), kMin32);
  EXPECT_EQ(Scaled<std::int32_t>(kInt32, 10, 0, 10), 2147483647);
  EXPECT_EQ(Scaled<std::uint32_t>(kUInt32, 0, 0, 10), 0U);
  EXPECT_EQ(Scaled<std::uint32_t>(kUInt32, 10, 0, 10), 4294967295U);
}

TEST(PTScaleDoubleToOtherType, TruncatesTowardZeroInBetween) {
  EXPECT_EQ(Scaled<std::int8_t>(kInt8, 5, 0, 10), 0);     // -0.5
  EXPECT_EQ(Scaled<std::int8_t>(kInt8, 4.9, 0, 10), -3);  // -3.05
  EXPECT_EQ(Scaled<std::uint8_t>(kUInt8, 5, 0, 10), 127);
  EXPECT_EQ(Scaled<std::uint16_t>(kUInt16, 5, 0, 10), 32767);
}

TEST(PTScaleDoubleToOtherType, WrapsOutsideTheRange) {
  EXPECT_EQ(Scaled<std::uint8_t>(kUInt8, 11, 0, 10), 24);   // 280.5
  EXPECT_EQ(Scaled<std::uint8_t>(kUInt8, -1, 0, 10), 231);  // -25.5
  EXPECT_EQ(Scaled<std::int32_t>(kInt32, 11, 0, 10), kMin32);
  EXPECT_EQ(Scaled<std::uint32_t>(kUInt32, 20, 0, 10), 4294967294U);
}

TEST(PTScaleDoubleToOtherType, ScalesSixtyFourBitsFromZeroAndOverflowsInTheUpperHalf) {
  EXPECT_EQ(Scaled<std::int64_t>(kInt64, 0, 0, 10), 0);
  EXPECT_EQ(Scaled<std::int64_t>(kInt64, 2.5, 0, 10), 4611686016279904256);
  EXPECT_EQ(Scaled<std::int64_t>(kInt64, 4.99, 0, 10),
            static_cast<std::int64_t>(4.99 * 4294967295.0 * 4294967295.0 / 10.0));
  EXPECT_EQ(Scaled<std::int64_t>(kInt64, 6, 0, 10), kMin64);
  EXPECT_EQ(Scaled<std::int64_t>(kInt64, 10, 0, 10), kMin64);
}

TEST(PTScaleDoubleToOtherType, DoesNotScaleFloatsAndDoubles) {
  EXPECT_EQ(Scaled<float>(kFloat, 0.1, 5, 5), 0.1F);
  EXPECT_EQ(Scaled<float>(kFloat, 1e300, 0, kNaN), std::numeric_limits<float>::infinity());
  EXPECT_EQ(Scaled<double>(kDouble, 0.1, 5, 5), 0.1);
  EXPECT_EQ(Scaled<double>(kDouble, -kInfinity, kNaN, kInfinity), -kInfinity);
}

TEST(PTScaleDoubleToOtherType, GivesTheMostNegativeValueOfTheWidthForARangeOfZero) {
  for (const double value : {4.0, 5.0, 6.0}) {  // minus infinity, NaN, infinity
    EXPECT_EQ(Scaled<std::int8_t>(kInt8, value, 5, 5), 0) << value;
    EXPECT_EQ(Scaled<std::uint8_t>(kUInt8, value, 5, 5), 0) << value;
    EXPECT_EQ(Scaled<std::int16_t>(kInt16, value, 5, 5), 0) << value;
    EXPECT_EQ(Scaled<std::uint16_t>(kUInt16, value, 5, 5), 0) << value;
    EXPECT_EQ(Scaled<std::int32_t>(kInt32, value, 5, 5), kMin32) << value;
    EXPECT_EQ(Scaled<std::uint32_t>(kUInt32, value, 5, 5), 0U) << value;
    EXPECT_EQ(Scaled<std::int64_t>(kInt64, value, 5, 5), kMin64) << value;
  }
}

TEST(PTScaleDoubleToOtherType, MultipliesFromLeftToRightBeforeItDivides) {
  constexpr double kSpan = 4294967295.0;
  int quotientFirst = 0;  // results that another order would change
  int factorsFirst = 0;
  for (int i = 0; i < 500; ++i) {
    const double value = i / 7.0;
    const auto expected = static_cast<std::int64_t>(value * kSpan * kSpan / 1000.0);
    EXPECT_EQ(Scaled<std::int64_t>(kInt64, value, 0, 1000), expected) << value;
    if (expected != static_cast<std::int64_t>(value / 1000.0 * kSpan * kSpan)) ++quotientFirst;
    if (expected != static_cast<std::int64_t>(value * (kSpan * kSpan) / 1000.0)) ++factorsFirst;
  }
  EXPECT_GT(quotientFirst, 0);
  EXPECT_GT(factorsFirst, 0);
}

TEST(PTScaleDoubleToOtherType, StoresNothingInWhatIsNoElementType) {
  for (const int number : test::kUnknownTypes) {
    NodeArray target(kDouble, 1);
    const NodeArray before = target;
    PTScaleDoubleToOtherType(PrimType{number}, target.Data(), 5, 0, 10);
    EXPECT_TRUE(target == before) << number;
  }
}

}  // namespace
}  // namespace trovan
