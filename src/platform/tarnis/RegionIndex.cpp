#include "RegionIndex.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <tarnis/Polygon2.h>

#include "Orientation.h"

namespace tarnis {

using corvel::Box2d;
using corvel::Vec2d;

namespace {

constexpr std::size_t kCellsForAnEdge = 2;
constexpr double kPassagesForAnEdge = 16.0;
constexpr std::size_t kMostCells = std::size_t{1} << 22;
constexpr double kUlp = std::numeric_limits<double>::epsilon();

// Cells that are about as wide as high.
std::size_t ColumnsFor(double width, double height, std::size_t cells) {
  if (!(width > 0.0)) return 1;
  if (!(height > 0.0)) return cells;
  const double columns = std::sqrt(static_cast<double>(cells) * width / height);
  return static_cast<std::size_t>(std::clamp(columns, 1.0, static_cast<double>(cells)));
}

}  // namespace

void RegionIndex::Axis::Divide(double low, double high, std::size_t cells) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const double margin = (high - low) / 1024;
  const double first = std::fmin(low - margin, std::nextafter(low, -kInfinity));
  const double last = std::fmax(high + margin, std::nextafter(high, kInfinity));
  lines_.assign(1, first);
  for (std::size_t i = 1; i < cells; ++i) {
    const double share = static_cast<double>(i) / static_cast<double>(cells);
    const double line = first * (1.0 - share) + last * share;
    if (line > lines_.back() && line < last) lines_.push_back(line);
  }
  lines_.push_back(last);
  cellsPerUnit_ = static_cast<double>(Cells()) / (last - first);
}

std::size_t RegionIndex::Axis::CellOf(double value) const {
  if (!(value > lines_.front())) return 0;
  if (value >= lines_.back()) return Cells() - 1;
  const double guess = (value - lines_.front()) * cellsPerUnit_;
  std::size_t cell = std::min(static_cast<std::size_t>(guess), Cells() - 1);
  while (value < lines_[cell]) --cell;
  while (value >= lines_[cell + 1]) ++cell;
  return cell;
}

RegionIndex::RegionIndex(const Polygon2& region) {
  TakeEdges(region);
  if (edges_.empty()) return;
  DivideBox(GetBoundingBox(region));
  ListEdges();
  NoteCorners();
}

void RegionIndex::TakeEdges(const Polygon2& region) {
  edges_.reserve(region.Points().size());
  const Vec2d* ring = region.Points().data();
  for (const unsigned int count : region.Counts()) {
    for (unsigned int i = 0; i < count; ++i) {
      edges_.push_back({ring[i], ring[i + 1 < count ? i + 1 : 0]});
    }
    ring += count;
  }
}

void RegionIndex::DivideBox(const Box2d& box) {
  const std::size_t cells = std::min(kCellsForAnEdge * edges_.size(), kMostCells);
  const double width = box.Width();
  const double height = box.Height();
  const std::size_t columns = ColumnsFor(width, height, cells);
  const std::size_t rows = std::max<std::size_t>(cells / columns, 1);
  // How often the edges will pass from one cell to the next.
  double passages = 0.0;
  for (const Edge& edge : edges_) {
    if (width > 0.0)
      passages += std::fabs(edge.b.x - edge.a.x) / width * static_cast<double>(columns);
    if (height > 0.0)
      passages += std::fabs(edge.b.y - edge.a.y) / height * static_cast<double>(rows);
  }
  const double allowed = kPassagesForAnEdge * static_cast<double>(edges_.size());
  const double share = std::fmin(1.0, allowed / std::fmax(passages, 1.0));
  const auto part = [share](std::size_t count) {
    return std::max<std::size_t>(1, static_cast<std::size_t>(static_cast<double>(count) * share));
  };
  columns_.Divide(box.min.x, box.max.x, part(columns));
  rows_.Divide(box.min.y, box.max.y, part(rows));
}

