// Regions to clip to, and what is clipped: the same in each run.
#pragma once

#include <cstddef>
#include <vector>

#include <corvel/Geometry.h>
#include <tarnis/Polygon2.h>

namespace trovan::bench {

enum class RegionKind { kRectangle, kStar, kCoast };

inline constexpr RegionKind kRegions[] = {RegionKind::kRectangle, RegionKind::kStar,
                                          RegionKind::kCoast};

const char* NameOf(RegionKind kind);

// A rectangle; a star of 64 corners with a hole; an island whose coast has 20,000 corners, with
// lakes. About 2000 units wide.
const tarnis::Polygon2& SampleRegion(RegionKind kind);

// A line, or a ring that does not cross itself.
using Shape = std::vector<corvel::Vec2d>;

// Of each kind a third lies inside the region, a third outside, and a third crosses its boundary,
// in no order. As many as the environment says in TROVAN_BENCH_SHAPES, or 200,000; five times as
// many markers. Made when first asked for.
const std::vector<Shape>& SamplePolygons(RegionKind kind);   // of 8 to 64 corners
const std::vector<Shape>& SamplePolylines(RegionKind kind);  // of 20 to 200
const std::vector<corvel::Vec2d>& SampleMarkers();           // anywhere

// One ring of 200,000 corners that crosses the boundary of every region often.
const Shape& LargePolygon();

// How many shapes a slower program gets, so that it takes about as long: all, divided by a number.
std::size_t PeerShapes(std::size_t divisor);

}  // namespace trovan::bench
