#include "SegmentCutter.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "Between.h"
#include "Orientation.h"

namespace tarnis {

using corvel::Vec2d;

namespace {

constexpr double kLeastShare = 0x1p-53;

// Directions around a point are told from one that points up and very little to the right: whether
// the first half turn to the left from there, which is half 0, meets them, or the second one.
int HalfOf(const Vec2d& from, const Vec2d& to) {
  const bool isFirst = to.x < from.x || (to.x == from.x && to.y > from.y);
  return isFirst ? 0 : 1;
}

// Whether a turn to the left, from up, meets the direction to `ray` before it has gone past the
// direction to `to`.
bool IsMetBefore(const Vec2d& center, const Vec2d& ray, const Vec2d& to) {
  const int half = HalfOf(center, ray);
  const int halfOfEnd = HalfOf(center, to);
  if (half != halfOfEnd) return half < halfOfEnd;
  return Orientation(center, ray, to) >= 0;
}

// How far along the way a point of its line is.
double ShareOf(const Vec2d& from, const Vec2d& to, const Vec2d& point) {
  const bool isFlat =
      std::fabs(to.x / 2 - from.x / 2) > std::fabs(to.y / 2 - from.y / 2) || to.y == from.y;
  return isFlat ? ShareAt(from.x, to.x, point.x) : ShareAt(from.y, to.y, point.y);
}

}  // namespace

void SegmentCutter::MoveTo(const Vec2d& point) {
  here_ = point;
  place_ = index_.PlaceOf(point);
  quiet_ = index_.QuietBoxAround(point);
}

void SegmentCutter::LineTo(const Vec2d& to) {
  inside_.clear();
  crossings_.clear();
  insideLeft_.clear();
  if (StaysInQuiet(to)) return PassUndisturbed(to);
  isAtEdge_ = false;
  bool isNearEdge = false;
  edges_ = index_.EdgesNear(Edge{here_, to}, buffer_);
  const auto [left, right] = std::minmax(here_.x, to.x);
  const auto [low, high] = std::minmax(here_.y, to.y);
  for (const std::uint32_t i : edges_) {
    const Edge& edge = index_.EdgeAt(i);
    const bool isBeside =
        (edge.a.x < left && edge.b.x < left) || (edge.a.x > right && edge.b.x > right) ||
        (edge.a.y < low && edge.b.y < low) || (edge.a.y > high && edge.b.y > high);
    if (isBeside) continue;
    MeetEdge(edge, to);
    isNearEdge = true;
  }
  quiet_ = index_.QuietBoxAround(to);
  if (!isNearEdge) return PassUndisturbed(to);
  // The parity is that of a way just left of this one: it crosses no corner of the region, and
  // between two crossings this way is on the same side of the boundary, or on it.
  bool isInside = place_ == Place::kBoundary ? StartParity(to) : place_ == Place::kInside;
  NoteInsideLeft(isInside, to);
  isInside ^= crossings_.size() % 2 == 1;
  UniteSpans();
  here_ = to;
  place_ = isAtEdge_ ? Place::kBoundary : isInside ? Place::kInside : Place::kOutside;
}

// Without an edge on the way, all of it lies where it starts.
void SegmentCutter::PassUndisturbed(const Vec2d& to) {
  if (place_ == Place::kInside) {
    inside_.push_back({{0.0, here_}, {1.0, to}});
    insideLeft_.push_back({{0.0, here_}, {1.0, to}});
  }
  here_ = to;
}

// Whether the way just left of this one is inside where it starts: counts the boundary's directions
// between there and a point whose place is known.
bool SegmentCutter::StartParity(const Vec2d& to) const {
  bool isInside = index_.IsPerturbedInside(here_);
  for (const std::uint32_t i : edges_) {
    const Edge& edge = index_.EdgeAt(i);
    if (!IsOnSegment(here_, edge.a, edge.b)) continue;
    if (edge.a != here_) isInside ^= IsMetBefore(here_, edge.a, to);
    if (edge.b != here_) isInside ^= IsMetBefore(here_, edge.b, to);
  }
  return isInside;
}

void SegmentCutter::MeetEdge(const Edge& edge, const Vec2d& to) {
  const int sideOfA = Orientation(here_, to, edge.a);
  const int sideOfB = Orientation(here_, to, edge.b);
  if (sideOfA == sideOfB && sideOfA != 0) return;
  if (IsOnSegment(to, edge.a, edge.b)) isAtEdge_ = true;
  if (sideOfA == 0 && sideOfB == 0) {
    FollowEdge(edge, to);
  } else if ((sideOfA > 0) != (sideOfB > 0)) {
    CrossEdge(edge, to, sideOfA, sideOfB);
  }
}

// The edge lies on the line of the way: what both share is on the boundary.
void SegmentCutter::FollowEdge(const Edge& edge, const Vec2d& to) {
  Cut low{ShareOf(here_, to, edge.a), edge.a};
  Cut high{ShareOf(here_, to, edge.b), edge.b};
  if (low.t > high.t) std::swap(low, high);
  if (low.t < 0.0) low = {0.0, here_};
  if (high.t > 1.0) high = {1.0, to};
  if (low.t < high.t) inside_.push_back({low, high});
}

// Crossings at the ends of the way do not count: where it starts, StartParity knows of them, and
// where it ends, the next way does.
void SegmentCutter::CrossEdge(const Edge& edge, const Vec2d& to, int sideOfA, int sideOfB) {
  const int sideOfStart = Orientation(edge.a, edge.b, here_);
  const int sideOfEnd = Orientation(edge.a, edge.b, to);
  if (sideOfStart * sideOfEnd >= 0) return;
  const auto [before, rest] = SharesAtLine(edge.a, edge.b, here_, to);
  // Never quite an end of the way, for rounding.
  const double share = std::clamp(before, kLeastShare, 1.0 - kLeastShare);
  Vec2d point(Between(here_.x, to.x, share, rest), Between(here_.y, to.y, share, rest));
  if (edge.a.x == edge.b.x) point.x = edge.a.x;
  if (edge.a.y == edge.b.y) point.y = edge.a.y;
  if (sideOfA == 0) point = edge.a;
  if (sideOfB == 0) point = edge.b;
  crossings_.push_back({share, point});
}

void SegmentCutter::NoteInsideLeft(bool isInside, const Vec2d& to) {
  std::sort(crossings_.begin(), crossings_.end(),
            [](const Cut& one, const Cut& other) { return one.t < other.t; });
  Cut from{0.0, here_};
  const auto note = [&](const Cut& end) {
    if (isInside && from.t < end.t) insideLeft_.push_back({from, end});
    isInside = !isInside;
    from = end;
  };
  for (const Cut& crossing : crossings_) note(crossing);
  note({1.0, to});
}

// Parts that meet become one.
void SegmentCutter::UniteSpans() {
  inside_.insert(inside_.end(), insideLeft_.begin(), insideLeft_.end());
  if (inside_.size() < 2) return;
  std::sort(inside_.begin(), inside_.end(),
            [](const Span& one, const Span& other) { return one.from.t < other.from.t; });
  std::size_t last = 0;
  for (std::size_t i = 1; i < inside_.size(); ++i) {
    const bool meets =
        inside_[i].from.t <= inside_[last].to.t || inside_[i].from.point == inside_[last].to.point;
    if (!meets) {
      inside_[++last] = inside_[i];
    } else if (inside_[i].to.t > inside_[last].to.t) {
      inside_[last].to = inside_[i].to;
    }
  }
  inside_.resize(last + 1);
}

}  // namespace tarnis
