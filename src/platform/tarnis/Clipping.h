// What of shapes lies within a region.
//
//   const Polygon2 region({{0, 0}, {10, 0}, {10, 10}, {0, 10}}, {4});
//   const Polygon2 area({{5, 5}, {15, 5}, {15, 15}, {5, 15}}, {4});
//   PolygonContains(region, area);       // false
//   ClipPolygonToPolygon(area, region);  // the square from (5, 5) to (10, 10)
#pragma once

#include <cstddef>
#include <vector>

#include <corvel/Geometry.h>

#include <tarnis/Export.h>
#include <tarnis/Polygon2.h>

namespace tarnis {

// Whether the polygon, which is closed, holds all of `test`: nothing that is inside `test`, and
// none of its rings, lies outside. A hole of the polygon within `test` makes it false; `test` may
// touch the boundary. False if `test` has no points.
//
// Exact. Fast for axis-parallel rectangles, which are answered from the index of the polygon.
TARNIS_API bool PolygonContains(const Polygon2& polygon, const Polygon2& test);

// The area that is inside both polygons, in open rings: outer ones run counter-clockwise, holes
// clockwise. No rings if there is no such area. Rings that touch themselves or each other may come
// as one or as several; they never cross.
//
// A corner of either polygon that is a corner of the result, too, is the same to the last bit. New
// corners lie where the edges cross, but for rounding: within 1e-9 of the size of the subject.
TARNIS_API Polygon2 ClipPolygonToPolygon(const Polygon2& subject, const Polygon2& clip);

// What lies within the closed rectangle of lines that are given one after the other, as
// LineClipPolygon::Clip gives it. `counts` are the points of each line.
//
// The results are cleared first: the pieces of all lines one after the other, and the points of
// each.
TARNIS_API void ClipPolylinesToRect(const corvel::Vec2d* points, const unsigned int* counts,
                                    std::size_t lines, const corvel::Box2d& rectangle,
                                    std::vector<corvel::Vec2d>& outPoints,
                                    std::vector<unsigned int>& outCounts);

}  // namespace tarnis
