// The edges of a region, ordered by the places where they lie, so that what is asked about a place
// costs no more than the edges there.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include <corvel/Geometry.h>

#include "GridAxis.h"

namespace tarnis {

class Polygon2;

struct Edge {
  corvel::Vec2d a, b;
};

// Where a point lies.
enum class Place { kOutside, kInside, kBoundary };

// A grid over the region. Each cell knows the edges that come near it, and whether its lower left
// corner is inside. There are two cells for each edge, so that most have none or a few, and fewer
// where long edges would be listed in too many.
class RegionIndex {
 public:
  explicit RegionIndex(const Polygon2& region);

  // Around all edges.
  const corvel::Box2d& Box() const { return box_; }

  const Edge& EdgeAt(std::uint32_t edge) const { return edges_[edge]; }

  // The edges of the ring that has this one: from the first up to, but not including, the second
  // number. Each goes on where the one before it ends, and the first where the last ends.
  std::pair<std::uint32_t, std::uint32_t> RingOf(std::uint32_t edge) const;

  Place PlaceOf(const corvel::Vec2d& point) const;

  // Whether a point is inside that is a little further up than the given one, and again much less
  // further right; as in PerturbedOrientation.
  bool IsPerturbedInside(const corvel::Vec2d& point) const;

  // The edges that come near a place: all that touch it, and perhaps others. Each once, in
  // ascending order. The result is cleared first.
  void EdgesNear(const corvel::Box2d& box, std::vector<std::uint32_t>& edges) const;
  void EdgesNear(const Edge& segment, std::vector<std::uint32_t>& edges) const;

 private:
  template <class Take>
  void ForEachCellOf(const Edge& edge, const Take& take) const;
  void TakeEdges(const Polygon2& region);
  void DivideBox();
  void ListEdges();
  void NoteCorners();
  template <class Side>
  bool Parity(const corvel::Vec2d& point, const Side& side) const;
  std::size_t CellAround(const corvel::Vec2d& point) const {
    return Cell(columns_.CellOf(point.x), rows_.CellOf(point.y));
  }
  bool Covers(const corvel::Vec2d& point) const {
    return columns_.Covers(point.x) && rows_.Covers(point.y);
  }

  std::size_t Cell(std::size_t column, std::size_t row) const {
    return row * columns_.Cells() + column;
  }
  std::span<const std::uint32_t> EdgesOf(std::size_t cell) const {
    return {listed_.data() + starts_[cell], listed_.data() + starts_[cell + 1]};
  }

  corvel::Box2d box_;
  std::vector<Edge> edges_;
  std::vector<std::uint32_t> rings_;  // the first edge of each, and the number of all at the end
  GridAxis columns_;
  GridAxis rows_;
  std::vector<std::uint32_t> starts_;  // of each cell in listed_; one more at the end
  std::vector<std::uint32_t> listed_;  // edges
  std::vector<bool> isCornerInside_;
};

}  // namespace tarnis
