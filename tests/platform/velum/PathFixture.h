// Paths for tests, and points along their curves told in another way than by the library.
#pragma once

#include <cmath>
#include <numbers>
#include <random>
#include <vector>

#include <velum/Path.h>

namespace velum {

using corvel::Box2d;
using corvel::Vec2d;

// By repeated halving of the way between points (de Casteljau).
inline Vec2d PointOfCubic(const Vec2d (&p)[4], double t) {
  const auto between = [t](const Vec2d& a, const Vec2d& b) { return a * (1 - t) + b * t; };
  const Vec2d a = between(p[0], p[1]);
  const Vec2d b = between(p[1], p[2]);
  const Vec2d c = between(p[2], p[3]);
  return between(between(a, b), between(b, c));
}

inline std::vector<Vec2d> PointsOfCubic(const Vec2d (&p)[4], int steps) {
  std::vector<Vec2d> points;
  for (int i = 0; i <= steps; ++i) {
    points.push_back(PointOfCubic(p, static_cast<double>(i) / steps));
  }
  return points;
}

inline std::vector<Vec2d> PointsOfEllipse(const Box2d& box, double angle, int steps) {
  std::vector<Vec2d> points;
  const Vec2d center = box.Center();
  for (int i = 0; i < steps; ++i) {
    const double turn = 2 * std::numbers::pi * i / steps;
    const double x = box.Width() / 2 * std::cos(turn);
    const double y = box.Height() / 2 * std::sin(turn);
    points.emplace_back(center.x + x * std::cos(angle) - y * std::sin(angle),
                        center.y + x * std::sin(angle) + y * std::cos(angle));
  }
  return points;
}

// A turn about the centre of the box, counter-clockwise.
inline corvel::Mat4d TurnAbout(const Vec2d& center, double angle) {
  corvel::Mat4d turn;
  turn.Translate(-center.x, -center.y, 0.0, corvel::Order::kAppend);
  turn.RotateZ(angle, corvel::Order::kAppend);
  turn.Translate(center.x, center.y, 0.0, corvel::Order::kAppend);
  return turn;
}

inline double DistanceToSegment(const Vec2d& point, const Vec2d& a, const Vec2d& b) {
  const Vec2d way = b - a;
  const double square = way.x * way.x + way.y * way.y;
  const Vec2d offset = point - a;
  const double along = square > 0 ? (offset.x * way.x + offset.y * way.y) / square : 0.0;
  const Vec2d nearest = a + way * std::fmin(1.0, std::fmax(0.0, along));
  return std::hypot(point.x - nearest.x, point.y - nearest.y);
}

inline double DistanceToRings(const Vec2d& point, const tarnis::Polygon2& polygon) {
  double distance = 1e300;
  std::size_t start = 0;
  for (const unsigned int count : polygon.Counts()) {
    for (unsigned int i = 0; i < count; ++i) {
      const Vec2d& a = polygon.Points()[start + i];
      const Vec2d& b = polygon.Points()[start + (i + 1) % count];
      distance = std::fmin(distance, DistanceToSegment(point, a, b));
    }
    start += count;
  }
  return distance;
}

inline double RandomBetween(double low, double high, std::mt19937& random) {
  return low + (high - low) * (static_cast<double>(random()) / 4294967296.0);
}

inline Vec2d RandomPoint(std::mt19937& random) {
  return {RandomBetween(-100, 100, random), RandomBetween(-100, 100, random)};
}

}  // namespace velum
