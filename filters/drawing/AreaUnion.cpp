#include "AreaUnion.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <utility>

#include <corvel/Geometry.h>
#include <tarnis/FillRule.h>

namespace trovan::filters {

using corvel::Box2d;
using corvel::Vec2d;
using tarnis::FillRule;
using tarnis::Polygon2;

namespace {

// As many are united at once. More of them are united by halves that lie apart, so that what is
// inside is gone before it meets the rest: one run over all takes ever longer for each.
constexpr std::size_t kAtOnce = 64;

struct PlacedArea {
  Polygon2 area;
  Box2d box;
};

Polygon2 UnitedAtOnce(std::span<const PlacedArea> areas) {
  std::vector<Vec2d> points;
  std::vector<unsigned int> counts;
  for (const PlacedArea& placed : areas) {
    points.insert(points.end(), placed.area.Points().begin(), placed.area.Points().end());
    counts.insert(counts.end(), placed.area.Counts().begin(), placed.area.Counts().end());
  }
  return ResolveRings(Polygon2(std::move(points), std::move(counts)), FillRule::kNonZero);
}

PlacedArea Placed(Polygon2 area) {
  const Box2d box = GetBoundingBox(area);
  return {std::move(area), box};
}

// Those further left before those further right, or lower before higher, whichever differ more.
void OrderAlongLongerSide(std::span<PlacedArea> areas) {
  Box2d centers;
  for (const PlacedArea& placed : areas) centers |= Box2d(placed.box.Center(), placed.box.Center());
  const bool isWide = centers.max.x - centers.min.x > centers.max.y - centers.min.y;
  const auto middle = areas.begin() + static_cast<std::ptrdiff_t>(areas.size() / 2);
  std::nth_element(areas.begin(), middle, areas.end(), [&](const auto& one, const auto& other) {
    const Vec2d a = one.box.Center();
    const Vec2d b = other.box.Center();
    return isWide ? a.x < b.x : a.y < b.y;
  });
}

// NOLINTNEXTLINE(misc-no-recursion): halves each time
Polygon2 United(std::span<PlacedArea> areas) {
  if (areas.size() <= kAtOnce) return UnitedAtOnce(areas);
  OrderAlongLongerSide(areas);
  const std::size_t half = areas.size() / 2;
  const PlacedArea parts[] = {Placed(United(areas.first(half))),
                              Placed(United(areas.subspan(half)))};
  return UnitedAtOnce(parts);
}

}  // namespace

Polygon2 UniteAreas(std::vector<Polygon2> areas) {
  if (areas.empty()) return {};
  if (areas.size() == 1) return std::move(areas.front());
  std::vector<PlacedArea> placed;
  placed.reserve(areas.size());
  // Their rings turn as their insides lie after that: together they are right under kNonZero.
  for (const Polygon2& area : areas)
    placed.push_back(Placed(ResolveRings(area, FillRule::kEvenOdd)));
  return United(placed);
}

}  // namespace trovan::filters
