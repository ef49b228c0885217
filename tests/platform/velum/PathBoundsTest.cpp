#include <cmath>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

#include "PathFixture.h"

namespace velum {
namespace {

Box2d BoundsOf(const std::vector<Vec2d>& points) {
  Box2d box;
  box.BoundPoints(points.data(), points.size());
  return box;
}

void ExpectNear(const Box2d& actual, const Box2d& expected, double tolerance) {
  EXPECT_NEAR(actual.min.x, expected.min.x, tolerance);
  EXPECT_NEAR(actual.min.y, expected.min.y, tolerance);
  EXPECT_NEAR(actual.max.x, expected.max.x, tolerance);
  EXPECT_NEAR(actual.max.y, expected.max.y, tolerance);
}

TEST(PathBounds, AreThoseOfTheCurveAndNotOfItsControlPoints) {
  Path path(FillMode::kEvenOdd);
  path.MoveTo({0, 0});
  path.CurveTo({0, 4}, {4, 4}, {4, 0});
  EXPECT_EQ(path.GetBounds(), Box2d(0, 0, 4, 3));
}

TEST(PathBounds, AreTightAroundRandomCurves) {
  std::mt19937 random(11);
  for (int round = 0; round < 2000; ++round) {
    Vec2d p[4] = {RandomPoint(random), RandomPoint(random), RandomPoint(random),
                  RandomPoint(random)};
    // Degenerate ones, too: coinciding points, straight and quadratic curves.
    if (round % 5 == 1) p[1] = p[0];
    if (round % 5 == 2) p[2] = p[3] = p[1];
    if (round % 7 == 3) p[3].y = p[2].y = p[1].y = p[0].y;
    if (round % 11 == 4) p[3] = p[0] + (p[2] - p[1]) * 3.0;
    Path path(FillMode::kEvenOdd);
    path.MoveTo(p[0]);
    path.CurveTo(p[1], p[2], p[3]);
    SCOPED_TRACE(testing::Message() << "round " << round);
    ExpectNear(path.GetBounds(), BoundsOf(PointsOfCubic(p, 2000)), 1e-3);
  }
}

TEST(PathBounds, AreTightAroundTurnedEllipses) {
  std::mt19937 random(12);
  for (int round = 0; round < 500; ++round) {
    const Box2d box(RandomPoint(random), RandomPoint(random));
    const double angle = RandomBetween(-7, 7, random);
    Path path(FillMode::kEvenOdd);
    path.AddEllipse(box);
    path.Transform(TurnAbout(box.Center(), angle));
    SCOPED_TRACE(testing::Message() << "round " << round);
    ExpectNear(path.GetBounds(), BoundsOf(PointsOfEllipse(box, angle, 20'000)), 1e-4);
  }
}

TEST(PathBounds, AreExactForAnEllipse) {
  Path path(FillMode::kEvenOdd);
  path.AddEllipse(Box2d(500'000.25, 5'400'000.5, 500'010.75, 5'400'003.125));
  EXPECT_EQ(path.GetBounds(), Box2d(500'000.25, 5'400'000.5, 500'010.75, 5'400'003.125));
}

}  // namespace
}  // namespace velum
