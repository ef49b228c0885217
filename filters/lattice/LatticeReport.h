// What a lattice file holds, after a look at every node.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <corvel/Progress.h>

#include "filters/lattice/Axes.h"
#include "filters/lattice/LatticeReader.h"

namespace trovan::filters {

// One component over all nodes. The range is that of the values that are neither invalid nor void.
struct ComponentReport {
  std::string name;  // may be empty
  std::optional<double> lowest;
  std::optional<double> highest;
  std::uint64_t valid = 0;
  std::uint64_t invalid = 0;  // NaN or infinite
  std::uint64_t voids = 0;    // the void value of the file
};

struct LatticeReport {
  LatticeHeader header;  // without the coordinates of axes
  std::vector<ComponentReport> components;
  // Uniform and rectilinear: how each axis is spaced.
  std::optional<std::array<AxisSpacing, 3>> axes;
  // Curvilinear: the range of X, Y and Z.
  std::optional<std::array<std::array<double, 2>, 3>> extent;
  // The library's summary, for uniform lattices and those that are equally spaced.
  std::wstring infoText;
};

// Reads the whole lattice. `name` is what the summary calls it. Nothing when it was cancelled.
//
// Raises FilterError for a file that is wrong.
std::optional<LatticeReport> ReportLattice(LatticeReader& reader, const std::wstring& name,
                                           double tolerancePercent, corvel::IProgress* progress);

}  // namespace trovan::filters
