#include <corvel/Geometry.h>

#include <array>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <limits>
#include <random>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

namespace corvel {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

bool AllNan(const Vec3d& v) { return std::isnan(v.x) && std::isnan(v.y) && std::isnan(v.z); }

TEST(Vec2d, IsTheDoubleFormOfTheTemplate) {
  static_assert(std::is_same_v<Vec2d, Vec2<double>>);
  static_assert(std::is_same_v<Vec3d, Vec3<double>>);
  static_assert(std::is_same_v<Box2d, Box2<double>>);
}

TEST(Vec2d, LiesPackedAsItsCoordinatesInOrder) {
  EXPECT_EQ(offsetof(Vec2d, x), 0U);
  EXPECT_EQ(offsetof(Vec2d, y), 8U);
  EXPECT_EQ(offsetof(Vec3d, x), 0U);
  EXPECT_EQ(offsetof(Vec3d, y), 8U);
  EXPECT_EQ(offsetof(Vec3d, z), 16U);
  EXPECT_EQ(offsetof(Box2d, min), 0U);
  EXPECT_EQ(offsetof(Box2d, max), 16U);
  EXPECT_EQ(sizeof(Vec2<float>), 8U);
  EXPECT_EQ(sizeof(Vec3<float>), 12U);
  EXPECT_EQ(sizeof(Box2<int>), 16U);
}

TEST(Vec2d, StartsAtTheOrigin) {
  EXPECT_EQ(Vec2d(), Vec2d(0, 0));
  EXPECT_EQ(Vec3d(), Vec3d(0, 0, 0));
}

TEST(Vec2d, KeepsItsCoordinates) {
  const Vec2d v(1.5, -2.5);
  EXPECT_EQ(v.x, 1.5);
  EXPECT_EQ(v.y, -2.5);
}

TEST(Vec2d, ConvertsFromOtherComponentTypes) {
  EXPECT_EQ(Vec2d(Vec2<float>(0.5F, -3.0F)), Vec2d(0.5, -3));
  EXPECT_EQ(Vec2<int>(Vec2d(2.9, -2.9)), Vec2<int>(2, -2));
  EXPECT_EQ(Vec3d(Vec3<int>(1, 2, 3)), Vec3d(1, 2, 3));
  EXPECT_EQ(Vec3<float>(Vec3d(0.25, 1, -1)), Vec3<float>(0.25F, 1.0F, -1.0F));
}

TEST(Vec2d, EqualsExactly) {
  EXPECT_TRUE(Vec2d(1, 2) == Vec2d(1, 2));
  EXPECT_TRUE(Vec2d(0.0, 0.0) == Vec2d(-0.0, -0.0));
  EXPECT_TRUE(Vec2d(1, 2) != Vec2d(std::nextafter(1, 2), 2));
  EXPECT_TRUE(Vec2d(1, 2) != Vec2d(1, std::nextafter(2, 1)));
  EXPECT_TRUE(Vec2d(kNan, 0) != Vec2d(kNan, 0));
}

TEST(Vec2d, AddsSubtractsAndScales) {
  EXPECT_EQ(Vec2d(1, 2) + Vec2d(10, 20), Vec2d(11, 22));
  EXPECT_EQ(Vec2d(1, 2) - Vec2d(10, 20), Vec2d(-9, -18));
  EXPECT_EQ(Vec2d(1, 2) * 3, Vec2d(3, 6));
  EXPECT_EQ(Vec3d(1, 2, 3) + Vec3d(10, 20, 30), Vec3d(11, 22, 33));
  EXPECT_EQ(Vec3d(1, 2, 3) - Vec3d(10, 20, 30), Vec3d(-9, -18, -27));
  EXPECT_EQ(Vec3d(1, 2, 3) * 3, Vec3d(3, 6, 9));
}

TEST(Vec3d, TakesAPointOfThePlaneAndAHeight) { EXPECT_EQ(Vec3d(Vec2d(1, 2), 3), Vec3d(1, 2, 3)); }

TEST(Vec3d, EqualsExactlyByTheOperator) {
  EXPECT_TRUE(Vec3d(1, 2, 3) == Vec3d(1, 2, 3));
  EXPECT_TRUE(Vec3d(1, 2, 3) != Vec3d(0, 2, 3));
  EXPECT_TRUE(Vec3d(1, 2, 3) != Vec3d(1, 0, 3));
  EXPECT_TRUE(Vec3d(1, 2, 3) != Vec3d(1, 2, 0));
  EXPECT_TRUE(Vec3d(0, 0, kNan) != Vec3d(0, 0, kNan));
}

TEST(Vec3d, EqualsComparesEachCoordinateWithTheTolerance) {
  const struct {
    const char* name;
    Vec3d a;
    Vec3d b;
    double tolerance;
    bool expected;
  } cases[] = {
      {"the same", {1, 2, 3}, {1, 2, 3}, 0, true},
      {"x at the tolerance", {1, 2, 3}, {1.5, 2, 3}, 0.5, true},
      {"y at the tolerance", {1, 2, 3}, {1, 1.5, 3}, 0.5, true},
      {"z at the tolerance", {1, 2, 3}, {1, 2, 3.5}, 0.5, true},
      {"all at the tolerance, farther than it apart", {0, 0, 0}, {0.5, -0.5, 0.5}, 0.5, true},
      {"x beyond", {1, 2, 3}, {1.75, 2, 3}, 0.5, false},
      {"y beyond", {1, 2, 3}, {1, 1.25, 3}, 0.5, false},
      {"z beyond", {1, 2, 3}, {1, 2, 3.75}, 0.5, false},
      {"negative tolerance", {1, 2, 3}, {1, 2, 3}, -1, false},
      {"NaN tolerance", {1, 2, 3}, {1, 2, 3}, kNan, false},
      {"NaN x", {kNan, 2, 3}, {kNan, 2, 3}, 1e300, false},
      {"NaN y", {1, kNan, 3}, {1, 2, 3}, kInfinity, false},
      {"NaN z", {1, 2, 3}, {1, 2, kNan}, kInfinity, false},
      {"equal infinities have no difference", {kInfinity, 0, 0}, {kInfinity, 0, 0}, 1, false},
      {"difference overflows", {DBL_MAX, 0, 0}, {-DBL_MAX, 0, 0}, DBL_MAX, false},
      {"infinite tolerance", {DBL_MAX, 0, 0}, {-DBL_MAX, 0, 0}, kInfinity, true},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.a.Equals(c.b, c.tolerance), c.expected) << c.name;
    EXPECT_EQ(c.b.Equals(c.a, c.tolerance), c.expected) << c.name << ", exchanged";
  }
}

