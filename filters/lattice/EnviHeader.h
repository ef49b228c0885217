// The header of an ENVI raster: the text file beside the raw values. See docs/formats/envi.md.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <corvel/PrimType.h>

#include "filters/lattice/LatticeWriter.h"

namespace trovan::filters {

// Where the raster lies. Pixel (1, 1) is the upper left corner of the first pixel, (1.5, 1.5) its
// centre; y grows from row to row of the file.
struct EnviMapInfo {
  std::string projection;
  double pixelX = 1.0;  // the reference pixel
  double pixelY = 1.0;
  double easting = 0.0;  // where the reference pixel lies on the map
  double northing = 0.0;
  double xSize = 1.0;  // of a pixel; not 0
  double ySize = 1.0;  // not 0; below 0: the rows of the file run upward
  std::vector<std::string> further;

  friend bool operator==(const EnviMapInfo&, const EnviMapInfo&) = default;
};

struct EnviHeader {
  std::uint32_t samples = 0;  // columns; these three are never 0 in a header that was read
  std::uint32_t lines = 0;    // rows
  std::uint32_t bands = 0;
  std::uint64_t headerOffset = 0;  // bytes of the raw file before the first value
  corvel::PrimType dataType = corvel::kUInt8;
  Interleave interleave = Interleave::kBandSequential;
  ByteOrder byteOrder = ByteOrder::kLittleEndian;
  std::optional<double> dataIgnoreValue;
  std::optional<EnviMapInfo> mapInfo;
  std::vector<std::string> bandNames;
  std::string description;
  // The names of the fields that a raster may have and a lattice has not. Not written.
  std::vector<std::string> otherFields;

  friend bool operator==(const EnviHeader&, const EnviHeader&) = default;
};

// Reads the text of a header. A single band needs no interleave, values of one byte no byte order.
//
// Raises FilterError with `file`, the line and what was expected there; also for data types that no
// lattice has, and for rasters that are compressed or have gaps between their rows.
EnviHeader ParseEnviHeader(std::string_view text, const std::string& file);

// The text of a header; parsing it gives the same header, but for the other fields.
//
// REQUIRES: the type is not kInt8, which has no code; names hold no comma and no text a line break.
std::string FormatEnviHeader(const EnviHeader& header);

// "bsq", "bil" or "bip".
std::string_view InterleaveName(Interleave interleave);

}  // namespace trovan::filters
