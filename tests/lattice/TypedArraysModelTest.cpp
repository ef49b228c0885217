// The functions on typed arrays beside a plain model of them, on thousands of random inputs.

#include <bit>
#include <cmath>
#include <cstdint>
#include <random>

#include <gtest/gtest.h>
#include <trovan/TypedArrays.h>

#include "ArrayModel.h"
#include "NodeArray.h"
#include "VectorKinds.h"
#include "support/Random.h"

namespace trovan {
namespace {

using corvel::PrimType;
using test::Below;
using test::NodeArray;
using test::OnEachKindOfVectors;
using test::OneIn;

PrimType AnyElementType(std::mt19937& random) {
  return PrimType{static_cast<int>(Below(random, test::kElementTypes))};
}

// Now and then one that is none.
PrimType AnyType(std::mt19937& random) {
  if (!OneIn(random, 20)) return AnyElementType(random);
  return PrimType{test::kUnknownTypes[Below(random, std::size(test::kUnknownTypes))]};
}

// Half of all arrays have no guard, so that the address sanitizer sees what lies beyond.
NodeArray AnyPlace(std::mt19937& random, PrimType type, std::size_t n) {
  return {type, n, Below(random, 17), OneIn(random, 2) ? 0U : 64U};
}

// An axis that may or may not be equally spaced: troublesome values, or even steps of which a few
// are spoilt.
NodeArray AnyAxis(std::mt19937& random) {
  const PrimType type = AnyElementType(random);
  const std::size_t n = OneIn(random, 30) ? 1000 + Below(random, 3000) : 1 + Below(random, 70);
  NodeArray axis = AnyPlace(random, type, n);
  const bool isWild = OneIn(random, 4);
  const double first = OneIn(random, 8) ? test::TroubleDouble(random) : Below(random, 200) - 100.0;
  const double step =
      OneIn(random, 8) ? test::TroubleDouble(random) : Below(random, 33) / 4.0 - 2.0;
  for (std::size_t i = 0; i < n; ++i) {
    test::ModelStore(type, axis.At(i), first + static_cast<double>(i) * step);
    if (isWild) test::SetToTrouble(random, type, axis.At(i));
  }
  for (unsigned spoilt = Below(random, 3); spoilt > 0 && !isWild; --spoilt) {
    const std::size_t i = Below(random, static_cast<unsigned>(n));
    if (OneIn(random, 3)) {
      test::SetToTrouble(random, type, axis.At(i));
    } else {
      test::ModelStore(
          type, axis.At(i),
          corvel::CPrimData::GetWideReal(type, axis.At(i)) + Below(random, 9) / 4.0 - 1);
    }
  }
  return axis;
}

double AnyTolerance(std::mt19937& random) {
  constexpr double kUsual[] = {0.0, 1.0, 10.0, 50.0, 100.0, 500.0, -10.0, 1e9};
  return OneIn(random, 8) ? test::TroubleDouble(random) : kUsual[Below(random, std::size(kUsual))];
}

TEST(TypedArraysModel, AgreesOnConversions) {
  std::mt19937 random(20240611);
  for (int round = 0; round < 200'000; ++round) {
    const PrimType from = AnyType(random);
    const PrimType to = AnyType(random);
    NodeArray source = AnyPlace(random, from, 1);
    if (from >= 0 && from < test::kElementTypes) test::SetToTrouble(random, from, source.Data());
    NodeArray target = AnyPlace(random, to, 1);
    NodeArray expected = target;
    test::ModelConvert(from, to, source.Data(), expected.Data());
    PTConvertByTruncation(from, to, source.Data(), target.Data());
    ASSERT_TRUE(target == expected) << "round " << round << ": " << from << " to " << to;
  }
}

TEST(TypedArraysModel, AgreesOnScaling) {
  std::mt19937 random(20240612);
  for (int round = 0; round < 200'000; ++round) {
    const PrimType type = AnyType(random);
    const double value = test::TroubleDouble(random);
    const double minValue = OneIn(random, 2) ? test::TroubleDouble(random) : 0.0;
    const double maxValue = OneIn(random, 2) ? test::TroubleDouble(random) : 2 * value + 1;
    NodeArray target = AnyPlace(random, type, 1);
    NodeArray expected = target;
    test::ModelScale(type, expected.Data(), value, minValue, maxValue);
    PTScaleDoubleToOtherType(type, target.Data(), value, minValue, maxValue);
    ASSERT_TRUE(target == expected) << "round " << round << ": type " << type << ", " << value
                                    << " in " << minValue << " to " << maxValue;
  }
}

TEST(TypedArraysModel, AgreesOnEqualSpacing) {
  OnEachKindOfVectors([] {
    std::mt19937 random(20240613);
    int spaced = 0;
    constexpr int kRounds = 20'000;
    for (int round = 0; round < kRounds; ++round) {
      const NodeArray axis = AnyAxis(random);
      const double tolerance = AnyTolerance(random);
      const bool expected =
          test::ModelIsEquallySpaced(axis.Type(), axis.Count(), axis.Data(), tolerance);
      ASSERT_EQ(IsEquallySpaced(axis.Type(), axis.Count(), axis.Data(), tolerance), expected)
          << "round " << round << ": type " << axis.Type().Type() << ", " << axis.Count()
          << " values, " << tolerance;
      spaced += expected;
    }
    EXPECT_GT(spaced, kRounds / 10);
    EXPECT_LT(spaced, kRounds * 9 / 10);
  });
}

TEST(TypedArraysModel, AgreesOnDeviationsToTheLastBit) {
  OnEachKindOfVectors([] {
    std::mt19937 random(20240614);
    int numbers = 0;
    for (int round = 0; round < 20'000; ++round) {
      const NodeArray axis = AnyAxis(random);
      const double expected = test::ModelMaxDeviation(axis.Type(), axis.Count(), axis.Data());
      const double actual = MaxDeviationFromUniform(axis.Type(), axis.Count(), axis.Data());
      if (std::isnan(expected)) {
        ASSERT_TRUE(std::isnan(actual)) << "round " << round << ": " << actual;
        continue;
      }
      ASSERT_EQ(std::bit_cast<std::uint64_t>(actual), std::bit_cast<std::uint64_t>(expected))
          << "round " << round << ": type " << axis.Type().Type() << ", " << axis.Count()
          << " values: " << actual << " and not " << expected;
      ++numbers;
    }
    EXPECT_GT(numbers, 10'000);
  });
}

}  // namespace
}  // namespace trovan
