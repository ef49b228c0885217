#include "filters/lattice/Transpose.h"

#include <algorithm>
#include <cassert>
#include <cstring>

namespace trovan::filters {
namespace {

// Elements of a tile. Small, since with a power of two for a stride most lines of the processor's
// cache are out of reach.
constexpr std::size_t kTileArea = 512;
// A tile's shorter side at most; the longer one is the long inner loop.
constexpr std::size_t kTileSide = 16;

struct Tile {
  std::size_t rows;
  std::size_t columns;
};

Tile TileFor(std::size_t rows, std::size_t columns) {
  const std::size_t shorter = std::min({rows, columns, kTileSide});
  const std::size_t longer = kTileArea / shorter;
  return rows <= columns ? Tile{shorter, longer} : Tile{longer, shorter};
}

template <std::size_t kSize>
void CopyElement(MatrixPlace from, MatrixPlace to, std::size_t row, std::size_t column) {
  std::memcpy(to.bytes + column * to.rowStride + row * kSize,
              from.bytes + row * from.rowStride + column * kSize, kSize);
}

template <std::size_t kSize>
void TransposeTile(MatrixPlace from, MatrixPlace to, Tile size) {
  if (size.rows <= size.columns) {
    for (std::size_t row = 0; row < size.rows; ++row) {
      for (std::size_t column = 0; column < size.columns; ++column) {
        CopyElement<kSize>(from, to, row, column);
      }
    }
  } else {
    for (std::size_t column = 0; column < size.columns; ++column) {
      for (std::size_t row = 0; row < size.rows; ++row) {
        CopyElement<kSize>(from, to, row, column);
      }
    }
  }
}

// A few whole rows whose columns become packed nodes, or back: with the number of rows known, and
// places that do not overlap, compilers make vector instructions of the loop.
template <std::size_t kSize, std::size_t kRows>
void JoinRows(MatrixPlace from, unsigned char* __restrict to, std::size_t columns) {
  const unsigned char* __restrict bytes = from.bytes;
  for (std::size_t column = 0; column < columns; ++column) {
    for (std::size_t row = 0; row < kRows; ++row) {
      std::memcpy(to + (column * kRows + row) * kSize,
                  bytes + row * from.rowStride + column * kSize, kSize);
    }
  }
}

template <std::size_t kSize, std::size_t kColumns>
void PartColumns(const unsigned char* __restrict from, MatrixPlace to, std::size_t rows) {
  unsigned char* __restrict bytes = to.bytes;
  for (std::size_t row = 0; row < rows; ++row) {
    for (std::size_t column = 0; column < kColumns; ++column) {
      std::memcpy(bytes + column * to.rowStride + row * kSize,
                  from + (row * kColumns + column) * kSize, kSize);
    }
  }
}

// Whether the matrix was one of `kFew` packed components.
template <std::size_t kSize, std::size_t kFew>
bool TransposeFew(MatrixPlace from, MatrixPlace to, std::size_t rows, std::size_t columns) {
  if (rows == kFew && to.rowStride == kFew * kSize) {
    JoinRows<kSize, kFew>(from, to.bytes, columns);
    return true;
  }
  if (columns == kFew && from.rowStride == kFew * kSize) {
    PartColumns<kSize, kFew>(from.bytes, to, rows);
    return true;
  }
  return false;
}

template <std::size_t kSize>
void TransposeInTiles(MatrixPlace from, MatrixPlace to, std::size_t rows, std::size_t columns) {
  if (TransposeFew<kSize, 2>(from, to, rows, columns)) return;
  if (TransposeFew<kSize, 3>(from, to, rows, columns)) return;
  if (TransposeFew<kSize, 4>(from, to, rows, columns)) return;
  const Tile whole = TileFor(rows, columns);
  for (std::size_t row = 0; row < rows; row += whole.rows) {
    for (std::size_t column = 0; column < columns; column += whole.columns) {
      const Tile tile{std::min(whole.rows, rows - row), std::min(whole.columns, columns - column)};
      TransposeTile<kSize>({from.bytes + row * from.rowStride + column * kSize, from.rowStride},
                           {to.bytes + column * to.rowStride + row * kSize, to.rowStride}, tile);
    }
  }
}

}  // namespace

void Transpose(MatrixPlace from, MatrixPlace to, std::size_t rows, std::size_t columns,
               std::size_t elementSize) {
  if (rows == 0 || columns == 0) return;
  switch (elementSize) {
    case 1:
      return TransposeInTiles<1>(from, to, rows, columns);
    case 2:
      return TransposeInTiles<2>(from, to, rows, columns);
    case 4:
      return TransposeInTiles<4>(from, to, rows, columns);
    default:
      assert(elementSize == 8 && "elements have 1, 2, 4 or 8 bytes");
      return TransposeInTiles<8>(from, to, rows, columns);
  }
}

}  // namespace trovan::filters
