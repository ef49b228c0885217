// A line of two points, cut where it crosses the sides of an axis-parallel rectangle.
#pragma once

#include <vector>

#include <corvel/Geometry.h>

#include "RegionIndex.h"
#include "SegmentCutter.h"

namespace tarnis {

// Does for a rectangle what SegmentCutter does for any region.
class RectangleCutter {
 public:
  explicit RectangleCutter(const corvel::Box2d& rectangle) : box_(rectangle) {}

  void MoveTo(const corvel::Vec2d& point) { here_ = point; }

  bool PassTo(const corvel::Vec2d& to) {
    const bool isSeen = Contains(here_) ? Contains(to) : IsBeside(to);
    if (isSeen) here_ = to;
    return isSeen;
  }

  // REQUIRES: `to` is not the point where the cutter is.
  void LineTo(const corvel::Vec2d& to);

  // Never kBoundary, which does not differ from inside for lines.
  Place Here() const { return Contains(here_) ? Place::kInside : Place::kOutside; }

  // Of the last way: one part, or none.
  const std::vector<Span>& Inside() const { return inside_; }

 private:
  bool Contains(const corvel::Vec2d& point) const {
    return point.x >= box_.min.x && point.x <= box_.max.x && point.y >= box_.min.y &&
           point.y <= box_.max.y;
  }
  // Whether the way to a point is wholly on the far side of one of the four sides.
  bool IsBeside(const corvel::Vec2d& to) const {
    return (here_.x < box_.min.x && to.x < box_.min.x) ||
           (here_.x > box_.max.x && to.x > box_.max.x) ||
           (here_.y < box_.min.y && to.y < box_.min.y) ||
           (here_.y > box_.max.y && to.y > box_.max.y);
  }
  bool IsCrossedBetween(const corvel::Vec2d& to) const;
  Cut Crossing(const corvel::Vec2d& outside, const corvel::Vec2d& other) const;

  corvel::Box2d box_;
  corvel::Vec2d here_;
  std::vector<Span> inside_;
};

}  // namespace tarnis