TEST(Vec3d, EqualsWorksForUnsignedComponents) {
  EXPECT_TRUE(Vec3<unsigned>(1, 5, 9).Equals({2, 4, 9}, 1));
  EXPECT_FALSE(Vec3<unsigned>(1, 5, 9).Equals({3, 5, 9}, 1));
}

TEST(Vec3d, NormalizedGivesTheUnitVector) {
  const double third = 1 / std::sqrt(3.0);
  const struct {
    const char* name;
    Vec3d vector;
    Vec3d expected;
  } cases[] = {
      {"x axis", {7, 0, 0}, {1, 0, 0}},
      {"against the y axis", {0, -7, 0}, {0, -1, 0}},
      {"z axis", {0, 0, 0.1}, {0, 0, 1}},
      {"3, 4", {3, 4, 0}, {0.6, 0.8, 0}},
      {"largest doubles", {DBL_MAX, -DBL_MAX, DBL_MAX}, {third, -third, third}},
      {"smallest doubles", {5e-324, 5e-324, -5e-324}, {third, third, -third}},
      {"smallest double alone", {0, 0, -5e-324}, {0, 0, -1}},
      {"squares underflow", {3e-200, 0, 4e-200}, {0.6, 0, 0.8}},
      {"squares overflow", {3e200, 0, 4e200}, {0.6, 0, 0.8}},
      {"far apart in size", {1e300, 1e-300, 0}, {1, 0, 0}},
  };
  for (const auto& c : cases) {
    const Vec3d unit = c.vector.Normalized();
    EXPECT_TRUE(unit.Equals(c.expected, 4 * DBL_EPSILON))
        << c.name << ": " << unit.x << ", " << unit.y << ", " << unit.z;
  }
}

TEST(Vec3d, NormalizedKeepsAnAxisExactly) {
  EXPECT_EQ(Vec3d(0, 0, 12345.678).Normalized(), Vec3d(0, 0, 1));
}

TEST(Vec3d, NormalizedLeavesTheZeroVector) { EXPECT_EQ(Vec3d().Normalized(), Vec3d()); }

TEST(Vec3d, NormalizedOfWhatIsNotFiniteIsNan) {
  for (const double bad : {kNan, kInfinity, -kInfinity}) {
    for (const double other : {0.0, 1.0, DBL_MAX}) {
      EXPECT_TRUE(AllNan(Vec3d(bad, other, 0).Normalized())) << bad << ' ' << other;
      EXPECT_TRUE(AllNan(Vec3d(other, bad, 0).Normalized())) << bad << ' ' << other;
      EXPECT_TRUE(AllNan(Vec3d(0, other, bad).Normalized())) << bad << ' ' << other;
    }
  }
}

