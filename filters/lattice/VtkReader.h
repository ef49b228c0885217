// Reads the lattices of VTK legacy files, as text or binary. See docs/formats/vtk.md.
#pragma once

#include <string>

#include <corvel/BufferedFile.h>

#include "filters/lattice/LatticeReader.h"
#include "filters/lattice/TextScanner.h"
#include "filters/lattice/VtkHeader.h"

namespace trovan::filters {

// Structured points are uniform lattices, structured grids curvilinear ones. Where y descends along
// the file, the rows count as top-down; a structured grid counts as bottom-up, for its rows need
// not lie along y.
//
// The components of an array NAME are named NAME, or NAME[0], NAME[1] and so on.
class VtkReader : public LatticeReader {
 public:
  // Reads all but the values, of which it only checks that they are there. `arrayName` is the array
  // of point data to take; empty for the first. The header's remarks name what is left out.
  //
  // Raises FilterError for a file that makes no sense or has no such array, corvel::Exception when
  // it cannot be read.
  VtkReader(const std::wstring& path, const std::string& arrayName);

  const LatticeHeader& Header() const override { return header_; }
  void ReadRows(LatticeRowSink& sink) override;

 private:
  void ChooseArray(const std::string& name);
  void Describe();
  void PlaceUniform();
  void PlaceRectilinear();
  unsigned RowAt(unsigned place) const;
  void ReadRun(const VtkArray& array, void* elements, std::size_t count);

  corvel::CBufferedFile file_;
  TextScanner scanner_;
  VtkHeader vtk_;
  VtkArray array_;
  LatticeHeader header_;
};

}  // namespace trovan::filters
