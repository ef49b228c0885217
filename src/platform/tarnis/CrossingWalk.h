// The common area of two polygons whose boundaries cross and do nothing else.
#pragma once

#include <optional>

#include <tarnis/Polygon2.h>

#include "RegionIndex.h"

namespace tarnis {

// Walks along the boundaries, and from one to the other wherever they cross. Takes time in
// proportion to the edges of the subject and to the result, however large the region is.
//
// Nothing if a boundary meets the other or itself in any other way than that two edges cross, or if
// crossings are so near to each other that rounding might change their order. Otherwise the common
// area as ClipPolygonToPolygon gives it.
std::optional<Polygon2> WalkCrossings(const Polygon2& subject, const RegionIndex& region);

}  // namespace tarnis
