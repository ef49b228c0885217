// Laws that hold for whatever is clipped, on polygons of many kinds.
#include <cmath>
#include <cstdint>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tarnis/Clipping.h>

#include "RandomRings.h"
#include "SlabArea.h"

namespace tarnis::testing {
namespace {

struct Kind {
  const char* name;
  std::function<Polygon2(RandomRings&)> make;
};

const Kind kKinds[] = {
    {"star", [](RandomRings& r) { return r.SimpleStar(); }},
    {"nested", [](RandomRings& r) { return r.Nested(); }},
    {"crossing", [](RandomRings& r) { return r.Crossing(); }},
    {"repeating", [](RandomRings& r) { return r.Repeating(); }},
    {"touching", [](RandomRings& r) { return r.Touching(); }},
    {"rectangle", [](RandomRings& r) { return r.Rectangle(); }},
    {"snapped", [](RandomRings& r) { return r.Snapped(4); }},
    {"snappedRectangle", [](RandomRings& r) { return r.SnappedRectangle(4); }},
};

std::string Text(const Polygon2& polygon) {
  std::ostringstream text;
  text.precision(17);
  std::size_t at = 0;
  for (const unsigned int count : polygon.Counts()) {
    text << "[";
    for (unsigned int i = 0; i < count; ++i, ++at)
      text << "(" << polygon.Points()[at].x << "," << polygon.Points()[at].y << ") ";
    text << "]\n";
  }
  return text.str();
}

constexpr std::uint64_t kSeeds = 16;

struct Case {
  const Place2& place;
  Polygon2 subject, clip, result;
  std::string name;
};

// Clips each kind in each other one, everywhere.
void ForEachCase(const std::function<void(const Case&)>& check) {
  for (const Place2& place : kPlaces) {
    for (const Kind& subjectKind : kKinds) {
      for (const Kind& clipKind : kKinds) {
        for (std::uint64_t seed = 0; seed < kSeeds; ++seed) {
          RandomRings random(seed, place);
          const Polygon2 subject = subjectKind.make(random);
          const Polygon2 clip = clipKind.make(random);
          const Polygon2 result = ClipPolygonToPolygon(subject, clip);
          const std::string name = std::string(subjectKind.name) + " in " + clipKind.name + ", " +
                                   place.name + ", seed " + std::to_string(seed);
          check({place, subject, clip, result,
                 name + "\nsubject " + Text(subject) + "clip " + Text(clip) + "result " +
                     Text(result)});
          if (::testing::Test::HasFatalFailure()) return;
        }
      }
    }
  }
}

Real Tolerance(const Place2& place) { return 1e-9L * place.size * place.size; }

TEST(ClipPolygonLaws, AreaIsThatOfTheSlabs) {
  ForEachCase([](const Case& c) {
    const Real expected = CommonArea({&c.subject, &c.clip});
    const Real actual = CommonArea({&c.result});
    ASSERT_LE(std::fabs(actual - expected), Tolerance(c.place)) << c.name;
  });
}

TEST(ClipPolygonLaws, OuterRingsRunCounterClockwiseAndHolesClockwise) {
  ForEachCase([](const Case& c) {
    ASSERT_LE(std::fabs(SignedArea(c.result) - CommonArea({&c.result})), Tolerance(c.place))
        << c.name;
  });
}

TEST(ClipPolygonLaws, RingsAreOpenAndHaveThreeCornersOrMore) {
  ForEachCase([](const Case& c) {
    std::size_t at = 0;
    for (const unsigned int count : c.result.Counts()) {
      ASSERT_GE(count, 3U) << c.name;
      ASSERT_NE(c.result.Points()[at], c.result.Points()[at + count - 1]) << c.name;
      at += count;
    }
    ASSERT_EQ(at, c.result.Points().size());
  });
}

// What lies inside the clip region and what lies inside a frame around it, without it.
TEST(ClipPolygonLaws, InsideAndOutsideAddUp) {
  ForEachCase([](const Case& c) {
    std::vector<Vec2d> points = c.clip.Points();
    std::vector<unsigned int> counts = c.clip.Counts();
    for (const auto& [x, y] : {std::pair(-4, -4), {4, -4}, {4, 4}, {-4, 4}})
      points.push_back(c.place(x, y));
    counts.push_back(4);
    const Polygon2 outside = ClipPolygonToPolygon(c.subject, Polygon2(points, counts));
    const Real whole = CommonArea({&c.subject});
    ASSERT_LE(std::fabs(CommonArea({&c.result}) + CommonArea({&outside}) - whole),
              Tolerance(c.place))
        << c.name;
  });
}

// The corners of the result are corners of the inputs, or places where edges cross. Corners on a
// side of a rectangle are always taken for the latter.
TEST(ClipPolygonLaws, CornersComeBackToTheLastBit) {
  ForEachCase([](const Case& c) {
    corvel::Box2d rectangle;
    const bool isRectangle = GetIfRect(c.clip, rectangle);
    std::vector<Vec2d> corners = c.subject.Points();
    std::erase_if(corners, [&](const Vec2d& p) {
      return isRectangle && (p.x == rectangle.min.x || p.x == rectangle.max.x ||
                             p.y == rectangle.min.y || p.y == rectangle.max.y);
    });
    corners.insert(corners.end(), c.clip.Points().begin(), c.clip.Points().end());
    for (const Vec2d& point : c.result.Points()) {
      for (const Vec2d& corner : corners) {
        const double distance = std::hypot(point.x - corner.x, point.y - corner.y);
        ASSERT_TRUE(distance == 0.0 || distance > 1e-14 * c.place.size) << c.name;
      }
    }
  });
}

}  // namespace
}  // namespace tarnis::testing
