// Rings under the rules of filling that drawings know, turned into rings of one kind.
#pragma once

#include <tarnis/Export.h>
#include <tarnis/Polygon2.h>

namespace tarnis {

enum class FillRule : int {
  kEvenOdd = 0,  // inside: within an odd number of rings
  kNonZero = 1,  // inside: the rings run around more often in one direction than in the other
};

// The area that the rings fill, in open rings that do not cross: outer ones run counter-clockwise,
// holes clockwise. Fills the same under either rule. What ClipPolygonToPolygon says of corners
// holds.
//
// To unite areas, resolve each, and then the rings of all of them together under kNonZero.
TARNIS_API Polygon2 ResolveRings(const Polygon2& rings, FillRule rule);

}  // namespace tarnis
