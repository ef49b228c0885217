#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

#include "PathFixture.h"

namespace velum {
namespace {

constexpr int kDeep = 20;

double TwiceAreaOf(const tarnis::Polygon2& polygon) {
  const auto& p = polygon.Points();
  double sum = 0.0;
  for (std::size_t i = 0; i < p.size(); ++i) {
    const Vec2d& next = p[(i + 1) % p.size()];
    sum += p[i].x * next.y - next.x * p[i].y;
  }
  return sum;
}

TEST(PathFlatPolygon, StaysWithinTheToleranceOfRandomCurves) {
  std::mt19937 random(13);
  for (int round = 0; round < 300; ++round) {
    const Vec2d p[4] = {RandomPoint(random), RandomPoint(random), RandomPoint(random),
                        RandomPoint(random)};
    const double tolerance = std::pow(10.0, RandomBetween(-3, 1, random));
    Path path(FillMode::kEvenOdd);
    path.MoveTo(p[0]);
    path.CurveTo(p[1], p[2], p[3]);
    const tarnis::Polygon2 polygon = path.GetFlatPolygon(tolerance, kDeep);
    for (const Vec2d& point : PointsOfCubic(p, 200)) {
      ASSERT_LE(DistanceToRings(point, polygon), tolerance * (1 + 1e-9)) << "round " << round;
    }
  }
}

TEST(PathFlatPolygon, StaysWithinTheToleranceOfTurnedEllipses) {
  std::mt19937 random(14);
  for (int round = 0; round < 200; ++round) {
    const Box2d box(RandomPoint(random), RandomPoint(random));
    const double angle = RandomBetween(-7, 7, random);
    const double tolerance = std::pow(10.0, RandomBetween(-3, 1, random));
    Path path(FillMode::kEvenOdd);
    path.AddEllipse(box);
    path.Transform(TurnAbout(box.Center(), angle));
    const tarnis::Polygon2 polygon = path.GetFlatPolygon(tolerance, kDeep);
    for (const Vec2d& point : PointsOfEllipse(box, angle, 300)) {
      ASSERT_LE(DistanceToRings(point, polygon), tolerance * (1 + 1e-9)) << "round " << round;
    }
  }
}

TEST(PathFlatPolygon, TakesNoMoreLinesThanACircleNeeds) {
  Path path(FillMode::kEvenOdd);
  path.AddEllipse(Box2d(-1000, -1000, 1000, 1000));
  // A chord of angle a is off by r (1 - cos(a / 2)): 0.25 allows 0.0447 radians, 36 a quarter.
  EXPECT_EQ(path.GetFlatPolygon(0.25, 10).Counts(), (std::vector<unsigned int>{144}));
}

TEST(PathFlatPolygon, IsAnEllipseHoweverLarge) {
  Path path(FillMode::kEvenOdd);
  path.AddEllipse(Box2d(-3e6, -2e6, 3e6, 2e6));
  const double area = TwiceAreaOf(path.GetFlatPolygon(0.25, kDeep)) / 2;
  EXPECT_NEAR(area / (std::numbers::pi * 6e12), 1.0, 1e-6);
}

TEST(PathFlatPolygon, CutsACurveIntoNoMoreLinesThanTheDepthAllows) {
  for (int depth = 0; depth <= 12; ++depth) {
    Path path(FillMode::kEvenOdd);
    path.MoveTo({0, 0});
    path.CurveTo({0, 1e9}, {1e9, 1e9}, {1e9, 0});
    EXPECT_EQ(path.GetFlatPolygon(1e-9, depth).Points().size(), (std::size_t{1} << depth) + 1);
    Path ellipse(FillMode::kEvenOdd);
    ellipse.AddEllipse(Box2d(0, 0, 1e9, 1e9));
    EXPECT_EQ(ellipse.GetFlatPolygon(1e-9, depth).Points().size(), std::size_t{4} << depth);
  }
}

TEST(PathFlatPolygon, TakesTheDepthForAToleranceOfNothing) {
  Path path(FillMode::kEvenOdd);
  path.AddEllipse(Box2d(0, 0, 4, 2));
  for (const double tolerance : {0.0, -1.0, std::nan("")}) {
    EXPECT_EQ(path.GetFlatPolygon(tolerance, 5).Points().size(), 128U) << tolerance;
  }
}

TEST(PathFlatPolygon, KeepsTheEndsOfCurvesBitForBit) {
  const Vec2d start(0.1, 1.0 / 3);
  const Vec2d end(1e9 / 7, 0.3);
  Path path(FillMode::kEvenOdd);
  path.MoveTo(start);
  path.CurveTo({5, 6}, {7, 8}, end);
  path.QuarterTo({1, 1}, start * 3);
  const tarnis::Polygon2 polygon = path.GetFlatPolygon(0.01, 6);
  const auto& points = polygon.Points();
  EXPECT_EQ(points.front(), start);
  EXPECT_NE(std::find(points.begin(), points.end(), end), points.end());
  EXPECT_EQ(points.back(), start * 3);
}

TEST(PathFlatPolygon, TakesOneLineForACurveThatIsStraight) {
  Path path(FillMode::kEvenOdd);
  path.MoveTo({0, 0});
  path.CurveTo({1, 1}, {2, 2}, {3, 3});
  EXPECT_EQ(path.GetFlatPolygon(0.25, 10).Points().size(), 2U);
}

}  // namespace
}  // namespace velum
