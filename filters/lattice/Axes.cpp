#include "filters/lattice/Axes.h"

#include <array>
#include <cstdio>

#include <trovan/TypedArrays.h>

#include "filters/lattice/NodeTypes.h"
#include "filters/support/FilterError.h"

namespace trovan::filters {
namespace {

constexpr std::array<const char*, 3> kNames = {"columns (X)", "rows (Y)", "planes (Z)"};

unsigned Count(const LatticeHeader& header, unsigned axis) {
  const std::array<unsigned, 3> counts = {header.columns, header.rows, header.planes};
  return counts[axis];
}

std::string Unequal(unsigned axis, double deviation, double tolerance) {
  char text[200];
  std::snprintf(text, sizeof text,
                "the %s are not equally spaced: a step is %.6G %% off the mean step, %.6G %% are "
                "allowed; write a .vtk file, which keeps the coordinates",
                kNames[axis], deviation, tolerance);
  return text;
}

}  // namespace

AxisSpacing MeasureAxis(const LatticeHeader& header, unsigned axis, double tolerancePercent) {
  const auto& coordinates = header.axes[axis];
  const auto size = static_cast<std::size_t>(corvel::CPrimType(header.coordType).Size());
  AxisSpacing spacing;
  spacing.count = Count(header, axis);
  spacing.first = corvel::CPrimData::GetWideReal(header.coordType, coordinates.data());
  spacing.last = corvel::CPrimData::GetWideReal(header.coordType,
                                                coordinates.data() + (spacing.count - 1) * size);
  if (spacing.count == 1) return spacing;
  spacing.step = (spacing.last - spacing.first) / (spacing.count - 1);
  spacing.deviationInPercent =
      MaxDeviationFromUniform(header.coordType, spacing.count, coordinates.data());
  // IsEquallySpaced allows descending steps of floating-point numbers no deviation at all.
  const bool descends = !IsInteger(header.coordType) && spacing.step < 0;
  spacing.equal = descends ? spacing.deviationInPercent <= tolerancePercent
                           : IsEquallySpaced(header.coordType, spacing.count, coordinates.data(),
                                             tolerancePercent);
  return spacing;
}

LatticeHeader AsUniform(const LatticeHeader& header, double tolerancePercent) {
  LatticeHeader uniform = header;
  uniform.type = LatticeResequencer::Uniform;
  std::array<AxisSpacing, 3> axes;
  for (unsigned axis = 0; axis < 3; ++axis) {
    axes[axis] = MeasureAxis(header, axis, tolerancePercent);
    if (!axes[axis].equal) {
      throw FilterError(Unequal(axis, axes[axis].deviationInPercent, tolerancePercent));
    }
    uniform.axes[axis].clear();
  }
  uniform.origin = {axes[0].first, axes[1].first, axes[2].first};
  uniform.spacing = {axes[0].step, axes[1].step, axes[2].step};
  return uniform;
}

}  // namespace trovan::filters
