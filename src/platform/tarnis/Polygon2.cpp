#include <tarnis/Polygon2.h>

#include <algorithm>
#include <cstddef>
#include <utility>

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

Box2d GetBoundingBox(const Polygon2& polygon) {
  Box2d box;
  box.BoundPoints(polygon.Points().data(), polygon.Points().size());
  return box;
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
