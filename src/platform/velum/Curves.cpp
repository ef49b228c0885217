#include "Curves.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace velum {
namespace {

using corvel::Box2d;
using corvel::Vec2d;

constexpr double kQuarterTurn = std::numbers::pi / 2;

double Length(const Vec2d& vector) { return std::hypot(vector.x, vector.y); }

void Include(const Vec2d& point, Box2d& box) { box |= Box2d(point, point); }

// Where the derivative of one coordinate of a cubic curve is 0: the roots of
// a t^2 + 2 b t + c strictly between 0 and 1 are given to `take`.
template <class Take>
void TurningPoints(double p0, double p1, double p2, double p3, const Take& take) {
  const double a = p3 - p0 + 3 * (p1 - p2);
  const double b = p0 - 2 * p1 + p2;
  const double c = p1 - p0;
  const auto takeWithin = [&take](double t) {
    if (t > 0.0 && t < 1.0) take(t);
  };
  const double discriminant = b * b - a * c;
  if (discriminant < 0.0) return;
  // The root that adds numbers of one sign loses no digits; the other follows from the product.
  const double sum = -(b + std::copysign(std::sqrt(discriminant), b));
  if (a != 0.0) takeWithin(sum / a);
  if (sum != 0.0) takeWithin(c / sum);
}

int CappedLines(double lines, int most) {
  if (!(lines < most)) return most;  // NaN, too
  return std::max(1, static_cast<int>(std::ceil(lines)));
}

// Of the ellipse u cos t + v sin t: the largest singular value of the matrix with these columns.
double LongestHalfAxis(const Vec2d& u, const Vec2d& v) {
  const double uu = u.x * u.x + u.y * u.y;
  const double vv = v.x * v.x + v.y * v.y;
  const double uv = u.x * v.x + u.y * v.y;
  return std::sqrt((uu + vv + std::hypot(uu - vv, 2 * uv)) / 2);
}

}  // namespace

Vec2d CubicCurve::At(double t) const {
  const double s = 1.0 - t;
  return from * (s * s * s) + control1 * (3 * s * s * t) + control2 * (3 * s * t * t) +
         to * (t * t * t);
}

Box2d CubicCurve::Bounds() const {
  Box2d box(from, from);
  Include(to, box);
  // Of each turning point the coordinate that turns there is an extreme; the other one lies on the
  // curve as well.
  const auto include = [&](double t) { Include(At(t), box); };
  TurningPoints(from.x, control1.x, control2.x, to.x, include);
  TurningPoints(from.y, control1.y, control2.y, to.y, include);
  return box;
}

// A chord over a parameter step h is off by at most h^2 / 8 times the largest second derivative,
// which a cubic curve has at one of its ends.
int CubicCurve::LinesWithin(double tolerance, int most) const {
  const double bend =
      6 * std::max(Length(from - control1 * 2 + control2), Length(control1 - control2 * 2 + to));
  return CappedLines(std::sqrt(bend / (8 * tolerance)), most);
}

Vec2d QuarterEllipse::At(double t) const {
  const double angle = t * kQuarterTurn;
  return center + (from - center) * std::cos(angle) + (to - center) * std::sin(angle);
}

Box2d QuarterEllipse::Bounds() const {
  Box2d box(from, from);
  Include(to, box);
  const Vec2d u = from - center;
  const Vec2d v = to - center;
  // u cos t + v sin t is extreme where tan t = v / u, within the quarter if the signs agree.
  if (u.x * v.x > 0.0) Include(At(std::atan2(std::fabs(v.x), std::fabs(u.x)) / kQuarterTurn), box);
  if (u.y * v.y > 0.0) Include(At(std::atan2(std::fabs(v.y), std::fabs(u.y)) / kQuarterTurn), box);
  return box;
}

// A chord over an angle a of a circle of radius r is off by r (1 - cos(a / 2)). An affine map of
// the circle stretches that by no more than its longest half axis.
int QuarterEllipse::LinesWithin(double tolerance, int most) const {
  const double radius = LongestHalfAxis(from - center, to - center);
  if (radius <= tolerance) return 1;
  const double halfAngle = std::acos(1.0 - tolerance / radius);
  return CappedLines(kQuarterTurn / (2 * halfAngle), most);
}

}  // namespace velum
