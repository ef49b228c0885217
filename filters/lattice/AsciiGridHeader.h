// The keywords of an ESRI ASCII grid.
#pragma once

#include "filters/lattice/Lattice.h"
#include "filters/lattice/TextScanner.h"

namespace trovan::filters {

// Reads the keywords, which may stand in any order, and stops before the first value.
//
// Raises FilterError for a keyword that is missing, unknown or repeated, or whose number makes no
// sense.
LatticeHeader ReadAsciiGridHeader(TextScanner& scanner);

}  // namespace trovan::filters
