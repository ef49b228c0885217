#include "filters/lattice/EnviPlace.h"

#include <cmath>

namespace trovan::filters {
namespace {

constexpr double kFirstCentre = 1.5;  // of the first pixel, in pixel coordinates

// The pixel coordinate y of the centres of the bottom row.
double BottomRowAt(unsigned rows, RowOrder rowOrder) {
  return rowOrder == RowOrder::kTopDown ? rows - 1 + kFirstCentre : kFirstCentre;
}

// What ENVI's own files have in this place for rasters without a projection.
const EnviMapInfo kArbitrary{"Arbitrary", 1.0, 1.0, 0.0, 0.0, 1.0, 1.0, {"0", "North"}};

bool SamePlace(const LatticeHeader& a, const LatticeHeader& b) {
  return a.origin.x == b.origin.x && a.origin.y == b.origin.y;
}

}  // namespace

void PlaceLattice(const EnviMapInfo& info, LatticeHeader& lattice) {
  lattice.rowOrder = info.ySize < 0.0 ? RowOrder::kBottomUp : RowOrder::kTopDown;
  lattice.spacing.x = info.xSize;
  lattice.spacing.y = std::abs(info.ySize);
  const double y = BottomRowAt(lattice.rows, lattice.rowOrder);
  lattice.origin.x = info.easting + (kFirstCentre - info.pixelX) * info.xSize;
  lattice.origin.y = info.northing - (y - info.pixelY) * info.ySize;
}

std::optional<EnviMapInfo> MapInfoOf(const LatticeHeader& lattice, RowOrder rowOrder) {
  const bool isPlain = lattice.origin.x == 0.0 && lattice.origin.y == 0.0 &&
                       lattice.spacing.x == 1.0 && lattice.spacing.y == 1.0;
  if (isPlain && rowOrder == RowOrder::kTopDown) return std::nullopt;

  EnviMapInfo info = kArbitrary;
  info.xSize = lattice.spacing.x;
  info.ySize = rowOrder == RowOrder::kTopDown ? lattice.spacing.y : -lattice.spacing.y;
  // By custom the reference is the outer corner of the first pixel.
  const double y = BottomRowAt(lattice.rows, rowOrder);
  info.easting = lattice.origin.x - (kFirstCentre - info.pixelX) * info.xSize;
  info.northing = lattice.origin.y + (y - info.pixelY) * info.ySize;
  LatticeHeader read = lattice;
  PlaceLattice(info, read);
  if (SamePlace(read, lattice) && std::isfinite(info.easting) && std::isfinite(info.northing)) {
    return info;
  }
  // Where rounding would move the lattice, the reference is its own first node.
  info.pixelX = kFirstCentre;
  info.pixelY = y;
  info.easting = lattice.origin.x;
  info.northing = lattice.origin.y;
  return info;
}

}  // namespace trovan::filters
