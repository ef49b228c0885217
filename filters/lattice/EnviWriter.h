// Writes ENVI rasters. See docs/formats/envi.md.
#pragma once

#include <string>

#include "filters/lattice/EnviHeader.h"
#include "filters/lattice/LatticeWriter.h"

namespace trovan::filters {

class EnviWriter : public LatticeWriter {
 public:
  // `path` is that of the raw file or of the header; NewEnviFiles names the other. By default band
  // sequential, rows top down, in the machine's byte order.
  EnviWriter(std::wstring path, const LatticeWriteOptions& options);

  // Refuses lattices that are not uniform, signed 8-bit values and numbers as text; and names that
  // would mix the raster up with another one beside it, which it looks for.
  void Check(const LatticeHeader& header) const override;

  // Replaces both files if they exist, or neither. Raises FilterError when they cannot be written,
  // or when names have been taken since Check.
  void Write(const LatticeHeader& header, LatticeRowSource& source) override;

 private:
  EnviHeader HeaderFor(const LatticeHeader& lattice) const;

  std::wstring path_;
  LatticeWriteOptions options_;
};

}  // namespace trovan::filters
