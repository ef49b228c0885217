#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tarnis/Clipping.h>

#include "RandomRings.h"
#include "SlabArea.h"
#include "WholeModel.h"

namespace tarnis::testing {
namespace {

using corvel::Box2d;

Polygon2 Ring(std::vector<Vec2d> points) {
  const auto count = static_cast<unsigned int>(points.size());
  return {std::move(points), {count}};
}

Polygon2 Box(double x, double y, double right, double top) {
  return Ring({{x, y}, {right, y}, {right, top}, {x, top}});
}

const Polygon2 kFrame({{0, 0}, {10, 0}, {10, 10}, {0, 10}, {4, 4}, {6, 4}, {6, 6}, {4, 6}}, {4, 4});

// Two squares side by side: their common edge bounds nothing.
const Polygon2 kTiles({{0, 0}, {5, 0}, {5, 5}, {0, 5}, {5, 0}, {10, 0}, {10, 5}, {5, 5}}, {4, 4});

TEST(PolygonContains, HoldsWhatIsInside) { EXPECT_TRUE(PolygonContains(kFrame, Box(1, 1, 3, 3))); }

TEST(PolygonContains, HoldsWhatTouchesTheBoundaryFromInside) {
  EXPECT_TRUE(PolygonContains(kFrame, Box(0, 0, 4, 10)));
  EXPECT_TRUE(PolygonContains(kFrame, Ring({{0, 0}, {4, 4}, {0, 10}})));
}

TEST(PolygonContains, HoldsItself) {
  EXPECT_TRUE(PolygonContains(kFrame, kFrame));
  EXPECT_TRUE(PolygonContains(kTiles, kTiles));
}

TEST(PolygonContains, DoesNotHoldWhatCrossesTheBoundary) {
  EXPECT_FALSE(PolygonContains(kFrame, Box(-1, 1, 3, 3)));
  EXPECT_FALSE(PolygonContains(kFrame, Ring({{1, 1}, {11, 5}, {1, 9}})));
}

TEST(PolygonContains, DoesNotHoldWhatIsOutside) {
  EXPECT_FALSE(PolygonContains(kFrame, Box(20, 20, 30, 30)));
  EXPECT_FALSE(PolygonContains(kFrame, Box(10, 0, 20, 10)));
}

TEST(PolygonContains, DoesNotHoldWhatHasAHoleOfItInside) {
  EXPECT_FALSE(PolygonContains(kFrame, Box(1, 1, 9, 9)));
  EXPECT_FALSE(PolygonContains(kFrame, Ring({{1, 1}, {9, 2}, {9, 9}, {2, 9}})));
}

TEST(PolygonContains, DoesNotHoldItsHole) {
  EXPECT_FALSE(PolygonContains(kFrame, Box(4, 4, 6, 6)));
  EXPECT_FALSE(PolygonContains(kFrame, Ring({{4, 4}, {6, 4}, {6, 6}, {5, 6}, {4, 6}})));
  EXPECT_FALSE(PolygonContains(kFrame, Box(4.5, 4.5, 5.5, 5.5)));
}

TEST(PolygonContains, EdgesThatBoundNothingDoNotDivide) {
  EXPECT_TRUE(PolygonContains(kTiles, Box(1, 1, 9, 4)));
  EXPECT_TRUE(PolygonContains(kTiles, Ring({{1, 1}, {9, 2}, {5, 4}})));
}

TEST(PolygonContains, ARectangleThatIsAHoleIsNotHeld) {
  EXPECT_FALSE(PolygonContains(Polygon2({{0, 0}, {9, 0}, {9, 9}, {3, 3}, {6, 3}, {6, 6}}, {3, 3}),
                               Ring({{3, 3}, {6, 3}, {6, 6}})));
}

TEST(PolygonContains, WhatHasNoAreaIsHeldWhereItLiesOnTheRegion) {
  EXPECT_TRUE(PolygonContains(kFrame, Box(1, 1, 1, 9)));
  EXPECT_TRUE(PolygonContains(kFrame, Box(0, 0, 10, 0)));
  EXPECT_TRUE(PolygonContains(kFrame, Box(4, 4, 4, 4)));
  EXPECT_FALSE(PolygonContains(kFrame, Box(5, 1, 5, 9)));
  EXPECT_FALSE(PolygonContains(kFrame, Box(5, 5, 5, 5)));
  EXPECT_FALSE(PolygonContains(kFrame, Box(11, 0, 11, 9)));
}

TEST(PolygonContains, ARegionWithoutAreaHoldsWhatLiesOnIt) {
  const Polygon2 line = Ring({{0, 0}, {10, 0}});
  EXPECT_TRUE(PolygonContains(line, Box(2, 0, 3, 0)));
  EXPECT_FALSE(PolygonContains(line, Box(2, 0, 3, 1)));
  EXPECT_FALSE(PolygonContains(line, Box(9, 0, 11, 0)));
}

TEST(PolygonContains, DoesNotHoldTheCornersOfAnEmptyBox) {
  Vec2d corners[4];
  Box2d().GetCorners(corners);
  EXPECT_FALSE(PolygonContains(kFrame, Polygon2({corners, corners + 4}, {4})));
}

TEST(PolygonContains, NothingHoldsAndNothingIsHeldWithoutPoints) {
  EXPECT_FALSE(PolygonContains(Polygon2(), Box(0, 0, 1, 1)));
  EXPECT_FALSE(PolygonContains(kFrame, Polygon2()));
  EXPECT_FALSE(PolygonContains(kFrame, Polygon2({}, {0})));
}

// What is held shares all of its area with the region, and all of its edges.
bool IsHeld(const Polygon2& region, const Polygon2& test) {
  const auto edges = WholeEdges(region);
  for (const WholeEdge& edge : WholeEdges(test)) {
    if (edge.a == edge.b) {
      if (!IsInClosedArea(edge.a.x, edge.a.y, 1, edges)) return false;
      continue;
    }
    const auto spans = SpansInside(edge, edges);
    const bool isWhole =
        spans.size() == 1 && spans[0].from == Fraction{0, 1} && spans[0].to == Fraction{1, 1};
    if (!isWhole) return false;
  }
  return std::fabs(CommonArea({&region, &test}) - CommonArea({&test})) < 1e-9L;
}

std::string Text(const Polygon2& polygon) {
  std::string text;
  std::size_t at = 0;
  for (const unsigned int count : polygon.Counts()) {
    for (unsigned int i = 0; i < count; ++i, ++at)
      text += "(" + std::to_string(static_cast<int>(polygon.Points()[at].x)) + "," +
              std::to_string(static_cast<int>(polygon.Points()[at].y)) + ") ";
    text += "\n";
  }
  return text;
}

struct RandomPair {
  RandomPair(std::uint64_t seed, int most) : random(seed), reach(most) {}
  int Whole(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); }
  Vec2d Corner() { return Vec2d(Whole(-reach, reach), Whole(-reach, reach)); }

