// A small lattice in memory, as the end of a reader and the start of a writer.
//
//   MemoryLattice nodes(reader->Header());
//   reader->ReadRows(nodes);
//   EXPECT_EQ(nodes.Value<float>(x, y, z, component), 3.5F);
#pragma once

#include <cstddef>
#include <cstring>
#include <set>
#include <stdexcept>
#include <utility>
#include <vector>

#include "filters/lattice/LatticeReader.h"
#include "filters/lattice/LatticeWriter.h"

namespace trovan::test {

class MemoryLattice : public filters::LatticeRowSink, public filters::LatticeRowSource {
 public:
  explicit MemoryLattice(const filters::LatticeHeader& header)
      : header_(header),
        rowSize_(filters::RowSize(header)),
        coordinateRowSize_(filters::CoordinateRowSize(header)),
        nodes_(rowSize_ * header.rows * header.planes) {
    if (header.type == LatticeResequencer::Curvilinear) {
      coordinates_.resize(coordinateRowSize_ * header.rows * header.planes);
    }
  }

  // Raises when a row does not exist or comes twice.
  void TakeRow(unsigned y, unsigned z, void* nodes) override {
    Note(taken_, y, z);
    std::memcpy(nodes_.data() + Place(y, z) * rowSize_, nodes, rowSize_);
  }
  void TakeCoordinateRow(unsigned y, unsigned z, void* coordinates) override {
    Note(coordinatesTaken_, y, z);
    std::memcpy(coordinates_.data() + Place(y, z) * coordinateRowSize_, coordinates,
                coordinateRowSize_);
  }
  void GiveRow(unsigned y, unsigned z, void* nodes) override {
    std::memcpy(nodes, nodes_.data() + Place(y, z) * rowSize_, rowSize_);
  }
  void GiveCoordinateRow(unsigned y, unsigned z, void* coordinates) override {
    std::memcpy(coordinates, coordinates_.data() + Place(y, z) * coordinateRowSize_,
                coordinateRowSize_);
  }

  const filters::LatticeHeader& Header() const { return header_; }
  std::size_t RowsTaken() const { return taken_.size(); }
  std::size_t CoordinateRowsTaken() const { return coordinatesTaken_.size(); }

  // All nodes, bottom row of the first plane first; the components of a node together.
  const std::vector<unsigned char>& Nodes() const { return nodes_; }
  const std::vector<unsigned char>& Coordinates() const { return coordinates_; }

  template <typename T>
  T Value(unsigned x, unsigned y, unsigned z = 0, unsigned component = 0) const {
    return Load<T>(nodes_, Place(y, z) * rowSize_ +
                               (std::size_t{x} * header_.components + component) * sizeof(T));
  }
  template <typename T>
  void Set(unsigned x, unsigned y, unsigned z, unsigned component, T value) {
    std::memcpy(nodes_.data() + Place(y, z) * rowSize_ +
                    (std::size_t{x} * header_.components + component) * sizeof(T),
                &value, sizeof value);
  }
  template <typename T>
  T Coordinate(unsigned x, unsigned y, unsigned z, unsigned axis) const {
    return Load<T>(coordinates_,
                   Place(y, z) * coordinateRowSize_ + (std::size_t{x} * 3 + axis) * sizeof(T));
  }
  template <typename T>
  void SetCoordinate(unsigned x, unsigned y, unsigned z, unsigned axis, T value) {
    std::memcpy(coordinates_.data() + Place(y, z) * coordinateRowSize_ +
                    (std::size_t{x} * 3 + axis) * sizeof(T),
                &value, sizeof value);
  }

 private:
  using Rows = std::set<std::pair<unsigned, unsigned>>;

  void Note(Rows& rows, unsigned y, unsigned z) const {
    if (!rows.emplace(y, z).second) throw std::logic_error("the row came before");
    (void)Place(y, z);
  }
  std::size_t Place(unsigned y, unsigned z) const {
    if (y >= header_.rows || z >= header_.planes) throw std::logic_error("there is no such row");
    return std::size_t{z} * header_.rows + y;
  }
  template <typename T>
  static T Load(const std::vector<unsigned char>& bytes, std::size_t at) {
    T value;
    std::memcpy(&value, bytes.data() + at, sizeof value);
    return value;
  }

  filters::LatticeHeader header_;
  std::size_t rowSize_;
  std::size_t coordinateRowSize_;
  std::vector<unsigned char> nodes_;
  std::vector<unsigned char> coordinates_;
  Rows taken_;
  Rows coordinatesTaken_;
};

}  // namespace trovan::test
