// Points of drawing objects, which have heights, and points of the plane, in which is clipped.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include <corvel/Geometry.h>

namespace trovan {

inline void CopyFlat(const corvel::Vec3d* from, std::size_t count, corvel::Vec2d* to) {
  std::transform(from, from + count, to,
                 [](const corvel::Vec3d& point) { return corvel::Vec2d(point.x, point.y); });
}

inline void CopyRaised(const corvel::Vec2d* from, std::size_t count, corvel::Vec3d* to) {
  std::transform(from, from + count, to,
                 [](const corvel::Vec2d& point) { return corvel::Vec3d(point, 0.0); });
}

inline std::vector<corvel::Vec2d> Flat(const std::vector<corvel::Vec3d>& points) {
  std::vector<corvel::Vec2d> flat(points.size());
  CopyFlat(points.data(), points.size(), flat.data());
  return flat;
}

inline std::vector<corvel::Vec3d> Raised(const corvel::Vec2d* points, std::size_t count) {
  std::vector<corvel::Vec3d> raised(count);
  CopyRaised(points, count, raised.data());
  return raised;
}

// The counts of rings as they are meant: where there are none, all points are one ring.
inline std::vector<unsigned int> RingCounts(const std::vector<unsigned int>& counts,
                                            std::size_t points) {
  if (!counts.empty()) return counts;
  return {static_cast<unsigned int>(points)};
}

// Shows `visit` the pieces of as many points as the counts say, one after the other: the first
// point of each and its count. Beyond the last point there are none, so that the counts of some
// later pieces are less than stated.
template <class Visit>
void ForEachPiece(const std::vector<corvel::Vec2d>& points, const std::vector<unsigned int>& counts,
                  const Visit& visit) {
  std::size_t start = 0;
  for (const unsigned int stated : counts) {
    const std::size_t count = std::min<std::size_t>(stated, points.size() - start);
    visit(points.data() + start, count);
    start += count;
  }
}

}  // namespace trovan
