// Lines clipped beside the same by fractions.
#include <cmath>
#include <cstdint>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tarnis/Clipping.h>
#include <tarnis/LineClipPolygon.h>

#include "WholeModel.h"

namespace tarnis::testing {
namespace {

using corvel::Box2d;
using corvel::Vec2d;

struct RandomWholes {
  explicit RandomWholes(std::uint64_t seed, int reach) : random(seed), most(reach) {}

  int Whole(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); }
  WholePoint Point() { return {Whole(-most, most), Whole(-most, most)}; }

  std::vector<WholePoint> Line() {
    std::vector<WholePoint> line;
    for (int i = Whole(1, 6); i > 0; --i) {
      line.push_back(Point());
      while (Whole(0, 5) == 0) line.push_back(line.back());
    }
    return line;
  }

  Polygon2 Rings() {
    std::vector<Vec2d> points;
    std::vector<unsigned int> counts;
    for (int rings = Whole(1, 3); rings > 0; --rings) {
      const int count = Whole(1, 8);
      for (int i = 0; i < count; ++i) {
        const WholePoint p = Point();
        points.emplace_back(static_cast<double>(p.x), static_cast<double>(p.y));
      }
      counts.push_back(static_cast<unsigned int>(count));
    }
    return {points, counts};
  }

  // Rectangles side by side, whose common edges cancel each other.
  Polygon2 Tiles() {
    std::vector<Vec2d> points;
    std::vector<unsigned int> counts;
    for (int rings = Whole(1, 4); rings > 0; --rings) {
      const int x = Whole(-most, most - 1);
      const int y = Whole(-most, most - 1);
      const int right = Whole(x + 1, most);
      const int top = Whole(y + 1, most);
      points.insert(points.end(), {Vec2d(x, y), Vec2d(right, y), Vec2d(right, top), Vec2d(x, top)});
      counts.push_back(4);
    }
    return {points, counts};
  }

  std::mt19937_64 random;
  int most;
};

std::vector<Vec2d> Places(const std::vector<WholePoint>& line) {
  std::vector<Vec2d> places;
  for (const WholePoint& p : line)
    places.emplace_back(static_cast<double>(p.x), static_cast<double>(p.y));
  return places;
}

std::vector<Piece> Split(const std::vector<Vec2d>& points,
                         const std::vector<unsigned int>& counts) {
  std::vector<Piece> pieces;
  auto point = points.begin();
  for (const unsigned int count : counts) {
    pieces.emplace_back(point, point + count);
    point += count;
  }
  EXPECT_EQ(point, points.end());
  return pieces;
}

std::string Text(const std::vector<Piece>& pieces) {
  std::ostringstream text;
  for (const Piece& piece : pieces) {
    for (const Vec2d& p : piece) text << "(" << p.x << "," << p.y << ")";
    text << "\n";
  }
  return text.str();
}

bool AreAlike(const std::vector<Piece>& one, const std::vector<Piece>& other) {
  const auto isNear = [](const Vec2d& p, const Vec2d& q) {
    return std::fabs(p.x - q.x) < 1e-12 && std::fabs(p.y - q.y) < 1e-12;
  };
  return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                    [&](const Piece& p, const Piece& q) {
                      return std::equal(p.begin(), p.end(), q.begin(), q.end(), isNear);
                    });
}

void ExpectModelsPieces(const std::vector<WholePoint>& line, const Polygon2& region,
                        std::uint64_t seed) {
  const LineClipPolygon clipper(region);
  const std::vector<Vec2d> places = Places(line);
  std::vector<Vec2d> points{{7, 7}};
  std::vector<unsigned int> counts{7};
  clipper.Clip(places.data(), places.size(), points, counts);
  const auto expected = PiecesInside(line, WholeEdges(region));
  const auto actual = Split(points, counts);
  ASSERT_TRUE(AreAlike(actual, expected))
      << "seed " << seed << "\nline " << Text({places}) << "region "
      << Text(Split(region.Points(), region.Counts())) << "expected\n"
      << Text(expected) << "actual\n"
      << Text(actual);
}

class ClipLinesModel : public ::testing::TestWithParam<int> {};

TEST_P(ClipLinesModel, PiecesInRandomRingsAreTheModels) {
  for (std::uint64_t seed = 0; seed < 3000; ++seed) {
    RandomWholes random(seed, GetParam());
    const Polygon2 region = random.Rings();
    for (int i = 0; i < 3; ++i) {
      ASSERT_NO_FATAL_FAILURE(ExpectModelsPieces(random.Line(), region, seed));
    }
  }
}

TEST_P(ClipLinesModel, PiecesInTilesAreTheModels) {
  for (std::uint64_t seed = 0; seed < 3000; ++seed) {
    RandomWholes random(seed, GetParam());
    const Polygon2 region = random.Tiles();
    for (int i = 0; i < 3; ++i) {
      ASSERT_NO_FATAL_FAILURE(ExpectModelsPieces(random.Line(), region, seed));
    }
  }
}

TEST_P(ClipLinesModel, RectanglesAreTheModels) {
  for (std::uint64_t seed = 0; seed < 3000; ++seed) {
    RandomWholes random(seed, GetParam());
    const int x = random.Whole(-GetParam(), GetParam() - 1);
    const int y = random.Whole(-GetParam(), GetParam() - 1);
    const Box2d box(x, y, random.Whole(x + 1, GetParam()), random.Whole(y + 1, GetParam()));
    const Polygon2 region({box.min, {box.max.x, box.min.y}, box.max, {box.min.x, box.max.y}}, {4});
    std::vector<Vec2d> all;
    std::vector<unsigned int> lines;
    std::vector<Piece> expected;
    for (int i = random.Whole(1, 4); i > 0; --i) {
      const auto line = random.Line();
      const auto places = Places(line);
      all.insert(all.end(), places.begin(), places.end());
      lines.push_back(static_cast<unsigned int>(places.size()));
      const auto pieces = PiecesInside(line, WholeEdges(region));
      expected.insert(expected.end(), pieces.begin(), pieces.end());
    }
    std::vector<Vec2d> points{{7, 7}};
    std::vector<unsigned int> counts{7};
    ClipPolylinesToRect(all.data(), lines.data(), lines.size(), box, points, counts);
    ASSERT_TRUE(AreAlike(Split(points, counts), expected)) << "seed " << seed;
  }
}

INSTANTIATE_TEST_SUITE_P(Reach, ClipLinesModel, ::testing::Values(2, 3, 5, 12, 1000));

}  // namespace
}  // namespace tarnis::testing
