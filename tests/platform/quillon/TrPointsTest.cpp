// The objects that are made of points.
#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <quillon/TrClipPath.h>
#include <quillon/TrMarkerSet.h>
#include <quillon/TrPolygon.h>
#include <quillon/TrPolyline.h>

#include "Fault.h"

namespace quillon {
namespace {

using corvel::Vec3d;
using testing::HasSubstr;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr unsigned int kMost = std::numeric_limits<unsigned int>::max();

std::vector<Vec3d> Points(std::size_t count) {
  std::vector<Vec3d> points;
  for (std::size_t i = 0; i < count; ++i) points.emplace_back(static_cast<double>(i), 1.0, 2.0);
  return points;
}

template <class Object>
class TrPoints : public testing::Test {};
using PointClasses = testing::Types<TrClipPath, TrMarkerSet, TrPolygon, TrPolyline>;
TYPED_TEST_SUITE(TrPoints, PointClasses);

TYPED_TEST(TrPoints, KeepTheirPointsInOrder) {
  TypeParam object(Points(3));
  EXPECT_EQ(object.Points(), Points(3));
  object.Points().pop_back();
  EXPECT_EQ(object.Points(), Points(2));
}

TYPED_TEST(TrPoints, AreClonedWithTheirPoints) {
  TypeParam object(Points(3));
  const auto clone = object.Clone();
  object.Points().clear();
  EXPECT_EQ(dynamic_cast<const TypeParam&>(*clone).Points(), Points(3));
}

TYPED_TEST(TrPoints, AreValidWithoutPoints) { EXPECT_EQ(Fault(TypeParam(Points(0))), ""); }

TYPED_TEST(TrPoints, AreInvalidWithAPointThatIsNotFinite) {
  for (const double bad : {kNan, kInfinity, -kInfinity}) {
    TypeParam object(Points(3));
    object.Points()[2].x = bad;
    EXPECT_THAT(Fault(object), HasSubstr("x of point 2 is not finite"));
    object = TypeParam(Points(3));
    object.Points()[1].y = bad;
    EXPECT_THAT(Fault(object), HasSubstr("y of point 1 is not finite"));
  }
}

TYPED_TEST(TrPoints, AreValidAtAnyHeight) {
  TypeParam object(Points(1));
  object.Points()[0].z = kNan;
  EXPECT_EQ(Fault(object), "");
}

TYPED_TEST(TrPoints, AreValidAtTheEndsOfTheRange) {
  constexpr double kLargest = std::numeric_limits<double>::max();
  EXPECT_EQ(Fault(TypeParam({{kLargest, -kLargest, 0.0}})), "");
}

template <class Object>
class TrRings : public testing::Test {};
using RingClasses = testing::Types<TrClipPath, TrPolygon>;
TYPED_TEST_SUITE(TrRings, RingClasses);

TYPED_TEST(TrRings, KeepTheirCounts) {
  const TypeParam object(Points(7), {4, 3});
  EXPECT_EQ(object.Counts(), (std::vector<unsigned int>{4, 3}));
  EXPECT_EQ(dynamic_cast<const TypeParam&>(*object.Clone()).Counts(), object.Counts());
}

TYPED_TEST(TrRings, AreInvalidWithMorePointsInRingsThanThereAre) {
  const struct {
    std::size_t points;
    std::vector<unsigned int> counts;
    bool isValid;
  } cases[] = {
      {5, {}, true},
      {5, {5}, true},
      {5, {3, 2}, true},
      {5, {3}, true},
      {5, {0, 0}, true},
      {0, {0}, true},
      {5, {6}, false},
      {5, {3, 3}, false},
      {0, {1}, false},
      {5, {kMost, 6}, false},  // 5 again, were the sum one of 32 bits
      {5, {kMost, kMost}, false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Fault(TypeParam(Points(c.points), c.counts)).empty(), c.isValid)
        << testing::PrintToString(c.counts) << " of " << c.points;
  }
}

TYPED_TEST(TrRings, SayHowManyPointsAreMissing) {
  EXPECT_THAT(Fault(TypeParam(Points(5), {4, 3})),
              HasSubstr("its rings have 7 points, but there are 5"));
}

}  // namespace
}  // namespace quillon
