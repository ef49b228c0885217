#include "filters/drawing/SvgPage.h"

#include <limits>

#include <gtest/gtest.h>

#include "filters/support/FilterError.h"

namespace trovan::filters {
namespace {

using corvel::Box2d;

TEST(MapPage, IsAThousandUnitsWideOrHigh) {
  EXPECT_EQ(MapPage(Box2d(0, 0, 980, 490)).viewBox, Box2d(0, 0, 1000, 510));
  EXPECT_EQ(MapPage(Box2d(0, 0, 1, 2)).viewBox, Box2d(0, 0, 510, 1000));
}

TEST(MapPage, TakesExtentsThatAreAPointOrALine) {
  EXPECT_EQ(MapPage(Box2d(5, 5, 5, 5)).viewBox, Box2d(0, 0, 20, 20));
  EXPECT_EQ(MapPage(Box2d(5, 5, 9, 5)).viewBox, Box2d(0, 0, 1000, 20));
  EXPECT_EQ(MapPage(Box2d(0, 0, 5e-324, 0)).scale, 1.0);
  EXPECT_EQ(MapPage(Box2d()).viewBox, Box2d(0, 0, 0, 0));
}

TEST(MapPage, RefusesExtentsWhosePageIsBeyondNumbers) {
  EXPECT_GT(MapPage(Box2d(-1e300, 0, 1e300, 1e300)).scale, 1e297);
  for (const double far : {2e300, 1.7e308, std::numeric_limits<double>::infinity()}) {
    EXPECT_THROW(MapPage(Box2d(-far, 0, 0, 0)), FilterError);
    EXPECT_THROW(MapPage(Box2d(0, 0, far, 0)), FilterError);
    EXPECT_THROW(MapPage(Box2d(0, -far, 0, far)), FilterError);
  }
}

}  // namespace
}  // namespace trovan::filters
