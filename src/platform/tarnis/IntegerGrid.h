// Points of the plane on a grid of whole numbers.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include <corvel/Geometry.h>

#include <tarnis/Polygon2.h>

namespace tarnis {

// The finest grid over a box whose step is a power of two and whose numbers stay below 2^53 around
// the centre of the box, so that they are doubles, too.
class IntegerGrid {
 public:
  struct Point {
    std::int64_t x, y;
    friend bool operator==(const Point&, const Point&) = default;
    friend bool operator<(const Point& one, const Point& other) {
      return one.x != other.x ? one.x < other.x : one.y < other.y;
    }
  };

  explicit IntegerGrid(const corvel::Box2d& box);

  // The nearest point of the grid to a point of the box.
  Point Nearest(const corvel::Vec2d& point) const;

  // Within the box, though the grid may reach beyond it by less than a step.
  corvel::Vec2d Place(const Point& point) const;

 private:
  corvel::Box2d box_;
  corvel::Vec2d center_;
  int exponent_ = 0;  // one unit is 2^exponent_ steps
};

// The points that were put on a grid, so that they come back from it to the last bit.
class GridVertices {
 public:
  explicit GridVertices(const IntegerGrid& grid) : grid_(grid) {}

  void Add(const Polygon2& polygon);

  // Call once after the last Add.
  void Sort();

  // The first point that was added at this place of the grid, or else another one so near that the
  // place may be its own, but for the rounding of a crossing, or else the place itself.
  corvel::Vec2d At(const IntegerGrid::Point& point) const;

 private:
  const IntegerGrid& grid_;
  std::vector<std::pair<IntegerGrid::Point, corvel::Vec2d>> vertices_;
};

}  // namespace tarnis
