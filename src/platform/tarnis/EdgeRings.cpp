#include "EdgeRings.h"

#include <algorithm>

#include "Orientation.h"

namespace tarnis {

using corvel::Vec2d;

EdgeRings::EdgeRings(const Polygon2& polygon) {
  edges_.reserve(polygon.Points().size());
  const Vec2d* ring = polygon.Points().data();
  for (const unsigned int count : polygon.Counts()) {
    if (count == 0) continue;
    for (unsigned int i = 0; i < count; ++i) {
      const Edge edge{ring[i], ring[i + 1 < count ? i + 1 : 0]};
      if (edge.a != edge.b) edges_.push_back(edge);
    }
    if (edges_.size() == starts_.back()) edges_.push_back({ring[0], ring[0]});
    starts_.push_back(static_cast<std::uint32_t>(edges_.size()));
    ring += count;
  }
}

std::uint32_t EdgeRings::RingOf(std::uint32_t edge) const {
  const auto after = std::upper_bound(starts_.begin(), starts_.end(), edge);
  return static_cast<std::uint32_t>(after - starts_.begin()) - 1;
}

bool IsPerturbedInside(const EdgeRings& rings, const Vec2d& point) {
  bool isInside = false;
  for (const auto& [a, b] : rings) {
    if ((a.x <= point.x) == (b.x <= point.x)) continue;
    isInside ^= PerturbedOrientation(a, b, point) == (b.x > a.x ? 1 : -1);
  }
  return isInside;
}

std::uint32_t TopEdge(const EdgeRings& rings, std::uint32_t ring) {
  std::uint32_t top = rings.Begin(ring);
  for (std::uint32_t edge = top; edge < rings.End(ring); ++edge) {
    const Vec2d& here = rings[edge].a;
    const Vec2d& highest = rings[top].a;
    if (here.y > highest.y || (here.y == highest.y && here.x > highest.x)) top = edge;
  }
  return top;
}

// The ring turns at its highest corner as it does on the whole.
bool RunsCounterClockwise(const EdgeRings& rings, std::uint32_t ring) {
  const std::uint32_t top = TopEdge(rings, ring);
  const std::uint32_t before = top > rings.Begin(ring) ? top - 1 : rings.End(ring) - 1;
  return Orientation(rings[before].a, rings[top].a, rings[top].b) > 0;
}

}  // namespace tarnis
