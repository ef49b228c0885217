// The resequencer beside a plain lattice in memory, through random operations.
#include <cstddef>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ResequencerFixture.h"
#include "support/Random.h"

namespace trovan::test {
namespace {

constexpr auto kCurvilinear = LatticeResequencer::Curvilinear;

// A file of elements [z][y][x][part], byte by byte.
class PlainFile {
 public:
  PlainFile(const Sizes& sizes, unsigned parts, unsigned elementSize)
      : sizes_(sizes),
        parts_(parts),
        elementSize_(elementSize),
        bytes_(std::size_t{sizes.xdim} * sizes.ydim * sizes.zdim * parts * elementSize, '\0') {}

  std::string Row(unsigned y, unsigned z) const { return bytes_.substr(Place(0, y, z), RowSize()); }
  void SetRow(unsigned y, unsigned z, const std::string& row) {
    bytes_.replace(Place(0, y, z), RowSize(), row);
  }
  std::string Part(unsigned y, unsigned z, unsigned part) const {
    std::string values;
    for (unsigned x = 0; x < sizes_.xdim; ++x) {
      values += bytes_.substr(Place(x, y, z) + std::size_t{part} * elementSize_, elementSize_);
    }
    return values;
  }
  void SetPart(unsigned y, unsigned z, unsigned part, const std::string& values) {
    for (unsigned x = 0; x < sizes_.xdim; ++x) {
      bytes_.replace(Place(x, y, z) + std::size_t{part} * elementSize_, elementSize_,
                     values.substr(std::size_t{x} * elementSize_, elementSize_));
    }
  }
  const std::string& Bytes() const { return bytes_; }
  std::size_t RowSize() const { return std::size_t{sizes_.xdim} * parts_ * elementSize_; }
  std::size_t PartSize() const { return std::size_t{sizes_.xdim} * elementSize_; }

 private:
  std::size_t Place(unsigned x, unsigned y, unsigned z) const {
    return ((std::size_t{z} * sizes_.ydim + y) * sizes_.xdim + x) * parts_ * elementSize_;
  }

  Sizes sizes_;
  unsigned parts_;
  unsigned elementSize_;
  std::string bytes_;
};

class SequenceModelTest : public ResequencerTest, public testing::WithParamInterface<unsigned> {
 protected:
  // Mostly small; now and then rows that are longer than the file's buffer.
  Sizes AnySizes() {
    constexpr unsigned kElements[] = {1, 2, 3, 4, 8, 16};
    Sizes sizes;
    sizes.type = kCurvilinear;
    sizes.xdim = OneIn(random_, 8) ? 5'000 + Below(random_, 9'000) : 1 + Below(random_, 40);
    sizes.ydim = 1 + Below(random_, sizes.xdim > 1'000 ? 3 : 30);
    sizes.zdim = 1 + Below(random_, 3);
    sizes.components = 1 + Below(random_, 5);
    sizes.dataSize = OneOf(random_, kElements);
    sizes.coordSize = OneOf(random_, kElements);
    sizes.coordFile = true;
    return sizes;
  }
  std::string AnyBytes(std::size_t size) {
    std::string bytes(size, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random_());
    return bytes;
  }

  void WriteData(PlainFile& data, unsigned y, unsigned z, unsigned components) {
    if (OneIn(random_, 2)) {
      const std::string row = AnyBytes(data.RowSize());
      lattice_.WriteRowOfMultiComponentData(y, z, row.data());
      data.SetRow(y, z, row);
    } else {
      const unsigned component = Below(random_, components);
      const std::string values = AnyBytes(data.PartSize());
      lattice_.WriteRowOfSingleComponentData(y, z, component, values.data());
      data.SetPart(y, z, component, values);
    }
  }
  void ReadData(const PlainFile& data, unsigned y, unsigned z, unsigned components) {
    if (OneIn(random_, 2)) {
      ASSERT_TRUE(ReadRow(y, z) == data.Row(y, z));
    } else {
      const unsigned component = Below(random_, components);
      std::string values(data.PartSize(), '?');
      lattice_.ReadRowOfSingleComponentData(y, z, component, values.data());
      ASSERT_TRUE(values == data.Part(y, z, component));
    }
  }
  void WriteCoords(PlainFile& coords, unsigned y, unsigned z) {
    const unsigned axis = Below(random_, 4);
    const std::string values = AnyBytes(axis == 3 ? coords.RowSize() : coords.PartSize());
    if (axis == 0) lattice_.WriteRowOfX(y, z, values.data());
    if (axis == 1) lattice_.WriteRowOfY(y, z, values.data());
    if (axis == 2) lattice_.WriteRowOfZ(y, z, values.data());
    if (axis == 3) {
      lattice_.WriteRowOfXYZ(y, z, values.data());
      coords.SetRow(y, z, values);
    } else {
      coords.SetPart(y, z, axis, values);
    }
  }
  void ReadCoords(const PlainFile& coords, unsigned y, unsigned z) {
    const unsigned axis = Below(random_, 4);
    std::string values(coords.PartSize(), '?');
    if (axis == 0) lattice_.ReadRowOfX(y, z, values.data());
    if (axis == 1) lattice_.ReadRowOfY(y, z, values.data());
    if (axis == 2) lattice_.ReadRowOfZ(y, z, values.data());
    if (axis == 3) {
      ASSERT_TRUE(ReadCoordRow(y, z) == coords.Row(y, z));
    } else {
      ASSERT_TRUE(values == coords.Part(y, z, axis));
    }
  }

  std::mt19937 random_{GetParam()};
};

TEST_P(SequenceModelTest, AgreesWithALatticeInMemory) {
  for (int round = 0; round < 30; ++round) {
    const Sizes sizes = AnySizes();
    SCOPED_TRACE(testing::Message()
                 << "round " << round << ": " << sizes.xdim << " x " << sizes.ydim << " x "
                 << sizes.zdim << " nodes, " << sizes.components << " components of "
                 << sizes.dataSize << " bytes, coordinates of " << sizes.coordSize);
    Start(sizes);
    PlainFile data(sizes, sizes.components, sizes.dataSize);
    PlainFile coords(sizes, 3, sizes.coordSize);
    const bool inOrder = OneIn(random_, 2);
    const unsigned steps = sizes.xdim > 1'000 ? 40 : 200;
    for (unsigned step = 0; step < steps; ++step) {
      const unsigned row = inOrder ? step : AnyUnsigned(random_);
      const unsigned y = row % sizes.ydim;
      const unsigned z = row / sizes.ydim % sizes.zdim;
      if (OneIn(random_, 2)) WriteData(data, y, z, sizes.components);
      if (OneIn(random_, 2)) ReadData(data, y, z, sizes.components);
      if (OneIn(random_, 2)) WriteCoords(coords, y, z);
      if (OneIn(random_, 2)) ReadCoords(coords, y, z);
      ASSERT_FALSE(HasFatalFailure()) << "step " << step;
    }
    ASSERT_TRUE(DataFile() == data.Bytes());
    ASSERT_TRUE(CoordFile() == coords.Bytes());
    lattice_.Finish();
    ASSERT_THAT(TempFiles(), testing::IsEmpty());
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, SequenceModelTest, testing::Range(1U, 9U));

}  // namespace
}  // namespace trovan::test
