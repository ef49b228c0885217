// Numbers of every size that a double can be.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include <tarnis/Clipping.h>
#include <tarnis/FillRule.h>
#include <tarnis/LineClipPolygon.h>

#include "RandomRings.h"

namespace tarnis::testing {
namespace {

using corvel::Box2d;

constexpr double kLargest = std::numeric_limits<double>::max();

struct Lines {
  std::vector<Vec2d> points;
  std::vector<unsigned int> counts;
  friend bool operator==(const Lines&, const Lines&) = default;
};

Lines ClipLine(const std::vector<Vec2d>& line, const Polygon2& region) {
  Lines lines;
  LineClipPolygon(region).Clip(line.data(), line.size(), lines.points, lines.counts);
  return lines;
}

Lines ClipLineToRect(const std::vector<Vec2d>& line, const Box2d& rectangle) {
  const auto count = static_cast<unsigned int>(line.size());
  Lines lines;
  ClipPolylinesToRect(line.data(), &count, 1, rectangle, lines.points, lines.counts);
  return lines;
}

std::vector<Vec2d> Scaled(std::vector<Vec2d> points, int exponent) {
  for (Vec2d& p : points) p = {std::ldexp(p.x, exponent), std::ldexp(p.y, exponent)};
  return points;
}

// Neither overflow nor underflow of products tells on the result: powers of two lose no bits.
class ClipMagnitudes : public ::testing::TestWithParam<int> {};

TEST_P(ClipMagnitudes, ScalingChangesNothingElse) {
  for (std::uint64_t seed = 0; seed < 100; ++seed) {
    RandomRings random(seed, kPlaces[0]);
    const Polygon2 subject = seed % 2 == 0 ? random.SimpleStar() : random.Crossing();
    const Polygon2 region = seed % 3 == 0   ? random.Rectangle()
                            : seed % 3 == 1 ? random.Nested()
                                            : random.Snapped(4);
    const auto scaled = [](const Polygon2& polygon) {
      return Polygon2(Scaled(polygon.Points(), GetParam()), polygon.Counts());
    };
    const Polygon2 area = ClipPolygonToPolygon(subject, region);
    const Polygon2 scaledArea = ClipPolygonToPolygon(scaled(subject), scaled(region));
    ASSERT_EQ(scaledArea.Counts(), area.Counts()) << seed;
    ASSERT_EQ(scaledArea.Points(), Scaled(area.Points(), GetParam())) << seed;
    ASSERT_EQ(PolygonContains(scaled(region), scaled(subject)), PolygonContains(region, subject));

    Lines lines = ClipLine(subject.Points(), region);
    lines.points = Scaled(lines.points, GetParam());
    ASSERT_EQ(ClipLine(scaled(subject).Points(), scaled(region)), lines) << seed;
    Box2d rectangle;
    if (!GetIfRect(scaled(region), rectangle)) continue;
    ASSERT_EQ(ClipLineToRect(scaled(subject).Points(), rectangle).counts, lines.counts) << seed;
  }
}

INSTANTIATE_TEST_SUITE_P(Exponent, ClipMagnitudes, ::testing::Values(1020, 600, -500, -900));

class AnySize {
 public:
  explicit AnySize(std::uint64_t seed) : random_(seed) {}

  double Number() {
    static const double kSizes[] = {0.0,   1e300, kLargest, kLargest / 2, 5e-324, 2.3e-308,
                                    1e154, 1.0,   1e16,     1e-162,       1e200,  1e-310};
    const double size = kSizes[Whole(std::size(kSizes))];
    const double shares[] = {1.0, -1.0, 0.0, std::uniform_real_distribution<>(-1, 1)(random_)};
    return size * shares[Whole(4)];
  }

  Polygon2 Rings() {
    if (Whole(5) == 0) {
      const Vec2d a(Number(), Number());
      const Vec2d b(Number(), Number());
      return RandomRings::Make({{a, {b.x, a.y}, b, {a.x, b.y}}});
    }
    std::vector<std::vector<Vec2d>> rings(Whole(3));
    for (auto& ring : rings) {
      ring.resize(Whole(12));
      for (Vec2d& point : ring) point = {Number(), Number()};
    }
    return RandomRings::Make(rings);
  }

 private:
  std::size_t Whole(std::size_t end) {
    return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_);
  }

  std::mt19937_64 random_;
};

bool AreFinite(const std::vector<Vec2d>& points) {
  return std::all_of(points.begin(), points.end(),
                     [](const Vec2d& p) { return std::isfinite(p.x) && std::isfinite(p.y); });
}

TEST(ClipAnySize, FiniteNumbersGiveFiniteNumbers) {
  for (std::uint64_t seed = 0; seed < 500; ++seed) {
    AnySize random(seed);
    const Polygon2 subject = random.Rings();
    const Polygon2 region = random.Rings();
    ASSERT_TRUE(AreFinite(ClipPolygonToPolygon(subject, region).Points())) << seed;
    ASSERT_TRUE(AreFinite(ClipLine(subject.Points(), region).points)) << seed;
    for (const FillRule rule : {FillRule::kEvenOdd, FillRule::kNonZero})
      ASSERT_TRUE(AreFinite(ResolveRings(subject, rule).Points())) << seed;
    for (const Vec2d& corner : region.Points()) ASSERT_TRUE(PointInPolygon(corner, region)) << seed;
    Box2d rectangle;
    if (GetIfRect(region, rectangle)) {
      ASSERT_TRUE(AreFinite(ClipLineToRect(subject.Points(), rectangle).points)) << seed;
    }
    PolygonContains(region, subject);
  }
}

TEST(ClipAnySize, NothingIsLeftInARegionWithoutPoints) {
  const std::vector<Vec2d> line{{-kLargest, -kLargest}, {kLargest, kLargest}};
  EXPECT_EQ(ClipLine(line, Polygon2()), Lines());
  EXPECT_EQ(ClipLine(line, Polygon2({}, {0})), Lines());
  EXPECT_TRUE(ClipPolygonToPolygon(Polygon2(line, {2}), Polygon2()).IsEmpty());
}

// The share of the way to the crossing rounds to all of it.
TEST(ClipAnySize, APieceOfOneLastBitStaysInRectanglesToo) {
  const Polygon2 square({{0, 0}, {1, 0}, {1, 1}, {0, 1}}, {4});
  const std::vector<Vec2d> line{{1000, 0.5}, {1 - 0x1p-53, 0.5}};
  const Lines expected{{{1, 0.5}, {1 - 0x1p-53, 0.5}}, {2}};
  EXPECT_EQ(ClipLine(line, square), expected);
  EXPECT_EQ(ClipLineToRect(line, Box2d(0, 0, 1, 1)), expected);
}

}  // namespace
}  // namespace tarnis::testing
