// The part of an area that lies within a rectangle, found by walking along its border (after
// Weiler and Atherton, "Hidden surface removal using polygon area sorting", 1977).
#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include <corvel/Geometry.h>

#include <tarnis/Polygon2.h>

#include "RingList.h"

namespace tarnis {

// Takes the lines that bound an area under the even-odd rule, cuts them at the border, and closes
// the pieces along those parts of the border that are inside. Points on the border count as
// outside, so that what only touches it from there leaves nothing.
class BorderWalk {
 public:
  // Whether a point is inside the area that is a little further up than the given one, and again
  // much less further right.
  using IsInside = std::function<bool(const corvel::Vec2d&)>;

  // REQUIRES: the rectangle has an area.
  explicit BorderWalk(const corvel::Box2d& rectangle) : box_(rectangle) {}

  // A part of the area's boundary that starts and ends outside, and goes on somewhere.
  void AddOpenLine(const std::vector<corvel::Vec2d>& line);

  // A whole ring, open.
  void AddRing(const corvel::Vec2d* points, std::size_t count);

  // The rings of the area within the rectangle. Call once.
  Polygon2 Finish(const IsInside& isInside);

 private:
  // A place on the border, in the order of a walk around it counter-clockwise from the lower left
  // corner.
  struct Station {
    int side;      // 0 bottom, 1 right, 2 top, 3 left
    double along;  // grows with the walk
    corvel::Vec2d point;
    friend bool operator<(const Station& one, const Station& other) {
      return one.side != other.side ? one.side < other.side : one.along < other.along;
    }
  };
  // Where a piece of the boundary ends at the border.
  struct Crossing {
    Station station;
    std::size_t piece;
    bool isEnd;  // of the piece; otherwise its start
  };
  struct Piece {
    std::size_t first, count;        // in points_
    std::size_t start = 0, end = 0;  // crossings
  };

  bool IsWithin(const corvel::Vec2d& point) const;
  void AddEdge(const corvel::Vec2d& a, const corvel::Vec2d& b);
  bool PassesThrough(const corvel::Vec2d& a, const corvel::Vec2d& b, Station& in,
                     Station& out) const;
  Station StationTowards(const corvel::Vec2d& outside, const corvel::Vec2d& other,
                         double& share) const;
  Station At(int side, const corvel::Vec2d& point) const;
  corvel::Vec2d CornerBehind(int side) const;
  void BeginPiece(const Station& station);
  void EndPiece(const Station& station);

  void SortCrossings();
  bool IsBefore(const Crossing& one, const Crossing& other) const;
  corvel::Vec2d Inward(const Crossing& crossing) const;
  Station Reference() const;
  void FollowRing(std::size_t crossing, bool isOddInside, std::vector<bool>& isDone);
  void AddCorners(std::size_t from, std::size_t to, bool isForward);
  void TakePiece(const Piece& piece, bool isForward);
  void AddInnerRing(const Piece& ring, const IsInside& isInside);

  corvel::Box2d box_;
  std::vector<corvel::Vec2d> points_;  // of pieces and inner rings
  std::vector<Piece> pieces_;
  std::vector<Piece> innerRings_;
  std::vector<Crossing> crossings_;

  RingList rings_;
};

}  // namespace tarnis
