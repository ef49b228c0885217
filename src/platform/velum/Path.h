// Outlines of straight lines and curves.
//
//   Path path(FillMode::kEvenOdd);
//   path.AddEllipse(Box2d(0, 0, 40, 20));
//   path.Transform(turned);
//   const tarnis::Polygon2 polygon = path.GetFlatPolygon(0.25, 10);
#pragma once

#include <vector>

#include <corvel/Geometry.h>
#include <corvel/Matrix.h>
#include <tarnis/Polygon2.h>

#include <velum/Export.h>

namespace velum {

// Which parts of the plane a path fills.
enum class FillMode : int {
  kEvenOdd = 0,  // those within an odd number of its outlines
  kNonZero = 1,  // those around which its outlines run in one direction more often
};

// A number of outlines, one after the other. Curves stay curves until they are asked for as
// polygons: cubic ones, and quarters of ellipses, which are exact.
class VELUM_API Path {
 public:
  explicit Path(FillMode mode) : mode_(mode) {}

  FillMode Mode() const { return mode_; }
  bool IsEmpty() const { return verbs_.empty(); }

  // Starts an outline. The one before ends without a line back to its start, though an area is
  // filled as if there were one.
  void MoveTo(const corvel::Vec2d& point);

  // Go on from where the outline has come to. Without MoveTo before, an outline starts at the first
  // point given.
  void LineTo(const corvel::Vec2d& point);
  void CurveTo(const corvel::Vec2d& control1, const corvel::Vec2d& control2,
               const corvel::Vec2d& point);

  // A quarter of an ellipse around `center` to `point`: what an affine map makes of the quarter of
  // a circle. Its tangents there and here run along the half axis of the other end.
  void QuarterTo(const corvel::Vec2d& center, const corvel::Vec2d& point);

  // Ends the outline with a line to its start. The next one starts there unless moved.
  void Close();

  // Closed outlines. A flipped box gives the outline of the box that is not flipped. The empty box
  // adds nothing.
  void AddRect(const corvel::Box2d& box);
  // The corners are quarters of ellipses with these half axes; one that is longer than half the box
  // is cut to that. Signs do not matter. Where one of them is 0, so are the corners.
  void AddRoundRect(const corvel::Box2d& box, double xRadius, double yRadius);
  void AddEllipse(const corvel::Box2d& box);

  // Maps every point; heights are 0 before and left out after.
  void Transform(const corvel::Mat4d& matrix);

  // The smallest box around the outlines: around the curves, not around their control points. The
  // empty box if there are none.
  corvel::Box2d GetBounds() const;

  // The outlines as rings without curves, each of two points or more, none repeated at its end. No
  // point of a curve is further than `tolerance` from its line, as long as `depth` allows: a curve
  // becomes at most 2^depth lines.
  //
  // REQUIRES: 0 <= depth <= 20.
  tarnis::Polygon2 GetFlatPolygon(double tolerance, int depth) const;

 private:
  enum class Verb : unsigned char { kMove, kLine, kCurve, kQuarter, kClose };

  template <class Visitor>
  void Visit(Visitor& visitor) const;
  void StartIfNeeded(const corvel::Vec2d& point);

  FillMode mode_;
  std::vector<Verb> verbs_;
  std::vector<corvel::Vec2d> points_;  // of each verb: 1, 1, 3, 2, 0
  corvel::Vec2d start_;                // of the outline that is being added
};

}  // namespace velum
