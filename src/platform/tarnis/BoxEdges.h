// How edges lie to an axis-parallel box.
#pragma once

#include <algorithm>

#include <corvel/Geometry.h>

#include "Orientation.h"
#include "RegionIndex.h"

namespace tarnis {

// Whether a part of the edge lies within the box, its border not taken for it. Exact.
inline bool EntersBox(const Edge& edge, const corvel::Box2d& box) {
  const auto isBeside = [](double one, double other, double low, double high) {
    return (one <= low && other <= low) || (one >= high && other >= high);
  };
  if (isBeside(edge.a.x, edge.b.x, box.min.x, box.max.x)) return false;
  if (isBeside(edge.a.y, edge.b.y, box.min.y, box.max.y)) return false;
  // The line of the edge has corners to its left and to its right.
  const int sides[] = {
      Orientation(edge.a, edge.b, box.min), Orientation(edge.a, edge.b, {box.max.x, box.min.y}),
      Orientation(edge.a, edge.b, box.max), Orientation(edge.a, edge.b, {box.min.x, box.max.y})};
  const auto [least, most] = std::minmax_element(std::begin(sides), std::end(sides));
  return *least < 0 && *most > 0;
}

}  // namespace tarnis