// Gives `take` each cell that the edge comes near, and perhaps some that it does not.
template <class Take>
void RegionIndex::ForEachCellOf(const Edge& edge, const Take& take) const {
  const bool isUpward = edge.a.y <= edge.b.y;
  const Vec2d& low = isUpward ? edge.a : edge.b;
  const Vec2d& high = isUpward ? edge.b : edge.a;
  const double least = std::fmin(low.x, high.x);
  const double most = std::fmax(low.x, high.x);
  // How far rounding may take the place where the edge crosses a line of the grid.
  const double slack = 8 * kUlp * (std::fabs(low.x) + std::fabs(high.x));
  const double height = high.y - low.y;
  const auto xAt = [&](double y) {
    if (y <= low.y) return low.x;
    if (y >= high.y) return high.x;
    return low.x + (high.x - low.x) * ((y - low.y) / height);
  };
  // An edge that only touches the upper line of a cell belongs to it, too.
  std::size_t row = rows_.CellOf(low.y);
  if (row > 0 && low.y == rows_.Line(row)) --row;
  for (const std::size_t last = rows_.CellOf(high.y); row <= last; ++row) {
    const double below = height > 0.0 ? xAt(rows_.Line(row)) : low.x;
    const double above = height > 0.0 ? xAt(rows_.Line(row + 1)) : high.x;
    const double from = std::fmax(least, std::fmin(below, above) - slack);
    const double to = std::fmin(most, std::fmax(below, above) + slack);
    for (std::size_t column = columns_.CellOf(from); column <= columns_.CellOf(to); ++column) {
      take(Cell(column, row));
    }
  }
}

// Counts, then fills: the lists of all cells lie one after the other.
void RegionIndex::ListEdges() {
  const std::size_t cells = columns_.Cells() * rows_.Cells();
  starts_.assign(cells + 1, 0);
  for (const Edge& edge : edges_) {
    ForEachCellOf(edge, [this](std::size_t cell) { ++starts_[cell + 1]; });
  }
  for (std::size_t cell = 0; cell < cells; ++cell) starts_[cell + 1] += starts_[cell];
  listed_.resize(starts_.back());
  std::vector<std::uint32_t> next(starts_.begin(), starts_.end() - 1);
  for (std::size_t i = 0; i < edges_.size(); ++i) {
    ForEachCellOf(edges_[i],
                  [&](std::size_t cell) { listed_[next[cell]++] = static_cast<std::uint32_t>(i); });
  }
}

// Below the grid is outside; from there upward each edge that is crossed changes sides.
void RegionIndex::NoteCorners() {
  isCornerInside_.assign(columns_.Cells() * rows_.Cells(), false);
  for (std::size_t column = 0; column < columns_.Cells(); ++column) {
    bool isInside = false;
    for (std::size_t row = 0; row < rows_.Cells(); ++row) {
      const std::size_t cell = Cell(column, row);
      isCornerInside_[cell] = isInside;
      for (const std::uint32_t edge : EdgesOf(cell)) {
        isInside ^= CrossesUpward(edges_[edge], columns_.Line(column), rows_.Line(row),
                                  rows_.Line(row + 1));
      }
    }
  }
}

// The side of the edge on which a point lies that is a little further up than the given one, and
// again much less further right: never on the edge, unless that is a point.
int RegionIndex::PerturbedSide(const Edge& edge, const Vec2d& point) {
  const int side = Orientation(edge.a, edge.b, point);
  if (side != 0) return side;
  if (edge.b.x != edge.a.x) return edge.b.x > edge.a.x ? 1 : -1;
  return edge.b.y > edge.a.y ? -1 : 1;
}

// Whether the way straight up, between two points that are displaced as above, crosses the edge.
bool RegionIndex::CrossesUpward(const Edge& edge, double x, double fromY, double toY) {
  if ((edge.a.x <= x) == (edge.b.x <= x)) return false;
  return PerturbedSide(edge, {x, fromY}) != PerturbedSide(edge, {x, toY});
}

// The same for the way along x, to a point that is on no edge.
bool RegionIndex::CrossesAlong(const Edge& edge, const Vec2d& from, const Vec2d& to) {
  if ((edge.a.y <= to.y) == (edge.b.y <= to.y)) return false;
  return PerturbedSide(edge, from) != Orientation(edge.a, edge.b, to);
}

bool RegionIndex::Contains(const Vec2d& point) const {
  if (!columns_.Covers(point.x) || !rows_.Covers(point.y)) return false;
  const std::size_t column = columns_.CellOf(point.x);
  const std::size_t row = rows_.CellOf(point.y);
  const std::size_t cell = Cell(column, row);
  bool isInside = isCornerInside_[cell];
  // From the corner of the cell up, and then along to the point.
  const Vec2d turn(columns_.Line(column), point.y);
  for (const std::uint32_t index : EdgesOf(cell)) {
    const Edge& edge = edges_[index];
    if (IsOnSegment(point, edge.a, edge.b)) return true;
    isInside ^= CrossesUpward(edge, turn.x, rows_.Line(row), turn.y);
    isInside ^= CrossesAlong(edge, turn, point);
  }
  return isInside;
}

}  // namespace tarnis
