#include "SampleShapes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <map>
#include <numbers>
#include <random>

#include <tarnis/Clipping.h>
#include <tarnis/LineClipPolygon.h>

namespace trovan::bench {

using corvel::Box2d;
using corvel::Vec2d;
using tarnis::Polygon2;

namespace {

constexpr double kRadius = 1000.0;

double Between(std::mt19937_64& random, double low, double high) {
  return std::uniform_real_distribution<double>(low, high)(random);
}

Vec2d Around(const Vec2d& center, double radius, double angle) {
  return {center.x + radius * std::cos(angle), center.y + radius * std::sin(angle)};
}

// A ring whose distance from its centre wanders as coasts do: halfway between two places it differs
// from their mean by a share of their distance, and so on down to the last corner.
Shape Coast(const Vec2d& center, double radius, int levels, std::uint64_t seed) {
  std::mt19937_64 random(seed);
  std::vector<double> distances(std::size_t{1} << 4, radius);
  double wander = 0.25 * radius;
  for (double& distance : distances) distance += Between(random, -wander, wander);
  for (int level = 4; level < levels; ++level) {
    wander *= 0.55;
    std::vector<double> finer;
    for (std::size_t i = 0; i < distances.size(); ++i) {
      const double next = distances[(i + 1) % distances.size()];
      finer.push_back(distances[i]);
      finer.push_back((distances[i] + next) / 2 + Between(random, -wander, wander));
    }
    distances = std::move(finer);
  }
  Shape ring;
  for (std::size_t i = 0; i < distances.size(); ++i) {
    const double turn = static_cast<double>(i) / static_cast<double>(distances.size());
    ring.push_back(Around(center, distances[i], 2 * std::numbers::pi * turn));
  }
  return ring;
}

Polygon2 Region(const std::vector<Shape>& rings) {
  std::vector<Vec2d> points;
  std::vector<unsigned int> counts;
  for (const Shape& ring : rings) {
    points.insert(points.end(), ring.begin(), ring.end());
    counts.push_back(static_cast<unsigned int>(ring.size()));
  }
  return {std::move(points), std::move(counts)};
}

Polygon2 MakeRegion(RegionKind kind) {
  if (kind == RegionKind::kRectangle)
    return Polygon2({{-900, -600}, {900, -600}, {900, 600}, {-900, 600}}, {4});
  if (kind == RegionKind::kStar) {
    Shape star;
    Shape hole;
    for (int i = 0; i < 64; ++i)
      star.push_back(
          Around({0, 0}, i % 2 == 0 ? kRadius : 0.6 * kRadius, 2 * std::numbers::pi * i / 64));
    for (int i = 0; i < 8; ++i)
      hole.push_back(Around({50, 30}, 0.3 * kRadius, -2 * std::numbers::pi * i / 8));
    return Region({star, hole});
  }
  // 16,384 corners of the coast and 3 times 1024 and more of the lakes.
  return Region({Coast({0, 0}, kRadius, 14, 1), Coast({-300, 100}, 120, 10, 2),
                 Coast({250, -250}, 150, 10, 3), Coast({200, 300}, 100, 11, 4)});
}

std::size_t CountFromEnvironment() {
  const char* text = std::getenv("TROVAN_BENCH_SHAPES");
  return text != nullptr ? std::strtoull(text, nullptr, 10) : 200000;
}

using Random = std::mt19937_64;

Shape SmallPolygon(Random& random) {
  const Vec2d center(Between(random, -1300, 1300), Between(random, -1300, 1300));
  const int corners = std::uniform_int_distribution<int>(8, 64)(random);
  const double radius = Between(random, 4, 24);
  Shape ring;
  for (int i = 0; i < corners; ++i) {
    ring.push_back(
        Around(center, radius * Between(random, 0.7, 1.0), 2 * std::numbers::pi * i / corners));
  }
  return ring;
}

Shape SmallPolyline(Random& random) {
  Shape line{{Between(random, -1300, 1300), Between(random, -1300, 1300)}};
  double heading = Between(random, 0, 2 * std::numbers::pi);
  for (int i = std::uniform_int_distribution<int>(19, 199)(random); i > 0; --i) {
    heading += Between(random, -0.5, 0.5);
    line.push_back(Around(line.back(), Between(random, 0.3, 1.2), heading));
  }
  return line;
}

// 0 inside, 1 outside, 2 crossing.
std::size_t PlaceOfLine(const Shape& line, const tarnis::LineClipPolygon& clipper) {
  std::vector<Vec2d> points;
  std::vector<unsigned int> counts;
  clipper.Clip(line.data(), line.size(), points, counts);
  return points.empty() ? 1 : points == line ? 0 : 2;
}

// Takes shapes until there are as many of each place.
std::vector<Shape> Collect(RegionKind kind, std::uint64_t seed, bool isClosed,
                           const std::function<Shape(Random&)>& make) {
  Random random(seed);
  const tarnis::LineClipPolygon clipper(SampleRegion(kind));
  const std::size_t count = CountFromEnvironment();
  std::array<std::size_t, 3> wanted{count / 3, count / 3, count - 2 * (count / 3)};
  std::vector<Shape> shapes;
  while (shapes.size() < count) {
    Shape shape = make(random);
    if (isClosed) shape.push_back(shape.front());
    const std::size_t place = PlaceOfLine(shape, clipper);
    if (wanted[place] == 0) continue;
    --wanted[place];
    if (isClosed) shape.pop_back();
    shapes.push_back(std::move(shape));
  }
  std::shuffle(shapes.begin(), shapes.end(), random);
  return shapes;
}

}  // namespace

const char* NameOf(RegionKind kind) {
  const char* const names[] = {"rectangle", "star", "coast"};
  return names[static_cast<int>(kind)];
}

const Polygon2& SampleRegion(RegionKind kind) {
  static std::map<RegionKind, Polygon2> regions;
  const auto found = regions.find(kind);
  return found != regions.end() ? found->second
                                : regions.emplace(kind, MakeRegion(kind)).first->second;
}

const std::vector<Shape>& SamplePolygons(RegionKind kind) {
  static std::map<RegionKind, std::vector<Shape>> shapes;
  auto& ofKind = shapes[kind];
  if (ofKind.empty()) ofKind = Collect(kind, 5, true, SmallPolygon);
  return ofKind;
}

const std::vector<Shape>& SamplePolylines(RegionKind kind) {
  static std::map<RegionKind, std::vector<Shape>> shapes;
  auto& ofKind = shapes[kind];
  if (ofKind.empty()) ofKind = Collect(kind, 6, false, SmallPolyline);
  return ofKind;
}

const std::vector<Vec2d>& SampleMarkers() {
  static const std::vector<Vec2d> markers = [] {
    Random random(7);
    std::vector<Vec2d> points(5 * CountFromEnvironment());
    for (Vec2d& point : points)
      point = {Between(random, -1300, 1300), Between(random, -1300, 1300)};
    return points;
  }();
  return markers;
}

const Shape& LargePolygon() {
  static const Shape polygon = [] {
    Shape ring = Coast({100, -50}, 0.8 * kRadius, 18, 8);
    ring.resize(200000);
    return ring;
  }();
  return polygon;
}

std::size_t PeerShapes(std::size_t divisor) {
  return std::max<std::size_t>(CountFromEnvironment() / divisor, 30);
}

}  // namespace trovan::bench
