// Readers and progress that tests steer.
#pragma once

#include <cstring>
#include <limits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <corvel/Progress.h>

#include "MemoryLattice.h"
#include "filters/lattice/LatticeReader.h"
#include "filters/support/FilterError.h"

namespace trovan::test {

// Elements of an axis or a row as packed bytes.
template <typename T>
std::vector<unsigned char> Packed(const std::vector<T>& elements) {
  std::vector<unsigned char> bytes(elements.size() * sizeof(T));
  std::memcpy(bytes.data(), elements.data(), bytes.size());
  return bytes;
}

inline filters::LatticeHeader UniformHeader(corvel::PrimType type, unsigned columns, unsigned rows,
                                            unsigned planes = 1, unsigned components = 1) {
  filters::LatticeHeader header;
  header.dataType = type;
  header.columns = columns;
  header.rows = rows;
  header.planes = planes;
  header.components = components;
  return header;
}

// A rectilinear lattice whose axes are doubles.
inline filters::LatticeHeader RectilinearHeader(corvel::PrimType type,
                                                const std::vector<double>& xs,
                                                const std::vector<double>& ys,
                                                const std::vector<double>& zs) {
  filters::LatticeHeader header =
      UniformHeader(type, static_cast<unsigned>(xs.size()), static_cast<unsigned>(ys.size()),
                    static_cast<unsigned>(zs.size()));
  header.type = LatticeResequencer::Rectilinear;
  header.axes = {Packed(xs), Packed(ys), Packed(zs)};
  return header;
}

// A lattice with the given nodes: bottom row of the first plane first, components together.
template <typename T>
MemoryLattice LatticeOf(const filters::LatticeHeader& header, const std::vector<T>& nodes) {
  MemoryLattice lattice(header);
  auto bytes = Packed(nodes);
  EXPECT_EQ(bytes.size(), lattice.Nodes().size());
  for (unsigned z = 0; z < header.planes; ++z) {
    for (unsigned y = 0; y < header.rows; ++y) {
      const std::size_t row = std::size_t{z} * header.rows + y;
      lattice.TakeRow(y, z, bytes.data() + row * filters::RowSize(header));
    }
  }
  return lattice;
}

// Hands on the rows of a lattice in memory, the top ones first.
class MemoryReader : public filters::LatticeReader {
 public:
  explicit MemoryReader(MemoryLattice lattice) : lattice_(std::move(lattice)) {}

  // Raises FilterError instead of the row after so many.
  void FailAfter(unsigned rows) { rowsLeft_ = rows; }

  const filters::LatticeHeader& Header() const override { return lattice_.Header(); }
  void ReadRows(filters::LatticeRowSink& sink) override {
    const auto& header = Header();
    std::vector<unsigned char> nodes(filters::RowSize(header));
    std::vector<unsigned char> coordinates(filters::CoordinateRowSize(header));
    for (unsigned z = 0; z < header.planes; ++z) {
      for (unsigned y = header.rows; y-- > 0;) {
        if (rowsLeft_-- == 0) throw filters::FilterError("the file ends here");
        lattice_.GiveRow(y, z, nodes.data());
        sink.TakeRow(y, z, nodes.data());
        if (header.type != LatticeResequencer::Curvilinear) continue;
        lattice_.GiveCoordinateRow(y, z, coordinates.data());
        sink.TakeCoordinateRow(y, z, coordinates.data());
      }
    }
  }

 private:
  MemoryLattice lattice_;
  unsigned rowsLeft_ = std::numeric_limits<unsigned>::max();
};

// A header without a lattice behind it: for what has to be refused before anything is read.
class HeaderOnly : public filters::LatticeReader {
 public:
  explicit HeaderOnly(filters::LatticeHeader header) : header_(std::move(header)) {}
  const filters::LatticeHeader& Header() const override { return header_; }
  void ReadRows(filters::LatticeRowSink& /*sink*/) override { ADD_FAILURE() << "rows were read"; }

 private:
  filters::LatticeHeader header_;
};

// Says stop at one of the calls, and checks that the work obeys and its progress never falls.
class StopAt : public corvel::IProgress {
 public:
  static constexpr unsigned kNever = 0;
  explicit StopAt(unsigned call) : call_(call) {}

  bool Update(double fraction) override {
    EXPECT_FALSE(call_ != kNever && calls_ >= call_) << "it was told to stop";
    EXPECT_GE(fraction, last_);
    EXPECT_LE(fraction, 1.0);
    last_ = fraction;
    return ++calls_ != call_;
  }
  unsigned Calls() const { return calls_; }
  double Last() const { return last_; }

 private:
  unsigned call_;
  unsigned calls_ = 0;
  double last_ = 0.0;
};

}  // namespace trovan::test
