// Lines cut to a region.
//
//   const LineClipPolygon clipper(Polygon2({{0, 0}, {10, 0}, {10, 10}, {0, 10}}, {4}));
//   const Vec2d line[] = {{-5, 5}, {5, 5}, {5, 15}};
//   clipper.Clip(line, 3, points, counts);  // (0, 5), (5, 5), (5, 10); 3
#pragma once

#include <cstddef>
#include <vector>

#include <corvel/Geometry.h>

#include <tarnis/Export.h>
#include <tarnis/Polygon2.h>

namespace tarnis {

// Shares the index of the polygon's edges, which is made when a line is first clipped.
class TARNIS_API LineClipPolygon {
 public:
  // Of no region: nothing of any line is left.
  LineClipPolygon() = default;

  explicit LineClipPolygon(const Polygon2& region) : region_(region) {}

  // The pieces of an open line that lie within the region, which is closed: parts that run along
  // its boundary stay. They come in the order of travel, and each as long as it can be; where the
  // line only touches the region in a point, there is no piece. Corners of the line are the same to
  // the last bit. A line that is a single point, given once or more often, is a piece if the point
  // is inside.
  //
  // The results are cleared first: the pieces one after the other, and the points of each.
  void Clip(const corvel::Vec2d* points, std::size_t count, std::vector<corvel::Vec2d>& outPoints,
            std::vector<unsigned int>& outCounts) const;

 private:
  Polygon2 region_;
};

}  // namespace tarnis
