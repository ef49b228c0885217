// Colours and light for a grid of values.
#pragma once

#include "filters/lattice/CellMeans.h"
#include "filters/lattice/Preview.h"

namespace trovan::filters {

struct ColourRange {
  double lowest = 0.0;
  double highest = 0.0;
};

// The least and the greatest value of the grid; 0 and 0 when it has none.
ColourRange RangeOf(const CellGrid& grid);

// The grid as a picture of one pixel a cell. Values outside of the range get its end colours.
Picture Shaded(const CellGrid& grid, const ColourRange& range, PreviewStyle style);

}  // namespace trovan::filters
