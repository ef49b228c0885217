// Writes SRTM height tiles. See docs/formats/hgt.md.
#pragma once

#include <string>

#include "filters/lattice/LatticeWriter.h"

namespace trovan::filters {

class HgtWriter : public LatticeWriter {
 public:
  HgtWriter(std::wstring path, const LatticeWriteOptions& options);

  // Takes a uniform square of one plane of 16-bit integers whose void value, if any, is -32768. A
  // name that tells a position must tell that of the lattice, within a thousandth of a step.
  void Check(const LatticeHeader& header) const override;

  // Replaces the file if it exists. Raises FilterError when it cannot be written.
  void Write(const LatticeHeader& header, LatticeRowSource& source) override;

 private:
  void CheckOptions() const;
  void CheckPosition(const LatticeHeader& header) const;

  std::wstring path_;
  LatticeWriteOptions options_;
};

}  // namespace trovan::filters
