// Polygons of many kinds from a seed.
#pragma once

#include <cmath>
#include <cstddef>
#include <numbers>
#include <random>
#include <vector>

#include <tarnis/Polygon2.h>

namespace tarnis::testing {

using corvel::Vec2d;

// Where the polygons lie, and how large they are.
struct Place2 {
  const char* name;
  Vec2d origin;
  double size;
  Vec2d operator()(double x, double y) const { return {origin.x + x * size, origin.y + y * size}; }
};

inline const Place2 kPlaces[] = {
    {"unit", {0, 0}, 1},
    {"degrees", {10.75, 59.91}, 0.01},
    {"metres", {598000, 6643000}, 1500},
    {"billions", {1e9, -1e9}, 1e3},
    {"tiny", {0, 0}, 1e-12},
};

class RandomRings {
 public:
  RandomRings(std::uint64_t seed, const Place2& place) : random_(seed), place_(place) {}

  double Between(double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random_);
  }
  int Whole(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }

  // A ring around a point that does not cross itself.
  std::vector<Vec2d> Star(double x, double y, double radius, int corners, double phase = 0.0) {
    std::vector<Vec2d> ring;
    for (int i = 0; i < corners; ++i) {
      const double angle = phase + 2 * std::numbers::pi * i / corners;
      const double r = radius * Between(0.4, 1.0);
      ring.push_back(place_(x + r * std::cos(angle), y + r * std::sin(angle)));
    }
    return ring;
  }

  Polygon2 SimpleStar() {
    return Make({Star(Between(-1, 1), Between(-1, 1), Between(0.2, 1.5), Whole(3, 20))});
  }

  // Rings within one another that do not touch: each an island in the hole of the one before.
  Polygon2 Nested() {
    std::vector<std::vector<Vec2d>> rings;
    double radius = Between(0.8, 1.6);
    for (int i = Whole(2, 4); i > 0; --i) {
      rings.push_back(Star(0.1, -0.1, radius, Whole(6, 16)));
      radius *= 0.38;
    }
    return Make(rings);
  }

  // Corners anywhere.
  Polygon2 Crossing() {
    std::vector<std::vector<Vec2d>> rings(static_cast<std::size_t>(Whole(1, 3)));
    for (auto& ring : rings) {
      for (int i = Whole(3, 9); i > 0; --i)
        ring.push_back(place_(Between(-1.5, 1.5), Between(-1.5, 1.5)));
    }
    return Make(rings);
  }

  // Corners on few places, so that edges lie on one another and rings touch.
  Polygon2 Snapped(int steps) {
    std::vector<std::vector<Vec2d>> rings(static_cast<std::size_t>(Whole(1, 3)));
    for (auto& ring : rings) {
      for (int i = Whole(3, 9); i > 0; --i)
        ring.push_back(
            place_(Whole(-steps, steps) / double(steps), Whole(-steps, steps) / double(steps)));
    }
    return Make(rings);
  }

  // A star whose corners come up to three times, and its rings closed.
  Polygon2 Repeating() {
    std::vector<Vec2d> ring;
    for (const Vec2d& point : Star(Between(-1, 1), Between(-1, 1), 1.0, Whole(3, 12)))
      ring.insert(ring.end(), static_cast<std::size_t>(Whole(1, 3)), point);
    ring.push_back(ring.front());
    return Make({ring});
  }

  // Two stars that share a corner.
  Polygon2 Touching() {
    auto one = Star(-0.5, 0, 0.5, 7);
    auto other = Star(0.5, 0, 0.5, 7);
    other[3] = one[0];
    return Make({one, other});
  }

  Polygon2 Rectangle() {
    const double x = Between(-1, 0.5);
    const double y = Between(-1, 0.5);
    const double right = x + Between(0.1, 1);
    const double top = y + Between(0.1, 1);
    return Make({{place_(x, y), place_(right, y), place_(right, top), place_(x, top)}});
  }

  Polygon2 SnappedRectangle(int steps) {
    const int x = Whole(-steps, steps - 1);
    const int y = Whole(-steps, steps - 1);
    const int right = Whole(x + 1, steps);
    const int top = Whole(y + 1, steps);
    const auto at = [&](int i, int j) { return place_(i / double(steps), j / double(steps)); };
    return Make({{at(x, y), at(right, y), at(right, top), at(x, top)}});
  }

  static Polygon2 Make(const std::vector<std::vector<Vec2d>>& rings) {
    std::vector<Vec2d> points;
    std::vector<unsigned int> counts;
    for (const auto& ring : rings) {
      points.insert(points.end(), ring.begin(), ring.end());
      counts.push_back(static_cast<unsigned int>(ring.size()));
    }
    return {points, counts};
  }

 private:
  std::mt19937_64 random_;
  const Place2& place_;
};

}  // namespace tarnis::testing