TEST(Vec3d, NormalizedHasLengthOneAndTheSameDirection) {
  std::mt19937 random(20240611);
  std::uniform_real_distribution<double> component(-1, 1);
  std::uniform_int_distribution<int> exponent(-1000, 1000);
  for (int round = 0; round < 10'000; ++round) {
    const Vec3d v(component(random), component(random), component(random));
    const int e = exponent(random);
    const Vec3d scaled(std::ldexp(v.x, e), std::ldexp(v.y, e), std::ldexp(v.z, e));
    const Vec3d unit = scaled.Normalized();
    const double length = std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
    ASSERT_TRUE(unit.Equals({v.x / length, v.y / length, v.z / length}, 4 * DBL_EPSILON))
        << "round " << round;
  }
}

TEST(Box2d, StartsEmpty) {
  const Box2d box;
  EXPECT_EQ(box.min, Vec2d(DBL_MAX, DBL_MAX));
  EXPECT_EQ(box.max, Vec2d(-DBL_MAX, -DBL_MAX));
  EXPECT_TRUE(box.IsEmpty());
  EXPECT_TRUE(Box2<int>().IsEmpty());
  EXPECT_EQ(Box2<int>().max.x, std::numeric_limits<int>::min());
}

TEST(Box2d, IsEmptyInThatStateOnly) {
  EXPECT_FALSE(Box2d(0, 0, 0, 0).IsEmpty());
  EXPECT_FALSE(Box2d(1, 1, -1, -1).IsEmpty());
  EXPECT_FALSE(Box2d(0, DBL_MAX, -DBL_MAX, -DBL_MAX).IsEmpty());
  EXPECT_FALSE(Box2d(DBL_MAX, 0, -DBL_MAX, -DBL_MAX).IsEmpty());
  EXPECT_FALSE(Box2d(DBL_MAX, DBL_MAX, 0, -DBL_MAX).IsEmpty());
  EXPECT_FALSE(Box2d(DBL_MAX, DBL_MAX, -DBL_MAX, 0).IsEmpty());
  EXPECT_FALSE(Box2d(kNan, kNan, kNan, kNan).IsEmpty());
  EXPECT_TRUE(Box2d(DBL_MAX, DBL_MAX, -DBL_MAX, -DBL_MAX).IsEmpty());
}

TEST(Box2d, KeepsWhatItWasGivenFlippedOrNot) {
  const Box2d numbers(1, 20, 10, 2);
  EXPECT_EQ(numbers.min, Vec2d(1, 20));
  EXPECT_EQ(numbers.max, Vec2d(10, 2));
  const Box2d corners(Vec2d(10, 2), Vec2d(1, 20));
  EXPECT_EQ(corners.min, Vec2d(10, 2));
  EXPECT_EQ(corners.max, Vec2d(1, 20));
}

TEST(Box2d, EqualsExactly) {
  EXPECT_TRUE(Box2d(1, 2, 3, 4) == Box2d(Vec2d(1, 2), Vec2d(3, 4)));
  EXPECT_TRUE(Box2d(1, 2, 3, 4) != Box2d(3, 4, 1, 2));
  EXPECT_TRUE(Box2d(kNan, 2, 3, 4) != Box2d(kNan, 2, 3, 4));
}

TEST(Box2d, BoundsPoints) {
  const Vec2d points[] = {{3, -1}, {-2, 5}, {4, 4}};
  Box2d box(100, 100, 200, 200);  // what was there does not count
  box.BoundPoints(points, 3);
  EXPECT_EQ(box, Box2d(-2, -1, 4, 5));
  box.BoundPoints(points, 1);
  EXPECT_EQ(box, Box2d(3, -1, 3, -1));
}

TEST(Box2d, BoundsNoPointsAsTheEmptyBox) {
  Box2d box(1, 2, 3, 4);
  box.BoundPoints(nullptr, 0);
  EXPECT_TRUE(box.IsEmpty());
}

TEST(Box2d, BoundsTheLargestAndInfiniteCoordinates) {
  const Vec2d points[] = {{kInfinity, DBL_MAX}, {DBL_MAX, -DBL_MAX}};
  Box2d box;
  box.BoundPoints(points, 2);
  EXPECT_EQ(box, Box2d(DBL_MAX, -DBL_MAX, kInfinity, DBL_MAX));
}

TEST(Box2d, PassesOverNanCoordinatesOfPoints) {
  const Vec2d points[] = {{kNan, 7}, {1, kNan}, {3, 5}, {kNan, kNan}};
  Box2d box;
  box.BoundPoints(points, 4);
  EXPECT_EQ(box, Box2d(1, 5, 3, 7));
  const Vec2d blind[] = {{kNan, 7}, {kNan, 8}};
  box.BoundPoints(blind, 2);
  EXPECT_TRUE(std::isnan(box.min.x) && std::isnan(box.max.x));
  EXPECT_EQ(box.min.y, 7);
  EXPECT_EQ(box.max.y, 8);
}

