// Rings that are put together corner by corner.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include <corvel/Geometry.h>

#include <tarnis/Polygon2.h>

namespace tarnis {

// Leaves out corners that follow their like, and rings of which less than three corners are left.
class RingList {
 public:
  void AddPoint(const corvel::Vec2d& point) {
    const bool isRepeated = points_.size() > start_ && points_.back() == point;
    if (!isRepeated) points_.push_back(point);
  }

  void EndRing() {
    while (points_.size() > start_ + 1 && points_.back() == points_[start_]) points_.pop_back();
    if (points_.size() < start_ + 3) {
      points_.resize(start_);
    } else {
      counts_.push_back(static_cast<unsigned int>(points_.size() - start_));
      start_ = points_.size();
    }
  }

  // All rings. Call once.
  Polygon2 Take() { return {std::move(points_), std::move(counts_)}; }

 private:
  std::vector<corvel::Vec2d> points_;
  std::vector<unsigned int> counts_;
  std::size_t start_ = 0;  // of the ring that is being put together
};

}  // namespace tarnis
