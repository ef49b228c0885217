#include "filters/svg/SvgTransform.h"

#include <cmath>

#include <gtest/gtest.h>

namespace trovan::filters {
namespace {

using corvel::Mat3d;
using corvel::Vec2d;

TEST(SvgTransform, MapsAsTheListSays) {
  const struct {
    const char* text;
    Vec2d image;  // of (3, 4)
  } cases[] = {
      {"", {3, 4}},
      {"  none ", {3, 4}},
      {"matrix(1 2 3 4 5 6)", {3 + 12 + 5, 6 + 16 + 6}},
      {"matrix(1,2,3,4,5,6)", {20, 28}},
      {"translate(10,20)", {13, 24}},
      {"translate(10)", {13, 4}},
      {"scale(2)", {6, 8}},
      {"scale(2 -3)", {6, -12}},
      {"rotate(90)", {-4, 3}},
      {"rotate(-90)", {4, -3}},
      {"rotate(450)", {-4, 3}},
      {"rotate(180)", {-3, -4}},
      {"rotate(90 3 3)", {2, 3}},
      {"skewX(45)", {7, 4}},
      {"skewY(45)", {3, 7}},
      {"translate(10) scale(2)", {16, 8}},
      {"scale(2),translate(10)", {26, 8}},
      {"translate(1)translate(2)", {6, 4}},
      {" translate ( 1 , 2 ) ", {4, 6}},
      {"matrix(0 0 0 0 1 2)", {1, 2}},
  };
  for (const auto& c : cases) {
    const auto map = ParseTransform(c.text);
    ASSERT_TRUE(map) << c.text;
    const Vec2d image = Mapped({3, 4}, *map);
    EXPECT_NEAR(image.x, c.image.x, 1e-12) << c.text;
    EXPECT_NEAR(image.y, c.image.y, 1e-12) << c.text;
  }
}

TEST(SvgTransform, RefusesWhatIsNoList) {
  for (const char* text : {"scale", "scale()", "scale(1,2,3)", "scale(2", "scale 2", "turn(3)",
                           "rotate(1,2)", "matrix(1 2 3 4 5)", "scale(2,)", "scale(2))",
                           "scale(1e200) scale(1e200)", "Scale(2)", "12"}) {
    EXPECT_FALSE(ParseTransform(text)) << text;
  }
}

TEST(SvgTransform, KeepsQuarterTurnsExact) {
  EXPECT_EQ(ParseTransform("rotate(90)"), Mat3d(0, 1, -1, 0, 0, 0));
  EXPECT_EQ(ParseTransform("rotate(270)"), Mat3d(0, -1, 1, 0, 0, 0));
}

TEST(SvgTransform, MeasuresHowAreasAndLengthsGrow) {
  const Mat3d map(2, 0, 0, -8, 1, 1);
  EXPECT_EQ(Determinant(map), -16);
  EXPECT_EQ(MeanScale(map), 4);
}

TEST(SvgTransform, InvertsMaps) {
  const Mat3d map(2, 1, -1, 4, 5, 6);
  const Vec2d point = Mapped(Mapped({3, 4}, map), Inverted(map));
  EXPECT_NEAR(point.x, 3, 1e-12);
  EXPECT_NEAR(point.y, 4, 1e-12);
}

}  // namespace
}  // namespace trovan::filters
