// The axes of rectilinear lattices: how evenly their coordinates are spaced.
#pragma once

#include <string>

#include "filters/lattice/Lattice.h"

namespace trovan::filters {

// One axis of a lattice.
struct AxisSpacing {
  unsigned count = 0;
  double first = 0.0;
  double last = 0.0;
  double step = 1.0;                // the mean step; 1 for a single coordinate
  bool equal = true;                // within the tolerance; integers: exactly
  double deviationInPercent = 0.0;  // of the mean step: the largest error of a step
};

// REQUIRES: a rectilinear header; axis is 0 (columns), 1 (rows) or 2 (planes).
AxisSpacing MeasureAxis(const LatticeHeader& header, unsigned axis, double tolerancePercent);

// A rectilinear lattice as a uniform one with the mean steps of its axes.
//
// Raises FilterError when an axis is not equally spaced; the message names it and its deviation.
LatticeHeader AsUniform(const LatticeHeader& header, double tolerancePercent);

}  // namespace trovan::filters
