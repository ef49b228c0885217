#include <tarnis/Polygon2.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>

#include "RegionIndex.h"

namespace tarnis {

using corvel::Box2d;
using corvel::Vec2d;

Polygon2::Polygon2(std::vector<Vec2d> points, std::vector<unsigned int> counts)
    : points_(std::move(points)), counts_(std::move(counts)) {
  std::size_t used = 0;
  for (unsigned int& count : counts_) {
    count = static_cast<unsigned int>(std::min<std::size_t>(count, points_.size() - used));
    used += count;
  }
  points_.resize(used);
}

// Counts the polygons that share it, so that the last one can delete it.
struct Polygon2::SharedIndex {
  explicit SharedIndex(const Polygon2& polygon) : index(polygon) {}
  const RegionIndex index;
  std::atomic<std::size_t> polygons{1};
};

Polygon2::SharedIndex* Polygon2::Share(SharedIndex* index) {
  if (index != nullptr) index->polygons.fetch_add(1, std::memory_order_relaxed);
  return index;
}

void Polygon2::Release(SharedIndex* index) {
  if (index != nullptr && index->polygons.fetch_sub(1, std::memory_order_acq_rel) == 1)
    delete index;
}

Polygon2::Polygon2(const Polygon2& other)
    : points_(other.points_), counts_(other.counts_), index_(Share(other.index_.load())) {}

Polygon2::Polygon2(Polygon2&& other) noexcept
    : points_(std::exchange(other.points_, {})),
      counts_(std::exchange(other.counts_, {})),
      index_(other.index_.exchange(nullptr)) {}

Polygon2& Polygon2::operator=(const Polygon2& other) { return *this = Polygon2(other); }

Polygon2& Polygon2::operator=(Polygon2&& other) noexcept {
  if (this == &other) return *this;
  points_ = std::exchange(other.points_, {});
  counts_ = std::exchange(other.counts_, {});
  Release(index_.exchange(other.index_.exchange(nullptr)));
  return *this;
}

Polygon2::~Polygon2() { Release(index_.load()); }

const RegionIndex& Polygon2::Index() const {
  SharedIndex* index = index_.load(std::memory_order_acquire);
  if (index != nullptr) return index->index;
  auto made = std::make_unique<SharedIndex>(*this);
  // Another thread may have been faster: then its index is the one.
  if (index_.compare_exchange_strong(index, made.get(), std::memory_order_acq_rel)) {
    return made.release()->index;
  }
  return index->index;
}

bool PointInPolygon(const Vec2d& point, const Polygon2& polygon) {
  return polygon.Index().PlaceOf(point) != Place::kOutside;
}

// Every other point by itself, so that one comparison need not wait for the last.
Box2d GetBoundingBox(const Polygon2& polygon) {
  const std::vector<Vec2d>& points = polygon.Points();
  Box2d even;
  Box2d odd;
  const auto include = [](Box2d& box, const Vec2d& point) {
    box.min.x = std::min(box.min.x, point.x);
    box.min.y = std::min(box.min.y, point.y);
    box.max.x = std::max(box.max.x, point.x);
    box.max.y = std::max(box.max.y, point.y);
  };
  std::size_t i = 0;
  for (; i + 1 < points.size(); i += 2) {
    include(even, points[i]);
    include(odd, points[i + 1]);
  }
  if (i < points.size()) include(even, points[i]);
  return {std::min(even.min.x, odd.min.x), std::min(even.min.y, odd.min.y),
          std::max(even.max.x, odd.max.x), std::max(even.max.y, odd.max.y)};
}

bool GetIfRect(const Polygon2& polygon, Box2d& rectangle) {
  const auto& counts = polygon.Counts();
  const auto isRing = [](unsigned int count) { return count > 0; };
  if (std::count_if(counts.begin(), counts.end(), isRing) != 1) return false;
  const std::vector<Vec2d>& p = polygon.Points();
  const bool isFour = p.size() == 4 || (p.size() == 5 && p[0] == p[4]);
  if (!isFour) return false;
  const bool upFirst = p[0].x == p[1].x && p[1].y == p[2].y && p[2].x == p[3].x && p[3].y == p[0].y;
  const bool alongFirst =
      p[0].y == p[1].y && p[1].x == p[2].x && p[2].y == p[3].y && p[3].x == p[0].x;
  const bool hasArea = p[0].x != p[2].x && p[0].y != p[2].y;
  if (!hasArea || (!upFirst && !alongFirst)) return false;
  rectangle = GetBoundingBox(polygon);
  return true;
}

}  // namespace tarnis
