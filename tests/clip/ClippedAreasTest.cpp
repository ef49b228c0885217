// Polygons cut to the clip region: an area without outline, and the pieces of the outline.
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <quillon/TrClipPath.h>
#include <quillon/TrPen.h>
#include <quillon/TrPolygon.h>

#include "ClippedFixture.h"

namespace trovan::test {
namespace {

using corvel::Color4b;
using corvel::CParamList;
using corvel::Vec2d;
using quillon::InvalidObject;
using quillon::TrClipPath;
using quillon::TrPen;
using quillon::TrPolygon;
using Counts = std::vector<unsigned int>;

constexpr const char* kNoLine = "TrPen 2 00000000 0";
constexpr const char* kPen = "TrPen 1 00ff00ff 0.5";

class ClippedAreasTest : public ClippedTest {
 protected:
  void SetUp() override {
    Import(TrPen(TrPen::kSolid, Color4b(0, 255, 0, 255), 0.5));
    Import(Square());
    manager_.Clear();
  }

  static TrPolygon Lake(std::vector<Vec3d> points, Counts counts = {}) {
    TrPolygon polygon(std::move(points), std::move(counts));
    polygon.Params().Set(L"type", L"lake");
    return polygon;
  }
};

TEST_F(ClippedAreasTest, ArriveAsOneNewPolygonInside) {
  TrPolygon lake = Lake({{1, 1, 5}, {9, 1, 6}, {9, 9, 7}, {2, 2, 0}, {3, 2, 0}, {3, 3, 0}}, {3, 3});
  filter_.ImportObject(lake);
  EXPECT_EQ(manager_.Texts(),
            Texts{"TrPolygon 1 1 0, 9 1 0, 9 9 0, 2 2 0, 3 2 0, 3 3 0 (3 3) type=lake"});
  EXPECT_NE(manager_.Address(0), &lake);
}

TEST_F(ClippedAreasTest, AreInsideUpToTheBoundary) {
  EXPECT_EQ(Delivered(Lake({{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}})),
            Texts{"TrPolygon 0 0 0, 10 0 0, 10 10 0, 0 10 0 (4) type=lake"});
}

TEST_F(ClippedAreasTest, KeepPointsInsideThatNoRingHas) {
  EXPECT_EQ(Delivered(Lake({{1, 1, 0}, {9, 1, 0}, {9, 9, 0}, {50, 50, 3}}, {3})),
            Texts{"TrPolygon 1 1 0, 9 1 0, 9 9 0, 50 50 0 (3) type=lake"});
}

TEST_F(ClippedAreasTest, AreOneRingWithoutCounts) {
  EXPECT_EQ(Delivered(Lake({{1, 1, 0}, {9, 1, 0}, {9, 9, 0}, {2, 7, 0}})),
            Texts{"TrPolygon 1 1 0, 9 1 0, 9 9 0, 2 7 0 (4) type=lake"});
}

TEST_F(ClippedAreasTest, ArriveNotAtAllOutside) {
  EXPECT_EQ(Delivered(Lake({{20, 0, 0}, {30, 0, 0}, {30, 10, 0}})), Texts());
  EXPECT_EQ(Delivered(Lake({{-5, 26, 0}, {26, -5, 0}, {26, 26, 0}})), Texts())
      << "though its box holds the region";
}

TEST_F(ClippedAreasTest, AreFilledWithoutOutlineAndThenStrokedWhereTheyCross) {
  EXPECT_EQ(DeliveredAreas(Lake({{5, 5, 1}, {15, 5, 2}, {15, 15, 3}, {5, 15, 4}})),
            (Texts{kNoLine, "TrPolygon 5 5 0, 10 5 0, 10 10 0, 5 10 0 (4) type=lake", kPen,
                   "TrPolyline 5 5 0, 10 5 0 type=lake",    // of the open ring
                   "TrPolyline 5 10 0, 5 5 0 type=lake"}))  // the segment that closes it
      << "nothing is drawn along the boundary of the region";
}

TEST_F(ClippedAreasTest, CloseOpenRingsByASegmentOfTheirOwn) {
  EXPECT_EQ(DeliveredAreas(Lake({{15, 5, 0}, {15, 15, 0}, {5, 15, 0}, {5, 5, 0}})),
            (Texts{kNoLine, "TrPolygon 5 5 0, 10 5 0, 10 10 0, 5 10 0 (4) type=lake", kPen,
                   "TrPolyline 5 10 0, 5 5 0 type=lake", "TrPolyline 5 5 0, 10 5 0 type=lake"}));
}

TEST_F(ClippedAreasTest, DoNotCloseRingsThatAreClosed) {
  EXPECT_EQ(DeliveredAreas(Lake({{15, 5, 0}, {15, 15, 0}, {5, 15, 0}, {5, 5, 0}, {15, 5, 9}})),
            (Texts{kNoLine, "TrPolygon 5 5 0, 10 5 0, 10 10 0, 5 10 0 (4) type=lake", kPen,
                   "TrPolyline 5 10 0, 5 5 0, 10 5 0 type=lake"}))
      << "whatever the heights";
}

TEST_F(ClippedAreasTest, CloseRingsThatAreAlmostClosed) {
  const Texts texts =
      Delivered(Lake({{5, 5, 0}, {15, 5, 0}, {15, 15, 0}, {5, 15, 0}, {5, 5.5, 0}}));
  ASSERT_EQ(texts.size(), 6U);
  EXPECT_EQ(texts[3], "TrPolyline 5 5 0, 10 5 0 type=lake");
  EXPECT_EQ(texts[4], "TrPolyline 5 10 0, 5 5.5 0 type=lake");
  EXPECT_EQ(texts[5], "TrPolyline 5 5.5 0, 5 5 0 type=lake");
}

TEST_F(ClippedAreasTest, AreStrokedRingByRing) {
  const std::string area =
      "TrPolygon 0 0 0, 5 0 0, 5 5 0, 0 5 0, 1 1 0, 1 3 0, 3 3 0, 3 1 0 (4 4) type=lake";
  EXPECT_EQ(DeliveredAreas(Lake({{-5, -5, 0},
                                 {5, -5, 0},
                                 {5, 5, 0},
                                 {-5, 5, 0},
                                 {1, 1, 0},
                                 {3, 1, 0},
                                 {3, 3, 0},
                                 {1, 3, 0},
                                 {1, 1, 0}},
                                {4, 5})),
            (Texts{kNoLine, area, kPen, "TrPolyline 5 0 0, 5 5 0, 0 5 0 type=lake",
                   "TrPolyline 1 1 0, 3 1 0, 3 3 0, 1 3 0, 1 1 0 type=lake"}));
}

TEST_F(ClippedAreasTest, PassOverRingsWithoutPointsAndPointsWithoutRing) {
  EXPECT_EQ(
      DeliveredAreas(Lake({{5, 5, 0}, {15, 5, 0}, {15, 15, 0}, {5, 15, 0}, {1, 1, 0}}, {0, 4, 0})),
      (Texts{kNoLine, "TrPolygon 5 5 0, 10 5 0, 10 10 0, 5 10 0 (4) type=lake", kPen,
             "TrPolyline 5 5 0, 10 5 0 type=lake", "TrPolyline 5 10 0, 5 5 0 type=lake"}));
}

TEST_F(ClippedAreasTest, StrokeARingOfOnePointOnce) {
  const Texts texts = Delivered(
      Lake({{5, 5, 0}, {15, 5, 0}, {15, 15, 0}, {5, 15, 0}, {1, 1, 0}, {2, 2, 0}, {3, 3, 0}},
           {4, 1, 2}));
  ASSERT_EQ(texts.size(), 8U);
  EXPECT_EQ(texts[5], "TrPolyline 1 1 0 type=lake");
  EXPECT_EQ(texts[6], "TrPolyline 2 2 0, 3 3 0 type=lake");
  EXPECT_EQ(texts[7], "TrPolyline 3 3 0, 2 2 0 type=lake");
}

TEST_F(ClippedAreasTest, HaveNoOutlineWhereTheyCoverTheRegion) {
  EXPECT_EQ(DeliveredAreas(Lake({{-50, -50, 0}, {50, -50, 0}, {50, 50, 0}, {-50, 50, 0}})),
            (Texts{kNoLine, "TrPolygon 0 0 0, 10 0 0, 10 10 0, 0 10 0 (4) type=lake", kPen}));
}

TEST_F(ClippedAreasTest, ArriveNotAtAllWhereOnlyTheirOutlineTouches) {
  EXPECT_EQ(Delivered(Lake({{10, 0, 0}, {20, 0, 0}, {20, 10, 0}, {10, 10, 0}})), Texts());
}

TEST_F(ClippedAreasTest, AreClippedWhereTheirBoxIsNotInside) {
  Import(Triangle());
  EXPECT_EQ(
      DeliveredAreas(Lake({{1, 1, 0}, {6, 1, 0}, {1, 6, 0}})),
      (Texts{kNoLine, "TrPolygon 1 1 0, 6 1 0, 1 6 0 (3) type=lake", kPen,
             "TrPolyline 1 1 0, 6 1 0, 1 6 0 type=lake", "TrPolyline 1 6 0, 1 1 0 type=lake"}));
}

TEST_F(ClippedAreasTest, ArriveNotAtAllWithinAHoleOfTheRegion) {
  Import(TrClipPath(
      {{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}, {2, 2, 0}, {8, 2, 0}, {8, 8, 0}, {2, 8, 0}},
      {4, 4}));
  EXPECT_EQ(Delivered(Lake({{3, 3, 0}, {7, 3, 0}, {7, 7, 0}})), Texts());
}

TEST_F(ClippedAreasTest, ArriveInSeveralRingsWhereTheRegionCutsThem) {
  Import(TrClipPath({{0, 0, 0},
                     {10, 0, 0},
                     {10, 10, 0},
                     {0, 10, 0},
                     {20, 0, 0},
                     {30, 0, 0},
                     {30, 10, 0},
                     {20, 10, 0}},
                    {4, 4}));
  const std::string area =
      "TrPolygon 5 5 0, 10 5 0, 10 6 0, 5 6 0, 20 5 0, 25 5 0, 25 6 0, 20 6 0 (4 4) type=lake";
  EXPECT_EQ(DeliveredAreas(Lake({{5, 5, 0}, {25, 5, 0}, {25, 6, 0}, {5, 6, 0}})),
            (Texts{kNoLine, area, kPen, "TrPolyline 5 5 0, 10 5 0 type=lake",
                   "TrPolyline 20 5 0, 25 5 0, 25 6 0, 20 6 0 type=lake",
                   "TrPolyline 10 6 0, 5 6 0 type=lake", "TrPolyline 5 6 0, 5 5 0 type=lake"}));
}

TEST_F(ClippedAreasTest, WithoutPointsPassAsTheyAre) {
  EXPECT_TRUE(PassesWhole(Lake({})));
  EXPECT_TRUE(PassesWhole(Lake({}, {0, 0})));
}

TEST_F(ClippedAreasTest, OfNoRingWithPointsArriveNotAtAll) {
  EXPECT_EQ(Delivered(Lake({{1, 1, 0}, {2, 1, 0}, {2, 2, 0}}, {0})), Texts());
}

TEST_F(ClippedAreasTest, AreInvalidUnlessFiniteAndCountedRight) {
  for (const double bad :
       {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
    EXPECT_THROW(Import(Lake({{1, 1, 0}, {bad, 0, 0}, {2, 3, 0}})), InvalidObject);
    EXPECT_THROW(Import(Lake({{1, 1, 0}, {0, -bad, 0}, {2, 3, 0}})), InvalidObject);
  }
  EXPECT_THROW(Import(Lake({{1, 1, 0}, {2, 0, 0}, {2, 3, 0}}, {4})), InvalidObject);
  EXPECT_THROW(Import(Lake({}, {1})), InvalidObject) << "though it has no points";
  EXPECT_EQ(manager_.Size(), 0U);
}

// --- What derived filters may call

TEST_F(ClippedAreasTest, MayBeGivenInTheParts) {
  CParamList params;
  params.Set(L"type", L"lake");
  filter_.ClipAndPass2DPolygon({{1, 1}, {9, 1}, {9, 9}}, {3}, params);
  filter_.ClipAndPass2DPolygon({}, {3}, params);
  filter_.ClipAndPass2DPolygon({{1, 1}, {9, 1}, {9, 9}}, {}, params);
  EXPECT_EQ(manager_.Texts(), Texts{"TrPolygon 1 1 0, 9 1 0, 9 9 0 (3) type=lake"});
}

TEST_F(ClippedAreasTest, MayBePassedUnclipped) {
  CParamList params;
  params.Set(L"type", L"lake");
  filter_.PassClippedPolygon({{50, 50}, {60, 50}, {60, 60}}, {3}, params);
  filter_.PassClippedPolygon({{50, 50}}, {}, params);
  filter_.PassClippedPolygon({}, {3}, params);
  EXPECT_EQ(manager_.Texts(), (Texts{"TrPolygon 50 50 0, 60 50 0, 60 60 0 (3) type=lake",
                                     "TrPolygon 50 50 0 () type=lake"}));
}

TEST_F(ClippedAreasTest, AreStrokedUpToWhereThePointsEnd) {
  filter_.ClipAndPass2DPolygon({{5, 5}, {15, 5}, {15, 15}, {5, 15}}, {9, 9}, {});
  EXPECT_EQ(manager_.AreaTexts(),
            (Texts{kNoLine, "TrPolygon 5 5 0, 10 5 0, 10 10 0, 5 10 0 (4)", kPen,
                   "TrPolyline 5 5 0, 10 5 0", "TrPolyline 5 10 0, 5 5 0"}));
}

}  // namespace
}  // namespace trovan::test
