// Shapes clipped to regions: what the geometry costs by itself.
#include <cstddef>
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
  }
  return 0;
}();

}  // namespace
}  // namespace trovan::bench
