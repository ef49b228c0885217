#include <tarnis/Clipping.h>
#include <tarnis/LineClipPolygon.h>

#include "LinePieces.h"
#include "RectangleCutter.h"
#include "SegmentCutter.h"

namespace tarnis {

using corvel::Box2d;
using corvel::Vec2d;

void LineClipPolygon::Clip(const Vec2d* points, std::size_t count, std::vector<Vec2d>& outPoints,
                           std::vector<unsigned int>& outCounts) const {
  outPoints.clear();
  outCounts.clear();
  SegmentCutter cutter(region_.Index());
  LinePieces pieces(outPoints, outCounts);
  CutLine(points, count, cutter, pieces);
}

void ClipPolylinesToRect(const Vec2d* points, const unsigned int* counts, std::size_t lines,
                         const Box2d& rectangle, std::vector<Vec2d>& outPoints,
                         std::vector<unsigned int>& outCounts) {
  outPoints.clear();
  outCounts.clear();
  RectangleCutter cutter(rectangle);
  LinePieces pieces(outPoints, outCounts);
  const Vec2d* line = points;
  for (std::size_t i = 0; i < lines; ++i) {
    CutLine(line, counts[i], cutter, pieces);
    line += counts[i];
  }
}

}  // namespace tarnis
