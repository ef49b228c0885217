#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include <tarnis/Clipping.h>

#include "BorderWalk.h"
#include "BoxEdges.h"
#include "ClipEngine.h"
#include "CrossingWalk.h"
#include "EdgeRings.h"
#include "RegionIndex.h"
#include "RegionPart.h"
#include "RingContacts.h"

namespace tarnis {

using corvel::Box2d;
using corvel::Vec2d;

namespace {

// Polygons that are asked for few places only need no index before they have this many edges.
constexpr std::size_t kEdgesForIndex = 256;

bool HaveCommonArea(const Box2d& one, const Box2d& other) {
  return one.min.x < other.max.x && one.max.x > other.min.x && one.min.y < other.max.y &&
         one.max.y > other.min.y;
}

Polygon2 ClipToRectangle(const Polygon2& subject, const Box2d& rectangle) {
  BorderWalk walk(rectangle);
  const Vec2d* ring = subject.Points().data();
  for (const unsigned int count : subject.Counts()) {
    if (count > 0) walk.AddRing(ring, count);
    ring += count;
  }
  Polygon2 clipped = walk.Finish([&](const Vec2d& point) {
    // One question costs less than an index, many cost more.
    const bool isLarge = subject.Points().size() >= kEdgesForIndex && subject.Counts().size() > 1;
    return isLarge ? subject.Index().IsPerturbedInside(point)
                   : IsPerturbedInside(EdgeRings(subject), point);
  });
  // The walk leaves crossings as it finds them.
  const bool isLargeResult = clipped.Points().size() >= kEdgesForIndex;
  const bool hasContacts =
      isLargeResult ? clipped.Index().HasContacts() : HaveContacts(EdgeRings(clipped));
  return hasContacts ? Resolved(clipped, FillRule::kEvenOdd) : clipped;
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
  if (!isUniform) {
    std::optional<Polygon2> walked = WalkCrossings(subject, index);
    return walked ? std::move(*walked) : Intersection(subject, RegionPartAround(index, box));
  }
  return index.IsPerturbedInside(box.min) ? Resolved(subject, FillRule::kEvenOdd) : Polygon2();
}

}  // namespace tarnis
