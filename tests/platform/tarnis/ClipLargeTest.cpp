// Shapes and regions of so many edges that they are asked through an index.
#include <cmath>
#include <cstdint>
#include <numbers>
#include <vector>

#include <gtest/gtest.h>

#include <tarnis/Clipping.h>
#include <tarnis/LineClipPolygon.h>

#include "RandomRings.h"
#include "SlabArea.h"

namespace tarnis::testing {
namespace {

using corvel::Box2d;

// An island with a lake, 700 corners.
Polygon2 Island(RandomRings& random) {
  return RandomRings::Make({random.Star(0, 0, 1.4, 500), random.Star(0.1, 0, 0.4, 200)});
}

void ExpectCommonArea(const Polygon2& subject, const Polygon2& clip, const Place2& place) {
  const Polygon2 result = ClipPolygonToPolygon(subject, clip);
  const Real tolerance = 1e-9L * place.size * place.size;
  EXPECT_LE(std::fabs(SignedArea(result) - CommonArea({&subject, &clip})), tolerance) << place.name;
}

TEST(ClipLarge, LargePolygonsHaveTheAreaOfTheSlabs) {
  for (const Place2& place : kPlaces) {
    RandomRings random(1, place);
    const Polygon2 island = Island(random);
    const Polygon2 other = RandomRings::Make({random.Star(0.3, 0.2, 1.2, 300)});
    ExpectCommonArea(island, other, place);
    ExpectCommonArea(other, island, place);
    ExpectCommonArea(island, random.Rectangle(), place);
  }
}

TEST(ClipLarge, SmallPolygonsHaveTheAreaOfTheSlabs) {
  for (const Place2& place : kPlaces) {
    RandomRings random(2, place);
    const Polygon2 island = Island(random);
    for (int i = 0; i < 20; ++i) ExpectCommonArea(random.SimpleStar(), island, place);
    for (int i = 0; i < 5; ++i) ExpectCommonArea(random.Crossing(), island, place);
  }
}

TEST(ClipLarge, ALargePolygonThatCrossesItselfIsClippedToARectangle) {
  for (const Place2& place : kPlaces) {
    RandomRings random(3, place);
    std::vector<Vec2d> ring = random.Star(0, 0, 1.0, 300);
    std::swap(ring[10], ring[40]);
    ExpectCommonArea(RandomRings::Make({ring}), random.Rectangle(), place);
  }
}

TEST(ClipLarge, ALargeRingInARectangleKeepsItsHoles) {
  const Place2& place = kPlaces[0];
  RandomRings random(4, place);
  ExpectCommonArea(Island(random), RandomRings::Make({{{-9, -9}, {9, -9}, {9, 9}, {-9, 9}}}),
                   place);
}

// Many long edges come near each other in the middle.
TEST(ClipLarge, SpikesThatMeetInTheMiddleAreClipped) {
  std::vector<Vec2d> spikes;
  for (int i = 0; i < 1200; ++i) {
    const double angle = 2 * std::numbers::pi * i / 1200;
    const double radius = i % 2 == 0 ? 1.0 : 1e-6;
    spikes.emplace_back(radius * std::cos(angle), radius * std::sin(angle));
  }
  const Polygon2 region(spikes, {1200});
  const Polygon2 square({{-0.5, -0.5}, {0.5, -0.5}, {0.5, 0.5}, {-0.5, 0.5}}, {4});
  const Polygon2 result = ClipPolygonToPolygon(square, region);
  EXPECT_NEAR(static_cast<double>(SignedArea(result)),
              static_cast<double>(CommonArea({&square, &region})), 1e-9);
}

TEST(ClipLarge, ALineThroughAnIslandGivesPiecesInOrder) {
  RandomRings random(5, kPlaces[0]);
  const Polygon2 island = Island(random);
  const Vec2d line[] = {{-2, 0.01}, {2, 0.02}};
  std::vector<Vec2d> points;
  std::vector<unsigned int> counts;
  LineClipPolygon(island).Clip(line, 2, points, counts);
  ASSERT_GE(counts.size(), 2U);
  for (const unsigned int count : counts) EXPECT_EQ(count, 2U);
  for (std::size_t i = 0; i + 1 < points.size(); ++i) EXPECT_LT(points[i].x, points[i + 1].x);
  for (std::size_t i = 0; i + 1 < points.size(); i += 2) {
    const Vec2d middle((points[i].x + points[i + 1].x) / 2, (points[i].y + points[i + 1].y) / 2);
    EXPECT_TRUE(PointInPolygon(middle, island));
  }
}

TEST(ClipLarge, NumbersBeyondAllBoundsDoNoHarm) {
  constexpr double kHuge = 1e300;
  const Polygon2 region({{-kHuge, -kHuge}, {kHuge, -kHuge}, {0, kHuge}}, {3});
  const Polygon2 subject({{-kHuge, 0}, {kHuge, 0}, {kHuge, kHuge}, {-kHuge, kHuge / 2}}, {4});
  const Vec2d line[] = {{-kHuge, -1}, {kHuge, 1}};
  std::vector<Vec2d> points;
  std::vector<unsigned int> counts;
  EXPECT_NO_THROW({
    ClipPolygonToPolygon(subject, region);
    PolygonContains(region, subject);
    PointInPolygon({0, 0}, region);
    LineClipPolygon(region).Clip(line, 2, points, counts);
    ClipPolylinesToRect(line, std::vector<unsigned int>{2}.data(), 1,
                        Box2d(-kHuge, -kHuge, kHuge, kHuge), points, counts);
  });
}

}  // namespace
}  // namespace tarnis::testing
