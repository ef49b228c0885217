// Flat lines as areas.
#pragma once

#include <vector>

#include <tarnis/FillRule.h>
#include <tarnis/Polygon2.h>

#include "filters/svg/SvgOutline.h"

namespace trovan::filters {

// The area that the lines fill under the rule, each closed by a straight line: the inside of the
// polygon is just that area. No rings if it is empty.
tarnis::Polygon2 AreaOf(const std::vector<FlatLine>& lines, tarnis::FillRule rule);

// Whether the ring turns in one direction only, and once around: such a ring is the same under
// every rule.
bool IsConvex(const corvel::Vec2d* ring, std::size_t count);

// Products of two lengths below this are finite.
constexpr double kFarthest = 1e150;

// Whether all points of the lines lie nearer than that to both axes.
bool IsInBounds(const std::vector<FlatLine>& lines);

}  // namespace trovan::filters
