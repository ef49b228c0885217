#include <trovan/TypedArrays.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "ArrayModel.h"
#include "NodeArray.h"
#include "VectorKinds.h"

namespace trovan {
namespace {

using corvel::PrimType;
using enum corvel::PrimType;
using test::NodeArray;
using test::OnEachKindOfVectors;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

bool Spaced(const NodeArray& axis, double tolerancePercent) {
  return IsEquallySpaced(axis.Type(), axis.Count(), axis.Data(), tolerancePercent);
}

double Deviation(const NodeArray& axis) {
  return MaxDeviationFromUniform(axis.Type(), axis.Count(), axis.Data());
}

TEST(VectorKinds, AreThoseOfTheProcessorAndThePlainOne) {
  EXPECT_FALSE(test::VectorKinds().empty());
#if defined(__x86_64__)
  EXPECT_GE(test::VectorKinds().size(), 2U) << "only the plain loops can be tested here";
#endif
}

TEST(IsEquallySpaced, HoldsForOneValueOfAnyType) {
  for (int number = 0; number < test::kElementTypes; ++number) {
    EXPECT_TRUE(Spaced(NodeArray(PrimType{number}, 1), -1.0)) << number;
  }
  EXPECT_TRUE(Spaced(NodeArray(kDouble, std::vector<double>{kNaN}), 0.0));
  for (const int number : test::kUnknownTypes) {
    EXPECT_TRUE(IsEquallySpaced(PrimType{number}, 1, nullptr, 0.0)) << number;
  }
}

TEST(IsEquallySpaced, ComparesEachRealStepWithTheMeanStep) {
  const struct {
    const char* name;
    std::vector<double> axis;
    double tolerancePercent;
    bool expected;
  } cases[] = {
      {"exact steps", {0, 1, 2}, 0.0, true},
      {"two values", {7, -0.5}, 1000.0, false},
      {"two values upward", {-0.5, 7}, 0.0, true},
      {"5 % off, 10 % allowed", {0, 1, 2.05, 3}, 10.0, true},
      {"5 % off, 1 % allowed", {0, 1, 2.05, 3}, 1.0, false},
      {"off by just what is allowed", {0, 1.5, 2}, 50.0, true},
      {"off by more", {0, 1.5, 2}, 49.9, false},
      {"descending", {3, 2, 1}, 10.0, false},
      {"descending, with a negative tolerance", {3, 2, 1}, -10.0, true},
      {"ascending, with a negative tolerance", {1, 2, 3}, -10.0, false},
      {"all equal", {4, 4, 4}, 0.0, true},
      {"mean step of zero", {4, 5, 4}, 100.0, false},
      {"NaN within", {0, kNaN, 2}, 0.0, true},
      {"NaN within, and a step that fails", {0, kNaN, 2, 9, 4}, 0.0, false},
      {"NaN first: the mean step is none", {kNaN, 1, 500}, 0.0, true},
      {"NaN last", {1, 500, kNaN}, 0.0, true},
      {"NaN tolerance", {0, 5, 6}, kNaN, true},
      {"infinity within", {0, kInfinity, 2}, 1e300, false},
      {"infinity last", {0, 1, kInfinity}, 10.0, true},  // infinity is allowed
      {"infinity first", {kInfinity, 1, 0}, 10.0, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    OnEachKindOfVectors([&c] {
      EXPECT_EQ(Spaced(NodeArray(kDouble, c.axis), c.tolerancePercent), c.expected);
      const std::vector<float> floats(c.axis.begin(), c.axis.end());
      EXPECT_EQ(Spaced(NodeArray(kFloat, floats), c.tolerancePercent), c.expected);
    });
  }
}

TEST(IsEquallySpaced, WantsOneWholeStepOfIntegersWhateverTheTolerance) {
  const struct {
    std::vector<std::int32_t> axis;
    bool expected;
  } cases[] = {
      {{0, 2, 4}, true},  {{3, 2, 1}, true},     {{0, 2, 5}, false},
      {{0, 1, 4}, false}, {{5, 5, 5}, true},     {{0, 1, 3, 3}, false},
      {{-4, 4}, true},    {{0, 2, 3, 6}, false}, {{0, 3, 4, 6}, false},
  };
  for (const auto& c : cases) {
    for (const double tolerance : {0.0, 1000.0, -5.0, kNaN}) {
      EXPECT_EQ(Spaced(NodeArray(kInt32, c.axis), tolerance), c.expected)
          << testing::PrintToString(c.axis);
      const std::vector<std::int16_t> shorts(c.axis.begin(), c.axis.end());
      EXPECT_EQ(Spaced(NodeArray(kInt16, shorts), tolerance), c.expected)
          << testing::PrintToString(c.axis);
    }
  }
}

TEST(IsEquallySpaced, ComparesLongIntegersExactly) {
  constexpr std::int64_t kBig = std::int64_t{1} << 60;
  EXPECT_TRUE(
      Spaced(NodeArray(kInt64, std::vector<std::int64_t>{kBig, kBig + 256, kBig + 512}), 0));
  EXPECT_FALSE(
      Spaced(NodeArray(kInt64, std::vector<std::int64_t>{kBig, kBig + 255, kBig + 512}), 0));
}

TEST(IsEquallySpaced, WrapsDifferencesOfLongIntegersAround) {
  constexpr auto kMin = std::numeric_limits<std::int64_t>::min();
  constexpr auto kMax = std::numeric_limits<std::int64_t>::max();
  // The mean step is that of the doubles: 2^64, which is no 64-bit integer, and 2^63 likewise.
  EXPECT_FALSE(Spaced(NodeArray(kInt64, std::vector<std::int64_t>{kMin, kMax}), 0));
  EXPECT_FALSE(Spaced(NodeArray(kInt64, std::vector<std::int64_t>{kMin, 0}), 0));
  EXPECT_TRUE(Spaced(NodeArray(kInt64, std::vector<std::int64_t>{0, kMin}), 0));
  // 2^62 up from 2^62 is -2^63 here, and up again: equal steps around the circle, whose mean as
  // doubles is -2^63 / 2 and not 2^62.
  EXPECT_FALSE(
      Spaced(NodeArray(kInt64, std::vector<std::int64_t>{kMax / 2 + 1, kMin, -(kMax / 2 + 1)}), 0));
  // The way from the greatest value to the least one is a step of 1, as is the mean of the rest.
  EXPECT_FALSE(Spaced(NodeArray(kInt64, std::vector<std::int64_t>{kMax, kMin}), 0));
}

TEST(IsEquallySpaced, FindsTheStepThatFailsAtEveryPlace) {
  OnEachKindOfVectors([] {
    for (std::size_t n = 3; n <= 70; ++n) {
      std::vector<double> axis(n);
      for (std::size_t i = 0; i < n; ++i) axis[i] = static_cast<double>(i);
      ASSERT_TRUE(Spaced(NodeArray(kDouble, axis), 1.0)) << n;
      for (std::size_t bad = 1; bad + 1 < n; ++bad) {
        axis[bad] += 0.25;
        const std::vector<float> floats(axis.begin(), axis.end());
        ASSERT_FALSE(Spaced(NodeArray(kDouble, axis), 1.0)) << n << ": " << bad;
        ASSERT_FALSE(Spaced(NodeArray(kFloat, floats), 1.0)) << n << ": " << bad;
        ASSERT_TRUE(Spaced(NodeArray(kDouble, axis), 25.0)) << n << ": " << bad;
        ASSERT_TRUE(Spaced(NodeArray(kFloat, floats), 25.0)) << n << ": " << bad;
        axis[bad] -= 0.25;
      }
    }
  });
}

TEST(IsEquallySpaced, LooksAtLongAxesToTheEnd) {
  OnEachKindOfVectors([] {
    constexpr std::size_t kCount = 10'000;
    NodeArray axis(kDouble, kCount);
    for (std::size_t i = 0; i < kCount; ++i) axis.Set(i, static_cast<double>(i));
    EXPECT_TRUE(Spaced(axis, 1.0));
    for (const std::size_t bad : {std::size_t{1}, std::size_t{1024}, kCount / 2, kCount - 2}) {
      axis.Set(bad, static_cast<double>(bad) + 0.25);
      EXPECT_FALSE(Spaced(axis, 1.0)) << bad;
      EXPECT_DOUBLE_EQ(Deviation(axis), 25.0) << bad;
      axis.Set(bad, static_cast<double>(bad));
    }
  });
}

TEST(IsEquallySpaced, TakesWhatIsNoElementTypeForZeros) {
  for (const int number : test::kUnknownTypes) {
    EXPECT_TRUE(IsEquallySpaced(PrimType{number}, 5, nullptr, 0.0)) << number;
    EXPECT_TRUE(std::isnan(MaxDeviationFromUniform(PrimType{number}, 5, nullptr))) << number;
    EXPECT_EQ(MaxDeviationFromUniform(PrimType{number}, 1, nullptr), 0.0) << number;
  }
}

TEST(MaxDeviationFromUniform, IsInPercentOfTheMeanStep) {
  OnEachKindOfVectors([] {
    EXPECT_NEAR(Deviation(NodeArray(kDouble, std::vector<double>{0, 1, 2.05, 3})), 5.0, 1e-12);
    EXPECT_EQ(Deviation(NodeArray(kDouble, std::vector<double>{0, 2, 5})), 20.0);
    EXPECT_EQ(Deviation(NodeArray(kDouble, std::vector<double>{5, 2, 0})), 20.0);  // descending
    EXPECT_EQ(Deviation(NodeArray(kFloat, std::vector<float>{0, 2, 5})), 20.0);
    EXPECT_EQ(Deviation(NodeArray(kInt32, std::vector<std::int32_t>{0, 2, 5})), 20.0);
    EXPECT_EQ(Deviation(NodeArray(kUInt8, std::vector<std::uint8_t>{5, 2, 0})), 20.0);
    EXPECT_EQ(Deviation(NodeArray(kDouble, std::vector<double>{1, 2, 3})), 0.0);
  });
}

TEST(MaxDeviationFromUniform, IsZeroForOneValue) {
  EXPECT_EQ(Deviation(NodeArray(kDouble, std::vector<double>{kNaN})), 0.0);
  EXPECT_EQ(Deviation(NodeArray(kInt16, 1)), 0.0);
}

TEST(MaxDeviationFromUniform, DividesByAMeanStepOfZero) {
  OnEachKindOfVectors([] {
    EXPECT_EQ(Deviation(NodeArray(kDouble, std::vector<double>{4, 5, 4})), kInfinity);
    EXPECT_EQ(Deviation(NodeArray(kInt32, std::vector<std::int32_t>{4, 5, 4})), kInfinity);
    EXPECT_TRUE(std::isnan(Deviation(NodeArray(kDouble, std::vector<double>{4, 4, 4}))));
    EXPECT_TRUE(std::isnan(Deviation(NodeArray(kInt64, std::vector<std::int64_t>{4, 4}))));
  });
}

TEST(MaxDeviationFromUniform, LeavesNanDifferencesOut) {
  OnEachKindOfVectors([] {
    EXPECT_EQ(Deviation(NodeArray(kDouble, std::vector<double>{0, kNaN, 2})), 0.0);
    EXPECT_EQ(Deviation(NodeArray(kDouble, std::vector<double>{0, 1.5, kNaN, 3, 4})), 50.0);
    EXPECT_TRUE(std::isnan(Deviation(NodeArray(kDouble, std::vector<double>{kNaN, 1, 9}))));
    EXPECT_TRUE(std::isnan(Deviation(NodeArray(kDouble, std::vector<double>{0, 1, kInfinity}))));
    EXPECT_EQ(Deviation(NodeArray(kDouble, std::vector<double>{0, kInfinity, 2})), kInfinity);
    EXPECT_EQ(Deviation(NodeArray(kDouble, std::vector<double>{0, -kInfinity, 2})), kInfinity);
  });
}

TEST(MaxDeviationFromUniform, FindsTheWorstStepAtEveryPlace) {
  OnEachKindOfVectors([] {
    for (std::size_t n = 3; n <= 70; ++n) {
      std::vector<double> axis(n);
      for (std::size_t i = 0; i < n; ++i) axis[i] = static_cast<double>(i);
      for (std::size_t bad = 1; bad + 1 < n; ++bad) {
        axis[bad] -= 0.25;
        const std::vector<float> floats(axis.begin(), axis.end());
        ASSERT_EQ(Deviation(NodeArray(kDouble, axis)), 25.0) << n << ": " << bad;
        ASSERT_EQ(Deviation(NodeArray(kFloat, floats)), 25.0) << n << ": " << bad;
        axis[bad] += 0.25;
      }
    }
  });
}

}  // namespace
}  // namespace trovan
