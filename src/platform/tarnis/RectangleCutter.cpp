#include "RectangleCutter.h"

#include <algorithm>

#include "Between.h"
#include "Orientation.h"

namespace tarnis {

using corvel::Vec2d;

namespace {

// Never quite an end of the way, for rounding.
constexpr double kMostShare = 1.0 - 0x1p-53;

}  // namespace

void RectangleCutter::LineTo(const Vec2d& to) {
  inside_.clear();
  const bool startsInside = Contains(here_);
  const bool endsInside = Contains(to);
  if (startsInside || endsInside || IsCrossedBetween(to)) {
    const Cut from = startsInside ? Cut{0.0, here_} : Crossing(here_, to);
    Cut end{1.0, to};
    if (!endsInside) {
      end = Crossing(to, here_);
      end.t = 1.0 - end.t;
    }
    // Not where only a point of the rectangle is touched.
    if (from.t < end.t && from.point != end.point) inside_.push_back({from, end});
  }
  here_ = to;
}

// Whether a way between two points outside shares more than a point with the rectangle.
bool RectangleCutter::IsCrossedBetween(const Vec2d& to) const {
  if (IsBeside(to)) return false;
  // Along a side, or with corners to the left and to the right.
  if (here_.x == to.x || here_.y == to.y) return true;
  const int sides[] = {
      Orientation(here_, to, box_.min), Orientation(here_, to, {box_.max.x, box_.min.y}),
      Orientation(here_, to, box_.max), Orientation(here_, to, {box_.min.x, box_.max.y})};
  const auto [least, most] = std::minmax_element(std::begin(sides), std::end(sides));
  return *least < 0 && *most > 0;
}

// Where the way from a point outside to another one comes into the rectangle, which it does.
Cut RectangleCutter::Crossing(const Vec2d& outside, const Vec2d& other) const {
  Cut crossing{0.0, outside};
  const auto meet = [&](double Vec2d::*along, double Vec2d::*across, double side) {
    const double share = std::min(ShareAt(outside.*along, other.*along, side), kMostShare);
    if (!(share >= crossing.t)) return;
    const double rest = ShareAt(other.*along, outside.*along, side);
    crossing.t = share;
    crossing.point.*along = side;
    crossing.point.*across = Between(outside.*across, other.*across, share, rest);
  };
  if (outside.x < box_.min.x) meet(&Vec2d::x, &Vec2d::y, box_.min.x);
  if (outside.x > box_.max.x) meet(&Vec2d::x, &Vec2d::y, box_.max.x);
  if (outside.y < box_.min.y) meet(&Vec2d::y, &Vec2d::x, box_.min.y);
  if (outside.y > box_.max.y) meet(&Vec2d::y, &Vec2d::x, box_.max.y);
  crossing.point.x = std::clamp(crossing.point.x, box_.min.x, box_.max.x);
  crossing.point.y = std::clamp(crossing.point.y, box_.min.y, box_.max.y);
  return crossing;
}

}  // namespace tarnis
