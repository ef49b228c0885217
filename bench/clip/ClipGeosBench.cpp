// The same with GEOS: prepared geometries tell what is inside or outside, and the rest is clipped.
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <geos_c.h>
#include <benchmark/benchmark.h>

#include "EachRegion.h"
#include "SampleShapes.h"

namespace trovan::bench {
namespace {

using corvel::Vec2d;

// Silent: what is wrong shows in results.
GEOSContextHandle_t Geos() {
  static const GEOSContextHandle_t handle = GEOS_init_r();
  return handle;
}

struct Delete {
  void operator()(GEOSGeometry* geometry) const { GEOSGeom_destroy_r(Geos(), geometry); }
  void operator()(const GEOSPreparedGeometry* geometry) const {
    GEOSPreparedGeom_destroy_r(Geos(), geometry);
  }
};
using Geometry = std::unique_ptr<GEOSGeometry, Delete>;
using Prepared = std::unique_ptr<const GEOSPreparedGeometry, Delete>;

GEOSCoordSequence* Coordinates(const Vec2d* points, std::size_t count, bool isRing) {
  const auto size = static_cast<unsigned int>(count + (isRing ? 1 : 0));
  GEOSCoordSequence* const sequence = GEOSCoordSeq_create_r(Geos(), size, 2);
  for (unsigned int i = 0; i < size; ++i) {
    const Vec2d& point = points[i % count];
    GEOSCoordSeq_setXY_r(Geos(), sequence, i, point.x, point.y);
  }
  return sequence;
}

GEOSGeometry* Ring(const Vec2d* points, std::size_t count) {
  return GEOSGeom_createLinearRing_r(Geos(), Coordinates(points, count, true));
}

// The first ring is the outer one, the others are holes.
Geometry PolygonOf(const tarnis::Polygon2& polygon) {
  std::vector<GEOSGeometry*> rings;
  const Vec2d* points = polygon.Points().data();
  for (const unsigned int count : polygon.Counts()) {
    rings.push_back(Ring(points, count));
    points += count;
  }
  return Geometry(GEOSGeom_createPolygon_r(Geos(), rings[0], rings.data() + 1,
                                           static_cast<unsigned int>(rings.size() - 1)));
}

Geometry PolygonOf(const Shape& shape) {
  return Geometry(GEOSGeom_createPolygon_r(Geos(), Ring(shape.data(), shape.size()), nullptr, 0));
}

Geometry LineOf(const Shape& shape) {
  return Geometry(
      GEOSGeom_createLineString_r(Geos(), Coordinates(shape.data(), shape.size(), false)));
}

struct PreparedRegion {
  explicit PreparedRegion(RegionKind kind)
      : geometry(PolygonOf(SampleRegion(kind))), prepared(GEOSPrepare_r(Geos(), geometry.get())) {}
  Geometry geometry;
  Prepared prepared;
};

Geometry Clipped(const PreparedRegion& region, const GEOSGeometry* shape) {
  if (GEOSPreparedIntersects_r(Geos(), region.prepared.get(), shape) == 0) return nullptr;
  if (GEOSPreparedCovers_r(Geos(), region.prepared.get(), shape) == 1)
    return Geometry(GEOSGeom_clone_r(Geos(), shape));
  return Geometry(GEOSIntersection_r(Geos(), region.geometry.get(), shape));
}

template <class Make>
std::vector<Geometry> First(std::size_t count, const std::vector<Shape>& shapes, const Make& make) {
  std::vector<Geometry> first;
  for (std::size_t i = 0; i < count; ++i) first.push_back(make(shapes[i]));
  return first;
}

Geometry PolygonOfRing(const Shape& shape) { return PolygonOf(shape); }

void ClipAll(benchmark::State& state, RegionKind kind, const std::vector<Geometry>& shapes) {
  const PreparedRegion region(kind);
  for (auto _ : state) {
    for (const Geometry& shape : shapes) benchmark::DoNotOptimize(Clipped(region, shape.get()));
  }
  state.counters["shapes"] = static_cast<double>(shapes.size());
}

std::size_t Shapes(RegionKind kind) { return PeerShapes(kind == RegionKind::kCoast ? 20 : 10); }

void Polygons(benchmark::State& state, RegionKind kind) {
  ClipAll(state, kind, First(Shapes(kind), SamplePolygons(kind), PolygonOfRing));
}

void Polylines(benchmark::State& state, RegionKind kind) {
  ClipAll(state, kind, First(Shapes(kind), SamplePolylines(kind), LineOf));
}

void ByRect(benchmark::State& state, const std::vector<Geometry>& shapes) {
  const corvel::Box2d box = GetBoundingBox(SampleRegion(RegionKind::kRectangle));
  for (auto _ : state) {
    for (const Geometry& shape : shapes) {
      const Geometry clipped(
          GEOSClipByRect_r(Geos(), shape.get(), box.min.x, box.min.y, box.max.x, box.max.y));
      benchmark::DoNotOptimize(clipped.get());
    }
  }
  state.counters["shapes"] = static_cast<double>(shapes.size());
}

// This one is fast: it gets them all, so that its shapes lie in the caches no more than ours.
void PolygonsByRect(benchmark::State& state) {
  const auto& shapes = SamplePolygons(RegionKind::kRectangle);
  ByRect(state, First(shapes.size(), shapes, PolygonOfRing));
}

void PolylinesByRect(benchmark::State& state) {
  const auto& shapes = SamplePolylines(RegionKind::kRectangle);
  ByRect(state, First(shapes.size(), shapes, LineOf));
}

void LargeByRect(benchmark::State& state) {
  std::vector<Geometry> one;
  one.push_back(PolygonOf(LargePolygon()));
  ByRect(state, one);
}

void Markers(benchmark::State& state, RegionKind kind) {
  const PreparedRegion region(kind);
  std::vector<Geometry> markers;
  for (const Vec2d& marker : SampleMarkers())
    markers.emplace_back(GEOSGeom_createPointFromXY_r(Geos(), marker.x, marker.y));
  for (auto _ : state) {
    for (const Geometry& marker : markers) {
      benchmark::DoNotOptimize(
          GEOSPreparedIntersects_r(Geos(), region.prepared.get(), marker.get()));
    }
  }
  state.counters["shapes"] = static_cast<double>(markers.size());
}

void Large(benchmark::State& state, RegionKind kind) {
  std::vector<Geometry> one;
  one.push_back(PolygonOf(LargePolygon()));
  ClipAll(state, kind, one);
}

const int kRegistered = [] {
  RegisterForEachRegion("Polygons", "geos", Polygons);
  RegisterForEachRegion("Polylines", "geos", Polylines);
  RegisterForEachRegion("Markers", "geos", Markers);
  RegisterForEachRegion("Large", "geos", Large);
  const auto addByRect = [](const char* what, auto run) {
    benchmark::RegisterBenchmark((std::string(what) + "/rectangle/clipbyrect").c_str(), run)
        ->Unit(benchmark::kMillisecond);
  };
  addByRect("Polygons", PolygonsByRect);
  addByRect("Polylines", PolylinesByRect);
  addByRect("Large", LargeByRect);
  return 0;
}();

}  // namespace
}  // namespace trovan::bench
