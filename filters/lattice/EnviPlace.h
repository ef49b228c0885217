// Between the map info of an ENVI header and the place of a lattice.
#pragma once

#include <cstdint>
#include <optional>

#include "filters/lattice/EnviHeader.h"
#include "filters/lattice/Lattice.h"

namespace trovan::filters {

// Sets the origin, spacing and row order of the lattice by a raster of `lattice.rows` lines.
void PlaceLattice(const EnviMapInfo& info, LatticeHeader& lattice);

// The map info by which a raster with these rows in that order gets the place of the lattice, bit
// for bit. Nothing where a raster without map info has that place already.
//
// REQUIRES: the spacing in x and y is not 0.
std::optional<EnviMapInfo> MapInfoOf(const LatticeHeader& lattice, RowOrder rowOrder);

}  // namespace trovan::filters
