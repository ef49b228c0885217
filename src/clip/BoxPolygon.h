// Boxes as polygons, by which is judged whether a shape lies within the clip region.
#pragma once

#include <utility>
#include <vector>

#include <corvel/Geometry.h>
#include <tarnis/Clipping.h>
#include <tarnis/Polygon2.h>

namespace trovan {

inline tarnis::Polygon2 BoxPolygon(const corvel::Box2d& box) {
  std::vector<corvel::Vec2d> corners(4);
  box.GetCorners(corners.data());
  return {std::move(corners), {4}};
}

// Whether all of the box lies within the region.
inline bool Holds(const tarnis::Polygon2& region, const corvel::Box2d& box) {
  return tarnis::PolygonContains(region, BoxPolygon(box));
}

}  // namespace trovan
