// One interface for all lattice formats: a reader hands on rows in the order that suits its file.
#pragma once

#include "filters/lattice/Lattice.h"

namespace trovan::filters {

// Takes the rows of a lattice. What it raises (such as to cancel) goes through the reader.
class LatticeRowSink {
 public:
  virtual ~LatticeRowSink() = default;

  // One row of nodes: RowSize bytes, the components of a node together, in the machine's byte
  // order. The bytes are the reader's and live until the call returns; they may be changed.
  virtual void TakeRow(unsigned y, unsigned z, void* nodes) = 0;

  // One row of node coordinates of a curvilinear lattice: CoordinateRowSize bytes, X, Y and Z of a
  // node together.
  virtual void TakeCoordinateRow(unsigned y, unsigned z, void* coordinates) = 0;
};

class LatticeReader {
 public:
  virtual ~LatticeReader() = default;

  virtual const LatticeHeader& Header() const = 0;

  // Hands each row of nodes to the sink once, and for a curvilinear lattice each row of coordinates
  // once, in any order. To be called once.
  //
  // Raises FilterError for a file that is shorter than its header says, or is otherwise wrong: with
  // the file, the line or byte, and what was expected.
  virtual void ReadRows(LatticeRowSink& sink) = 0;
};

}  // namespace trovan::filters
