// The pieces of a line that are left of it, put together as it is walked along.
#pragma once

#include <cstddef>
#include <vector>

#include <corvel/Geometry.h>

#include "SegmentCutter.h"

namespace tarnis {

// Adds to its results and changes nothing of what stands there.
class LinePieces {
 public:
  LinePieces(std::vector<corvel::Vec2d>& points, std::vector<unsigned int>& counts)
      : points_(points), counts_(counts), start_(points.size()) {}

  // The parts of the next segment of the line, in its order.
  void AddSegment(const std::vector<Span>& parts);

  // The next segment, which is inside or outside as a whole.
  void AddInside(const corvel::Vec2d& from, const corvel::Vec2d& to) {
    if (!goesOn_) BeginPiece(from);
    points_.push_back(to);
  }
  void AddOutside() { goesOn_ = false; }

  // A point of the line that is given once more, and is inside.
  void Repeat(const corvel::Vec2d& point);

  // The line ends.
  void End();

  // The whole line is one point.
  void AddPoint(const corvel::Vec2d* points, std::size_t count);

 private:
  void BeginPiece(const corvel::Vec2d& point);
  void EndPiece();

  std::vector<corvel::Vec2d>& points_;
  std::vector<unsigned int>& counts_;
  std::size_t start_;    // of the piece that is being put together
  bool goesOn_ = false;  // that piece has come to a corner of the line
};

// Cuts a line by something that cuts segments: MoveTo, PassTo, LineTo, Inside, Here as
// SegmentCutter has them.
template <class Cutter>
void CutLine(const corvel::Vec2d* points, std::size_t count, Cutter& cutter, LinePieces& pieces) {
  if (count == 0) return;
  cutter.MoveTo(points[0]);
  bool isPoint = true;
  for (std::size_t i = 1; i < count; ++i) {
    if (points[i] == points[i - 1]) {
      if (cutter.Here() != Place::kOutside) pieces.Repeat(points[i]);
      continue;
    }
    isPoint = false;
    if (!cutter.PassTo(points[i])) {
      cutter.LineTo(points[i]);
      pieces.AddSegment(cutter.Inside());
    } else if (cutter.Here() != Place::kOutside) {
      pieces.AddInside(points[i - 1], points[i]);
    } else {
      pieces.AddOutside();
    }
  }
  pieces.End();
  if (isPoint && cutter.Here() != Place::kOutside) pieces.AddPoint(points, count);
}

}  // namespace tarnis
