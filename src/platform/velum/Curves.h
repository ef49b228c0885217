// Curves as bounds and as lines.
#pragma once

#include <vector>

#include <corvel/Geometry.h>

namespace velum {

// A cubic Bezier curve.
struct CubicCurve {
  corvel::Vec2d from, control1, control2, to;

  corvel::Vec2d At(double t) const;

  // The bounds of the curve itself: those of its ends and of where it turns back along an axis.
  corvel::Box2d Bounds() const;

  // Into how many lines it has to be cut, evenly by its parameter, to be within the tolerance;
  // at most `most`.
  int LinesWithin(double tolerance, int most) const;
};

// center + (from - center) cos t + (to - center) sin t for t from 0 to a quarter turn.
struct QuarterEllipse {
  corvel::Vec2d center, from, to;

  corvel::Vec2d At(double t) const;  // t from 0 to 1
  corvel::Box2d Bounds() const;
  int LinesWithin(double tolerance, int most) const;
};

// Appends the points of the curve behind its first one, the last one bit for bit.
template <class Curve>
void AppendLines(const Curve& curve, double tolerance, int most,
                 std::vector<corvel::Vec2d>& points) {
  const int lines = curve.LinesWithin(tolerance, most);
  for (int i = 1; i < lines; ++i) points.push_back(curve.At(static_cast<double>(i) / lines));
  points.push_back(curve.to);
}

}  // namespace velum
