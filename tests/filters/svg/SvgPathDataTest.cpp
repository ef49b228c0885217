#include "filters/svg/SvgPathData.h"

#include <cmath>
#include <optional>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

namespace trovan::filters {
namespace {

using corvel::Box2d;
using corvel::Vec2d;

// The lines without curves: "0 0, 4 0, 4 4 | 1 1, 2 2"; those that are closed end with "z".
std::string Lines(const SvgOutline& outline) {
  std::ostringstream text;
  for (const FlatLine& line : outline.Flatten({})) {
    if (text.tellp() > 0) text << " | ";
    bool isFirst = true;
    for (const Vec2d& point : line.points) {
      text << (isFirst ? "" : ", ") << point.x << ' ' << point.y;
      isFirst = false;
    }
    if (line.isClosed) text << " z";
  }
  return text.str();
}

std::string Lines(const char* data) { return Lines(ParsePathData(data).outline); }

TEST(SvgPathData, ReadsStraightLines) {
  const struct {
    const char* data;
    const char* lines;
  } cases[] = {
      {"", ""},
      {"  ", ""},
      {"M1 2", ""},
      {"M0 0L4 0L4 4", "0 0, 4 0, 4 4"},
      {"M 0,0 L 4,0 , 4,4", "0 0, 4 0, 4 4"},
      {"M0 0 4 0 4 4", "0 0, 4 0, 4 4"},
      {"m1 1 4 0 0 4", "1 1, 5 1, 5 5"},
      {"M1 1l4 0l0 4", "1 1, 5 1, 5 5"},
      {"M1 1H5V6", "1 1, 5 1, 5 6"},
      {"M1 1h4v5", "1 1, 5 1, 5 6"},
      {"M1 1h4 5", "1 1, 5 1, 10 1"},
      {"M1 1h4z", "1 1, 5 1, 1 1 z"},
      {"M0 0h4v4zM9 9h1", "0 0, 4 0, 4 4, 0 0 z | 9 9, 10 9"},
      {"M0 0h4v4zm1 1h1", "0 0, 4 0, 4 4, 0 0 z | 1 1, 2 1"},
      {"M0 0h4v4zl1 1", "0 0, 4 0, 4 4, 0 0 z | 0 0, 1 1"},
      {"M0 0h4v4zZ", "0 0, 4 0, 4 4, 0 0 z"},
      {"M0 0h4v4h-4v-4", "0 0, 4 0, 4 4, 0 4, 0 0"},
      {"M.5.5-1-1", "0.5 0.5, -1 -1"},
      {"M1e1 0L2E1 0", "10 0, 20 0"},
      {"M1 1L1 1", "1 1"},
      {"M1 1z", "1 1 z"},
      {"M5 5M0 0L1 1", "0 0, 1 1"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Lines(c.data), c.lines) << c.data;
    EXPECT_FALSE(ParsePathData(c.data).fault) << c.data;
  }
}

TEST(SvgPathData, DrawsUpToTheFault) {
  const struct {
    const char* data;
    const char* lines;
    std::size_t fault;
  } cases[] = {
      {"L1 1", "", 0},
      {"x", "", 0},
      {"M0 0L1 1 2", "0 0, 1 1", 10},
      {"M0 0L1 1,L2 2", "0 0, 1 1", 8},
      {"M0 0L1 1 # 2 2", "0 0, 1 1", 9},
      {"M0 0L1 1x", "0 0, 1 1", 8},
      {"M0 0L1,,1", "", 7},
      {"M0 0h1z,h2", "0 0, 1 0, 0 0 z", 7},
      {"M0 0L1 1C2 2 3 3", "0 0, 1 1", 16},
      {"M0 0L1 1A1 1 0 2 0 3 3", "0 0, 1 1", 15},
      {"M0 0L1 1L1e999 0", "0 0, 1 1", 9},
      {"M0 0h1e308h1e308", "0 0, 1e+308 0", 11},
  };
  for (const auto& c : cases) {
    const SvgPathData data = ParsePathData(c.data);
    EXPECT_EQ(Lines(data.outline), c.lines) << c.data;
    EXPECT_EQ(data.fault, c.fault) << c.data;
  }
}

// A curve is told by its box, which two ways to write it share.
TEST(SvgPathData, ReadsCurvesRelativeAndShort) {
  const struct {
    const char* data;
    const char* same;
  } cases[] = {
      {"M1 1c0 2 2 4 4 4", "M1 1C1 3 3 5 5 5"},
      {"M1 1C1 3 3 5 5 5S9 3 9 1", "M1 1C1 3 3 5 5 5C7 5 9 3 9 1"},
      {"M1 1C1 3 3 5 5 5s4-2 4-4", "M1 1C1 3 3 5 5 5C7 5 9 3 9 1"},
      {"M1 1L5 5S9 3 9 1", "M1 1L5 5C5 5 9 3 9 1"},
      {"M0 0Q3 6 6 0", "M0 0C2 4 4 4 6 0"},
      {"M0 0q3 6 6 0", "M0 0C2 4 4 4 6 0"},
      {"M0 0Q3 6 6 0T12 0", "M0 0Q3 6 6 0Q9-6 12 0"},
      {"M0 0Q3 6 6 0t6 0", "M0 0Q3 6 6 0Q9-6 12 0"},
      {"M0 0L6 0T12 6", "M0 0L6 0Q6 0 12 6"},
      {"M0 0C1 1 2 2 3 0 4 1 5 2 6 0", "M0 0C1 1 2 2 3 0C4 1 5 2 6 0"},
  };
  for (const auto& c : cases) EXPECT_EQ(Lines(c.data), Lines(c.same)) << c.data;
}

double MostFrom(const SvgOutline& outline, const Vec2d& center, double radius) {
  double most = 0.0;
  for (const FlatLine& line : outline.Flatten({})) {
    for (const Vec2d& p : line.points) {
      most = std::max(most, std::fabs(std::hypot(p.x - center.x, p.y - center.y) - radius));
    }
  }
  return most;
}

TEST(SvgPathData, DrawsArcsOfCircles) {
  const struct {
    const char* data;
    Vec2d center;
    Box2d bounds;
  } cases[] = {
      {"M100 0A100 100 0 0 1 0 100", {0, 0}, {0, 0, 100, 100}},
      {"M100 0A100 100 0 1 0 0 100", {0, 0}, {-100, -100, 100, 100}},
      {"M100 0A100 100 0 0 0 0 100", {100, 100}, {0, 0, 100, 100}},
      {"M100 0A100 100 0 1 1 0 100", {100, 100}, {0, 0, 200, 200}},
      {"M-100 0A100 100 0 0 1 100 0", {0, 0}, {-100, -100, 100, 0}},
      {"M-100 0A100-100 45 0 0 100 0", {0, 0}, {-100, 0, 100, 100}},
      {"M-100 0A1 1 0 0 1 100 0", {0, 0}, {-100, -100, 100, 0}},  // enlarged until it reaches
  };
  for (const auto& c : cases) {
    const SvgOutline outline = ParsePathData(c.data).outline;
    EXPECT_LT(MostFrom(outline, c.center, 100), 0.001) << c.data;
    const Box2d bounds = outline.Bounds();
    EXPECT_NEAR(bounds.min.x, c.bounds.min.x, 0.01) << c.data;
    EXPECT_NEAR(bounds.min.y, c.bounds.min.y, 0.01) << c.data;
    EXPECT_NEAR(bounds.max.x, c.bounds.max.x, 0.01) << c.data;
    EXPECT_NEAR(bounds.max.y, c.bounds.max.y, 0.01) << c.data;
  }
}

TEST(SvgPathData, TurnsTheEllipseOfAnArc) {
  // Half an ellipse of 20 by 10 that stands upright.
  const Box2d bounds = ParsePathData("M0 -20A20 10 90 0 1 0 20").outline.Bounds();
  EXPECT_NEAR(bounds.max.x, 10, 0.001);
  EXPECT_NEAR(bounds.min.x, 0, 0.001);
}

TEST(SvgPathData, ReadsFlagsHoweverTheyAreSet) {
  const std::string plain = Lines("M0 0a10 10 0 0 1 10 10");
  for (const char* data :
       {"M0 0a10 10 0 0110 10", "M0 0a10,10,0,0,1,10,10", "M0 0a10 10 0 01 10 10",
        "M0 0a10 10 0 0 1+10+10", "M0 0a10 10 0 0,110,10"}) {
    EXPECT_EQ(Lines(data), plain) << data;
  }
  EXPECT_EQ(Lines("M0 0a1 1 0 0110 10 1 1 0 0110 10"),
            Lines("M0 0a1 1 0 0 1 10 10a1 1 0 0 1 10 10"));
}

TEST(SvgPathData, DrawsArcsWithoutRadiusAsLines) {
  EXPECT_EQ(Lines("M0 0A0 5 0 0 1 7 7"), "0 0, 7 7");
  EXPECT_EQ(Lines("M0 0A5 0 0 0 1 7 7"), "0 0, 7 7");
}

TEST(SvgPathData, DrawsShortWaysAroundDistantCentresAsLines) {
  for (const char* radius : {"1e12", "1e17", "1e18", "1e200"}) {
    for (const char* flags : {"0 0", "0 1"}) {
      const std::string arc = std::string("A") + radius + " " + radius + " 0 " + flags + " 90 80";
      EXPECT_EQ(Lines(("M10 80" + arc).c_str()), "10 80, 90 80") << arc;
    }
  }
}

TEST(SvgPathData, LeavesOutArcsBetweenEqualPoints) {
  EXPECT_EQ(Lines("M0 0A5 5 0 0 1 0 0L1 1"), "0 0, 1 1");
}

}  // namespace
}  // namespace trovan::filters
