// The place and shape of a feature of a map.
#pragma once

#include <vector>

#include <corvel/Geometry.h>

namespace trovan::filters {

struct Geometry {
  enum class Kind {
    kPlaces,  // each point for itself; there are no counts
    kLines,   // of as many points as the counts say, one after the other
    kArea,    // within an odd number of rings
  };

  Kind kind = Kind::kPlaces;
  std::vector<corvel::Vec3d> points;  // heights are 0 where there are none
  std::vector<unsigned int> counts;   // add up to the number of points
};

// The smallest box around the places of all points, as it grows.
class Extent {
 public:
  void Add(const Geometry& geometry) {
    for (const corvel::Vec3d& point : geometry.points) {
      box_ |= corvel::Box2d(point.x, point.y, point.x, point.y);
    }
  }

  // The empty box when there were no points.
  const corvel::Box2d& Box() const { return box_; }

 private:
  corvel::Box2d box_;
};

}  // namespace trovan::filters
