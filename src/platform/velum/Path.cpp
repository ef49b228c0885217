#include <velum/Path.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "Curves.h"

namespace velum {

using corvel::Box2d;
using corvel::Vec2d;

namespace {

Box2d Unflipped(const Box2d& box) {
  return {std::min(box.min.x, box.max.x), std::min(box.min.y, box.max.y),
          std::max(box.min.x, box.max.x), std::max(box.min.y, box.max.y)};
}

class BoundsOfCurves {
 public:
  void Move(const Vec2d& point) { box_ |= Box2d(point, point); }
  void Line(const Vec2d& point) { Move(point); }
  template <class Curve>
  void Take(const Curve& curve) {
    box_ |= curve.Bounds();
  }
  void Close() {}
  const Box2d& Box() const { return box_; }

 private:
  Box2d box_;
};

class Flattener {
 public:
  Flattener(double tolerance, int most) : tolerance_(tolerance), most_(most) {}

  void Move(const Vec2d& point) {
    EndRing();
    points_.push_back(point);
  }
  void Line(const Vec2d& point) { points_.push_back(point); }
  template <class Curve>
  void Take(const Curve& curve) {
    AppendLines(curve, tolerance_, most_, points_);
  }
  void Close() {}

  tarnis::Polygon2 Finish() {
    EndRing();
    return {std::move(points_), std::move(counts_)};
  }

 private:
  // A ring ends in front of its first point.
  void EndRing() {
    while (points_.size() > start_ + 1 && points_.back() == points_[start_]) points_.pop_back();
    if (points_.size() < start_ + 2) points_.resize(start_);
    if (points_.size() > start_)
      counts_.push_back(static_cast<unsigned int>(points_.size() - start_));
    start_ = points_.size();
  }

  double tolerance_;
  int most_;
  std::vector<Vec2d> points_;
  std::vector<unsigned int> counts_;
  std::size_t start_ = 0;  // of the ring
};

}  // namespace

void Path::MoveTo(const Vec2d& point) {
  verbs_.push_back(Verb::kMove);
  points_.push_back(point);
  start_ = point;
}

// Behind Close an outline starts where the last one did.
void Path::StartIfNeeded(const Vec2d& point) {
  if (verbs_.empty()) {
    MoveTo(point);
  } else if (verbs_.back() == Verb::kClose) {
    MoveTo(start_);
  }
}

void Path::LineTo(const Vec2d& point) {
  if (verbs_.empty()) return MoveTo(point);
  StartIfNeeded(point);
  verbs_.push_back(Verb::kLine);
  points_.push_back(point);
}

void Path::CurveTo(const Vec2d& control1, const Vec2d& control2, const Vec2d& point) {
  StartIfNeeded(control1);
  verbs_.push_back(Verb::kCurve);
  points_.insert(points_.end(), {control1, control2, point});
}

void Path::QuarterTo(const Vec2d& center, const Vec2d& point) {
  StartIfNeeded(point);
  verbs_.push_back(Verb::kQuarter);
  points_.insert(points_.end(), {center, point});
}

void Path::Close() {
  if (!verbs_.empty() && verbs_.back() != Verb::kClose) verbs_.push_back(Verb::kClose);
}

void Path::AddRect(const Box2d& box) {
  if (box.IsEmpty()) return;
  const Box2d b = Unflipped(box);
  MoveTo(b.min);
  LineTo({b.max.x, b.min.y});
  LineTo(b.max);
  LineTo({b.min.x, b.max.y});
  Close();
}

void Path::AddRoundRect(const Box2d& box, double xRadius, double yRadius) {
  if (box.IsEmpty()) return;
  const Box2d b = Unflipped(box);
  const double x = std::min(std::fabs(xRadius), b.Width() / 2);
  const double y = std::min(std::fabs(yRadius), b.Height() / 2);
  const Vec2d low(b.min.x + x, b.min.y + y);
  const Vec2d high(b.max.x - x, b.max.y - y);
  MoveTo({low.x, b.min.y});
  LineTo({high.x, b.min.y});
  QuarterTo({high.x, low.y}, {b.max.x, low.y});
  LineTo({b.max.x, high.y});
  QuarterTo(high, {high.x, b.max.y});
  LineTo({low.x, b.max.y});
  QuarterTo({low.x, high.y}, {b.min.x, high.y});
  LineTo({b.min.x, low.y});
  QuarterTo(low, {low.x, b.min.y});
  Close();
}

void Path::AddEllipse(const Box2d& box) {
  if (box.IsEmpty()) return;
  const Box2d b = Unflipped(box);
  const Vec2d center = b.Center();
  MoveTo({b.max.x, center.y});
  QuarterTo(center, {center.x, b.max.y});
  QuarterTo(center, {b.min.x, center.y});
  QuarterTo(center, {center.x, b.min.y});
  QuarterTo(center, {b.max.x, center.y});
  Close();
}

void Path::Transform(const corvel::Mat4d& matrix) {
  matrix.Transform(points_.data(), points_.data(), points_.size());
  matrix.Transform(&start_, &start_, 1);
}

// Shows the visitor each piece of the outlines.
template <class Visitor>
void Path::Visit(Visitor& visitor) const {
  const Vec2d* next = points_.data();
  Vec2d here;
  for (const Verb verb : verbs_) {
    switch (verb) {
      case Verb::kMove:
        visitor.Move(next[0]);
        here = *next++;
        break;
      case Verb::kLine:
        visitor.Line(next[0]);
        here = *next++;
        break;
      case Verb::kCurve:
        visitor.Take(CubicCurve{here, next[0], next[1], next[2]});
        here = next[2];
        next += 3;
        break;
      case Verb::kQuarter:
        visitor.Take(QuarterEllipse{next[0], here, next[1]});
        here = next[1];
        next += 2;
        break;
      case Verb::kClose:
        visitor.Close();
        break;
    }
  }
}

Box2d Path::GetBounds() const {
  BoundsOfCurves bounds;
  Visit(bounds);
  return bounds.Box();
}

tarnis::Polygon2 Path::GetFlatPolygon(double tolerance, int depth) const {
  Flattener flattener(tolerance, 1 << depth);
  Visit(flattener);
  return flattener.Finish();
}

}  // namespace velum
