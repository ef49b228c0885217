// A plane of any size, averaged into a grid that fits a picture.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "filters/lattice/Lattice.h"

namespace trovan::filters {

// Values of the cells of a picture, top row first; NaN where there is none.
struct CellGrid {
  unsigned width = 0;
  unsigned height = 0;
  std::vector<double> values;

  double At(std::size_t x, std::size_t y) const { return values[y * width + x]; }
};

// Takes rows in any order and gives the mean of the nodes in each cell. Invalid and void nodes do
// not count.
class CellMeans {
 public:
  // The longer side of the grid has `most` cells, or as many as there are nodes.
  CellMeans(const LatticeHeader& header, unsigned component, unsigned most);

  // One row of nodes of all components; row 0 is the top one.
  void AddRow(unsigned row, const void* nodes);

  CellGrid Finish() const;

 private:
  corvel::PrimType type_;
  unsigned columns_;
  unsigned rows_;
  unsigned components_;
  unsigned component_;
  std::optional<double> voidValue_;
  unsigned width_;
  unsigned height_;
  std::vector<double> sums_;
  std::vector<std::uint64_t> counts_;
};

}  // namespace trovan::filters
