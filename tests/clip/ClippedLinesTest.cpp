// Polylines cut to the clip region, and what derived filters deliver of lines.
#include <limits>
#include <ostream>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <quillon/TrClipPath.h>
#include <quillon/TrPolyline.h>

#include "ClippedFixture.h"

namespace trovan::test {
namespace {

using corvel::CParamList;
using corvel::Vec2d;
using quillon::InvalidObject;
using quillon::TrClipPath;
using quillon::TrPolyline;

CParamList Roads() {
  CParamList params;
  params.Set(L"layer", L"roads");
  params.Set(L"lanes", L"2");
  return params;
}

class ClippedLinesTest : public ClippedTest {
 protected:
  TrPolyline Line(std::vector<Vec3d> points) {
    TrPolyline line(std::move(points));
    line.Params() = Roads();
    return line;
  }
};

// The same lines for the clipper of rectangles and the one of any region.
struct Region {
  const char* name;
  TrClipPath clipPath;
};

void PrintTo(const Region& region, std::ostream* out) { *out << region.name; }

class ClippedLinesInEachRegionTest : public ClippedLinesTest,
                                     public testing::WithParamInterface<Region> {
 protected:
  void SetUp() override { Import(GetParam().clipPath); }
};

// All hold the square from (0, 0) to (10, 10), and nothing else above y = -1.
const Region kRegions[] = {
    {"Rectangle", TrClipPath({{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}})},
    {"ClosedRectangle", TrClipPath({{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}, {0, 0, 0}})},
    {"RectangleWithAnExtraCorner",
     TrClipPath({{0, 0, 0}, {10, 0, 0}, {10, 5, 0}, {10, 10, 0}, {0, 10, 0}})},
    {"House", TrClipPath({{0, 0, 0}, {5, -1, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}})},
};
INSTANTIATE_TEST_SUITE_P(Regions, ClippedLinesInEachRegionTest, testing::ValuesIn(kRegions),
                         [](const auto& region) { return region.param.name; });

TEST_P(ClippedLinesInEachRegionTest, AreNewObjectsOfHeight0EvenInside) {
  TrPolyline line = Line({{1, 1, 7}, {9, 1, 8}, {9, 9, 9}});
  filter_.ImportObject(line);
  EXPECT_EQ(manager_.Texts(), Texts{"TrPolyline 1 1 0, 9 1 0, 9 9 0 layer=roads lanes=2"});
  EXPECT_NE(manager_.Address(0), &line);
}

TEST_P(ClippedLinesInEachRegionTest, ArriveInPiecesInTheOrderOfTravel) {
  EXPECT_EQ(Delivered(Line({{-5, 2, 1}, {5, 2, 1}, {15, 2, 1}, {15, 8, 1}, {5, 8, 1}, {-5, 8, 1}})),
            (Texts{"TrPolyline 0 2 0, 5 2 0, 10 2 0 layer=roads lanes=2",
                   "TrPolyline 10 8 0, 5 8 0, 0 8 0 layer=roads lanes=2"}));
}

TEST_P(ClippedLinesInEachRegionTest, ArriveNotAtAllOutside) {
  EXPECT_EQ(Delivered(Line({{-5, 20, 0}, {5, 12, 0}, {15, 20, 0}})), Texts());
}

TEST_P(ClippedLinesInEachRegionTest, StayOnTheBoundary) {
  EXPECT_EQ(Delivered(Line({{2, 10, 0}, {8, 10, 0}})),
            Texts{"TrPolyline 2 10 0, 8 10 0 layer=roads lanes=2"});
}

TEST_P(ClippedLinesInEachRegionTest, OfOnePointStayInside) {
  EXPECT_EQ(Delivered(Line({{2, 2, 5}})), Texts{"TrPolyline 2 2 0 layer=roads lanes=2"});
  EXPECT_EQ(Delivered(Line({{-2, 2, 5}})), Texts());
}

TEST_P(ClippedLinesInEachRegionTest, WithoutPointsPassAsTheyAre) {
  EXPECT_TRUE(PassesWhole(Line({})));
}

TEST_F(ClippedLinesTest, AreInvalidUnlessFinite) {
  Import(Square());
  for (const double bad :
       {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
    EXPECT_THROW(Import(Line({{1, 1, 0}, {bad, 0, 0}})), InvalidObject);
    EXPECT_THROW(Import(Line({{1, 1, 0}, {0, -bad, 0}})), InvalidObject);
    EXPECT_EQ(Delivered(Line({{1, 1, bad}})), Texts{"TrPolyline 1 1 0 layer=roads lanes=2"})
        << "heights are dropped";
  }
}

// --- What derived filters may call

TEST_F(ClippedLinesTest, MayBePassedUnclipped) {
  Import(Square());
  const Vec2d points[] = {{50, 50}, {60, 60}};
  filter_.PassPolyline(points, 2, Roads());
  filter_.PassPolyline(points, 0, Roads());
  filter_.PassPolyline(nullptr, 0, Roads());
  EXPECT_EQ(manager_.Texts(), Texts{"TrPolyline 50 50 0, 60 60 0 layer=roads lanes=2"});
}

TEST_F(ClippedLinesTest, MayBePassedInPieces) {
  const std::vector<Vec2d> points = {{1, 1}, {2, 2}, {3, 3}, {4, 4}};
  filter_.PassClippedPolylines(points, {2, 0, 1}, Roads());
  EXPECT_EQ(manager_.Texts(), (Texts{"TrPolyline 1 1 0, 2 2 0 layer=roads lanes=2",
                                     "TrPolyline 3 3 0 layer=roads lanes=2"}));
}

TEST_F(ClippedLinesTest, ArePassedInNoPiecesWithoutPointsOrCounts) {
  filter_.PassClippedPolylines({}, {2}, Roads());
  filter_.PassClippedPolylines({{1, 1}}, {}, Roads());
  EXPECT_EQ(manager_.Size(), 0U);
}

TEST_F(ClippedLinesTest, EndWhereThePointsEnd) {
  filter_.PassClippedPolylines({{1, 1}, {2, 2}, {3, 3}}, {2, 4'000'000'000U, 2}, Roads());
  EXPECT_EQ(manager_.Texts(), (Texts{"TrPolyline 1 1 0, 2 2 0 layer=roads lanes=2",
                                     "TrPolyline 3 3 0 layer=roads lanes=2"}));
}

TEST_F(ClippedLinesTest, OfNoPointsAreClippedToNothing) {
  for (const TrClipPath& region : {Square(), Triangle()}) {
    Import(region);
    filter_.ClipAndPass2DPolyline(nullptr, 0, Roads());
  }
  EXPECT_EQ(manager_.Size(), 0U);
}

TEST_F(ClippedLinesTest, AreNothingWithoutARegion) {
  const Vec2d points[] = {{1, 1}, {2, 2}};
  filter_.ClipAndPass2DPolyline(points, 2, Roads());
  EXPECT_EQ(manager_.Size(), 0U);
}

TEST_F(ClippedLinesTest, CopyTheirPointsWithHeight0) {
  const Vec2d from[] = {{1, 2}, {3, 4}, {5, 6}};
  Vec3d to[] = {{9, 9, 9}, {9, 9, 9}, {9, 9, 9}};
  OpenFilter::CopyCoords(to, from, 2);
  EXPECT_EQ(to[0], Vec3d(1, 2, 0));
  EXPECT_EQ(to[1], Vec3d(3, 4, 0));
  EXPECT_EQ(to[2], Vec3d(9, 9, 9));
}

TEST_F(ClippedLinesTest, CopyTheirPointsWithoutHeights) {
  const Vec3d from[] = {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}};
  Vec2d to[] = {{9, 9}, {9, 9}, {9, 9}};
  OpenFilter::CopyCoords(to, from, 2);
  EXPECT_EQ(to[0], Vec2d(1, 2));
  EXPECT_EQ(to[1], Vec2d(4, 5));
  EXPECT_EQ(to[2], Vec2d(9, 9));
}

}  // namespace
}  // namespace trovan::test
