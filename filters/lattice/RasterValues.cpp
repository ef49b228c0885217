#include "filters/lattice/RasterValues.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

#include <corvel/Text.h>

#include "filters/lattice/Transpose.h"
#include "filters/support/FilterError.h"

namespace trovan::filters {
namespace {

constexpr std::size_t kBlockBudget = std::size_t{4} << 20;

unsigned RowsPerBlock(const RasterLayout& layout, std::size_t rowSize) {
  const std::size_t fitting = std::max<std::size_t>(kBlockBudget / rowSize, 1);
  return static_cast<unsigned>(std::min<std::size_t>(fitting, layout.rows));
}

// Calls work(first, count) for each block of file rows.
template <typename Work>
void ForEachBlock(const RasterLayout& layout, unsigned rowsPerBlock, Work work) {
  for (unsigned first = 0; first < layout.rows;) {
    const unsigned count = std::min(rowsPerBlock, layout.rows - first);
    work(first, count);
    first += count;
  }
}

template <std::size_t kSize>
using Constant = std::integral_constant<std::size_t, kSize>;

// Calls work(size) with the size of a node: as a constant where it is usual, so that its copy
// becomes one or two moves.
template <typename Work>
void WithNodeSize(std::size_t size, Work work) {
  switch (size) {
    case 3:
      return work(Constant<3>());
    case 4:
      return work(Constant<4>());
    case 6:
      return work(Constant<6>());
    case 8:
      return work(Constant<8>());
    case 12:
      return work(Constant<12>());
    case 16:
      return work(Constant<16>());
    case 24:
      return work(Constant<24>());
    default:
      return work(size);
  }
}

// What reading and writing share: a block of the file, and one row of nodes.
//
// In a block of a band sequential file each component has its `count` rows, one after the other. In
// one of the other orders the bytes are those of the file.
class Transfer {
 protected:
  Transfer(corvel::CBufferedFile& file, const RasterLayout& layout)
      : file_(file),
        layout_(layout),
        isBandSequential_(layout.interleave == Interleave::kBandSequential),
        rowsPerBlock_(RowsPerBlock(layout, BlockRowSize())),
        block_(rowsPerBlock_ * BlockRowSize()),
        nodes_(NodesLieTogether() ? 0 : layout.NodeRowSize()) {}

  std::size_t BlockRowSize() const {
    return isBandSequential_ ? layout_.NodeRowSize() : layout_.FileRowSize();
  }

  // Whether a row of nodes stands in the block just as the sink takes it.
  bool NodesLieTogether() const {
    return layout_.interleave == Interleave::kBandByPixel ? layout_.planes == 1
                                                          : layout_.components == 1;
  }

  void SwapBlock(unsigned count) {
    if (!layout_.swapsBytes) return;
    const std::size_t size = count * BlockRowSize();
    SwapBytes(block_.data(), size / layout_.elementSize, layout_.elementSize);
  }

  // Where row `row` of the block begins in it; for a band sequential file, of the first component.
  unsigned char* RowInBlock(unsigned row) {
    return block_.data() + row * (isBandSequential_ ? layout_.BandRowSize() : BlockRowSize());
  }

  // The bands of a row of nodes as a matrix of components x columns.
  MatrixPlace BandsInBlock(unsigned row, unsigned plane, unsigned count) {
    if (isBandSequential_) return {RowInBlock(row), count * layout_.BandRowSize()};
    return {RowInBlock(row) + plane * layout_.NodeRowSize(), layout_.BandRowSize()};
  }

  // The same row as a matrix of columns x components.
  MatrixPlace Nodes() { return {nodes_.data(), NodeSize()}; }

  std::size_t NodeSize() const { return layout_.components * layout_.elementSize; }

  // Calls copy(node, pixel, size) for each node of a row and its place in a band-by-pixel block.
  template <typename Copy>
  void ForEachPixel(unsigned row, unsigned plane, Copy copy) {
    WithNodeSize(NodeSize(), [&](auto size) {
      unsigned char* pixel = RowInBlock(row) + plane * size;
      unsigned char* node = nodes_.data();
      const std::size_t count = layout_.columns;
      const std::size_t step = size * layout_.planes;
      for (std::size_t x = 0; x < count; ++x, node += size, pixel += step) copy(node, pixel, size);
    });
  }

  void SeekTo(std::uint64_t offset) {
    file_.Seek(static_cast<long long>(offset), corvel::kFileBegin);
  }

  corvel::CBufferedFile& file_;
  const RasterLayout& layout_;
  const bool isBandSequential_;
  const unsigned rowsPerBlock_;
  std::vector<unsigned char> block_;
  std::vector<unsigned char> nodes_;  // empty where rows of nodes lie in the block
};

class ValueReader : private Transfer {
 public:
  ValueReader(corvel::CBufferedFile& file, const RasterLayout& layout, LatticeRowSink& sink)
      : Transfer(file, layout), sink_(sink) {}

  void ReadAll() {
    if (!isBandSequential_) {
      SeekTo(layout_.dataOffset);
      ForEachBlock(layout_, rowsPerBlock_, [this](unsigned first, unsigned count) {
        Fill(block_.data(), count * BlockRowSize());
        SwapBlock(count);
        for (unsigned row = 0; row < count; ++row) {
          for (unsigned z = 0; z < layout_.planes; ++z) HandRow(first, count, row, z);
        }
      });
      return;
    }
    for (unsigned z = 0; z < layout_.planes; ++z) {
      ForEachBlock(layout_, rowsPerBlock_, [this, z](unsigned first, unsigned count) {
        const std::size_t size = count * layout_.BandRowSize();
        for (unsigned component = 0; component < layout_.components; ++component) {
          SeekTo(layout_.BandRowAt(z, component, first));
          Fill(block_.data() + component * size, size);
        }
        SwapBlock(count);
        for (unsigned row = 0; row < count; ++row) HandRow(first, count, row, z);
      });
    }
  }

