#include "filters/svg/SvgViewBox.h"

#include <gtest/gtest.h>

#include "filters/svg/SvgTransform.h"

namespace trovan::filters {
namespace {

using corvel::Box2d;
using corvel::Vec2d;

TEST(SvgViewBox, ReadsABox) {
  EXPECT_EQ(ParseViewBox("1 2 30 40"), Box2d(1, 2, 31, 42));
  EXPECT_EQ(ParseViewBox(" -1,-2 , 30 40 "), Box2d(-1, -2, 29, 38));
  EXPECT_EQ(ParseViewBox("0 0 0 0"), Box2d(0, 0, 0, 0));
  for (const char* text : {"", "1 2 3", "1 2 3 4 5", "0 0 -1 5", "0 0 5 -1", "0 0 a b",
                           "0 0 1e999 5", "1e308 0 1e308 5"}) {
    EXPECT_FALSE(ParseViewBox(text)) << text;
  }
}

TEST(SvgViewBox, FitsABoxIntoASpace) {
  const Box2d box(10, 10, 30, 20);  // 20 by 10
  const Box2d space(0, 0, 100, 100);
  const struct {
    const char* ratio;
    Vec2d low;  // where the first corner of the box goes
    Vec2d high;
  } cases[] = {
      {"", {0, 25}, {100, 75}},
      {"xMidYMid meet", {0, 25}, {100, 75}},
      {"xMinYMin", {0, 0}, {100, 50}},
      {"xMaxYMax meet", {0, 50}, {100, 100}},
      {"xMidYMid slice", {-50, 0}, {150, 100}},
      {"xMinYMid slice", {0, 0}, {200, 100}},
      {"xMaxYMid slice", {-100, 0}, {100, 100}},
      {"none", {0, 0}, {100, 100}},
      {"defer xMinYMin", {0, 0}, {100, 50}},
      {"nonsense", {0, 25}, {100, 75}},
  };
  for (const auto& c : cases) {
    const auto map = FitInto(box, space, ParseAspectRatio(c.ratio));
    EXPECT_EQ(Mapped(box.min, map), c.low) << c.ratio;
    EXPECT_EQ(Mapped(box.max, map), c.high) << c.ratio;
  }
}

}  // namespace
}  // namespace trovan::filters
