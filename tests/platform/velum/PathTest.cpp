#include <velum/Path.h>

#include <vector>

#include <gtest/gtest.h>

#include "PathFixture.h"

namespace velum {
namespace {

using Counts = std::vector<unsigned int>;
using Points = std::vector<Vec2d>;

tarnis::Polygon2 Flat(const Path& path) { return path.GetFlatPolygon(0.25, 10); }

TEST(Path, StartsEmptyWithItsFillMode) {
  const Path path(FillMode(0));
  EXPECT_EQ(path.Mode(), FillMode::kEvenOdd);
  EXPECT_TRUE(path.IsEmpty());
  EXPECT_TRUE(path.GetBounds().IsEmpty());
  EXPECT_TRUE(Flat(path).IsEmpty());
}

TEST(Path, AddsARectangleAsOneRing) {
  Path path(FillMode::kEvenOdd);
  path.AddRect(Box2d(1, 2, 5, 9));
  EXPECT_EQ(Flat(path).Points(), (Points{{1, 2}, {5, 2}, {5, 9}, {1, 9}}));
  EXPECT_EQ(Flat(path).Counts(), (Counts{4}));
  EXPECT_EQ(path.GetBounds(), Box2d(1, 2, 5, 9));
}

TEST(Path, AddsAFlippedBoxUnflipped) {
  Path path(FillMode::kEvenOdd);
  path.AddRect(Box2d(5, 9, 1, 2));
  EXPECT_EQ(Flat(path).Points(), (Points{{1, 2}, {5, 2}, {5, 9}, {1, 9}}));
  Path ellipse(FillMode::kEvenOdd);
  ellipse.AddEllipse(Box2d(5, 2, 1, 9));
  EXPECT_EQ(ellipse.GetBounds(), Box2d(1, 2, 5, 9));
}

TEST(Path, AddsNothingForTheEmptyBox) {
  Path path(FillMode::kEvenOdd);
  path.AddRect(Box2d());
  path.AddRoundRect(Box2d(), 1, 1);
  path.AddEllipse(Box2d());
  EXPECT_TRUE(path.IsEmpty());
}

TEST(Path, EndsEachRingInFrontOfItsFirstPoint) {
  Path path(FillMode::kEvenOdd);
  path.MoveTo({0, 0});
  path.LineTo({4, 0});
  path.LineTo({4, 4});
  path.LineTo({0, 0});
  path.Close();
  path.MoveTo({1, 1});
  path.LineTo({2, 1});
  path.LineTo({2, 2});
  EXPECT_EQ(Flat(path).Points(), (Points{{0, 0}, {4, 0}, {4, 4}, {1, 1}, {2, 1}, {2, 2}}));
  EXPECT_EQ(Flat(path).Counts(), (Counts{3, 3}));
}

TEST(Path, LeavesOutOutlinesOfASinglePoint) {
  Path path(FillMode::kEvenOdd);
  path.MoveTo({7, 7});
  path.MoveTo({0, 0});
  path.LineTo({4, 0});
  path.MoveTo({8, 8});
  path.LineTo({8, 8});
  path.Close();
  EXPECT_EQ(Flat(path).Points(), (Points{{0, 0}, {4, 0}}));
  EXPECT_EQ(Flat(path).Counts(), (Counts{2}));
}

TEST(Path, GoesOnFromTheStartBehindAClosedOutline) {
  Path path(FillMode::kEvenOdd);
  path.MoveTo({1, 1});
  path.LineTo({4, 1});
  path.LineTo({4, 4});
  path.Close();
  path.LineTo({9, 9});
  EXPECT_EQ(Flat(path).Points(), (Points{{1, 1}, {4, 1}, {4, 4}, {1, 1}, {9, 9}}));
  EXPECT_EQ(Flat(path).Counts(), (Counts{3, 2}));
}

TEST(Path, StartsAnOutlineAtItsFirstPointWithoutAMove) {
  Path path(FillMode::kEvenOdd);
  path.LineTo({1, 1});
  path.LineTo({2, 1});
  EXPECT_EQ(Flat(path).Points(), (Points{{1, 1}, {2, 1}}));
}

TEST(Path, ClosesNothingTwice) {
  Path path(FillMode::kEvenOdd);
  path.Close();
  EXPECT_TRUE(path.IsEmpty());
}

TEST(Path, IsTransformedWithItsCurvesAndItsStart) {
  corvel::Mat4d move;
  move.Scale(2, 3, 1, corvel::Order::kAppend);
  move.Translate(10, 20, 0, corvel::Order::kAppend);
  Path path(FillMode::kEvenOdd);
  path.AddEllipse(Box2d(0, 0, 4, 2));
  path.Transform(move);
  EXPECT_EQ(path.GetBounds(), Box2d(10, 20, 18, 26));
  path.LineTo({0, 0});
  EXPECT_EQ(Flat(path).Points().end()[-2], Vec2d(18, 23)) << "where the ellipse had started";
}

TEST(Path, RoundsTheCornersOfARectangle) {
  Path path(FillMode::kEvenOdd);
  path.AddRoundRect(Box2d(0, 0, 40, 20), 10, 5);
  EXPECT_EQ(path.GetBounds(), Box2d(0, 0, 40, 20));
  const tarnis::Polygon2 polygon = path.GetFlatPolygon(1e-6, 20);
  ASSERT_EQ(polygon.Counts().size(), 1U);
  // The corner at the origin is a quarter of the ellipse around (10, 5).
  for (const Vec2d& point : polygon.Points()) {
    if (point.x > 10 || point.y > 5) continue;
    EXPECT_NEAR(std::hypot((point.x - 10) / 10, (point.y - 5) / 5), 1.0, 1e-12);
  }
}

TEST(Path, CutsRadiiToHalfTheBoxAndTakesTheirSizes) {
  const auto pointsOf = [](double x, double y) {
    Path path(FillMode::kEvenOdd);
    path.AddRoundRect(Box2d(0, 0, 40, 20), x, y);
    return Flat(path).Points();
  };
  EXPECT_EQ(pointsOf(100, 200), pointsOf(20, 10));
  EXPECT_EQ(pointsOf(-8, 4), pointsOf(8, -4));
}

TEST(Path, LeavesCornersWithoutOneOfTheRadii) {
  Path path(FillMode::kEvenOdd);
  path.AddRoundRect(Box2d(0, 0, 40, 20), 0, 5);
  for (const Vec2d& corner : Points{{0, 0}, {40, 0}, {40, 20}, {0, 20}}) {
    EXPECT_LT(DistanceToRings(corner, Flat(path)), 1e-12);
  }
}

}  // namespace
}  // namespace velum
