// The same polygons with Boost.Geometry, against the whole region.
#include <algorithm>
#include <cstddef>
#include <vector>

#include <boost/geometry.hpp>
#include <boost/geometry/geometries/point_xy.hpp>
#include <boost/geometry/geometries/polygon.hpp>
#include <benchmark/benchmark.h>

#include "EachRegion.h"
#include "SampleShapes.h"

namespace trovan::bench {
namespace {

namespace bg = boost::geometry;
using corvel::Vec2d;
using Point = bg::model::d2::point_xy<double>;
using Polygon = bg::model::polygon<Point, false, false>;  // counter-clockwise, open
using Polygons2 = bg::model::multi_polygon<Polygon>;

std::vector<Point> PointsOf(const Vec2d* points, std::size_t count) {
  std::vector<Point> result;
  for (std::size_t i = 0; i < count; ++i) result.emplace_back(points[i].x, points[i].y);
  return result;
}

Polygon PolygonOf(const tarnis::Polygon2& region) {
  Polygon polygon;
  const Vec2d* points = region.Points().data();
  for (std::size_t ring = 0; ring < region.Counts().size(); ++ring) {
    const auto corners = PointsOf(points, region.Counts()[ring]);
    if (ring == 0) {
      bg::assign_points(polygon.outer(), corners);
    } else {
      polygon.inners().emplace_back(corners.begin(), corners.end());
    }
    points += region.Counts()[ring];
  }
  bg::correct(polygon);
  return polygon;
}

std::size_t Shapes(RegionKind kind) { return PeerShapes(kind == RegionKind::kCoast ? 200 : 10); }

void Polygons(benchmark::State& state, RegionKind kind) {
  const Polygon region = PolygonOf(SampleRegion(kind));
  std::vector<Polygon> subjects;
  for (std::size_t i = 0; i < Shapes(kind); ++i) {
    const Shape& shape = SamplePolygons(kind)[i];
    subjects.emplace_back();
    bg::assign_points(subjects.back().outer(), PointsOf(shape.data(), shape.size()));
  }
  for (auto _ : state) {
    for (const Polygon& subject : subjects) {
      Polygons2 clipped;
      bg::intersection(subject, region, clipped);
      benchmark::DoNotOptimize(clipped.data());
    }
  }
  state.counters["shapes"] = static_cast<double>(subjects.size());
}

const int kRegistered = [] {
  RegisterForEachRegion("Polygons", "boost", Polygons);
  return 0;
}();

}  // namespace
}  // namespace trovan::bench
