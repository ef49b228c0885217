#include <algorithm>
#include <cstdint>
#include <vector>

#include <tarnis/Clipping.h>

#include "BorderWalk.h"
#include "BoxEdges.h"
#include "ClipEngine.h"
#include "RegionIndex.h"
#include "RegionPart.h"

namespace tarnis {

using corvel::Box2d;
using corvel::Vec2d;

namespace {

// Polygons that are asked for few places only need no index before they have this many corners.
constexpr std::size_t kCornersForIndex = 1024;

bool HaveCommonArea(const Box2d& one, const Box2d& other) {
  return one.min.x < other.max.x && one.max.x > other.min.x && one.min.y < other.max.y &&
         one.max.y > other.min.y;
}

// As RegionIndex::IsPerturbedInside, from all edges.
bool IsPerturbedInside(const Polygon2& polygon, const Vec2d& point) {
  bool isInside = false;
  const Vec2d* ring = polygon.Points().data();
  for (const unsigned int count : polygon.Counts()) {
    for (unsigned int i = 0; i < count; ++i) {
      const Vec2d& a = ring[i];
      const Vec2d& b = ring[i + 1 < count ? i + 1 : 0];
      if ((a.x <= point.x) == (b.x <= point.x)) continue;
      isInside ^= PerturbedOrientation(a, b, point) == (b.x > a.x ? 1 : -1);
    }
    ring += count;
  }
  return isInside;
}

Polygon2 ClipToRectangle(const Polygon2& subject, const Box2d& rectangle) {
  BorderWalk walk(rectangle);
  const Vec2d* ring = subject.Points().data();
  for (const unsigned int count : subject.Counts()) {
    if (count > 0) walk.AddRing(ring, count);
    ring += count;
  }
  const bool isLarge = subject.Points().size() >= kCornersForIndex;
  return walk.Finish([&](const Vec2d& point) {
    return isLarge ? subject.Index().IsPerturbedInside(point) : IsPerturbedInside(subject, point);
  });
}

}  // namespace

Polygon2 ClipPolygonToPolygon(const Polygon2& subject, const Polygon2& clip) {
  const Box2d box = GetBoundingBox(subject);
  if (!HaveCommonArea(box, clip.Index().Box())) return {};
  Box2d rectangle;
  if (GetIfRect(clip, rectangle)) return ClipToRectangle(subject, rectangle);
  const RegionIndex& index = clip.Index();
  std::vector<std::uint32_t> edges;
  index.EdgesNear(box, edges);
  const bool isUniform = std::none_of(edges.begin(), edges.end(), [&](std::uint32_t edge) {
    return EntersBox(index.EdgeAt(edge), box);
  });
  if (!isUniform) return Intersection(subject, RegionPartAround(index, box));
  return index.IsPerturbedInside(box.min) ? Resolved(subject, FillRule::kEvenOdd) : Polygon2();
}

}  // namespace tarnis
