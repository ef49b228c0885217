// Rectangles, ellipses and markers that meet the clip region.
#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <quillon/TrClipPath.h>
#include <quillon/TrEllipse.h>
#include <quillon/TrMarkerSet.h>
#include <quillon/TrPolygon.h>
#include <quillon/TrPolyline.h>
#include <quillon/TrRectangle.h>
#include <velum/Path.h>

#include "ClippedFixture.h"

namespace trovan::test {
namespace {

using corvel::Box2d;
using corvel::Vec2d;
using quillon::InvalidObject;
using quillon::TrClipPath;
using quillon::TrEllipse;
using quillon::TrMarkerSet;
using quillon::TrPolygon;
using quillon::TrPolyline;
using quillon::TrRectangle;
using std::numbers::pi;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

constexpr double kBad[] = {std::numeric_limits<double>::quiet_NaN(),
                           std::numeric_limits<double>::infinity()};
constexpr const char* kNoLine = "TrPen 2 00000000 0";
constexpr const char* kPen = "TrPen 0 00000000 0";

TrClipPath BoxPath(double left, double bottom, double right, double top) {
  return TrClipPath({{left, bottom, 0}, {right, bottom, 0}, {right, top, 0}, {left, top, 0}});
}

class ClippedShapesTest : public ClippedTest {
 protected:
  void SetUp() override { Import(Square()); }

  template <class Object>
  static Object Plate(Object object) {
    object.Params().Set(L"part", L"plate");
    return object;
  }

