// From one lattice file to another through the resequencer: rows in the order of the one, rows out
// in the order of the other, however large the lattice is.
#pragma once

#include <string>

#include <corvel/Progress.h>

#include "filters/lattice/LatticeReader.h"
#include "filters/lattice/LatticeWriter.h"
#include "filters/lattice/NodeSteps.h"

namespace trovan::filters {

struct ConversionOptions {
  NodeOptions nodes;
  // How far, in percent of the mean step, the steps of an axis may be off when a rectilinear
  // lattice is to be written in a format for uniform ones.
  double spacingTolerance = 0.01;
};

enum class ConversionOutcome { kDone, kCancelled, kDeclined };

// Copies the lattice. Unless kDone is returned, no file has been written or changed; the temporary
// files are gone in any case. `fileName` is for questions to the user.
//
// Raises FilterError when the format cannot hold the lattice, or when it is too large for the
// temporary files or their disk, before anything is read; and for a file that is wrong or
// cannot be written. Raises corvel::Exception when the system refuses anything else.
ConversionOutcome ConvertLattice(LatticeReader& reader, LatticeWriter& writer,
                                 const std::wstring& fileName, const ConversionOptions& options,
                                 corvel::IProgress* progress);

}  // namespace trovan::filters
