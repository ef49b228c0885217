#include <tarnis/Polygon2.h>

#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

namespace tarnis {
namespace {

using corvel::Box2d;
using corvel::Vec2d;
using Counts = std::vector<unsigned int>;
using Points = std::vector<Vec2d>;

Points Numbered(std::size_t count) {
  Points points;
  for (std::size_t i = 0; i < count; ++i) points.emplace_back(static_cast<double>(i), 0.5);
  return points;
}

TEST(Polygon2, StartsWithoutRings) {
  const Polygon2 polygon;
  EXPECT_TRUE(polygon.IsEmpty());
  EXPECT_TRUE(polygon.Points().empty());
  EXPECT_TRUE(GetBoundingBox(polygon).IsEmpty());
}

TEST(Polygon2, TakesAsManyPointsAsTheCountsAddUpTo) {
  const struct {
    std::size_t points;
    Counts given;
    Counts kept;
    std::size_t used;
  } cases[] = {
      {7, {4, 3}, {4, 3}, 7}, {9, {4, 3}, {4, 3}, 7},
      {5, {4, 3}, {4, 1}, 5}, {3, {4, 3}, {3, 0}, 3},
      {0, {4}, {0}, 0},       {5, {}, {}, 0},
      {5, {0}, {0}, 0},       {2, {0xFFFFFFFF, 9}, {2, 0}, 2},
  };
  for (const auto& c : cases) {
    const Polygon2 polygon(Numbered(c.points), c.given);
    EXPECT_EQ(polygon.Counts(), c.kept) << testing::PrintToString(c.given);
    EXPECT_EQ(polygon.Points(), Numbered(c.used)) << testing::PrintToString(c.given);
  }
}

TEST(Polygon2, IsNotEmptyWithARingOfNoPoints) {
  EXPECT_FALSE(Polygon2({{1, 2}}, {0}).IsEmpty());
  EXPECT_TRUE(Polygon2({{1, 2}}, {}).IsEmpty());
}

TEST(GetBoundingBox, HoldsAllRings) {
  const Polygon2 polygon({{3, 1}, {-1, 2}, {0, 0}, {5, 5}, {9, 9}}, {3, 1});
  EXPECT_EQ(GetBoundingBox(polygon), Box2d(-1, 0, 5, 5));
}

// Corners of a rectangle from any start in either direction.
Points RectangleFrom(std::size_t start, bool isReversed) {
  Points corners = {{1, 2}, {5, 2}, {5, 9}, {1, 9}};
  if (isReversed) std::reverse(corners.begin(), corners.end());
  std::rotate(corners.begin(), corners.begin() + static_cast<std::ptrdiff_t>(start), corners.end());
  return corners;
}

TEST(GetIfRect, KnowsARectangleFromAnyStartInEitherDirection) {
  for (std::size_t start = 0; start < 4; ++start) {
    for (const bool isReversed : {false, true}) {
      Points corners = RectangleFrom(start, isReversed);
      Box2d box;
      EXPECT_TRUE(GetIfRect(Polygon2(corners, {4}), box));
      EXPECT_EQ(box, Box2d(1, 2, 5, 9));
      corners.push_back(corners.front());
      box = Box2d();
      EXPECT_TRUE(GetIfRect(Polygon2(corners, {5}), box)) << "closed";
      EXPECT_TRUE(GetIfRect(Polygon2(corners, {0, 5, 0}), box)) << "beside rings of no points";
      EXPECT_EQ(box, Box2d(1, 2, 5, 9));
    }
  }
}

TEST(GetIfRect, RefusesEverythingElse) {
  const struct {
    const char* what;
    Points points;
    Counts counts;
  } cases[] = {
      {"nothing", {}, {}},
      {"no points", {}, {0}},
      {"three corners", {{0, 0}, {4, 0}, {4, 4}}, {3}},
      {"two rings", {{0, 0}, {4, 0}, {4, 4}, {0, 4}, {1, 1}}, {4, 1}},
      {"a fifth point that is another", {{0, 0}, {4, 0}, {4, 4}, {0, 4}, {0, 1}}, {5}},
      {"a sixth point", {{0, 0}, {4, 0}, {4, 4}, {0, 4}, {0, 0}, {0, 0}}, {6}},
      {"turned", {{2, 0}, {4, 2}, {2, 4}, {0, 2}}, {4}},
      {"sheared", {{0, 0}, {4, 0}, {5, 4}, {1, 4}}, {4}},
      {"a bow", {{0, 0}, {4, 4}, {4, 0}, {0, 4}}, {4}},
      {"another bow", {{0, 0}, {4, 0}, {0, 4}, {4, 4}}, {4}},
      {"no width", {{2, 0}, {2, 0}, {2, 4}, {2, 4}}, {4}},
      {"no height", {{0, 2}, {4, 2}, {4, 2}, {0, 2}}, {4}},
      {"a point", {{2, 2}, {2, 2}, {2, 2}, {2, 2}}, {4}},
      {"nearly", {{0, 0}, {4, 0}, {4, 4}, {1e-300, 4}}, {4}},
  };
  for (const auto& c : cases) {
    Box2d box(7, 7, 7, 7);
    EXPECT_FALSE(GetIfRect(Polygon2(c.points, c.counts), box)) << c.what;
    EXPECT_EQ(box, Box2d(7, 7, 7, 7)) << c.what;
  }
}

}  // namespace
}  // namespace tarnis
