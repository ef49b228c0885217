// The outline of a shape in user space: lines of their own, open or closed.
//
//   SvgOutline outline;
//   outline.MoveTo({0, 0});
//   outline.LineTo({4, 0});
//   outline.CurveTo({4, 2}, {2, 4}, {0, 4});
//   outline.Close();
//   outline.Flatten(map);  // one closed line without curves
#pragma once

#include <cstddef>
#include <vector>

#include <corvel/Geometry.h>
#include <corvel/Matrix.h>
#include <velum/Path.h>

namespace trovan::filters {

// A line without curves. A closed one has its first point once more at its end. A line without
// length has one point.
struct FlatLine {
  std::vector<corvel::Vec2d> points;
  bool isClosed = false;
};

class SvgOutline {
 public:
  bool IsEmpty() const { return lines_.empty(); }

  // Starts a line.
  void MoveTo(const corvel::Vec2d& point);

  // Go on from where the line has come to.
  // REQUIRES: a line was started, and not closed since.
  void LineTo(const corvel::Vec2d& point);
  void CurveTo(const corvel::Vec2d& control1, const corvel::Vec2d& control2,
               const corvel::Vec2d& point);
  void QuarterTo(const corvel::Vec2d& center, const corvel::Vec2d& point);

  // Ends the line at its start.
  void Close();

  // The smallest box around the curves under the map; the empty box if there are none.
  corvel::Box2d Bounds(const corvel::Mat3d& map = {}) const;

  // The lines under the map, which takes them into the units of the drawing, where no curve is
  // further than 0.25 from its line. A start alone is no line.
  std::vector<FlatLine> Flatten(const corvel::Mat3d& map) const;

 private:
  struct Line {
    velum::Path path{velum::FillMode::kNonZero};
    corvel::Vec2d start;
    corvel::Vec2d end;
    bool hasPieces = false;  // more than its start
    bool isClosed = false;
  };

  static FlatLine Flatten(Line line, const corvel::Mat3d& map);

  std::vector<Line> lines_;
};

}  // namespace trovan::filters
