// Which reader and which writer a file needs.
#pragma once

#include <memory>
#include <string>

#include "filters/lattice/LatticeReader.h"
#include "filters/lattice/LatticeWriter.h"

namespace trovan::filters {

// What the user may say about a file that does not tell it itself.
struct LatticeReadOptions {
  // ENVI has no planes: band = plane * components + component.
  unsigned planes = 1;
  // VTK: the array of point data to take; empty for the first.
  std::string array;
};

// Opens a lattice file by its extension: .asc, .hgt, .hdr or the raw file beside it, .vtk.
//
// Raises FilterError for an unknown format and for a header that makes no sense.
std::unique_ptr<LatticeReader> OpenLattice(const std::wstring& path,
                                           const LatticeReadOptions& options);

// The writer for a new file of that name; its extension tells the format.
std::unique_ptr<LatticeWriter> MakeLatticeWriter(const std::wstring& path,
                                                 const LatticeWriteOptions& options);

}  // namespace trovan::filters
