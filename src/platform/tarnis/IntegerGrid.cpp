#include "IntegerGrid.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace tarnis {

using corvel::Box2d;
using corvel::Vec2d;

namespace {

// Numbers of at most 52 bits, so that rounding up still stays below 2^53.
constexpr int kBits = 52;

// Steps of the grid that are finer than the smallest double would not be numbers.
constexpr int kMostExponent = 1000;

// How far the rounding of a crossing may take it from a vertex that it is.
constexpr std::int64_t kNearSteps = 64;

}  // namespace

// Halves first: the width of a box may be larger than any double.
IntegerGrid::IntegerGrid(const Box2d& box)
    : box_(box), center_(box.min.x / 2 + box.max.x / 2, box.min.y / 2 + box.max.y / 2) {
  const double half = std::fmax(box.max.x / 2 - box.min.x / 2, box.max.y / 2 - box.min.y / 2);
  int bits = 0;
  std::frexp(half, &bits);
  exponent_ = half > 0.0 ? std::min(kBits - bits, kMostExponent) : 0;
}

IntegerGrid::Point IntegerGrid::Nearest(const Vec2d& point) const {
  return {std::llrint(std::ldexp(point.x - center_.x, exponent_)),
          std::llrint(std::ldexp(point.y - center_.y, exponent_))};
}

Vec2d IntegerGrid::Place(const Point& point) const {
  const double x = center_.x + std::ldexp(static_cast<double>(point.x), -exponent_);
  const double y = center_.y + std::ldexp(static_cast<double>(point.y), -exponent_);
  return {std::clamp(x, box_.min.x, box_.max.x), std::clamp(y, box_.min.y, box_.max.y)};
}

void GridVertices::Add(const Polygon2& polygon) {
  vertices_.reserve(vertices_.size() + polygon.Points().size());
  for (const Vec2d& point : polygon.Points()) vertices_.emplace_back(grid_.Nearest(point), point);
}

void GridVertices::Sort() {
  std::stable_sort(vertices_.begin(), vertices_.end(),
                   [](const auto& one, const auto& other) { return one.first < other.first; });
}

Vec2d GridVertices::At(const IntegerGrid::Point& point) const {
  const auto isBefore = [](const auto& vertex, const IntegerGrid::Point& p) {
    return vertex.first < p;
  };
  const auto found = std::lower_bound(vertices_.begin(), vertices_.end(), point, isBefore);
  if (found != vertices_.end() && found->first == point) return found->second;
  const IntegerGrid::Point left{point.x - kNearSteps, point.y - kNearSteps};
  auto vertex = std::lower_bound(vertices_.begin(), found, left, isBefore);
  for (; vertex != vertices_.end() && vertex->first.x <= point.x + kNearSteps; ++vertex) {
    if (std::abs(vertex->first.y - point.y) <= kNearSteps) return vertex->second;
  }
  return grid_.Place(point);
}

}  // namespace tarnis
