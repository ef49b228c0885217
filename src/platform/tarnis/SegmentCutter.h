// A line of two points, cut where it crosses the boundary of a region.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include <corvel/Geometry.h>

#include "RegionIndex.h"

namespace tarnis {

// A point of a segment.
struct Cut {
  double t;  // from 0 at its start to 1 at its end
  corvel::Vec2d point;
};

// A part of a segment, from < to.
struct Span {
  Cut from, to;
};

// Goes along a line, segment by segment. What lies where is decided without error of rounding; only
// the crossings are rounded.
class SegmentCutter {
 public:
  explicit SegmentCutter(const RegionIndex& index) : index_(index) {}

  // Begins at a point.
  void MoveTo(const corvel::Vec2d& point);

  // Goes on to another point if it is seen at once that the way there meets no edge: all of it lies
  // where the cutter is. Otherwise stays and returns false. Inside and InsideLeft do not change.
  bool PassTo(const corvel::Vec2d& to) {
    if (!StaysInQuiet(to)) return false;
    here_ = to;
    return true;
  }

  // Goes on to another point, and finds the parts of the way that are inside.
  //
  // REQUIRES: `to` is not the point where the cutter is.
  void LineTo(const corvel::Vec2d& to);

  // Where the cutter is.
  Place Here() const { return place_; }

  // Of the last way, each as long as it can be, in its order. Parts along the boundary belong to
  // them.
  const std::vector<Span>& Inside() const { return inside_; }

  // Of the last way, those parts whose left side is inside: of which a strip to the left is.
  const std::vector<Span>& InsideLeft() const { return insideLeft_; }

 private:
  void PassUndisturbed(const corvel::Vec2d& to);
  bool StartParity(const corvel::Vec2d& to) const;
  void MeetEdge(const Edge& edge, const corvel::Vec2d& to);
  void FollowEdge(const Edge& edge, const corvel::Vec2d& to);
  void CrossEdge(const Edge& edge, const corvel::Vec2d& to, int sideOfA, int sideOfB);
  void NoteInsideLeft(bool isInside, const corvel::Vec2d& to);
  void UniteSpans();
  bool StaysInQuiet(const corvel::Vec2d& to) const {
    return to.x >= quiet_.min.x && to.x < quiet_.max.x && to.y >= quiet_.min.y &&
           to.y < quiet_.max.y;
  }

  const RegionIndex& index_;
  corvel::Vec2d here_;
  Place place_ = Place::kOutside;
  corvel::Box2d quiet_;                   // here, without any edge; perhaps empty
  std::span<const std::uint32_t> edges_;  // near the way
  std::vector<std::uint32_t> buffer_;     // of those
  std::vector<Cut> crossings_;
  std::vector<Span> insideLeft_;
  std::vector<Span> inside_;
  bool isAtEdge_ = false;  // the end of the way touches an edge
};

}  // namespace tarnis
