#include <algorithm>
#include <cstdint>
#include <vector>

#include <tarnis/Clipping.h>

#include "BoxEdges.h"
#include "OddEdges.h"
#include "RegionIndex.h"
#include "SegmentCutter.h"

namespace tarnis {

using corvel::Box2d;
using corvel::Vec2d;

namespace {

// Parts of an edge that are shorter come from rounding.
constexpr double kLeastShare = 0x1p-40;

bool IsWithin(const Box2d& inner, const Box2d& outer) {
  return inner.min.x >= outer.min.x && inner.max.x <= outer.max.x && inner.min.y >= outer.min.y &&
         inner.max.y <= outer.max.y;
}

// A box without edges of the region in it is all inside or all outside.
bool ContainsBox(const RegionIndex& index, const Box2d& box) {
  std::vector<std::uint32_t> edges;
  index.EdgesNear(box, edges);
  const auto entersBox = [&](const Edge& edge) { return EntersBox(edge, box); };
  const bool isMet = std::any_of(edges.begin(), edges.end(),
                                 [&](std::uint32_t edge) { return entersBox(index.EdgeAt(edge)); });
  if (isMet && HasOddEdge(index, edges, entersBox)) return false;
  return index.IsPerturbedInside(box.min);
}

// Whether each part of the last way whose left side is inside `test` has it inside the region, too.
bool CoversLeft(const std::vector<Span>& test, const std::vector<Span>& region) {
  return std::all_of(test.begin(), test.end(), [&](const Span& part) {
    double covered = part.from.t;
    for (const Span& span : region) {
      if (span.from.t <= covered + kLeastShare) covered = std::max(covered, span.to.t);
    }
    return covered >= part.to.t - kLeastShare;
  });
}

// Follows the rings of `test` there and back.
class RingChecker {
 public:
  RingChecker(const RegionIndex& region, const RegionIndex& test) : region_(region), test_(test) {}

  // Whether the edge is inside the region, and so is what `test` has beside it.
  bool IsCovered(const Vec2d& a, const Vec2d& b) {
    if (a == b) {
      region_.MoveTo(a);
      return region_.Here() != Place::kOutside;
    }
    return IsCoveredOneWay(a, b) && IsCoveredOneWay(b, a);
  }

 private:
  bool IsCoveredOneWay(const Vec2d& a, const Vec2d& b) {
    region_.MoveTo(a);
    test_.MoveTo(a);
    region_.LineTo(b);
    test_.LineTo(b);
    const std::vector<Span>& inside = region_.Inside();
    const bool isInside = inside.size() == 1 && inside[0].from.t == 0.0 && inside[0].to.t == 1.0;
    return isInside && CoversLeft(test_.InsideLeft(), region_.InsideLeft());
  }

  SegmentCutter region_;
  SegmentCutter test_;
};

bool CoversRings(const RegionIndex& region, const Polygon2& test) {
  RingChecker checker(region, test.Index());
  const Vec2d* ring = test.Points().data();
  for (const unsigned int count : test.Counts()) {
    for (unsigned int i = 0; i < count; ++i) {
      if (!checker.IsCovered(ring[i], ring[i + 1 < count ? i + 1 : 0])) return false;
    }
    ring += count;
  }
  return true;
}

// Whether the region's boundary runs through the inside of `test`.
bool IsDivided(const RegionIndex& region, const Polygon2& test) {
  std::vector<std::uint32_t> edges;
  region.EdgesNear(test.Index().Box(), edges);
  SegmentCutter cutter(test.Index());
  return HasOddEdge(region, edges, [&](const Edge& edge) {
    cutter.MoveTo(edge.a);
    cutter.LineTo(edge.b);
    // Inside, and not along a ring, whose two sides differ.
    const std::vector<Span> left = cutter.InsideLeft();
    cutter.LineTo(edge.a);
    const std::vector<Span>& right = cutter.InsideLeft();
    return std::any_of(left.begin(), left.end(), [&](const Span& one) {
      return std::any_of(right.begin(), right.end(), [&](const Span& other) {
        const double from = std::max(one.from.t, 1.0 - other.to.t);
        const double to = std::min(one.to.t, 1.0 - other.from.t);
        return to - from > kLeastShare;
      });
    });
  });
}

}  // namespace

bool PolygonContains(const Polygon2& polygon, const Polygon2& test) {
  if (test.Points().empty()) return false;
  const RegionIndex& index = polygon.Index();
  Box2d box = GetBoundingBox(test);
  if (!IsWithin(box, index.Box())) return false;
  Box2d all;
  if (GetIfRect(polygon, all)) return true;
  if (GetIfRect(test, box)) return ContainsBox(index, box);
  return CoversRings(index, test) && !IsDivided(index, test);
}

}  // namespace tarnis
