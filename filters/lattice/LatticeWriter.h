// One interface for all lattice formats: a writer asks for rows in the order that its file needs.
#pragma once

#include <optional>

#include "filters/lattice/Lattice.h"

namespace trovan::filters {

// Gives the rows of a lattice. What it raises (such as to cancel) goes through the writer.
class LatticeRowSource {
 public:
  virtual ~LatticeRowSource() = default;

  // Fills one row of nodes: RowSize bytes, the components of a node together.
  virtual void GiveRow(unsigned y, unsigned z, void* nodes) = 0;

  // Fills one row of node coordinates of a curvilinear lattice: CoordinateRowSize bytes.
  virtual void GiveCoordinateRow(unsigned y, unsigned z, void* coordinates) = 0;
};

// The order of an ENVI raster's values.
enum class Interleave {
  kBandSequential,  // bsq: band, row, column
  kBandByLine,      // bil: row, band, column
  kBandByPixel,     // bip: row, column, band
};

enum class ByteOrder { kLittleEndian, kBigEndian };

// What the user may choose. A writer refuses a choice that its format does not have.
struct LatticeWriteOptions {
  std::optional<Interleave> interleave;
  std::optional<RowOrder> rowOrder;
  std::optional<ByteOrder> byteOrder;
  bool asText = false;  // numbers as text, in formats that have both forms
};

class LatticeWriter {
 public:
  virtual ~LatticeWriter() = default;

  // Raises FilterError when the format cannot hold such a lattice, or not as the options want it:
  // with what is in the way and what helps. May look for files, but touches none.
  virtual void Check(const LatticeHeader& header) const = 0;

  // Writes the file or files under temporary names beside the final ones, and renames them when all
  // is written: whatever is raised, nothing half-written stays behind.
  //
  // REQUIRES: Check passes.
  virtual void Write(const LatticeHeader& header, LatticeRowSource& source) = 0;
};

}  // namespace trovan::filters
