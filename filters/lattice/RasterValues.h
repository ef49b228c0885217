// The values of a raw raster: a binary file of packed numbers in one of three orders.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include <corvel/BufferedFile.h>

#include "filters/lattice/LatticeReader.h"
#include "filters/lattice/LatticeWriter.h"
#include "filters/lattice/SwapBytes.h"

namespace trovan::filters {

// Where each value lies. Band number = plane * components + component.
struct RasterLayout {
  // For the lattice of `header`, with the row order that it states and `offset` bytes before its
  // first value.
  RasterLayout(const LatticeHeader& header, Interleave order, ByteOrder byteOrder,
               std::uint64_t offset);

  // The bytes of one row of one band, of one row of nodes, and of one row of all planes.
  std::size_t BandRowSize() const { return columns * elementSize; }
  std::size_t NodeRowSize() const { return BandRowSize() * components; }
  std::size_t FileRowSize() const { return NodeRowSize() * planes; }

  // The row of the lattice (0 is the bottom one) that is row `fileRow` of the file.
  unsigned LatticeRow(unsigned fileRow) const { return topDown ? rows - 1 - fileRow : fileRow; }

  // The offset of the first value of a row of a band in a band sequential file.
  std::uint64_t BandRowAt(unsigned plane, unsigned component, unsigned fileRow) const {
    const std::uint64_t band = std::uint64_t{plane} * components + component;
    return dataOffset + (band * rows + fileRow) * BandRowSize();
  }

  std::size_t columns;
  unsigned rows;
  unsigned planes;
  unsigned components;
  std::size_t elementSize;
  Interleave interleave;
  bool topDown;
  bool swapsBytes;  // the file's byte order is not the machine's
  std::uint64_t dataOffset;
};

// The bytes of all values; nothing when no file can have so many (more than 2^63 - 1).
std::optional<std::uint64_t> RasterSize(const LatticeHeader& header);

// Hands all rows to the sink. Takes memory for 4 MiB and a row, or for two rows of all planes
// where a row is longer than that.
//
// Raises FilterError when the file ends before its values do.
void ReadRasterValues(corvel::CBufferedFile& file, const RasterLayout& layout,
                      LatticeRowSink& sink);

// Writes all rows of the source; takes as much memory as reading.
void WriteRasterValues(corvel::CBufferedFile& file, const RasterLayout& layout,
                       LatticeRowSource& source);

}  // namespace trovan::filters
