// The lines of a grid along one axis.
#pragma once

#include <cstddef>
#include <vector>

namespace tarnis {

// Cell i goes from line i up to, but not including, line i + 1.
class GridAxis {
 public:
  // From below `low` to above `high`, in about `cells` cells; in fewer where the numbers do not
  // tell so many apart.
  void Divide(double low, double high, std::size_t cells);

  std::size_t Cells() const { return lines_.size() - 1; }
  double Line(std::size_t i) const { return lines_[i]; }
  // The last line belongs to the axis, since it may be the largest double.
  bool Covers(double value) const { return value >= lines_.front() && value <= lines_.back(); }

  // The cell of a value; the first or the last one for a value beside the grid.
  std::size_t CellOf(double value) const {
    if (!(value > lines_.front())) return 0;
    if (value >= lines_.back()) return Cells() - 1;
    const double guess = (value - lines_.front()) * cellsPerUnit_;
    const std::size_t last = Cells() - 1;
    std::size_t cell = guess < static_cast<double>(last) ? static_cast<std::size_t>(guess) : last;
    while (value < lines_[cell]) --cell;
    while (value >= lines_[cell + 1]) ++cell;
    return cell;
  }

 private:
  std::vector<double> lines_{0.0, -1.0};  // covers nothing before it is divided
  double cellsPerUnit_ = 0.0;
};

}  // namespace tarnis