  Polygon2 Rings(int most) {
    std::vector<std::vector<Vec2d>> rings(static_cast<std::size_t>(Whole(1, most)));
    for (auto& ring : rings) {
      for (int i = Whole(1, 6); i > 0; --i) ring.push_back(Corner());
    }
    return RandomRings::Make(rings);
  }

  // Areas that hold much: rectangles side by side, and some rings.
  Polygon2 Region() {
    std::vector<std::vector<Vec2d>> rings;
    for (int i = Whole(1, 4); i > 0; --i) rings.push_back(AnyBox().Points());
    if (Whole(0, 2) == 0) rings.push_back(Rings(1).Points());
    return RandomRings::Make(rings);
  }

  Polygon2 AnyBox() {
    const Vec2d one = Corner();
    const Vec2d other = Corner();
    return Box(std::min(one.x, other.x), std::min(one.y, other.y), std::max(one.x, other.x),
               std::max(one.y, other.y));
  }

  std::mt19937_64 random;
  int reach;
};

class PolygonContainsModel : public ::testing::TestWithParam<int> {};

TEST_P(PolygonContainsModel, BoxesAreHeldAsTheModelSays) {
  int held = 0;
  for (std::uint64_t seed = 0; seed < 5000; ++seed) {
    RandomPair random(seed, GetParam());
    const Polygon2 region = random.Region();
    const Polygon2 test = random.AnyBox();
    const bool isHeld = IsHeld(region, test);
    held += isHeld ? 1 : 0;
    ASSERT_EQ(PolygonContains(region, test), isHeld)
        << "seed " << seed << "\nregion " << Text(region) << "test " << Text(test);
  }
  EXPECT_GT(held, 80);
}

TEST_P(PolygonContainsModel, RingsAreHeldAsTheModelSays) {
  int held = 0;
  for (std::uint64_t seed = 0; seed < 5000; ++seed) {
    RandomPair random(seed, GetParam());
    const Polygon2 region = random.Region();
    const Polygon2 test = random.Rings(2);
    const bool isHeld = IsHeld(region, test);
    held += isHeld ? 1 : 0;
    ASSERT_EQ(PolygonContains(region, test), isHeld)
        << "seed " << seed << "\nregion " << Text(region) << "test " << Text(test);
  }
  EXPECT_GT(held, 30);
}

INSTANTIATE_TEST_SUITE_P(Reach, PolygonContainsModel, ::testing::Values(2, 4, 7));

}  // namespace
}  // namespace tarnis::testing
