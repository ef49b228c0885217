// The area that a stroked line covers.
#pragma once

#include <vector>

#include <corvel/Geometry.h>
#include <tarnis/Polygon2.h>

#include "filters/svg/SvgPainter.h"

namespace trovan::filters {

// What a pen covers that draws the line, in units of the drawing; a line whose last point is its
// first one is closed. Round caps and joins are within 0.25 of their circles.
//
// REQUIRES: the width is above 0.
tarnis::Polygon2 StrokedArea(const std::vector<corvel::Vec2d>& line, const SvgStroke& stroke);

}  // namespace trovan::filters
