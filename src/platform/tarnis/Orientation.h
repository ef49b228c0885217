// On which side of a line a point lies, without error of rounding.
#pragma once

#include <algorithm>
#include <cmath>

#include <corvel/Geometry.h>

namespace tarnis {

int OrientationExactly(const corvel::Vec2d& a, const corvel::Vec2d& b, const corvel::Vec2d& p);

// The shares of a way before and behind the line through `a` and `b`, of which one end of the way
// lies to the left and the other one to the right. Both are exact but for rounding at their end.
struct Shares {
  double before, behind;  // 0 to 1
};
Shares SharesAtLine(const corvel::Vec2d& a, const corvel::Vec2d& b, const corvel::Vec2d& from,
                    const corvel::Vec2d& to);

// 1 if `p` lies to the left of the way from `a` to `b`, -1 to the right, 0 on the line through
// both. Exact, whatever the size of the coordinates, unless they differ by factors of 2^1000.
//
// A floating-point filter decides almost all cases (Shewchuk, "Adaptive Precision Floating-Point
// Arithmetic and Fast Robust Geometric Predicates", 1997, bound A of ORIENT2D).
inline int Orientation(const corvel::Vec2d& a, const corvel::Vec2d& b, const corvel::Vec2d& p) {
  constexpr double kBound = 3.3306690738754716e-16;  // (3 + 16 u) u, u = 2^-53
  constexpr double kUnderflow = 0x1p-960;            // products near the smallest double lose bits
  const double left = (a.x - p.x) * (b.y - p.y);
  const double right = (a.y - p.y) * (b.x - p.x);
  const double difference = left - right;
  const double error = kBound * (std::fabs(left) + std::fabs(right));
  if (difference > error && difference > kUnderflow) return 1;
  if (-difference > error && -difference > kUnderflow) return -1;
  return OrientationExactly(a, b, p);
}

// The same for a point that is a little further up than `p`, and again much less further right: 0
// only if `a` is `b`.
inline int PerturbedOrientation(const corvel::Vec2d& a, const corvel::Vec2d& b,
                                const corvel::Vec2d& p) {
  const int side = Orientation(a, b, p);
  if (side != 0) return side;
  if (b.x != a.x) return b.x > a.x ? 1 : -1;
  if (b.y != a.y) return b.y > a.y ? -1 : 1;
  return 0;
}

// Whether the point lies on the segment, its ends included.
inline bool IsOnSegment(const corvel::Vec2d& p, const corvel::Vec2d& a, const corvel::Vec2d& b) {
  const bool isInBox = std::min(a.x, b.x) <= p.x && p.x <= std::max(a.x, b.x) &&
                       std::min(a.y, b.y) <= p.y && p.y <= std::max(a.y, b.y);
  return isInBox && Orientation(a, b, p) == 0;
}

}  // namespace tarnis
