// What a lattice file says about its nodes, in one form for all formats.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include <corvel/Geometry.h>
#include <corvel/PrimType.h>
#include <trovan/Sequence.h>

namespace trovan::filters {

// In which order a file stores the rows of a plane.
enum class RowOrder {
  kTopDown,   // the row with the largest y first, as pictures do
  kBottomUp,  // the row with the smallest y first
};

// A lattice of columns x rows x planes nodes, each with one or more components of one type.
//
// Wherever a row is counted, row 0 is the bottom one, whatever the order in the file.
struct LatticeHeader {
  LatticeResequencer::LatticeType type = LatticeResequencer::Uniform;
  unsigned columns = 0;
  unsigned rows = 0;
  unsigned planes = 1;
  unsigned components = 1;
  corvel::PrimType dataType = corvel::kFloat;

  // Uniform: where node (0, 0, 0) lies (the first column of the bottom row of the first plane), and
  // the signed steps to the next column, row and plane.
  corvel::Vec3d origin{0.0, 0.0, 0.0};
  corvel::Vec3d spacing{1.0, 1.0, 1.0};

  // Rectilinear and curvilinear: the element type of coordinates.
  corvel::PrimType coordType = corvel::kDouble;
  // Rectilinear: the coordinates of the columns, of the rows (bottom row first) and of the planes,
  // as packed elements of coordType.
  std::array<std::vector<unsigned char>, 3> axes;

  // How the file orders its rows.
  RowOrder rowOrder = RowOrder::kTopDown;

  // The number that stands for "no value" in the file.
  std::optional<double> voidValue;

  std::string title;                        // UTF-8
  std::vector<std::string> componentNames;  // empty, or one for each component; UTF-8

  // Such as "ENVI raster, band sequential, little-endian".
  std::string format;

  // What the file holds beyond this lattice and these fields, in sentences for the user.
  std::vector<std::string> remarks;
};

// The bytes of one row of nodes, or of one row of node coordinates.
inline std::size_t RowSize(const LatticeHeader& header) {
  return std::size_t{header.columns} * header.components *
         static_cast<std::size_t>(corvel::CPrimType(header.dataType).Size());
}
inline std::size_t CoordinateRowSize(const LatticeHeader& header) {
  return std::size_t{header.columns} * 3 *
         static_cast<std::size_t>(corvel::CPrimType(header.coordType).Size());
}

}  // namespace trovan::filters
