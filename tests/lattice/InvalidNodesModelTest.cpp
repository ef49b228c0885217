// The filters of invalid and out-of-range nodes beside a plain model of them.

#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>
#include <trovan/InvalidNodes.h>

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

constexpr double kInfinity = std::numeric_limits<double>::infinity();
using test::OneIn;

// Ordinary nodes, of which some, or none, or nearly all are troublesome.
NodeArray AnyNodes(std::mt19937& random, PrimType type) {
  const std::size_t n = OneIn(random, 30) ? 500 + Below(random, 3000) : Below(random, 71);
  NodeArray nodes(type, n, Below(random, 17), OneIn(random, 2) ? 0 : 64);
  constexpr unsigned kShares[] = {1, 2, 40, 100'000};
  const unsigned share = test::OneOf(random, kShares);
  for (std::size_t i = 0; i < n; ++i) {
    test::ModelStore(type, nodes.At(i), Below(random, 100));
    if (OneIn(random, share)) test::SetToTrouble(random, type, nodes.At(i));
  }
  return nodes;
}

PrimType AnyType(std::mt19937& random) {
  // Floats and doubles have most of the code.
  const auto number = static_cast<int>(Below(random, 2 * test::kElementTypes));
  return PrimType{number < test::kElementTypes ? number : 7 + number % 2};
}

TEST(InvalidNodesModel, AgreesOnInvalidNodes) {
  OnEachKindOfVectors([] {
    std::mt19937 random(20240611);
    int dirty = 0;
    for (int round = 0; round < 20'000; ++round) {
      const PrimType type = AnyType(random);
      NodeArray nodes = AnyNodes(random, type);
      NodeArray expected = nodes;
      const double replacement = test::TroubleDouble(random);
      const bool replaced =
          test::ModelFilterInvalid(expected.Data(), type, nodes.Count(), replacement);
      ASSERT_EQ(FilterInvalidNodes(nodes.Data(), type, nodes.Count(), replacement), replaced)
          << "round " << round << ": type " << type << ", " << nodes.Count() << " nodes";
      ASSERT_TRUE(nodes == expected) << "round " << round << ": type " << type << ", "
                                     << nodes.Count() << " nodes, " << replacement;
      dirty += replaced;
    }
    EXPECT_GT(dirty, 3'000);
  });
}

TEST(InvalidNodesModel, AgreesOnOutOfRangeNodes) {
  OnEachKindOfVectors([] {
    std::mt19937 random(20240612);
    int dirty = 0;
    for (int round = 0; round < 40'000; ++round) {
      const PrimType type = AnyType(random);
      NodeArray nodes = AnyNodes(random, type);
      NodeArray expected = nodes;
      const double replacement = test::TroubleDouble(random);
      const double lowest =
          OneIn(random, 3) ? test::TroubleDouble(random) : Below(random, 20) - 10.0;
      double highest = OneIn(random, 3) ? test::TroubleDouble(random) : Below(random, 20) + 90.0;
      // A node itself as a bound.
      if (nodes.Count() > 0 && OneIn(random, 3)) {
        highest = corvel::CPrimData::GetWideReal(
            type, nodes.At(Below(random, static_cast<unsigned>(nodes.Count()))));
      }
      const bool replaced = test::ModelFilterOutOfRange(expected.Data(), type, nodes.Count(),
                                                        replacement, lowest, highest);
      ASSERT_EQ(
          FilterOutOfRangeNodes(nodes.Data(), type, nodes.Count(), replacement, lowest, highest),
          replaced)
          << "round " << round << ": type " << type << ", " << lowest << " to " << highest;
      ASSERT_TRUE(nodes == expected) << "round " << round << ": type " << type << ", "
                                     << replacement << ", " << lowest << " to " << highest;
      dirty += replaced;
    }
    EXPECT_GT(dirty, 10'000);
  });
}

// The bounds of floats are moved to floats before vectors are compared with them: each float beside
// each bound, in both directions.
TEST(InvalidNodesModel, AgreesOnFloatsBesideTheBounds) {
  std::mt19937 random(20240613);
  for (int round = 0; round < 100'000; ++round) {
    const double bound = test::TroubleDouble(random);
    const auto near = static_cast<float>(std::fabs(bound) < 3e38 ? bound : 3e38);
    const float values[] = {
        near, std::nextafter(near, 1e38F), std::nextafter(near, -1e38F), -near, 0.0F, -0.0F};
    for (const float value : values) {
      float actual = value;
      const bool above = FilterOutOfRangeNodes(&actual, corvel::kFloat, 1, 7.0, -kInfinity, bound);
      ASSERT_EQ(above, static_cast<double>(value) > bound) << value << " above " << bound;
      actual = value;
      const bool below = FilterOutOfRangeNodes(&actual, corvel::kFloat, 1, 7.0, bound, kInfinity);
      ASSERT_EQ(below, bound > static_cast<double>(value)) << value << " below " << bound;
    }
  }
}

}  // namespace
}  // namespace trovan
