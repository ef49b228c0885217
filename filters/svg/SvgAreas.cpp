#include "SvgAreas.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace trovan::filters {
namespace {

using corvel::Vec2d;
using tarnis::Polygon2;

// How often a coordinate of steps around a ring changes its sign; steps of 0 do not count.
class Turns {
 public:
  void Step(double way) {
    if (way == 0.0) return;
    const bool isUp = way > 0.0;
    if (!hasStepped_) first_ = isUp;
    if (hasStepped_ && isUp != last_) ++count_;
    hasStepped_ = true;
    last_ = isUp;
  }
  int AroundRing() const { return count_ + (hasStepped_ && first_ != last_ ? 1 : 0); }

 private:
  bool hasStepped_ = false;
  bool first_ = false;
  bool last_ = false;
  int count_ = 0;
};

// Without its last point where that is the first one.
std::size_t RingSize(const FlatLine& line) {
  std::size_t count = line.points.size();
  while (count > 1 && line.points[count - 1] == line.points[0]) --count;
  return count;
}

}  // namespace

// A ring that goes up and down just once along each axis, and never turns back, cannot wind around
// anything twice.
bool IsConvex(const Vec2d* ring, std::size_t count) {
  Turns x;
  Turns y;
  bool left = false;
  bool right = false;
  for (std::size_t i = 0; i < count; ++i) {
    const Vec2d& here = ring[i];
    const Vec2d& next = ring[(i + 1) % count];
    const Vec2d& afterNext = ring[(i + 2) % count];
    const Vec2d step = next - here;
    const Vec2d nextStep = afterNext - next;
    x.Step(step.x);
    y.Step(step.y);
    const double cross = step.x * nextStep.y - step.y * nextStep.x;
    left = left || cross > 0.0;
    right = right || cross < 0.0;
  }
  return left != right && x.AroundRing() <= 2 && y.AroundRing() <= 2;
}

Polygon2 AreaOf(const std::vector<FlatLine>& lines, tarnis::FillRule rule) {
  std::vector<Vec2d> points;
  std::vector<unsigned int> counts;
  for (const FlatLine& line : lines) {
    const std::size_t count = RingSize(line);
    if (count < 3) continue;
    points.insert(points.end(), line.points.begin(),
                  line.points.begin() + static_cast<std::ptrdiff_t>(count));
    counts.push_back(static_cast<unsigned int>(count));
  }
  const bool isPlain = rule == tarnis::FillRule::kEvenOdd || counts.empty() ||
                       (counts.size() == 1 && IsConvex(points.data(), points.size()));
  Polygon2 rings(std::move(points), std::move(counts));
  return isPlain ? rings : tarnis::ResolveRings(rings, rule);
}

bool IsInBounds(const std::vector<FlatLine>& lines) {
  return std::all_of(lines.begin(), lines.end(), [](const FlatLine& line) {
    return std::all_of(line.points.begin(), line.points.end(), [](const Vec2d& point) {
      return std::fabs(point.x) < kFarthest && std::fabs(point.y) < kFarthest;
    });
  });
}

}  // namespace trovan::filters
