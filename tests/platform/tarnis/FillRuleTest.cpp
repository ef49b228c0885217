#include <cmath>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include <tarnis/FillRule.h>

#include "RandomRings.h"
#include "SlabArea.h"

namespace tarnis::testing {
namespace {

double Area(const Polygon2& polygon) { return static_cast<double>(SignedArea(polygon)); }

// Two squares of 4 x 4 that run the same way around and share 2 x 2.
const Polygon2 kOverlapping({{0, 0}, {4, 0}, {4, 4}, {0, 4}, {2, 2}, {6, 2}, {6, 6}, {2, 6}},
                            {4, 4});

TEST(ResolveRings, EvenOddLeavesOutWhatTwoRingsShare) {
  EXPECT_DOUBLE_EQ(Area(ResolveRings(kOverlapping, FillRule::kEvenOdd)), 24.0);
}

TEST(ResolveRings, NonZeroUnitesRingsOfOneDirection) {
  const Polygon2 united = ResolveRings(kOverlapping, FillRule::kNonZero);
  EXPECT_DOUBLE_EQ(Area(united), 28.0);
  EXPECT_EQ(united.Counts(), std::vector<unsigned int>{8});
}

TEST(ResolveRings, NonZeroCancelsRingsOfOppositeDirections) {
  const Polygon2 opposite({{0, 0}, {4, 0}, {4, 4}, {0, 4}, {2, 6}, {6, 6}, {6, 2}, {2, 2}}, {4, 4});
  EXPECT_DOUBLE_EQ(Area(ResolveRings(opposite, FillRule::kNonZero)), 24.0);
}

TEST(ResolveRings, NonZeroFillsARingWithinARingOfTheSameDirection) {
  const Polygon2 nested({{0, 0}, {9, 0}, {9, 9}, {0, 9}, {3, 3}, {6, 3}, {6, 6}, {3, 6}}, {4, 4});
  EXPECT_DOUBLE_EQ(Area(ResolveRings(nested, FillRule::kNonZero)), 81.0);
  EXPECT_DOUBLE_EQ(Area(ResolveRings(nested, FillRule::kEvenOdd)), 72.0);
}

TEST(ResolveRings, OuterRingsRunCounterClockwiseAndHolesClockwise) {
  const Polygon2 nested({{0, 9}, {9, 9}, {9, 0}, {0, 0}, {3, 3}, {6, 3}, {6, 6}, {3, 6}}, {4, 4});
  const Polygon2 resolved = ResolveRings(nested, FillRule::kEvenOdd);
  ASSERT_EQ(resolved.Counts().size(), 2U);
  EXPECT_DOUBLE_EQ(Area(resolved), 72.0);
}

TEST(ResolveRings, ACrossingRingBecomesTwo) {
  const Polygon2 eight({{0, 0}, {4, 4}, {4, 0}, {0, 4}}, {4});
  for (const FillRule rule : {FillRule::kEvenOdd, FillRule::kNonZero}) {
    const Polygon2 resolved = ResolveRings(eight, rule);
    EXPECT_EQ(resolved.Counts().size(), 2U);
    EXPECT_DOUBLE_EQ(Area(resolved), 8.0);
  }
}

TEST(ResolveRings, NothingIsLeftOfRingsWithoutArea) {
  EXPECT_TRUE(ResolveRings(Polygon2(), FillRule::kNonZero).IsEmpty());
  EXPECT_TRUE(ResolveRings(Polygon2({{1, 1}}, {1}), FillRule::kNonZero).IsEmpty());
  EXPECT_TRUE(ResolveRings(Polygon2({{1, 1}, {2, 2}, {3, 3}}, {3}), FillRule::kEvenOdd).IsEmpty());
}

TEST(ResolveRings, EvenOddAreaIsThatOfTheSlabs) {
  for (const Place2& place : kPlaces) {
    for (std::uint64_t seed = 0; seed < 100; ++seed) {
      RandomRings random(seed, place);
      const Polygon2 rings = seed % 2 == 0 ? random.Crossing() : random.Snapped(4);
      const Polygon2 resolved = ResolveRings(rings, FillRule::kEvenOdd);
      const Real tolerance = 1e-9L * place.size * place.size;
      ASSERT_LE(std::fabs(SignedArea(resolved) - CommonArea({&rings})), tolerance)
          << place.name << ", seed " << seed;
    }
  }
}

// Twice resolved is once resolved, and what is resolved under one rule fills the same under both.
TEST(ResolveRings, ResolvedRingsFillTheSameUnderBothRules) {
  for (const Place2& place : kPlaces) {
    for (std::uint64_t seed = 0; seed < 100; ++seed) {
      RandomRings random(seed, place);
      const Polygon2 united = ResolveRings(random.Crossing(), FillRule::kNonZero);
      const Real tolerance = 1e-9L * place.size * place.size;
      for (const FillRule rule : {FillRule::kEvenOdd, FillRule::kNonZero}) {
        ASSERT_LE(std::fabs(SignedArea(ResolveRings(united, rule)) - SignedArea(united)), tolerance)
            << place.name << ", seed " << seed;
      }
    }
  }
}

}  // namespace
}  // namespace tarnis::testing
