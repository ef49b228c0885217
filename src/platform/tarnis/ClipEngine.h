// The general clipping of areas: rings that may cross, touch and overlap in any way.
#pragma once

#include <tarnis/FillRule.h>
#include <tarnis/Polygon2.h>

namespace tarnis {

// Both work on finite points and give open rings that do not cross, outer ones counter-clockwise,
// holes clockwise.

// What is inside both, under the even-odd rule.
Polygon2 Intersection(const Polygon2& one, const Polygon2& other);

// What the rings fill.
Polygon2 Resolved(const Polygon2& rings, FillRule rule);

}  // namespace tarnis
