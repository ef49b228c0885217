// Writes ESRI ASCII grids. See docs/formats/ascii-grid.md.
#pragma once

#include <string>

#include "filters/lattice/LatticeWriter.h"

namespace trovan::filters {

// Takes uniform lattices of one plane and one component, of any element type; rows go from the top
// down. Each number is the shortest text that gives it back.
class AsciiGridWriter : public LatticeWriter {
 public:
  AsciiGridWriter(const std::wstring& path, const LatticeWriteOptions& options)
      : path_(path), options_(options) {}

  void Check(const LatticeHeader& header) const override;
  void Write(const LatticeHeader& header, LatticeRowSource& source) override;

 private:
  std::wstring path_;
  LatticeWriteOptions options_;
};

}  // namespace trovan::filters
