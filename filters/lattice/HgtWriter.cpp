#include "filters/lattice/HgtWriter.h"

#include <cmath>
#include <utility>

#include <corvel/Text.h>

#include "filters/lattice/HgtTile.h"
#include "filters/lattice/RasterValues.h"
#include "filters/support/FilterError.h"
#include "filters/support/NumberText.h"
#include "filters/support/OutputFile.h"

namespace trovan::filters {
namespace {

// A thousandth of a step: far more than rounding, far less than a neighbour.
constexpr double kTolerance = 1e-3;

[[noreturn]] void Refuse(const std::string& reason) {
  throw FilterError("a height tile (.hgt) " + reason);
}

void CheckShape(const LatticeHeader& header) {
  if (header.type != LatticeResequencer::Uniform) {
    Refuse("has equally spaced samples, and this lattice is not uniform: convert to .vtk instead");
  }
  if (header.planes != 1) {
    Refuse("has one plane, the lattice has " + std::to_string(header.planes));
  }
  if (header.components != 1) {
    Refuse("has one value for each node, the lattice has " + std::to_string(header.components));
  }
  if (header.columns != header.rows || header.columns < 2) {
    Refuse("is a square of at least 2 x 2 samples, the lattice has " +
           std::to_string(header.columns) + " x " + std::to_string(header.rows));
  }
}

void CheckValues(const LatticeHeader& header) {
  if (header.dataType != corvel::kInt16) {
    Refuse("has signed 16-bit values: convert them with --type int16");
  }
  if (header.voidValue && *header.voidValue != kHgtVoid) {
    Refuse("marks missing values by -32768, the lattice by " + ShortestText(*header.voidValue) +
           ": replace that first");
  }
}

// Whether the samples have the step of a tile of one degree, up to the last of them.
bool IsOneDegree(const LatticeHeader& header) {
  const double step = HgtSpacing(header.columns);
  const auto fits = [&](double spacing) {
    return std::abs(spacing * (header.columns - 1) - 1.0) <= kTolerance * step;
  };
  return fits(header.spacing.x) && fits(header.spacing.y);
}

bool LiesAt(const LatticeHeader& header, corvel::Vec2d position) {
  const double most = kTolerance * HgtSpacing(header.columns);
  return std::abs(header.origin.x - position.x) <= most &&
         std::abs(header.origin.y - position.y) <= most;
}

}  // namespace

HgtWriter::HgtWriter(std::wstring path, const LatticeWriteOptions& options)
    : path_(std::move(path)), options_(options) {}

void HgtWriter::Check(const LatticeHeader& header) const {
  CheckOptions();
  CheckShape(header);
  CheckValues(header);
  CheckPosition(header);
}

void HgtWriter::CheckOptions() const {
  if (options_.asText) Refuse("cannot have its values as text");
  if (options_.interleave) Refuse("has one band and no interleave to choose");
  if (options_.rowOrder == RowOrder::kBottomUp) Refuse("has its top row first, always");
  if (options_.byteOrder == ByteOrder::kLittleEndian) Refuse("is big-endian, always");
}

void HgtWriter::CheckPosition(const LatticeHeader& header) const {
  const auto position = HgtPosition(path_);
  if (!position) return;
  const std::string name = corvel::Utf8FromWide(path_);
  if (!IsOneDegree(header)) {
    Refuse("named for a position covers one degree each way with its " +
           std::to_string(header.columns) + " samples to a side, and the steps of the lattice (" +
           ShortestText(header.spacing.x) + ", " + ShortestText(header.spacing.y) +
           ") do not: give " + name + " a name without a position, or convert to .hdr");
  }
  if (LiesAt(header, *position)) return;

  const double latitude = std::round(header.origin.y);
  const double longitude = std::round(header.origin.x);
  const bool isNameable = std::abs(latitude) <= 90.0 && std::abs(longitude) <= 180.0 &&
                          LiesAt(header, corvel::Vec2d(longitude, latitude));
  Refuse("tells by its name where it lies, and " + name + " is not where the lattice lies (" +
         ShortestText(header.origin.x) + ", " + ShortestText(header.origin.y) + "): " +
         (isNameable ? "name it " + HgtName(static_cast<int>(latitude), static_cast<int>(longitude))
                     : "give it a name without a position, or convert to .hdr"));
}

void HgtWriter::Write(const LatticeHeader& header, LatticeRowSource& source) {
  LatticeHeader stored = header;
  stored.rowOrder = RowOrder::kTopDown;
  OutputFile file(path_);
  const RasterLayout layout(stored, Interleave::kBandSequential, ByteOrder::kBigEndian, 0);
  file.Fill([&](corvel::CBufferedFile& to) { WriteRasterValues(to, layout, source); });
  file.Commit();
}

}  // namespace trovan::filters
