#include "filters/lattice/CellMeans.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "filters/lattice/NodeTypes.h"

namespace trovan::filters {
namespace {

// Sums are kept in 2^64ths, so that no count of nodes makes one overflow.
constexpr double kScale = 0x1p-64;

// A side of `nodes` nodes when the longer one, of `longest`, gets at most `most` cells.
unsigned Cells(unsigned nodes, unsigned longest, unsigned most) {
  if (longest <= most) return nodes;
  const auto cells = static_cast<unsigned>(std::uint64_t{nodes} * most / longest);
  return std::max(1U, cells);
}

// The cell of a node; the last node lies in the last cell.
std::size_t CellOf(unsigned node, unsigned nodes, unsigned cells) {
  return static_cast<std::size_t>(std::uint64_t{node} * cells / nodes);
}

}  // namespace

CellMeans::CellMeans(const LatticeHeader& header, unsigned component, unsigned most)
    : type_(header.dataType),
      columns_(header.columns),
      rows_(header.rows),
      components_(header.components),
      component_(component),
      width_(Cells(columns_, std::max(columns_, rows_), most)),
      height_(Cells(rows_, std::max(columns_, rows_), most)),
      sums_(std::size_t{width_} * height_),
      counts_(sums_.size()) {
  if (header.voidValue) voidValue_ = StoredValue(type_, *header.voidValue);
}

void CellMeans::AddRow(unsigned row, const void* nodes) {
  const std::size_t first = CellOf(row, rows_, height_) * width_;
  VisitElementType(type_, [&](auto stored) {
    const auto* element = static_cast<const unsigned char*>(nodes) + component_ * sizeof stored;
    for (unsigned x = 0; x < columns_; ++x, element += components_ * sizeof stored) {
      std::memcpy(&stored, element, sizeof stored);
      const auto value = static_cast<double>(stored);
      if (!std::isfinite(value) || (voidValue_ && value == *voidValue_)) continue;
      const std::size_t cell = first + CellOf(x, columns_, width_);
      sums_[cell] += value * kScale;
      ++counts_[cell];
    }
  });
}

CellGrid CellMeans::Finish() const {
  CellGrid grid{width_, height_, std::vector<double>(sums_.size())};
  for (std::size_t i = 0; i < sums_.size(); ++i) {
    const double mean = sums_[i] / static_cast<double>(counts_[i]) / kScale;
    grid.values[i] = counts_[i] == 0 ? std::numeric_limits<double>::quiet_NaN()
                                     : std::clamp(mean, std::numeric_limits<double>::lowest(),
                                                  std::numeric_limits<double>::max());
  }
  return grid;
}

}  // namespace trovan::filters
