#include "RegionArea.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <vector>

#include <tarnis/FillRule.h>

namespace trovan::filters {
namespace {

using corvel::Vec2d;
using tarnis::Polygon2;

// Where the edge crosses the height; nothing: not at all.
std::optional<double> Crossing(const Vec2d& a, const Vec2d& b, double height) {
  if ((a.y > height) == (b.y > height)) return std::nullopt;
  // The same for both directions, to the last bit.
  const Vec2d& low = a.y < b.y ? a : b;
  const Vec2d& high = a.y < b.y ? b : a;
  return low.x + (height - low.y) / (high.y - low.y) * (high.x - low.x);
}

std::vector<double> Crossings(const Polygon2& region, double height) {
  std::vector<double> crossings;
  const std::vector<Vec2d>& points = region.Points();
  std::size_t begin = 0;
  for (const unsigned int count : region.Counts()) {
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t next = i + 1 < count ? i + 1 : 0;
      if (const auto x = Crossing(points[begin + i], points[begin + next], height)) {
        crossings.push_back(*x);
      }
    }
    begin += count;
  }
  return crossings;
}

// Whether the region is surely wider than errors of rounding at this height.
bool IsWide(const Polygon2& region, const corvel::Box2d& box, double height) {
  constexpr double kOfWidth = 1e-6;
  constexpr double kOfPlace = 1e-12;
  const double error = std::max(kOfWidth * box.Width(),
                                kOfPlace * std::max(std::fabs(box.min.x), std::fabs(box.max.x)));
  std::vector<double> crossings = Crossings(region, height);
  // Differences of huge coordinates overflow.
  const auto isFinite = [](double x) { return std::isfinite(x); };
  if (!std::all_of(crossings.begin(), crossings.end(), isFinite)) return false;
  std::sort(crossings.begin(), crossings.end());
  for (std::size_t i = 1; i < crossings.size(); i += 2) {
    if (crossings[i] - crossings[i - 1] > error) return true;
  }
  return false;
}

}  // namespace

bool HasArea(const Polygon2& region) {
  constexpr int kHeights = 8;
  const corvel::Box2d box = GetBoundingBox(region);
  for (int i = 0; i < kHeights; ++i) {
    if (IsWide(region, box, box.min.y + box.Height() * (i + 0.5) / kHeights)) return true;
  }
  // Exact, but takes many seconds where thousands of edges lie beside one another.
  return !ResolveRings(region, tarnis::FillRule::kEvenOdd).Points().empty();
}

}  // namespace trovan::filters
