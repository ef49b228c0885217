// The edges of a region, ordered by the places where they lie, so that what is asked about a place
// costs no more than the edges there.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include <corvel/Geometry.h>

namespace tarnis {

class Polygon2;

// A grid over the region. Each cell knows the edges that come near it, and whether its lower left
// corner is inside. There are two cells for each edge, so that most have none or a few, and fewer
// where long edges would be listed in too many.
class RegionIndex {
 public:
  explicit RegionIndex(const Polygon2& region);

  // Whether the point is inside or on an edge.
  bool Contains(const corvel::Vec2d& point) const;

 private:
  struct Edge {
    corvel::Vec2d a, b;
  };

  // Lines of the grid along one axis: cell i goes from lines[i] up to, but not including,
  // lines[i + 1].
  class Axis {
   public:
    // From below `low` to above `high`, in about `cells` cells; in fewer where the numbers do not
    // tell so many apart.
    void Divide(double low, double high, std::size_t cells);

    std::size_t Cells() const { return lines_.size() - 1; }
    double Line(std::size_t i) const { return lines_[i]; }
    bool Covers(double value) const { return value >= lines_.front() && value < lines_.back(); }

    // The cell of a value; the first or the last one for a value beside the grid.
    std::size_t CellOf(double value) const;

   private:
    std::vector<double> lines_{0.0, 0.0};
    double cellsPerUnit_ = 0.0;
  };

  static bool CrossesUpward(const Edge& edge, double x, double fromY, double toY);
  static bool CrossesAlong(const Edge& edge, const corvel::Vec2d& from, const corvel::Vec2d& to);
  static int PerturbedSide(const Edge& edge, const corvel::Vec2d& point);

  void TakeEdges(const Polygon2& region);
  void DivideBox(const corvel::Box2d& box);
  template <class Take>
  void ForEachCellOf(const Edge& edge, const Take& take) const;
  void ListEdges();
  void NoteCorners();

  std::size_t Cell(std::size_t column, std::size_t row) const {
    return row * columns_.Cells() + column;
  }
  std::span<const std::uint32_t> EdgesOf(std::size_t cell) const {
    return {listed_.data() + starts_[cell], listed_.data() + starts_[cell + 1]};
  }

  std::vector<Edge> edges_;
  Axis columns_;
  Axis rows_;
  std::vector<std::uint32_t> starts_;  // of each cell in listed_; one more at the end
  std::vector<std::uint32_t> listed_;  // edges
  std::vector<bool> isCornerInside_;
};

}  // namespace tarnis
