// What a VTK legacy file holds, and where. See docs/formats/vtk.md.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "filters/lattice/Lattice.h"
#include "filters/lattice/TextScanner.h"
#include "filters/lattice/VtkTypes.h"

namespace trovan::filters {

// A run of `tuples` times `components` elements of one type.
struct VtkArray {
  std::string name;  // UTF-8
  VtkType type;
  std::uint64_t components = 1;
  std::uint64_t tuples = 0;
  TextPlace place;  // of its first element
};

struct VtkHeader {
  std::string version;  // such as "3.0"
  std::string title;    // UTF-8
  bool isBinary = false;
  LatticeResequencer::LatticeType type = LatticeResequencer::Uniform;
  std::array<unsigned, 3> dimensions{};

  // Uniform: where the first node of the file lies, and the steps along x, y and z.
  std::optional<corvel::Vec3d> origin;
  std::optional<corvel::Vec3d> spacing;
  // Rectilinear: one for each of x, y and z.
  std::array<std::optional<VtkArray>, 3> axes;
  // Curvilinear.
  std::optional<VtkArray> points;

  std::vector<VtkArray> pointArrays;
  std::vector<std::string> cellArrays;   // names
  std::vector<std::string> fieldArrays;  // of the file as a whole; names
};

// Walks through the whole file: what is binary is skipped, what is text is looked at, for each word
// must be a number.
//
// Raises FilterError for a file that is no VTK legacy file, holds no lattice, ends too soon, or is
// otherwise wrong. Nothing that is taken is larger than the file.
VtkHeader ReadVtkHeader(TextScanner& scanner);

}  // namespace trovan::filters
