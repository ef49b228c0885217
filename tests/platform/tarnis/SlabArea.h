// The area that polygons have in common, by a slow road of its own: horizontal slabs between all
// heights at which anything ends or crosses.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include <tarnis/Polygon2.h>

#include "support/RingArea.h"

namespace tarnis::testing {

using Real = long double;

struct SlabEdge {
  Real ax, ay, bx, by;  // ay < by
  std::size_t polygon;
  Real XAt(Real y) const { return ax + (bx - ax) * ((y - ay) / (by - ay)); }
};

inline std::vector<SlabEdge> SlabEdges(const std::vector<const Polygon2*>& polygons) {
  std::vector<SlabEdge> edges;
  for (std::size_t k = 0; k < polygons.size(); ++k) {
    const corvel::Vec2d* ring = polygons[k]->Points().data();
    for (const unsigned int count : polygons[k]->Counts()) {
      for (unsigned int i = 0; i < count; ++i) {
        corvel::Vec2d a = ring[i];
        corvel::Vec2d b = ring[(i + 1) % count];
        if (a.y == b.y) continue;
        if (a.y > b.y) std::swap(a, b);
        edges.push_back({a.x, a.y, b.x, b.y, k});
      }
      ring += count;
    }
  }
  return edges;
}

inline std::vector<Real> SlabHeights(const std::vector<SlabEdge>& edges) {
  std::vector<Real> heights;
  for (std::size_t i = 0; i < edges.size(); ++i) {
    const SlabEdge& one = edges[i];
    heights.push_back(one.ay);
    heights.push_back(one.by);
    for (std::size_t j = 0; j < i; ++j) {
      const SlabEdge& other = edges[j];
      const Real low = std::max(one.ay, other.ay);
      const Real high = std::min(one.by, other.by);
      if (!(low < high)) continue;
      const Real before = one.XAt(low) - other.XAt(low);
      const Real behind = one.XAt(high) - other.XAt(high);
      if ((before < 0) != (behind < 0))
        heights.push_back(low + (high - low) * (before / (before - behind)));
    }
  }
  std::sort(heights.begin(), heights.end());
  return heights;
}

// Of what is inside all of them, each under the even-odd rule.
inline Real CommonArea(const std::vector<const Polygon2*>& polygons) {
  const std::vector<SlabEdge> edges = SlabEdges(polygons);
  const std::vector<Real> heights = SlabHeights(edges);
  Real area = 0;
  for (std::size_t i = 0; i + 1 < heights.size(); ++i) {
    const Real middle = (heights[i] + heights[i + 1]) / 2;
    std::vector<std::pair<Real, std::size_t>> crossed;
    for (const SlabEdge& edge : edges) {
      if (edge.ay <= heights[i] && edge.by >= heights[i + 1])
        crossed.emplace_back(edge.XAt(middle), edge.polygon);
    }
    std::sort(crossed.begin(), crossed.end());
    std::vector<bool> isInside(polygons.size(), false);
    for (std::size_t j = 0; j + 1 < crossed.size(); ++j) {
      isInside[crossed[j].second] = !isInside[crossed[j].second];
      const bool isInsideAll =
          std::all_of(isInside.begin(), isInside.end(), [](bool inside) { return inside; });
      if (isInsideAll)
        area += (crossed[j + 1].first - crossed[j].first) * (heights[i + 1] - heights[i]);
    }
  }
  return area;
}

using trovan::test::SignedArea;

}  // namespace tarnis::testing