 private:
  void Fill(unsigned char* bytes, std::size_t size) {
    if (file_.Read(bytes, size) == size) return;
    throw FilterError(corvel::Utf8FromWide(file_.GetPath()) + " ends at byte " +
                      std::to_string(file_.GetPosition()) + ", before its values do");
  }

  void HandRow(unsigned first, unsigned count, unsigned row, unsigned z) {
    const unsigned y = layout_.LatticeRow(first + row);
    if (NodesLieTogether()) {
      const std::size_t plane = isBandSequential_ ? 0 : z;
      return sink_.TakeRow(y, z, RowInBlock(row) + plane * layout_.NodeRowSize());
    }
    if (layout_.interleave == Interleave::kBandByPixel) {
      CopyFromPixels(row, z);
    } else {
      Transpose(BandsInBlock(row, z, count), Nodes(), layout_.components, layout_.columns,
                layout_.elementSize);
    }
    sink_.TakeRow(y, z, nodes_.data());
  }

  void CopyFromPixels(unsigned row, unsigned z) {
    if (layout_.components == 1) {  // a column of elements has the fast road
      return Transpose({RowInBlock(row) + z * NodeSize(), NodeSize() * layout_.planes},
                       {nodes_.data(), layout_.NodeRowSize()}, layout_.columns, 1,
                       layout_.elementSize);
    }
    ForEachPixel(row, z, [](unsigned char* node, const unsigned char* pixel, auto size) {
      std::memcpy(node, pixel, size);
    });
  }

  LatticeRowSink& sink_;
};

class ValueWriter : private Transfer {
 public:
  ValueWriter(corvel::CBufferedFile& file, const RasterLayout& layout, LatticeRowSource& source)
      : Transfer(file, layout), source_(source) {}

  void WriteAll() {
    if (!isBandSequential_) {
      SeekTo(layout_.dataOffset);
      ForEachBlock(layout_, rowsPerBlock_, [this](unsigned first, unsigned count) {
        for (unsigned row = 0; row < count; ++row) {
          for (unsigned z = 0; z < layout_.planes; ++z) FetchRow(first, count, row, z);
        }
        SwapBlock(count);
        file_.Write(block_.data(), count * BlockRowSize());
      });
      return;
    }
    for (unsigned z = 0; z < layout_.planes; ++z) {
      ForEachBlock(layout_, rowsPerBlock_, [this, z](unsigned first, unsigned count) {
        for (unsigned row = 0; row < count; ++row) FetchRow(first, count, row, z);
        SwapBlock(count);
        const std::size_t size = count * layout_.BandRowSize();
        for (unsigned component = 0; component < layout_.components; ++component) {
          SeekTo(layout_.BandRowAt(z, component, first));
          file_.Write(block_.data() + component * size, size);
        }
      });
    }
  }

 private:
  void FetchRow(unsigned first, unsigned count, unsigned row, unsigned z) {
    const unsigned y = layout_.LatticeRow(first + row);
    if (NodesLieTogether()) {
      const std::size_t plane = isBandSequential_ ? 0 : z;
      return source_.GiveRow(y, z, RowInBlock(row) + plane * layout_.NodeRowSize());
    }
    source_.GiveRow(y, z, nodes_.data());
    if (layout_.interleave == Interleave::kBandByPixel) {
      CopyToPixels(row, z);
    } else {
      Transpose(Nodes(), BandsInBlock(row, z, count), layout_.columns, layout_.components,
                layout_.elementSize);
    }
  }

  void CopyToPixels(unsigned row, unsigned z) {
    if (layout_.components == 1) {
      return Transpose({nodes_.data(), layout_.NodeRowSize()},
                       {RowInBlock(row) + z * NodeSize(), NodeSize() * layout_.planes}, 1,
                       layout_.columns, layout_.elementSize);
    }
    ForEachPixel(row, z, [](const unsigned char* node, unsigned char* pixel, auto size) {
      std::memcpy(pixel, node, size);
    });
  }

  LatticeRowSource& source_;
};

}  // namespace

RasterLayout::RasterLayout(const LatticeHeader& header, Interleave order, ByteOrder byteOrder,
                           std::uint64_t offset)
    : columns(header.columns),
      rows(header.rows),
      planes(header.planes),
      components(header.components),
      elementSize(static_cast<std::size_t>(corvel::CPrimType(header.dataType).Size())),
      interleave(order),
      topDown(header.rowOrder == RowOrder::kTopDown),
      swapsBytes((byteOrder == ByteOrder::kBigEndian) != kMachineIsBigEndian),
      dataOffset(offset) {}

std::optional<std::uint64_t> RasterSize(const LatticeHeader& header) {
  constexpr auto kMost = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  std::uint64_t size = static_cast<std::uint64_t>(corvel::CPrimType(header.dataType).Size());
  for (const std::uint64_t factor :
       {header.columns, header.rows, header.planes, header.components}) {
    if (factor != 0 && size > kMost / factor) return std::nullopt;
    size *= factor;
  }
  return size;
}

void ReadRasterValues(corvel::CBufferedFile& file, const RasterLayout& layout,
                      LatticeRowSink& sink) {
  ValueReader(file, layout, sink).ReadAll();
}

void WriteRasterValues(corvel::CBufferedFile& file, const RasterLayout& layout,
                       LatticeRowSource& source) {
  ValueWriter(file, layout, source).WriteAll();
}

}  // namespace trovan::filters
