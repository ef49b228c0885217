// The edges of a region, ordered by the places where they lie, so that what is asked about a place
// costs no more than the edges there.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include <corvel/Geometry.h>

#include "EdgeRings.h"
#include "GridAxis.h"

namespace tarnis {

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

  const EdgeRings& Rings() const { return edges_; }
  const Edge& EdgeAt(std::uint32_t edge) const { return edges_[edge]; }

  // Whether edges meet, other than where one goes on from the other; see HaveContacts.
  bool HasContacts() const { return hasContacts_; }

  // Whether the region is to the left of the edges of a ring.
  //
  // REQUIRES: the region has no contacts.
  bool IsLeftInside(std::uint32_t ring) const { return isLeftInside_[ring]; }

  Place PlaceOf(const corvel::Vec2d& point) const;

  // Whether a point is inside that is a little further up than the given one, and again much less
  // further right; as in PerturbedOrientation.
  bool IsPerturbedInside(const corvel::Vec2d& point) const;

  // The edges that come near a place: all that touch it, and perhaps others. Each once, in
  // ascending order. The result is cleared first.
  void EdgesNear(const corvel::Box2d& box, std::vector<std::uint32_t>& edges) const;

  // The same for the way between two points. The result lies in the index or in `buffer`.
  std::span<const std::uint32_t> EdgesNear(const Edge& way,
                                           std::vector<std::uint32_t>& buffer) const;

  // A box around the point that no edge comes near; the empty box if the index knows of none. It
  // may reach to infinity. Points on its upper and right sides do not belong to it.
  corvel::Box2d QuietBoxAround(const corvel::Vec2d& point) const;

  // Whether `isMet` is true of any two edges that come near each other, the one of the lower number
  // first. Asks of some pairs more than once. Gives up after `mostPairs`, and returns true.
  template <class IsMet>
  bool AnyPairNear(std::size_t mostPairs, const IsMet& isMet) const {
    const std::size_t cells = columns_.Cells() * rows_.Cells();
    for (std::size_t cell = 0; cell < cells; ++cell) {
      const auto edges = EdgesOf(cell);
      const std::size_t pairs = edges.size() * edges.size() / 2;
      if (pairs > mostPairs) return true;
      mostPairs -= pairs;
      for (std::size_t i = 0; i < edges.size(); ++i) {
        for (std::size_t j = i + 1; j < edges.size(); ++j) {
          if (isMet(edges[i], edges[j])) return true;
        }
      }
    }
    return false;
  }

 private:
  template <class Take>
  void ForEachCellOf(const Edge& edge, const Take& take) const;
  void DivideBox();
  void ListEdges();
  void NoteQuiet();
  void NoteCorners();
  void NoteSides();
  corvel::Box2d BoxBeside(const corvel::Vec2d& point) const;
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
  EdgeRings edges_;
  GridAxis columns_;
  GridAxis rows_;
  std::vector<std::uint32_t> starts_;  // of each cell in listed_; one more at the end
  std::vector<std::uint32_t> listed_;  // edges
  // Of each cell, how many steps to a cell with edges or out of the grid, in any of the eight
  // directions.
  std::vector<std::uint8_t> quiet_;
  std::vector<bool> isCornerInside_;
  bool hasContacts_ = false;
  std::vector<bool> isLeftInside_;  // of each ring
};

}  // namespace tarnis
