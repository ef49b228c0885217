// Writes VTK legacy files, version 3.0, as text or binary. See docs/formats/vtk.md.
#pragma once

#include <string>

#include "filters/lattice/LatticeWriter.h"

namespace trovan::filters {

// Takes every lattice. Binary unless text is asked for; rows from the bottom up unless the other
// order is asked for, whose y then descends along the file.
//
// The array takes the name of the only component, or of all when they are named NAME[0], NAME[1]
// and so on; else "values". The format has no place for a void value: the number stays, what it
// means is lost.
class VtkWriter : public LatticeWriter {
 public:
  VtkWriter(const std::wstring& path, const LatticeWriteOptions& options)
      : path_(path), options_(options) {}

  void Check(const LatticeHeader& header) const override;
  void Write(const LatticeHeader& header, LatticeRowSource& source) override;

 private:
  std::wstring path_;
  LatticeWriteOptions options_;
};

}  // namespace trovan::filters
