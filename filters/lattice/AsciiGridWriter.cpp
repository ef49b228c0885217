#include "AsciiGridWriter.h"

#include <cmath>
#include <limits>
#include <string_view>
#include <vector>

#include "filters/lattice/ElementText.h"
#include "filters/support/FilterError.h"
#include "filters/support/OutputFile.h"

namespace trovan::filters {
namespace {

void Require(bool isSo, std::string_view problem) {
  if (!isSo) throw FilterError("an ESRI ASCII grid " + std::string(problem));
}

std::string Number(double value) {
  std::string text;
  AppendNumber(text, value);
  return text;
}

// The lower left of a cell, from its centre. Only where the centre can be worked out again.
bool HasExactCorner(double centre, double step) { return (centre - step / 2) + step / 2 == centre; }

// A void value of floats is compared with floats: it is told as they are.
std::string NoDataText(const LatticeHeader& header, double value) {
  const bool fits = !(std::abs(value) > std::numeric_limits<float>::max());
  if (header.dataType != corvel::kFloat || !fits) return Number(value);
  const auto narrow = static_cast<float>(value);
  if (narrow != value) return Number(value);
  std::string text;
  AppendNumber(text, corvel::kFloat, &narrow);
  return text;
}

std::string HeaderText(const LatticeHeader& header) {
  std::string text =
      "ncols " + std::to_string(header.columns) + "\nnrows " + std::to_string(header.rows) + '\n';
  const double dx = header.spacing.x;
  const double dy = header.spacing.y;
  if (HasExactCorner(header.origin.x, dx) && HasExactCorner(header.origin.y, dy)) {
    text += "xllcorner " + Number(header.origin.x - dx / 2) + "\nyllcorner " +
            Number(header.origin.y - dy / 2) + '\n';
  } else {
    text +=
        "xllcenter " + Number(header.origin.x) + "\nyllcenter " + Number(header.origin.y) + '\n';
  }
  text +=
      dx == dy ? "cellsize " + Number(dx) + '\n' : "dx " + Number(dx) + "\ndy " + Number(dy) + '\n';
  if (header.voidValue) text += "NODATA_value " + NoDataText(header, *header.voidValue) + '\n';
  return text;
}

}  // namespace

void AsciiGridWriter::Check(const LatticeHeader& header) const {
  Require(header.type == LatticeResequencer::Uniform,
          "holds equally spaced nodes only; a VTK file (.vtk) holds this lattice");
  Require(header.planes == 1, "holds one plane, this lattice has " + std::to_string(header.planes) +
                                  "; an ENVI raster (.hdr) or a VTK file (.vtk) holds them all");
  Require(header.components == 1,
          "holds one component, this lattice has " + std::to_string(header.components) +
              "; an ENVI raster (.hdr) or a VTK file (.vtk) holds them all");
  Require(header.spacing.x > 0 && header.spacing.y > 0,
          "has columns that go east and rows that go north; a VTK file (.vtk) holds other steps");
  Require(std::isfinite(header.origin.x) && std::isfinite(header.origin.y) &&
              std::isfinite(header.spacing.x) && std::isfinite(header.spacing.y),
          "needs a finite position and finite steps");
  Require(options_.rowOrder != RowOrder::kBottomUp,
          "has its rows from the top down; leave the row order out, or write a VTK file (.vtk)");
  Require(!options_.interleave,
          "has one value a node and no interleave; leave it out, or write an ENVI raster (.hdr)");
  Require(!options_.byteOrder,
          "is text and has no byte order; leave it out, or write an ENVI raster (.hdr)");
}

void AsciiGridWriter::Write(const LatticeHeader& header, LatticeRowSource& source) {
  OutputFile output(path_);
  output.Fill([&](corvel::CBufferedFile& to) {
    const std::string text = HeaderText(header);
    to.Write(text.data(), text.size());
    std::vector<unsigned char> row(RowSize(header));
    for (unsigned y = header.rows; y-- > 0;) {
      source.GiveRow(y, 0, row.data());
      WriteLineOfNumbers(to, header.dataType, row.data(), header.columns);
    }
  });
  output.Commit();
}

}  // namespace trovan::filters
