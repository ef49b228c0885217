#include "RegionIndex.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <tarnis/Polygon2.h>

#include "Between.h"
#include "Orientation.h"
#include "RingContacts.h"

namespace tarnis {

using corvel::Box2d;
using corvel::Vec2d;

namespace {

constexpr std::size_t kCellsForAnEdge = 2;
constexpr std::size_t kLeastCells = 1024;
constexpr double kPassagesForAnEdge = 16.0;
constexpr std::size_t kMostCells = std::size_t{1} << 22;
constexpr unsigned kMostQuiet = 255;
constexpr double kUlp = std::numeric_limits<double>::epsilon();

// Cells that are about as wide as high.
std::size_t ColumnsFor(double width, double height, std::size_t cells) {
  if (!(width > 0.0)) return 1;
  if (!(height > 0.0)) return cells;
  const double columns = std::sqrt(static_cast<double>(cells) * (width / height));
  return static_cast<std::size_t>(std::clamp(columns, 1.0, static_cast<double>(cells)));
}

// Whether the way straight up, between two points that are displaced as in PerturbedOrientation,
// crosses the edge.
bool CrossesUpward(const Edge& edge, double x, double fromY, double toY) {
  if ((edge.a.x <= x) == (edge.b.x <= x)) return false;
  return PerturbedOrientation(edge.a, edge.b, {x, fromY}) !=
         PerturbedOrientation(edge.a, edge.b, {x, toY});
}

void SortOnce(std::vector<std::uint32_t>& edges) {
  std::sort(edges.begin(), edges.end());
  edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
}

}  // namespace

RegionIndex::RegionIndex(const Polygon2& region) : edges_(region) {
  if (edges_.IsEmpty()) return;
  box_ = GetBoundingBox(region);
  DivideBox();
  ListEdges();
  NoteQuiet();
  NoteCorners();
  hasContacts_ = HaveContacts(*this);
  if (!hasContacts_) NoteSides();
}

void RegionIndex::DivideBox() {
  const std::size_t cells = std::clamp(kCellsForAnEdge * edges_.Size(), kLeastCells, kMostCells);
  // Halves: the whole may be more than any double.
  const double width = box_.max.x / 2 - box_.min.x / 2;
  const double height = box_.max.y / 2 - box_.min.y / 2;
  const std::size_t columns = ColumnsFor(width, height, cells);
  const std::size_t rows = std::max<std::size_t>(cells / columns, 1);
  // How often the edges will pass from one cell to the next.
  double passages = 0.0;
  for (const Edge& edge : edges_) {
    if (width > 0.0)
      passages += std::fabs(edge.b.x / 2 - edge.a.x / 2) / width * static_cast<double>(columns);
    if (height > 0.0)
      passages += std::fabs(edge.b.y / 2 - edge.a.y / 2) / height * static_cast<double>(rows);
  }
  const double allowed = std::fmax(kPassagesForAnEdge * static_cast<double>(edges_.Size()),
                                   4.0 * static_cast<double>(kLeastCells));
  const double share = std::fmin(1.0, allowed / std::fmax(passages, 1.0));
  const auto part = [share](std::size_t count) {
    return std::max<std::size_t>(1, static_cast<std::size_t>(static_cast<double>(count) * share));
  };
  columns_.Divide(box_.min.x, box_.max.x, part(columns));
  rows_.Divide(box_.min.y, box_.max.y, part(rows));
}

// Gives `take` each cell that the edge comes near, and perhaps some that it does not.
template <class Take>
void RegionIndex::ForEachCellOf(const Edge& edge, const Take& take) const {
  const bool isUpward = edge.a.y <= edge.b.y;
  const Vec2d& low = isUpward ? edge.a : edge.b;
  const Vec2d& high = isUpward ? edge.b : edge.a;
  const bool isSteep = low.y < high.y;
  const double least = std::min(low.x, high.x);
  const double most = std::max(low.x, high.x);
  // How far rounding may take the place where the edge crosses a line of the grid.
  const double slack = 8 * kUlp * (std::fabs(low.x) + std::fabs(high.x));
  const auto xAt = [&](double y) {
    if (y <= low.y) return low.x;
    if (y >= high.y) return high.x;
    const double share = ShareAt(low.y, high.y, y);
    return Between(low.x, high.x, share, 1.0 - share);
  };
  // An edge that only touches the upper line of a cell belongs to it, too.
  std::size_t row = rows_.CellOf(low.y);
  if (row > 0 && low.y == rows_.Line(row)) --row;
  for (const std::size_t last = rows_.CellOf(high.y); row <= last; ++row) {
    const double below = isSteep ? xAt(rows_.Line(row)) : low.x;
    const double above = isSteep ? xAt(rows_.Line(row + 1)) : high.x;
    const double from = std::max(least, std::min(below, above) - slack);
    const double to = std::min(most, std::max(below, above) + slack);
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
  for (std::uint32_t i = 0; i < edges_.Size(); ++i) {
    ForEachCellOf(edges_[i], [&](std::size_t cell) { listed_[next[cell]++] = i; });
  }
}

// In two passes (after Rosenfeld and Pfaltz, "Sequential operations in digital picture processing",
// 1966): from the neighbours that come before a cell, and from those that come after it.
void RegionIndex::NoteQuiet() {
  const std::size_t columns = columns_.Cells();
  const std::size_t rows = rows_.Cells();
  quiet_.assign(columns * rows, 0);
  const auto further = [](std::uint8_t a, std::uint8_t b, std::uint8_t c, std::uint8_t d) {
    const unsigned nearest = std::min({a, b, c, d});
    return static_cast<std::uint8_t>(std::min(nearest + 1, kMostQuiet));
  };
  const auto isAtBorder = [&](std::size_t column, std::size_t row) {
    return column == 0 || row == 0 || column + 1 == columns || row + 1 == rows;
  };
  for (std::size_t row = 0; row < rows; ++row) {
    for (std::size_t column = 0; column < columns; ++column) {
      const std::size_t cell = Cell(column, row);
      if (!EdgesOf(cell).empty()) continue;
      const std::uint8_t* here = &quiet_[cell];
      const std::uint8_t* below = here - columns;
      quiet_[cell] = isAtBorder(column, row) ? 1 : further(here[-1], below[-1], below[0], below[1]);
    }
  }
  for (std::size_t row = rows; row-- > 0;) {
    for (std::size_t column = columns; column-- > 0;) {
      if (isAtBorder(column, row)) continue;
      std::uint8_t* here = &quiet_[Cell(column, row)];
      const std::uint8_t* above = here + columns;
      *here = std::min(*here, further(here[1], above[-1], above[0], above[1]));
    }
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

// Above its highest corner, an outer ring is outside.
void RegionIndex::NoteSides() {
  isLeftInside_.resize(edges_.Rings());
  for (std::uint32_t ring = 0; ring < edges_.Rings(); ++ring) {
    const bool isOuter = !IsPerturbedInside(edges_[TopEdge(edges_, ring)].a);
    isLeftInside_[ring] = RunsCounterClockwise(edges_, ring) == isOuter;
  }
}

// Whether the point is inside, if `side` tells its side of each edge.
template <class Side>
bool RegionIndex::Parity(const Vec2d& point, const Side& side) const {
  const std::size_t column = columns_.CellOf(point.x);
  const std::size_t row = rows_.CellOf(point.y);
  const std::size_t cell = Cell(column, row);
  bool isInside = isCornerInside_[cell];
  // From the corner of the cell up, and then along to the point.
  const Vec2d turn(columns_.Line(column), point.y);
  for (const std::uint32_t index : EdgesOf(cell)) {
    const Edge& edge = edges_[index];
    isInside ^= CrossesUpward(edge, turn.x, rows_.Line(row), turn.y);
    if ((edge.a.y <= point.y) == (edge.b.y <= point.y)) continue;
    isInside ^= PerturbedOrientation(edge.a, edge.b, turn) != side(edge.a, edge.b, point);
  }
  return isInside;
}

Place RegionIndex::PlaceOf(const Vec2d& point) const {
  if (!Covers(point)) return Place::kOutside;
  for (const std::uint32_t index : EdgesOf(CellAround(point))) {
    if (IsOnSegment(point, edges_[index].a, edges_[index].b)) return Place::kBoundary;
  }
  const auto side = [](const auto& a, const auto& b, const auto& p) {
    return Orientation(a, b, p);
  };
  return Parity(point, side) ? Place::kInside : Place::kOutside;
}

bool RegionIndex::IsPerturbedInside(const Vec2d& point) const {
  const auto side = [](const auto& a, const auto& b, const auto& p) {
    return PerturbedOrientation(a, b, p);
  };
  return Covers(point) && Parity(point, side);
}

void RegionIndex::EdgesNear(const Box2d& box, std::vector<std::uint32_t>& edges) const {
  edges.clear();
  if (edges_.IsEmpty()) return;
  const bool isBeside = !(box.min.x <= box_.max.x && box.max.x >= box_.min.x &&
                          box.min.y <= box_.max.y && box.max.y >= box_.min.y);
  if (isBeside) return;
  const std::size_t first = columns_.CellOf(box.min.x);
  const std::size_t last = columns_.CellOf(box.max.x);
  const std::size_t lastRow = rows_.CellOf(box.max.y);
  for (std::size_t row = rows_.CellOf(box.min.y); row <= lastRow; ++row) {
    // The lists of the cells of a row lie one after the other.
    edges.insert(edges.end(), listed_.begin() + starts_[Cell(first, row)],
                 listed_.begin() + starts_[Cell(last, row) + 1]);
  }
  SortOnce(edges);
}

std::span<const std::uint32_t> RegionIndex::EdgesNear(const Edge& way,
                                                      std::vector<std::uint32_t>& buffer) const {
  if (edges_.IsEmpty()) return {};
  const auto [left, right] = std::minmax(way.a.x, way.b.x);
  const auto [low, high] = std::minmax(way.a.y, way.b.y);
  if (right < box_.min.x || left > box_.max.x || high < box_.min.y || low > box_.max.y) return {};
  const std::size_t cell = CellAround(way.a);
  if (CellAround(way.b) == cell) return EdgesOf(cell);
  buffer.clear();
  ForEachCellOf(way, [&](std::size_t near) {
    const auto edges = EdgesOf(near);
    buffer.insert(buffer.end(), edges.begin(), edges.end());
  });
  SortOnce(buffer);
  return buffer;
}

Box2d RegionIndex::QuietBoxAround(const Vec2d& point) const {
  if (!Covers(point)) return BoxBeside(point);
  const std::size_t column = columns_.CellOf(point.x);
  const std::size_t row = rows_.CellOf(point.y);
  const std::size_t reach = quiet_[Cell(column, row)];
  if (reach == 0) return {};
  return {columns_.Line(column + 1 - reach), rows_.Line(row + 1 - reach),
          columns_.Line(column + reach), rows_.Line(row + reach)};
}

// All that is on the same side of the grid as a point beside it.
Box2d RegionIndex::BoxBeside(const Vec2d& point) const {
  constexpr double kFar = std::numeric_limits<double>::infinity();
  Box2d beside(-kFar, -kFar, kFar, kFar);
  if (edges_.IsEmpty()) return beside;
  if (point.x < columns_.Line(0)) {
    beside.max.x = columns_.Line(0);
  } else if (point.x > columns_.Line(columns_.Cells())) {
    beside.min.x = std::nextafter(columns_.Line(columns_.Cells()), kFar);
  } else if (point.y < rows_.Line(0)) {
    beside.max.y = rows_.Line(0);
  } else {
    beside.min.y = std::nextafter(rows_.Line(rows_.Cells()), kFar);
  }
  return beside;
}

}  // namespace tarnis
