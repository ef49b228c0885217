// The same polygons with Clipper alone, against the whole region, once their boxes overlap.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <polyclipping/clipper.hpp>
#include <benchmark/benchmark.h>

#include "EachRegion.h"
#include "SampleShapes.h"

namespace trovan::bench {
namespace {

using corvel::Box2d;
using corvel::Vec2d;

// Coordinates reach about 1500: this is as fine as 64-bit products allow it.
constexpr double kSteps = 1 << 19;

ClipperLib::Path PathOf(const Vec2d* points, std::size_t count) {
  ClipperLib::Path path;
  for (std::size_t i = 0; i < count; ++i)
    path.emplace_back(std::llround(points[i].x * kSteps), std::llround(points[i].y * kSteps));
  return path;
}

struct Subject {
  Box2d box;
  ClipperLib::Path path;
};

Subject SubjectOf(const Shape& shape) {
  Subject subject{{}, PathOf(shape.data(), shape.size())};
  subject.box.BoundPoints(shape.data(), shape.size());
  return subject;
}

void ClipAll(benchmark::State& state, RegionKind kind, const std::vector<Subject>& subjects) {
  const tarnis::Polygon2& region = SampleRegion(kind);
  const Box2d box = GetBoundingBox(region);
  ClipperLib::Paths rings;
  const Vec2d* points = region.Points().data();
  for (const unsigned int count : region.Counts()) {
    rings.push_back(PathOf(points, count));
    points += count;
  }
  for (auto _ : state) {
    for (const Subject& subject : subjects) {
      if (subject.box.min.x > box.max.x || subject.box.max.x < box.min.x ||
          subject.box.min.y > box.max.y || subject.box.max.y < box.min.y) {
        continue;
      }
      ClipperLib::Clipper clipper;
      clipper.AddPath(subject.path, ClipperLib::ptSubject, true);
      clipper.AddPaths(rings, ClipperLib::ptClip, true);
      ClipperLib::Paths clipped;
      clipper.Execute(ClipperLib::ctIntersection, clipped, ClipperLib::pftEvenOdd,
                      ClipperLib::pftEvenOdd);
      benchmark::DoNotOptimize(clipped.data());
    }
  }
  state.counters["shapes"] = static_cast<double>(subjects.size());
}

std::size_t Shapes(RegionKind kind) { return PeerShapes(kind == RegionKind::kCoast ? 200 : 10); }

void Polygons(benchmark::State& state, RegionKind kind) {
  std::vector<Subject> subjects;
  for (std::size_t i = 0; i < Shapes(kind); ++i)
    subjects.push_back(SubjectOf(SamplePolygons(kind)[i]));
  ClipAll(state, kind, subjects);
}

void Large(benchmark::State& state, RegionKind kind) {
  ClipAll(state, kind, {SubjectOf(LargePolygon())});
}

const int kRegistered = [] {
  RegisterForEachRegion("Polygons", "clipper", Polygons);
  RegisterForEachRegion("Large", "clipper", Large);
  return 0;
}();

}  // namespace
}  // namespace trovan::bench
