// Areas, dashes and strokes of flat lines.
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "filters/svg/SvgAreas.h"
#include "filters/svg/SvgDashes.h"
#include "filters/svg/SvgStroker.h"
#include "support/RingArea.h"

namespace trovan::filters {
namespace {

using corvel::Mat3d;
using corvel::Vec2d;
using Line = std::vector<Vec2d>;
using Lines = std::vector<Line>;

double AreaOfRings(const tarnis::Polygon2& polygon) {
  return static_cast<double>(test::SignedArea(polygon));
}

TEST(SvgAreas, KnowsConvexRings) {
  const struct {
    const char* name;
    Line ring;
    bool isConvex;
  } cases[] = {
      {"square", {{0, 0}, {4, 0}, {4, 4}, {0, 4}}, true},
      {"square, the other way", {{0, 4}, {4, 4}, {4, 0}, {0, 0}}, true},
      {"with a point on an edge", {{0, 0}, {2, 0}, {4, 0}, {4, 4}, {0, 4}}, true},
      {"with a point twice", {{0, 0}, {4, 0}, {4, 0}, {4, 4}, {0, 4}}, true},
      {"dent", {{0, 0}, {4, 0}, {2, 1}, {4, 4}, {0, 4}}, false},
      {"twice around", {{0, 0}, {4, 0}, {4, 4}, {0, 4}, {0, 0}, {4, 0}, {4, 4}, {0, 4}}, false},
      {"star", {{0, 3}, {2, -3}, {-3, 1}, {3, 1}, {-2, -3}}, false},
      {"spike", {{0, 0}, {4, 0}, {9, 0}, {4, 0}, {4, 4}}, false},
      {"bow", {{0, 0}, {4, 4}, {4, 0}, {0, 4}}, false},
      {"line", {{0, 0}, {4, 0}, {2, 0}}, false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(IsConvex(c.ring.data(), c.ring.size()), c.isConvex) << c.name;
  }
}

TEST(SvgAreas, CountsWhatTurnsTwiceOnce) {
  const FlatLine twice{{{0, 0}, {4, 0}, {4, 4}, {0, 4}, {0, 0}, {4, 0}, {4, 4}, {0, 4}}, true};
  EXPECT_EQ(AreaOfRings(AreaOf({twice}, tarnis::FillRule::kNonZero)), 16);
}

TEST(SvgAreas, HasNoRingsForLinesWithoutArea) {
  const FlatLine two{{{0, 0}, {4, 0}, {0, 0}}, true};
  EXPECT_TRUE(AreaOf({two}, tarnis::FillRule::kEvenOdd).IsEmpty());
}

TEST(SvgDashes, CutsAlongTheLine) {
  const FlatLine corner{{{0, 0}, {10, 0}, {10, 10}}, false};
  const auto expectCut = [&corner](const SvgDashes& dashes, const Lines& expected) {
    const auto cut = CutIntoDashes(corner, dashes, Mat3d(), 1000);
    ASSERT_TRUE(cut);
    EXPECT_EQ(*cut, expected) << dashes.lengths.front() << " from " << dashes.offset;
  };
  expectCut({{12, 4}, 0}, {{{0, 0}, {10, 0}, {10, 2}}, {{10, 6}, {10, 10}}});
  expectCut({{8}, 0}, {{{0, 0}, {8, 0}}, {{10, 6}, {10, 10}}});
  expectCut({{8, 4}, 8}, {{{4, 0}, {10, 0}, {10, 2}}, {{10, 6}, {10, 10}}});
  expectCut({{8, 4}, -2}, {{{2, 0}, {10, 0}}, {{10, 4}, {10, 10}}});
  expectCut({{8, 4}, 128}, {{{4, 0}, {10, 0}, {10, 2}}, {{10, 6}, {10, 10}}});
  expectCut({{3, 0}, 0}, {{{0, 0}, {10, 0}, {10, 10}}});
  expectCut({{100, 1}, 0}, {{{0, 0}, {10, 0}, {10, 10}}});
  expectCut({{1, 100}, 1}, {});
}

TEST(SvgDashes, GoThroughTheStartOfAClosedLine) {
  const FlatLine square{{{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}}, true};
  const auto expectCut = [&square](const SvgDashes& dashes, const Lines& expected) {
    const auto cut = CutIntoDashes(square, dashes, Mat3d(), 1000);
    ASSERT_TRUE(cut);
    EXPECT_EQ(*cut, expected) << dashes.lengths.front() << " from " << dashes.offset;
  };
  expectCut({{6, 28}, 0}, {{{0, 6}, {0, 0}, {6, 0}}});
  expectCut({{6, 34}, 0}, {{{0, 0}, {6, 0}}});
  expectCut({{30, 4}, 30}, {{{4, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 6}}, {{0, 2}, {0, 0}}});
  expectCut({{100, 1}, 0}, {square.points});
}

TEST(SvgDashes, MakesDotsOfDashesWithoutLength) {
  const auto cut = CutIntoDashes({{{0, 0}, {0, 10}}, false}, {{0, 6}, 3}, Mat3d(), 100);
  ASSERT_TRUE(cut);
  ASSERT_EQ(cut->size(), 2U);
  EXPECT_EQ(cut->at(0), (Line{{0, 3}, {0, 3 + kDotLength}}));
}

TEST(SvgDashes, CutsTheShortestLines) {
  constexpr double kShort = 1e-320;  // its reciprocal is no number
  const auto dashes =
      CutIntoDashes({{{0, 0}, {kShort, 0}}, false}, {{kShort / 4, kShort / 2}, 0}, Mat3d(), 10);
  ASSERT_TRUE(dashes);
  ASSERT_EQ(dashes->size(), 2U);
  EXPECT_EQ(dashes->front().back(), Vec2d(kShort / 4, 0));
  const auto dots =
      CutIntoDashes({{{0, 0}, {kShort, 0}}, false}, {{0, kShort / 2}, 0}, Mat3d(), 10);
  ASSERT_TRUE(dots);
  EXPECT_EQ(dots->front(), (Line{{0, 0}, {kDotLength, 0}}));
}

TEST(SvgDashes, MeasuresInUserUnits) {
  const Mat3d wide(10, 0, 0, 1, 0, 0);
  const auto cut = CutIntoDashes({{{0, 0}, {20, 0}, {20, 2}}, false}, {{1, 1}, 0}, wide, 100);
  ASSERT_TRUE(cut);
  EXPECT_EQ(*cut, (Lines{{{0, 0}, {10, 0}}, {{20, 0}, {20, 1}}}));
}

TEST(SvgDashes, RefusesTooMany) {
  EXPECT_FALSE(CutIntoDashes({{{0, 0}, {100, 0}}, false}, {{1e-9}, 0}, Mat3d(), 1000));
  EXPECT_FALSE(CutIntoDashes({{{0, 0}, {100, 0}}, false}, {{1}, 0}, Mat3d(1, 0, 1, 0, 0, 0), 1000));
}

TEST(SvgStroker, CoversTheWidthOfALine) {
  const struct {
    const char* name;
    Line line;
    SvgStroke stroke;
    double area;
  } cases[] = {
      {"butt", {{0, 0}, {10, 0}}, {{}, 2, "butt", "miter", 4}, 20},
      {"square", {{0, 0}, {10, 0}}, {{}, 2, "square", "miter", 4}, 24},
      {"corner, mitre", {{0, 0}, {10, 0}, {10, 10}}, {{}, 2, "butt", "miter", 4}, 40},
      {"corner, bevel", {{0, 0}, {10, 0}, {10, 10}}, {{}, 2, "butt", "bevel", 4}, 39.5},
      {"corner beyond the limit", {{0, 0}, {10, 0}, {10, 10}}, {{}, 2, "butt", "miter", 1}, 39.5},
      {"straight on", {{0, 0}, {4, 0}, {10, 0}}, {{}, 2, "butt", "miter", 4}, 20},
      {"repeated points", {{0, 0}, {0, 0}, {10, 0}, {10, 0}}, {{}, 2, "butt", "miter", 4}, 20},
      {"closed", {{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}}, {{}, 2, "butt", "miter", 4}, 80},
      {"crossing itself once",
       {{0, 0}, {10, 0}, {10, 5}, {5, 5}, {5, -5}},
       {{}, 2, "butt", "miter", 4},
       20 + 10 + 10 + 20 - 4},
  };
  for (const auto& c : cases) {
    EXPECT_NEAR(AreaOfRings(StrokedArea(c.line, c.stroke)), c.area, 1e-9) << c.name;
  }
}

TEST(SvgStroker, RoundsCapsAndJoins) {
  const double round = 100 * std::acos(-1.0);  // of radius 10
  EXPECT_NEAR(AreaOfRings(StrokedArea({{0, 0}, {50, 0}}, {{}, 20, "round", "miter", 4})),
              1000 + round, 10);
  EXPECT_NEAR(AreaOfRings(StrokedArea({{0, 0}, {50, 0}, {50, 50}}, {{}, 20, "butt", "round", 4})),
              2000 - 100 + round / 4, 10);
}

TEST(SvgStroker, RoundsPensBeyondAllMeasure) {
  const double radius = 1e17;
  const double area =
      AreaOfRings(StrokedArea({{0, 0}, {50, 0}}, {{}, 2 * radius, "round", "miter", 4}));
  EXPECT_NEAR(area / (radius * radius), std::acos(-1.0), 1e-3);
}

TEST(SvgStroker, KeepsTheDirectionOfTheShortestLines) {
  constexpr double kShort = 1e-320;  // its reciprocal is no number
  const SvgStroke stroke = {{}, 2, "square", "miter", 4};
  EXPECT_NEAR(AreaOfRings(StrokedArea({{0, 0}, {kShort, 0}}, stroke)), 4, 1e-9);
}

TEST(SvgStroker, MitresThePensWhoseSquareIsNoNumber) {
  const SvgStroke stroke = {{}, 2e-170, "butt", "miter", 4};
  const auto area = StrokedArea({{0, 0}, {1e-168, 0}, {1e-168, 1e-168}}, stroke);
  corvel::Box2d box;
  box.BoundPoints(area.Points().data(), area.Points().size());
  EXPECT_EQ(box.min, Vec2d(0, -1e-170));
  EXPECT_NEAR(box.max.x * 1e168, 1.01, 1e-9);
  EXPECT_NEAR(box.max.y * 1e168, 1, 1e-9);
}

TEST(SvgStroker, CoversNothingWithoutLength) {
  EXPECT_TRUE(StrokedArea({{1, 1}, {1, 1}}, {}).IsEmpty());
  EXPECT_TRUE(StrokedArea({}, {}).IsEmpty());
}

}  // namespace
}  // namespace trovan::filters
