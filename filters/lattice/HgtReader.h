// Reads SRTM height tiles. See docs/formats/hgt.md.
#pragma once

#include <string>

#include <corvel/BufferedFile.h>

#include "filters/lattice/LatticeReader.h"

namespace trovan::filters {

class HgtReader : public LatticeReader {
 public:
  // Raises FilterError when the size is not that of a square of samples, corvel::Exception when the
  // file cannot be opened. The position comes from the name of the file.
  explicit HgtReader(const std::wstring& path);

  const LatticeHeader& Header() const override { return header_; }

  void ReadRows(LatticeRowSink& sink) override;

 private:
  LatticeHeader header_;
  corvel::CBufferedFile file_;
};

}  // namespace trovan::filters
