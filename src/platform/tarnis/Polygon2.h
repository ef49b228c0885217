// An area of the plane within rings.
//
//   const Polygon2 frame({{0, 0}, {4, 0}, {4, 4}, {0, 4}, {1, 1}, {2, 1}, {2, 2}}, {4, 3});
//   GetBoundingBox(frame);  // (0, 0) to (4, 4)
#pragma once

#include <atomic>
#include <vector>

#include <corvel/Geometry.h>

#include <tarnis/Export.h>

namespace tarnis {

class RegionIndex;

// What lies within an odd number of rings is inside (the even-odd rule), and so is every ring
// itself: the set is closed. Rings may cross and touch themselves and each other, and may repeat
// their first point at their end or not. A ring of 0 points is none.
//
// Never changes once it is made, but by assignment. Copies share an index of their edges, which is
// made when a point is first looked for. Any number of threads may read one polygon.
class TARNIS_API Polygon2 {
 public:
  // No rings.
  Polygon2() = default;

  // `counts` are those of the points of each ring, one ring after the other. Points that no ring
  // has are left out; a ring that reaches beyond the points is cut to what there is, and rings
  // behind it have no points.
  Polygon2(std::vector<corvel::Vec2d> points, std::vector<unsigned int> counts);

  Polygon2(const Polygon2& other);
  Polygon2(Polygon2&& other) noexcept;
  Polygon2& operator=(const Polygon2& other);
  Polygon2& operator=(Polygon2&& other) noexcept;
  ~Polygon2();

  // As many points as the counts add up to, and as many counts as rings were given.
  const std::vector<corvel::Vec2d>& Points() const { return points_; }
  const std::vector<unsigned int>& Counts() const { return counts_; }

  // Whether there are no rings, not even any of 0 points.
  bool IsEmpty() const { return counts_.empty(); }

  // For this library: the index, made by the first call.
  const RegionIndex& Index() const;

 private:
  struct SharedIndex;
  static SharedIndex* Share(SharedIndex* index);
  static void Release(SharedIndex* index);

  std::vector<corvel::Vec2d> points_;
  std::vector<unsigned int> counts_;
  mutable std::atomic<SharedIndex*> index_{nullptr};
};

// The smallest box around all rings; the empty box if there are no points.
TARNIS_API corvel::Box2d GetBoundingBox(const Polygon2& polygon);

// Whether the point is inside the polygon or on one of its rings.
TARNIS_API bool PointInPolygon(const corvel::Vec2d& point, const Polygon2& polygon);

// Whether the polygon is an axis-parallel rectangle that has an area: one ring of four corners,
// perhaps with the first one once more, in either direction. If so, sets `rectangle`.
TARNIS_API bool GetIfRect(const Polygon2& polygon, corvel::Box2d& rectangle);

}  // namespace tarnis
