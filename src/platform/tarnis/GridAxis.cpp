#include "GridAxis.h"

#include <cmath>
#include <limits>

namespace tarnis {

void GridAxis::Divide(double low, double high, std::size_t cells) {
  constexpr double kMost = std::numeric_limits<double>::max();
  const double margin = high / 1024 - low / 1024;
  const double first = std::fmax(std::fmin(low - margin, std::nextafter(low, -kMost)), -kMost);
  const double last = std::fmin(std::fmax(high + margin, std::nextafter(high, kMost)), kMost);
  lines_.assign(1, first);
  for (std::size_t i = 1; i < cells; ++i) {
    const double share = static_cast<double>(i) / static_cast<double>(cells);
    const double line = first * (1.0 - share) + last * share;
    if (line > lines_.back() && line < last) lines_.push_back(line);
  }
  lines_.push_back(last);
  cellsPerUnit_ = static_cast<double>(Cells()) / (last - first);
}

}  // namespace tarnis
