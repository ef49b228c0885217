#include "filters/lattice/EnviWriter.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

#include <corvel/BufferedFile.h>

#include "filters/lattice/EnviFiles.h"
#include "filters/lattice/EnviPlace.h"
#include "filters/lattice/RasterValues.h"
#include "filters/support/FilterError.h"
#include "filters/support/OutputFile.h"

namespace trovan::filters {
namespace {

void CheckForm(const LatticeHeader& header) {
  if (header.type == LatticeResequencer::Curvilinear) {
    throw FilterError(
        "an ENVI raster has no coordinates for its nodes, as this curvilinear lattice has: convert "
        "to .vtk instead");
  }
  if (header.type == LatticeResequencer::Rectilinear) {
    throw FilterError(
        "only equally spaced axes fit in an ENVI raster, and this lattice is rectilinear: convert "
        "to .vtk instead");
  }
}

bool IsStep(double spacing) { return std::isfinite(spacing) && spacing != 0.0; }

void CheckPlace(const LatticeHeader& header) {
  if (!IsStep(header.spacing.x) || !IsStep(header.spacing.y)) {
    throw FilterError("an ENVI raster needs steps between its nodes that are finite and not 0");
  }
  if (!std::isfinite(header.origin.x) || !std::isfinite(header.origin.y)) {
    throw FilterError("an ENVI raster needs an origin of finite numbers");
  }
}

void CheckSize(const LatticeHeader& header) {
  const std::uint64_t bands = std::uint64_t{header.planes} * header.components;
  if (header.columns == 0 || header.rows == 0 || bands == 0) {
    throw FilterError("a lattice without nodes cannot be written as an ENVI raster");
  }
  if (bands > std::numeric_limits<std::uint32_t>::max() || !RasterSize(header)) {
    throw FilterError("the lattice is too large for an ENVI raster");
  }
}

bool IsControl(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }

// Text that every reader of such headers takes for one value: on one line, without braces.
std::string Plain(std::string text) {
  for (char& c : text) {
    if (IsControl(c)) c = ' ';
    if (c == '{') c = '(';
    if (c == '}') c = ')';
  }
  return text;
}

// The same as an item of a list.
std::string PlainItem(std::string text) {
  std::replace(text.begin(), text.end(), ',', ';');
  return Plain(std::move(text));
}

}  // namespace

EnviWriter::EnviWriter(std::wstring path, const LatticeWriteOptions& options)
    : path_(std::move(path)), options_(options) {}

void EnviWriter::Check(const LatticeHeader& header) const {
  if (options_.asText) throw FilterError("an ENVI raster cannot have its values as text");
  CheckForm(header);
  if (header.dataType == corvel::kInt8) {
    throw FilterError(
        "ENVI has no signed 8-bit values: convert them with --type int16, or with --type uint8 if "
        "none is below 0");
  }
  CheckSize(header);
  CheckPlace(header);
  RequireOwnNames(NewEnviFiles(path_));
}

EnviHeader EnviWriter::HeaderFor(const LatticeHeader& lattice) const {
  constexpr ByteOrder kMachineOrder =
      kMachineIsBigEndian ? ByteOrder::kBigEndian : ByteOrder::kLittleEndian;
  EnviHeader envi;
  envi.samples = lattice.columns;
  envi.lines = lattice.rows;
  envi.bands = lattice.planes * lattice.components;
  envi.dataType = lattice.dataType;
  envi.interleave = options_.interleave.value_or(Interleave::kBandSequential);
  envi.byteOrder = options_.byteOrder.value_or(kMachineOrder);
  envi.dataIgnoreValue = lattice.voidValue;
  envi.mapInfo = MapInfoOf(lattice, options_.rowOrder.value_or(RowOrder::kTopDown));
  envi.description = Plain(lattice.title);
  if (lattice.planes == 1 && lattice.componentNames.size() == lattice.components) {
    for (const std::string& name : lattice.componentNames) {
      envi.bandNames.push_back(PlainItem(name));
    }
  }
  return envi;
}

void EnviWriter::Write(const LatticeHeader& header, LatticeRowSource& source) {
  const EnviHeader envi = HeaderFor(header);
  LatticeHeader stored = header;
  stored.rowOrder = options_.rowOrder.value_or(RowOrder::kTopDown);
  const RasterLayout layout(stored, envi.interleave, envi.byteOrder, envi.headerOffset);

  const EnviFiles files = NewEnviFiles(path_);
  OutputFile rawFile(files.raw);
  OutputFile headerFile(files.header);
  rawFile.Fill([&](corvel::CBufferedFile& to) { WriteRasterValues(to, layout, source); });
  headerFile.Fill([&](corvel::CBufferedFile& to) {
    const std::string text = FormatEnviHeader(envi);
    to.Write(text.data(), text.size());
  });
  RequireOwnNames(files);  // the values may have taken long
  CommitTogether(rawFile, headerFile);
}

}  // namespace trovan::filters
