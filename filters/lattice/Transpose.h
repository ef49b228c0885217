// Packed elements from one interleaving to another.
#pragma once

#include <cstddef>

namespace trovan::filters {

// A matrix of elements in memory, one row after the other.
struct MatrixPlace {
  unsigned char* bytes;
  std::size_t rowStride;  // bytes from the start of a row to that of the next
};

// Copies `rows` x `columns` elements of 1, 2, 4 or 8 bytes so that rows become columns: the bands
// of a raster line (components x columns) become the components of each node (columns x
// components), or back. Goes through the matrix in tiles that stay in the processor's first cache,
// and for 2 to 4 packed components at the speed of memory.
//
// REQUIRES: the two places do not overlap.
void Transpose(MatrixPlace from, MatrixPlace to, std::size_t rows, std::size_t columns,
               std::size_t elementSize);

}  // namespace trovan::filters
