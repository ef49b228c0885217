#include "SvgArc.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace trovan::filters {
namespace {

using corvel::Vec2d;

// The ellipse as an image of the unit circle.
struct Ellipse {
  Vec2d center;
  Vec2d xAxis;  // where (1, 0) goes, from the centre
  Vec2d yAxis;

  Vec2d At(double angle) const {
    return center + xAxis * std::cos(angle) + yAxis * std::sin(angle);
  }
  Vec2d Tangent(double angle) const { return xAxis * -std::sin(angle) + yAxis * std::cos(angle); }
};

// Half the way between the ends, in the space in which the ellipse is the unit circle.
Vec2d HalfChord(const Vec2d& from, const Vec2d& to, const Vec2d& axis, double xRadius,
                double yRadius) {
  const Vec2d half = (from - to) * 0.5;
  return {(axis.x * half.x + axis.y * half.y) / xRadius,
          (axis.x * half.y - axis.y * half.x) / yRadius};
}

// A cubic curve of an eighth of a turn is off by less than a 200,000th of the radius.
void AddCurves(const Ellipse& ellipse, double start, double sweep, const Vec2d& to,
               SvgOutline& outline) {
  const int pieces =
      std::max(1, static_cast<int>(std::ceil(std::fabs(sweep) / (std::numbers::pi / 4) - 1e-9)));
  const double step = sweep / pieces;
  const double handle = 4.0 / 3.0 * std::tan(step / 4.0);
  for (int i = 0; i < pieces; ++i) {
    const double a = start + step * i;
    const double b = a + step;
    const Vec2d end = i + 1 == pieces ? to : ellipse.At(b);
    outline.CurveTo(ellipse.At(a) + ellipse.Tangent(a) * handle,
                    ellipse.At(b) - ellipse.Tangent(b) * handle, end);
  }
}

}  // namespace

// The centre is found as W3C, "Scalable Vector Graphics (SVG) 2", section B.2 tells, with the
// ellipse scaled to the unit circle.
void AddArc(const SvgArc& arc, const Vec2d& from, const Vec2d& to, SvgOutline& outline) {
  if (from == to) return;
  double xRadius = std::fabs(arc.xRadius);
  double yRadius = std::fabs(arc.yRadius);
  if (xRadius == 0.0 || yRadius == 0.0) return outline.LineTo(to);
  const double turn = std::fmod(arc.rotation, 360.0) * (std::numbers::pi / 180.0);
  const Vec2d axis(std::cos(turn), std::sin(turn));
  Vec2d half = HalfChord(from, to, axis, xRadius, yRadius);
  const double length = std::hypot(half.x, half.y);
  // So far from its centre, a short way cannot be told from a line, and rounding would turn it into
  // the whole ellipse.
  constexpr double kFlat = 1e-9;
  const bool isFlat = length < kFlat && !arc.isLarge;
  if (!std::isfinite(length) || length == 0.0 || isFlat) return outline.LineTo(to);
  if (length > 1.0) {
    xRadius *= length;
    yRadius *= length;
    half = half * (1.0 / length);
  }
  const double toCenter = std::sqrt(std::max(0.0, 1.0 / std::min(length * length, 1.0) - 1.0));
  const double side = arc.isLarge == arc.isSweep ? -toCenter : toCenter;
  const Vec2d center(half.y * side, -half.x * side);

  const double start = std::atan2(half.y - center.y, half.x - center.x);
  const double shortWay = 2 * std::atan2(1.0, toCenter);
  const double way = arc.isLarge ? 2 * std::numbers::pi - shortWay : shortWay;
  const double sweep = arc.isSweep ? way : -way;

  Ellipse ellipse;
  ellipse.xAxis = axis * xRadius;
  ellipse.yAxis = Vec2d(-axis.y, axis.x) * yRadius;
  ellipse.center = (from + to) * 0.5 + ellipse.xAxis * center.x + ellipse.yAxis * center.y;
  AddCurves(ellipse, start, sweep, to, outline);
}

}  // namespace trovan::filters