  const TrPolygon& DeliveredPolygon(std::size_t i) const {
    return dynamic_cast<const TrPolygon&>(manager_.At(i));
  }
};

// --- Rectangles

TEST_F(ClippedShapesTest, RectanglesInsidePassWhole) {
  EXPECT_TRUE(PassesWhole(Plate(TrRectangle(Box2d(1, 1, 9, 9)))));
  EXPECT_TRUE(PassesWhole(Plate(TrRectangle(Box2d(0, 0, 10, 10), 2, 2))));
  EXPECT_TRUE(PassesWhole(Plate(TrRectangle(Box2d(9, 9, 1, 1))))) << "flipped";
  EXPECT_TRUE(PassesWhole(Plate(TrRectangle(Box2d(3, 3, 3, 3))))) << "a point";
}

TEST_F(ClippedShapesTest, RectanglesOutsideArriveNotAtAll) {
  EXPECT_EQ(Delivered(TrRectangle(Box2d(20, 0, 30, 10))), Texts());
  EXPECT_EQ(Delivered(TrRectangle(Box2d(20, 0, 30, 10), 1, 1)), Texts());
  EXPECT_EQ(Delivered(TrRectangle()), Texts()) << "the empty box";
}

TEST_F(ClippedShapesTest, RectanglesThatCrossAreClippedAsPolygons) {
  EXPECT_EQ(DeliveredAreas(Plate(TrRectangle(Box2d(5, 5, 15, 15)))),
            (Texts{kNoLine, "TrPolygon 5 5 0, 10 5 0, 10 10 0, 5 10 0 (4) part=plate", kPen,
                   "TrPolyline 5 5 0, 10 5 0 part=plate", "TrPolyline 5 10 0, 5 5 0 part=plate"}));
}

TEST_F(ClippedShapesTest, RectanglesThatAreFlippedAreClippedAlike) {
  EXPECT_EQ(DeliveredAreas(TrRectangle(Box2d(15, 15, 5, 5))),
            DeliveredAreas(TrRectangle(Box2d(5, 5, 15, 15))));
}

TEST_F(ClippedShapesTest, RectanglesWithoutRadiiHaveFourCorners) {
  Import(BoxPath(-100, -100, 0, 100));
  for (const double zero : {0.0, -0.0}) {
    const Texts texts = Delivered(TrRectangle(Box2d(-8, 0, 8, 20), zero, zero));
    ASSERT_EQ(texts.size(), 6U);
    EXPECT_EQ(texts[3], "TrPolyline -8 0 0, 0 0 0");
    EXPECT_EQ(texts[4], "TrPolyline 0 20 0, -8 20 0");
    EXPECT_EQ(texts[5], "TrPolyline -8 20 0, -8 0 0");
  }
}

// With one radius the corners are rounded in name: they reach along one side, and not inwards.
TEST_F(ClippedShapesTest, RectanglesWithOneRadiusAreRounded) {
  Import(BoxPath(-100, -100, 0, 100));
  EXPECT_THAT(Delivered(TrRectangle(Box2d(-8, 0, 8, 20), 0, 5)).at(4),
              AllOf(StartsWith("TrPolyline 0 20 0, -8 20 0, -8 19"), HasSubstr("-8 15 0, -8 5 0")));
  EXPECT_THAT(Delivered(TrRectangle(Box2d(-8, 0, 8, 20), 5, 0)).at(4),
              AllOf(StartsWith("TrPolyline 0 20 0, -3 20 0"), HasSubstr("-8 20 0, -8 0 0")));
}

TEST_F(ClippedShapesTest, RectanglesWithRadiiHaveRoundCorners) {
  Import(BoxPath(-1000, -1000, 0, 1000));
  Delivered(TrRectangle(Box2d(-400, -200, 400, 200), 100, 100));
  const TrPolygon& area = DeliveredPolygon(1);
  int onCorners = 0;
  for (const Vec3d& point : area.Points()) {
    if (point.x > -300 || std::fabs(point.y) < 100) continue;
    const double radius = std::hypot(point.x + 300, std::fabs(point.y) - 100);
    EXPECT_NEAR(radius, 100, 1e-9);
    ++onCorners;
  }
  // A line leaves an arc of 100 by at most a quarter when it spans at most 8.1 degrees.
  EXPECT_GE(onCorners, 2 * 12);
  EXPECT_LE(onCorners, 2 * 33) << "and no finer than that needs";
}

TEST_F(ClippedShapesTest, RectanglesAreInvalidUnlessFinite) {
  for (const double bad : kBad) {
    EXPECT_THROW(Import(TrRectangle(Box2d(0, 0, bad, 1))), InvalidObject);
    EXPECT_THROW(Import(TrRectangle(Box2d(0, 0, 1, 1), bad, 0)), InvalidObject);
  }
  EXPECT_EQ(manager_.Size(), 0U);
}

// --- Ellipses

TEST_F(ClippedShapesTest, EllipsesInsidePassWhole) {
  EXPECT_TRUE(PassesWhole(Plate(TrEllipse(Box2d(0, 0, 10, 10)))));
  EXPECT_TRUE(PassesWhole(Plate(TrEllipse(Box2d(9, 9, 1, 1), 0.3)))) << "flipped";
}

TEST_F(ClippedShapesTest, EllipsesPassWholeWhereTheirBoxLiesInsideBeforeTheyAreTurned) {
  Import(BoxPath(0, 0, 100, 10));
  EXPECT_TRUE(PassesWhole(Plate(TrEllipse(Box2d(10, 3, 90, 7), pi / 2))))
      << "though it reaches from y = -35 to 45";
}

TEST_F(ClippedShapesTest, EllipsesPassWholeWhereTheyLieInsideOnceTheyAreTurned) {
  Import(BoxPath(0, 0, 10, 100));
  EXPECT_TRUE(PassesWhole(Plate(TrEllipse(Box2d(-15, 48, 25, 52), pi / 2))));
  EXPECT_FALSE(PassesWhole(Plate(TrEllipse(Box2d(-15, 48, 25, 52), 0.0))));
}

TEST_F(ClippedShapesTest, EllipsesOutsideArriveNotAtAll) {
  EXPECT_EQ(Delivered(TrEllipse(Box2d(20, 0, 30, 10), 1.0)), Texts());
  EXPECT_EQ(Delivered(TrEllipse(Box2d(10.5, 10.5, 30, 30), 0.0)), Texts());
  EXPECT_EQ(Delivered(TrEllipse()), Texts()) << "the empty box";
}

TEST_F(ClippedShapesTest, EllipsesThatCrossAreClippedAsPolygons) {
  Import(BoxPath(0, -200, 200, 200));
  Delivered(Plate(TrEllipse(Box2d(-100, -100, 100, 100))));
  ASSERT_EQ(manager_.Size(), 5U) << "pen, area, pen, both ends of the outline";
  EXPECT_EQ(TextOf(manager_.At(0)), kNoLine);
  EXPECT_EQ(TextOf(manager_.At(2)), kPen);
  const TrPolygon& area = DeliveredPolygon(1);
  EXPECT_EQ(area.Params().Get(L"part"), L"plate");
  for (const Vec3d& point : area.Points()) {
    EXPECT_GE(point.x, 0.0);
    EXPECT_LE(std::hypot(point.x, point.y), 100 + 1e-9);
    if (point.x > 0.0) {
      EXPECT_GE(std::hypot(point.x, point.y), 100 - 1e-9);
    }
    EXPECT_EQ(point.z, 0.0);
  }
}

TEST_F(ClippedShapesTest, EllipsesAreTurnedAboutTheirCentreCounterClockwise) {
  Import(BoxPath(50, -200, 300, 200));
  Delivered(TrEllipse(Box2d(-50, 30, 150, 50), pi / 6));  // centre (50, 40), half axes 100 and 10
  const auto& points = DeliveredPolygon(1).Points();
  const auto tip = std::max_element(points.begin(), points.end(),
                                    [](const Vec3d& a, const Vec3d& b) { return a.x < b.x; });
  const double dx = tip->x - 50;
  const double dy = tip->y - 40;
  EXPECT_NEAR(std::hypot(dx, dy), 100, 1.0);
  EXPECT_NEAR(std::atan2(dy, dx), pi / 6, 0.05);
}

TEST_F(ClippedShapesTest, CurvesLeaveTheirLinesByAtMostAQuarterOfAUnit) {
  Import(BoxPath(0, -2000, 2000, 2000));
  Delivered(TrEllipse(Box2d(-1000, -1000, 1000, 1000)));
  velum::Path path(velum::FillMode::kEvenOdd);
  path.AddEllipse(Box2d(-1000, -1000, 1000, 1000));
  const auto flat = path.GetFlatPolygon(0.25, 10);
  const auto expected = std::count_if(flat.Points().begin(), flat.Points().end(),
                                      [](const Vec2d& point) { return point.x > 1e-9; });
  const auto& points = DeliveredPolygon(1).Points();
  const auto found = std::count_if(points.begin(), points.end(),
                                   [](const Vec3d& point) { return point.x > 1e-9; });
  EXPECT_EQ(found, expected);
}

TEST_F(ClippedShapesTest, EllipsesAreInvalidUnlessFinite) {
  for (const double bad : kBad) {
    EXPECT_THROW(Import(TrEllipse(Box2d(0, 0, bad, 1))), InvalidObject);
    EXPECT_THROW(Import(TrEllipse(Box2d(0, 0, 1, 1), bad)), InvalidObject);
  }
  EXPECT_EQ(manager_.Size(), 0U);
}

// --- Paths, which derived filters may give

TEST_F(ClippedShapesTest, PathsAreClippedAsPolygons) {
  velum::Path path(velum::FillMode::kEvenOdd);
  path.AddRect(Box2d(1, 1, 4, 4));
  path.AddRect(Box2d(2, 2, 3, 3));
  corvel::CParamList params;
  params.Set(L"part", L"frame");
  filter_.ClipAndPass2DPath(path, params);
  filter_.ClipAndPass2DPath(velum::Path(velum::FillMode::kEvenOdd), params);
  EXPECT_EQ(manager_.Texts(),
            Texts{"TrPolygon 1 1 0, 4 1 0, 4 4 0, 1 4 0, 2 2 0, 3 2 0, 3 3 0, 2 3 0 (4 4) "
                  "part=frame"});
}

// --- Markers

TEST_F(ClippedShapesTest, MarkersInsideArriveAsOneSet) {
  TrMarkerSet wells =
      Plate(TrMarkerSet({{5, 5, 968}, {15, 5, 1}, {0, 10, 7}, {-1, 5, 2}, {5, 5, 3}}));
  filter_.ImportObject(wells);
  EXPECT_EQ(manager_.Texts(), Texts{"TrMarkerSet 5 5 968, 0 10 7, 5 5 3 part=plate"})
      << "those on the boundary too, in their order, with their heights";
  EXPECT_NE(manager_.Address(0), &wells);
  EXPECT_EQ(wells.Points().size(), 5U) << "the caller's set is as it was";
}

TEST_F(ClippedShapesTest, MarkersThatAreAllInsideArriveAsANewSet) {
  TrMarkerSet wells({{5, 5, 968}});
  filter_.ImportObject(wells);
  EXPECT_EQ(manager_.Texts(), Texts{"TrMarkerSet 5 5 968"});
  EXPECT_NE(manager_.Address(0), &wells);
}

TEST_F(ClippedShapesTest, MarkersOutsideArriveNotAtAll) {
  EXPECT_EQ(Delivered(TrMarkerSet({{15, 5, 0}, {5, -0.001, 0}})), Texts());
}

TEST_F(ClippedShapesTest, MarkersKeepHeightsThatAreNotFinite) {
  EXPECT_EQ(Delivered(TrMarkerSet({{5, 5, kBad[1]}})), Texts{"TrMarkerSet 5 5 inf"});
}

TEST_F(ClippedShapesTest, NoMarkersPassAsTheyAre) { EXPECT_TRUE(PassesWhole(TrMarkerSet())); }

TEST_F(ClippedShapesTest, MarkersAreInvalidUnlessFinite) {
  for (const double bad : kBad) {
    EXPECT_THROW(Import(TrMarkerSet({{5, 5, 0}, {bad, 5, 0}})), InvalidObject);
    EXPECT_THROW(Import(TrMarkerSet({{5, 5, 0}, {5, bad, 0}})), InvalidObject);
  }
  EXPECT_EQ(manager_.Size(), 0U);
}

}  // namespace
}  // namespace trovan::test