TEST(Box2d, BoundsRandomPointsTightly) {
  std::mt19937 random(7);
  std::uniform_int_distribution<int> coordinate(-5, 5);
  std::uniform_int_distribution<std::size_t> size(1, 9);
  for (int round = 0; round < 2'000; ++round) {
    std::vector<Vec2d> points(size(random));
    for (Vec2d& p : points) p = {double(coordinate(random)), double(coordinate(random))};
    Box2d box;
    box.BoundPoints(points.data(), points.size());
    bool touches[4] = {};
    for (const Vec2d& p : points) {
      ASSERT_TRUE(box.min.x <= p.x && p.x <= box.max.x) << "round " << round;
      ASSERT_TRUE(box.min.y <= p.y && p.y <= box.max.y) << "round " << round;
      touches[0] |= p.x == box.min.x;
      touches[1] |= p.x == box.max.x;
      touches[2] |= p.y == box.min.y;
      touches[3] |= p.y == box.max.y;
    }
    for (const bool touch : touches) ASSERT_TRUE(touch) << "round " << round;
  }
}

TEST(Box2d, UnitesTwoBoxes) {
  const struct {
    const char* name;
    Box2d a;
    Box2d b;
    Box2d expected;
  } cases[] = {
      {"apart", {0, 0, 1, 1}, {5, 6, 7, 8}, {0, 0, 7, 8}},
      {"overlapping", {0, 0, 4, 4}, {2, -2, 6, 3}, {0, -2, 6, 4}},
      {"one inside the other", {0, 0, 9, 9}, {2, 2, 3, 3}, {0, 0, 9, 9}},
      {"two empty", {}, {}, {}},
      {"points", {1, 2, 1, 2}, {3, 1, 3, 1}, {1, 1, 3, 2}},
      {"flipped in x", {5, 0, 1, 1}, {2, 2, 3, 3}, {1, 0, 5, 3}},
      {"both flipped", {5, 5, 1, 1}, {9, 3, 8, 2}, {1, 1, 9, 5}},
      {"flipped beyond the other", {10, 10, -10, -10}, {0, 0, 1, 1}, {-10, -10, 10, 10}},
  };
  for (const auto& c : cases) {
    Box2d box = c.a;
    box |= c.b;
    EXPECT_EQ(box, c.expected) << c.name;
    box = c.b;
    box |= c.a;
    EXPECT_EQ(box, c.expected) << c.name << ", exchanged";
  }
}

TEST(Box2d, AnEmptyOperandChangesNothing) {
  for (const Box2d& kept : {Box2d(1, 2, 3, 4), Box2d(3, 4, 1, 2), Box2d(0, 0, 0, 0)}) {
    Box2d left = kept;
    left |= Box2d();
    EXPECT_EQ(left, kept);
    Box2d right;
    right |= kept;
    EXPECT_EQ(right, kept);
  }
}

TEST(Box2d, UnitesInPlaceAndWithItself) {
  Box2d box(0, 0, 1, 1);
  EXPECT_EQ(&(box |= Box2d(2, 2, 3, 3)), &box);
  const Box2d& same = box;
  box |= same;
  EXPECT_EQ(box, Box2d(0, 0, 3, 3));
}

TEST(Box2d, HasItsCenterHalfway) {
  EXPECT_EQ(Box2d(1, 2, 4, 8).Center(), Vec2d(2.5, 5));
  EXPECT_EQ(Box2d(4, 8, 1, 2).Center(), Vec2d(2.5, 5));
  EXPECT_EQ(Box2d(DBL_MAX, -DBL_MAX, DBL_MAX, DBL_MAX).Center(), Vec2d(DBL_MAX, 0));
  EXPECT_EQ(Box2d().Center(), Vec2d(0, 0));
}

TEST(Box2d, HasSignedExtents) {
  EXPECT_EQ(Box2d(1, 20, 4, 2).Width(), 3);
  EXPECT_EQ(Box2d(1, 20, 4, 2).Height(), -18);
}

TEST(Box2d, GivesItsCornersAsARing) {
  Vec2d corners[4];
  Box2d(1, 2, 3, 4).GetCorners(corners);
  EXPECT_EQ(corners[0], Vec2d(1, 2));
  EXPECT_EQ(corners[1], Vec2d(3, 2));
  EXPECT_EQ(corners[2], Vec2d(3, 4));
  EXPECT_EQ(corners[3], Vec2d(1, 4));
}

TEST(Box2d, GivesTheCornersOfAFlippedBoxAsTheyAre) {
  Vec2d corners[4];
  Box2d(0, 9, 5, 0).GetCorners(corners);
  EXPECT_EQ(corners[0], Vec2d(0, 9));
  EXPECT_EQ(corners[1], Vec2d(5, 9));
  EXPECT_EQ(corners[2], Vec2d(5, 0));
  EXPECT_EQ(corners[3], Vec2d(0, 0));
}

}  // namespace
}  // namespace corvel
