// What rings enclose that do not cross.
#pragma once

#include <corvel/Geometry.h>
#include <tarnis/Polygon2.h>

namespace trovan::test {

// Positive for rings that run counter-clockwise, negative for the others (the shoelace formula,
// from the first corner of each ring).
inline long double SignedArea(const tarnis::Polygon2& polygon) {
  using Real = long double;
  Real twice = 0;
  const corvel::Vec2d* ring = polygon.Points().data();
  for (const unsigned int count : polygon.Counts()) {
    for (unsigned int i = 0; i < count; ++i) {
      const corvel::Vec2d& a = ring[i];
      const corvel::Vec2d& b = ring[(i + 1) % count];
      const Real ax = Real{a.x} - ring[0].x;
      const Real ay = Real{a.y} - ring[0].y;
      twice += ax * (Real{b.y} - ring[0].y) - (Real{b.x} - ring[0].x) * ay;
    }
    ring += count;
  }
  return twice / 2;
}

}  // namespace trovan::test
