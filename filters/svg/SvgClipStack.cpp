#include "SvgClipStack.h"

#include <utility>

#include <quillon/TrClipPath.h>
#include <tarnis/Clipping.h>

namespace trovan::filters {
namespace {

using tarnis::Polygon2;

// A clip path without points would clip nothing. This one has no area, and lies where no drawing
// comes.
Polygon2 Nowhere() {
  constexpr double kFar = -1e12;
  return {{{kFar, kFar}, {kFar, kFar}, {kFar, kFar}}, {3}};
}

bool IsSame(const Polygon2& a, const Polygon2& b) {
  return a.Points() == b.Points() && a.Counts() == b.Counts();
}

}  // namespace

SvgClipStack::SvgClipStack(const Polygon2& outer, Deliver deliver)
    : deliver_(std::move(deliver)), regions_{outer}, delivered_(outer) {}

void SvgClipStack::Push(const Polygon2& area) {
  Polygon2 both = Region().IsEmpty() ? area : tarnis::ClipPolygonToPolygon(area, Region());
  regions_.push_back(both.Points().empty() ? Nowhere() : std::move(both));
}

void SvgClipStack::Update() {
  if (IsSame(Region(), delivered_)) return;
  quillon::TrClipPath path;
  for (const corvel::Vec2d& point : Region().Points()) path.Points().emplace_back(point, 0.0);
  path.Counts() = Region().Counts();
  deliver_(path);
  delivered_ = Region();
}

}  // namespace trovan::filters
