#include "filters/lattice/Transpose.h"

#include <algorithm>
#include <cassert>
#include <cstring>

namespace trovan::filters {
namespace {

// Elements of a tile: at 8 bytes each, 16 KiB are read and 16 KiB written.
constexpr std::size_t kTileArea = 2048;
// A tile's shorter side at most; the longer one is the long inner loop.
constexpr std::size_t kTileSide = 32;

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

template <std::size_t kSize>
void TransposeInTiles(MatrixPlace from, MatrixPlace to, std::size_t rows, std::size_t columns) {
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
