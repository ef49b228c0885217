// Shapes clipped to regions: what the geometry costs by itself.
#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <tarnis/Clipping.h>
#include <tarnis/LineClipPolygon.h>

#include "SampleShapes.h"

namespace trovan::bench {
namespace {

using corvel::Box2d;
using corvel::Vec2d;
using tarnis::Polygon2;

// Rings of one polygon as filters hand them over.
std::vector<Polygon2> Subjects(RegionKind kind) {
  std::vector<Polygon2> subjects;
  for (const Shape& shape : SamplePolygons(kind))
    subjects.emplace_back(shape, std::vector{static_cast<unsigned int>(shape.size())});
  return subjects;
}

Polygon2 BoxPolygon(const Box2d& box) {
  std::vector<Vec2d> corners(4);
  box.GetCorners(corners.data());
  return {std::move(corners), {4}};
}

void Polygons(benchmark::State& state, RegionKind kind) {
  const Polygon2& region = SampleRegion(kind);
  const auto subjects = Subjects(kind);
  for (auto _ : state) {
    for (const Polygon2& subject : subjects) {
      if (PolygonContains(region, BoxPolygon(GetBoundingBox(subject)))) continue;
      benchmark::DoNotOptimize(ClipPolygonToPolygon(subject, region));
    }
  }
  state.counters["shapes"] = static_cast<double>(subjects.size());
}

void Polylines(benchmark::State& state, RegionKind kind) {
  const Polygon2& region = SampleRegion(kind);
  const tarnis::LineClipPolygon clipper(region);
  const auto& lines = SamplePolylines(kind);
  std::vector<Vec2d> points;
  std::vector<unsigned int> counts;
  for (auto _ : state) {
    for (const Shape& line : lines) {
      Box2d rectangle;
      if (GetIfRect(region, rectangle)) {
        const auto count = static_cast<unsigned int>(line.size());
        tarnis::ClipPolylinesToRect(line.data(), &count, 1, rectangle, points, counts);
      } else {
        clipper.Clip(line.data(), line.size(), points, counts);
      }
      benchmark::DoNotOptimize(points.data());
    }
  }
  state.counters["shapes"] = static_cast<double>(lines.size());
}

void Markers(benchmark::State& state, RegionKind kind) {
  const Polygon2& region = SampleRegion(kind);
  const auto& markers = SampleMarkers();
  for (auto _ : state) {
    for (const Vec2d& marker : markers) benchmark::DoNotOptimize(PointInPolygon(marker, region));
  }
  state.counters["shapes"] = static_cast<double>(markers.size());
}

void Large(benchmark::State& state, RegionKind kind) {
  const Polygon2& region = SampleRegion(kind);
  const Shape& ring = LargePolygon();
  for (auto _ : state) {
    // Anew each time: it may keep an index.
    const Polygon2 subject(ring, {static_cast<unsigned int>(ring.size())});
    benchmark::DoNotOptimize(ClipPolygonToPolygon(subject, region));
  }
}

// What no clipping can do without: reading and writing each point once.
void CopyAll(benchmark::State& state, const std::vector<Shape>& shapes) {
  Shape copy;
  for (auto _ : state) {
    for (const Shape& shape : shapes) {
      copy.resize(shape.size());
      std::memcpy(copy.data(), shape.data(), shape.size() * sizeof(Vec2d));
      benchmark::DoNotOptimize(copy.data());
      benchmark::ClobberMemory();
    }
  }
  state.counters["shapes"] = static_cast<double>(shapes.size());
}

void CopyPolygons(benchmark::State& state, RegionKind kind) {
  CopyAll(state, SamplePolygons(kind));
}
void CopyPolylines(benchmark::State& state, RegionKind kind) {
  CopyAll(state, SamplePolylines(kind));
}

const int kRegistered = [] {
  for (const RegionKind kind : kRegions) {
    const std::string end = std::string("/") + NameOf(kind) + "/ours";
    const auto add = [&](const char* what, auto run) {
      benchmark::RegisterBenchmark((what + end).c_str(), run, kind)->Unit(benchmark::kMillisecond);
    };
    add("Polygons", Polygons);
    add("Polylines", Polylines);
    add("Markers", Markers);
    add("Large", Large);
    add("CopyPolygons", CopyPolygons);
    add("CopyPolylines", CopyPolylines);
  }
  return 0;
}();

}  // namespace
}  // namespace trovan::bench
