// Writes ENVI rasters. See docs/formats/envi.md.
#pragma once

#include <string>

#include "filters/lattice/EnviHeader.h"
#include "filters/lattice/LatticeWriter.h"

namespace trovan::filters {

class EnviWriter : public LatticeWriter {
 public:
  // `path` is that of the raw file, whose header gets the extension ".hdr", or that of the header,
  // whose raw file gets the extension ".img". By default band sequential, rows top down, in the
  // machine's byte order.
  EnviWriter(std::wstring path, const LatticeWriteOptions& options);

  // Refuses lattices that are not uniform, signed 8-bit values and numbers as text.
  void Check(const LatticeHeader& header) const override;

  // Replaces both files if they exist. Raises corvel::Exception when they cannot be written.
  void Write(const LatticeHeader& header, LatticeRowSource& source) override;

 private:
  EnviHeader HeaderFor(const LatticeHeader& lattice) const;

  std::wstring path_;
  LatticeWriteOptions options_;
};

}  // namespace trovan::filters
