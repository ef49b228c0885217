#include "filters/drawing/AreaUnion.h"

#include <cstddef>
#include <random>
#include <vector>

#include <gtest/gtest.h>
#include <tarnis/Clipping.h>
#include <tarnis/FillRule.h>

#include "support/RingArea.h"

namespace trovan::filters {
namespace {

using corvel::Box2d;
using corvel::Vec2d;
using tarnis::Polygon2;
using test::SignedArea;

Polygon2 Square(double x, double y, double width) {
  return {{{x, y}, {x + width, y}, {x + width, y + width}, {x, y + width}}, {4}};
}

TEST(UniteAreas, GivesNothingOfNothing) {
  EXPECT_TRUE(UniteAreas({}).Points().empty());
  EXPECT_TRUE(UniteAreas({Polygon2(), Polygon2()}).Points().empty());
}

TEST(UniteAreas, KeepsOneAreaAsItIs) {
  const Polygon2 bow({{0, 0}, {2, 2}, {2, 0}, {0, 2}}, {4});
  EXPECT_EQ(UniteAreas({bow}).Points(), bow.Points());
}

TEST(UniteAreas, HolesOfOneAreFilledByAnother) {
  const Polygon2 frame({{0, 0}, {9, 0}, {9, 9}, {0, 9}, {3, 3}, {3, 6}, {6, 6}, {6, 3}}, {4, 4});
  EXPECT_EQ(SignedArea(UniteAreas({frame, Square(4, 4, 1)})), 81 - 9 + 1);
  EXPECT_EQ(SignedArea(UniteAreas({frame, Square(2, 2, 5)})), 81);
}

TEST(UniteAreas, ManyTilesBecomeOneSquare) {
  std::vector<Polygon2> tiles;
  for (int row = 0; row < 40; ++row) {
    for (int column = 0; column < 40; ++column) tiles.push_back(Square(column, row, 1));
  }
  const Polygon2 united = UniteAreas(tiles);
  EXPECT_EQ(united.Counts().size(), 1U);
  EXPECT_EQ(GetBoundingBox(united), Box2d(0, 0, 40, 40));
  EXPECT_EQ(SignedArea(united), 1600);
}

// Against the union of all at once, on a grid of halves, where no crossing is rounded.
TEST(UniteAreas, ManyAreasGiveWhatOneRunGives) {
  std::mt19937 random(11);
  std::uniform_int_distribution<int> place(0, 120);
  std::uniform_int_distribution<int> width(1, 12);
  constexpr std::size_t kCounts[] = {2, 64, 65, 300};
  for (const std::size_t count : kCounts) {
    std::vector<Polygon2> areas;
    std::vector<Vec2d> points;
    for (std::size_t i = 0; i < count; ++i) {
      areas.push_back(Square(place(random) / 2.0, place(random) / 2.0, width(random) / 2.0));
      points.insert(points.end(), areas.back().Points().begin(), areas.back().Points().end());
    }
    const Polygon2 atOnce = ResolveRings(Polygon2(points, std::vector<unsigned int>(count, 4)),
                                         tarnis::FillRule::kNonZero);
    const Polygon2 united = UniteAreas(areas);
    EXPECT_EQ(SignedArea(united), SignedArea(atOnce)) << count;
    for (int i = 0; i < 2000; ++i) {
      const Vec2d point(place(random) / 2.0 + 0.25, place(random) / 2.0 + 0.25);
      EXPECT_EQ(PointInPolygon(point, united), PointInPolygon(point, atOnce)) << count;
    }
  }
}

}  // namespace
}  // namespace trovan::filters
