// The same shapes through the import filter, and the same calls of geometry made directly.
#include <cstddef>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <quillon/IoManager.h>
#include <quillon/TrClipPath.h>
#include <quillon/TrMarkerSet.h>
#include <quillon/TrPolygon.h>
#include <quillon/TrPolyline.h>
#include <tarnis/Clipping.h>
#include <tarnis/LineClipPolygon.h>
#include <trovan/IoClippedImportFilter.h>

#include "EachRegion.h"
#include "SampleShapes.h"

namespace trovan::bench {
namespace {

using corvel::Box2d;
using corvel::Vec2d;
using corvel::Vec3d;
using tarnis::Polygon2;

class CountingManager : public quillon::IoManager {
 public:
  void ImportObject(quillon::TrBase&) override { ++objects_; }
  std::size_t Objects() const { return objects_; }

 private:
  std::size_t objects_ = 0;
};

class ShapeFilter : public IoClippedImportFilter {
 public:
  explicit ShapeFilter(quillon::IoManager& manager, const Polygon2& region)
      : IoClippedImportFilter(manager) {
    quillon::TrClipPath path(With3D(region.Points()), region.Counts());
    ImportObject(path);
  }

  std::wstring GetFilterName() const override { return L"Shapes"; }
  std::vector<std::wstring> GetFileExtensions() const override { return {}; }
  bool CanImport(const std::wstring&) const override { return false; }

  static std::vector<Vec3d> With3D(const std::vector<Vec2d>& points) {
    std::vector<Vec3d> result;
    result.reserve(points.size());
    for (const Vec2d& point : points) result.emplace_back(point, 0.0);
    return result;
  }
};

template <class Object>
std::vector<Object> ObjectsOf(const std::vector<Shape>& shapes) {
  std::vector<Object> objects;
  for (const Shape& shape : shapes) objects.emplace_back(ShapeFilter::With3D(shape));
  return objects;
}

template <class Object>
void ImportAll(benchmark::State& state, RegionKind kind, std::vector<Object>& objects) {
  CountingManager manager;
  ShapeFilter filter(manager, SampleRegion(kind));
  for (auto _ : state) {
    for (Object& object : objects) filter.ImportObject(object);
  }
  benchmark::DoNotOptimize(manager.Objects());
  state.counters["shapes"] = static_cast<double>(objects.size());
}

void PolygonsThroughFilter(benchmark::State& state, RegionKind kind) {
  auto objects = ObjectsOf<quillon::TrPolygon>(SamplePolygons(kind));
  ImportAll(state, kind, objects);
}

void PolylinesThroughFilter(benchmark::State& state, RegionKind kind) {
  auto objects = ObjectsOf<quillon::TrPolyline>(SamplePolylines(kind));
  ImportAll(state, kind, objects);
}

void MarkersThroughFilter(benchmark::State& state, RegionKind kind) {
  std::vector<quillon::TrMarkerSet> sets;
  sets.emplace_back(ShapeFilter::With3D(SampleMarkers()));
  ImportAll(state, kind, sets);
  state.counters["shapes"] = static_cast<double>(SampleMarkers().size());
}

// The calls that the filter makes of the geometry for a line.
class LineCalls {
 public:
  explicit LineCalls(const Polygon2& region) : region_(region), clipper_(region) {}

  void Clip(const Vec2d* points, std::size_t count) {
    Box2d rectangle;
    if (GetIfRect(region_, rectangle)) {
      const auto counts = static_cast<unsigned int>(count);
      tarnis::ClipPolylinesToRect(points, &counts, 1, rectangle, outPoints_, outCounts_);
    } else {
      clipper_.Clip(points, count, outPoints_, outCounts_);
    }
    benchmark::DoNotOptimize(outPoints_.data());
  }

 private:
  const Polygon2& region_;
  tarnis::LineClipPolygon clipper_;
  std::vector<Vec2d> outPoints_;
  std::vector<unsigned int> outCounts_;
};

void PolygonsByCalls(benchmark::State& state, RegionKind kind) {
  const Polygon2& region = SampleRegion(kind);
  const auto& shapes = SamplePolygons(kind);
  LineCalls lines(region);
  for (auto _ : state) {
    for (const Shape& shape : shapes) {
      const Polygon2 subject(shape, {static_cast<unsigned int>(shape.size())});
      std::vector<Vec2d> corners(4);
      GetBoundingBox(subject).GetCorners(corners.data());
      if (PolygonContains(region, Polygon2(std::move(corners), {4}))) continue;
      const Polygon2 clipped = ClipPolygonToPolygon(subject, region);
      if (clipped.Points().empty()) continue;
      lines.Clip(shape.data(), shape.size());
      const Vec2d closing[] = {shape.back(), shape.front()};
      lines.Clip(closing, 2);
    }
  }
  state.counters["shapes"] = static_cast<double>(shapes.size());
}

void PolylinesByCalls(benchmark::State& state, RegionKind kind) {
  const auto& shapes = SamplePolylines(kind);
  LineCalls lines(SampleRegion(kind));
  for (auto _ : state) {
    for (const Shape& shape : shapes) lines.Clip(shape.data(), shape.size());
  }
  state.counters["shapes"] = static_cast<double>(shapes.size());
}

void MarkersByCalls(benchmark::State& state, RegionKind kind) {
  const Polygon2& region = SampleRegion(kind);
  const auto& markers = SampleMarkers();
  for (auto _ : state) {
    std::size_t inside = 0;
    for (const Vec2d& marker : markers) inside += PointInPolygon(marker, region) ? 1 : 0;
    benchmark::DoNotOptimize(inside);
  }
  state.counters["shapes"] = static_cast<double>(markers.size());
}

const int kRegistered = [] {
  RegisterForEachRegion("Polygons", "filter", PolygonsThroughFilter);
  RegisterForEachRegion("Polygons", "calls", PolygonsByCalls);
  RegisterForEachRegion("Polylines", "filter", PolylinesThroughFilter);
  RegisterForEachRegion("Polylines", "calls", PolylinesByCalls);
  RegisterForEachRegion("Markers", "filter", MarkersThroughFilter);
  RegisterForEachRegion("Markers", "calls", MarkersByCalls);
  return 0;
}();

}  // namespace
}  // namespace trovan::bench
