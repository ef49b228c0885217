#include "filters/clip/RegionArea.h"

#include <limits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace trovan::filters {
namespace {

using corvel::Vec2d;
using tarnis::Polygon2;

const std::vector<Vec2d> kSquare = {{0, 0}, {4, 0}, {4, 4}, {0, 4}};

Polygon2 RingsOf(const std::vector<std::vector<Vec2d>>& rings, const Vec2d& offset = {0, 0}) {
  std::vector<Vec2d> points;
  std::vector<unsigned int> counts;
  for (const auto& ring : rings) {
    for (const Vec2d& point : ring) points.push_back(point + offset);
    counts.push_back(static_cast<unsigned int>(ring.size()));
  }
  return {std::move(points), std::move(counts)};
}

TEST(HasArea, IsTrueOfWhatEnclosesSomething) {
  EXPECT_TRUE(HasArea(RingsOf({kSquare})));
  EXPECT_TRUE(HasArea(RingsOf({kSquare}, {1e9, -1e9})));
  EXPECT_TRUE(HasArea(RingsOf({kSquare, {{1, 1}, {2, 1}, {2, 2}}})));
  EXPECT_TRUE(HasArea(RingsOf({{}, kSquare})));
  // Closed, and a bow whose signed area is nothing.
  EXPECT_TRUE(HasArea(RingsOf({{{0, 0}, {4, 0}, {4, 4}, {0, 0}}})));
  EXPECT_TRUE(HasArea(RingsOf({{{0, 0}, {4, 4}, {4, 0}, {0, 4}}})));
}

TEST(HasArea, IsFalseOfPointsAndLines) {
  EXPECT_FALSE(HasArea(Polygon2()));
  EXPECT_FALSE(HasArea(RingsOf({{}})));
  EXPECT_FALSE(HasArea(RingsOf({{{1, 1}}})));
  EXPECT_FALSE(HasArea(RingsOf({{{0, 0}, {9, 7}}})));
  EXPECT_FALSE(HasArea(RingsOf({{{0, 0}, {9, 9}, {3, 3}, {7, 7}}})));
  EXPECT_FALSE(HasArea(RingsOf({{{0, 0}, {0, 9}, {0, 3}}})));
  EXPECT_FALSE(HasArea(RingsOf({{{0, 0}, {9, 0}, {3, 0}}})));
}

// The even-odd rule: what lies within two rings is outside.
TEST(HasArea, IsFalseOfRingsThatCancelEachOther) {
  EXPECT_FALSE(HasArea(RingsOf({kSquare, kSquare})));
  EXPECT_FALSE(HasArea(RingsOf({kSquare, {{0, 4}, {4, 4}, {4, 0}, {0, 0}}}, {1e9, 1e9})));
  EXPECT_FALSE(HasArea(RingsOf({{{0, 0}, {9, 0}, {9, 9}, {0, 0}, {9, 0}, {9, 9}}})));
}

TEST(HasArea, LooksCloselyWhereNothingIsWide) {
  EXPECT_TRUE(HasArea(RingsOf({{{0, 0}, {4, 0}, {4, 1e-9}, {0, 1e-9}}})));
  EXPECT_TRUE(HasArea(RingsOf({{{0, 0}, {4, 4}, {4, 4.000001}, {0, 0.000001}}})));
  // Wide only between the heights that are tried.
  EXPECT_TRUE(HasArea(RingsOf({{{0, 0}, {0, 8}, {0, 4.02}, {4, 4}, {0, 3.98}}})));
}

TEST(HasArea, TakesTheLargestNumbers) {
  const double most = std::numeric_limits<double>::max();
  EXPECT_NO_THROW(HasArea(RingsOf({{{-most, -most}, {most, -most}, {most, most}}})));
  EXPECT_NO_THROW(HasArea(RingsOf({{{-most, -most}, {most, most}, {-most, most}}})));
}

// Every edge lies over nearly all others.
TEST(HasArea, TellsAComb) {
  std::vector<Vec2d> comb;
  constexpr int kTeeth = 100'000;
  for (int i = 0; i < kTeeth; ++i) {
    comb.emplace_back(i, 0);
    comb.emplace_back(i + 0.5, 1000);
  }
  comb.emplace_back(kTeeth, -1);
  EXPECT_TRUE(HasArea(RingsOf({comb})));
}

}  // namespace
}  // namespace trovan::filters
