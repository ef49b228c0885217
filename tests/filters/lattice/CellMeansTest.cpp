#include "filters/lattice/CellMeans.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "LatticeFakes.h"

namespace trovan::filters {
namespace {

using testing::ElementsAre;
using testing::IsNan;

// The grid of a plane whose rows are given from the top down.
template <typename T>
CellGrid Grid(const LatticeHeader& header, unsigned most, const std::vector<T>& nodes,
              unsigned component = 0) {
  CellMeans cells(header, component, most);
  const auto bytes = test::Packed(nodes);
  // From the bottom up: the order is free.
  for (unsigned row = header.rows; row-- > 0;) {
    cells.AddRow(row, bytes.data() + row * RowSize(header));
  }
  return cells.Finish();
}

TEST(CellMeans, AreTheNodesWhenThereIsRoomForAll) {
  const CellGrid grid =
      Grid<std::int16_t>(test::UniformHeader(corvel::kInt16, 3, 2), 3, {1, -2, 3, 4, 5, 600});
  EXPECT_EQ(grid.width, 3U);
  EXPECT_EQ(grid.height, 2U);
  EXPECT_THAT(grid.values, ElementsAre(1, -2, 3, 4, 5, 600));
  EXPECT_EQ(grid.At(2, 1), 600.0);
}

TEST(CellMeans, AverageTheNodesOfACell) {
  const CellGrid grid = Grid<float>(test::UniformHeader(corvel::kFloat, 4, 4), 2,
                                    {1, 3, 10, 10,  //
                                     5, 7, 10, 10,  //
                                     0, 0, -1, 0,   //
                                     0, 0, 0, 0});
  EXPECT_EQ(grid.width, 2U);
  EXPECT_THAT(grid.values, ElementsAre(4.0, 10.0, 0.0, -0.25));
}

TEST(CellMeans, ShareOutSidesThatDoNotDivide) {
  const CellGrid grid =
      Grid<float>(test::UniformHeader(corvel::kFloat, 5, 1), 2, {1, 2, 6, 10, 20});
  EXPECT_EQ(grid.width, 2U);
  EXPECT_EQ(grid.height, 1U);
  EXPECT_THAT(grid.values, ElementsAre(3.0, 15.0));
}

TEST(CellMeans, KeepTheShapeOfThePlaneWithAtLeastOneCellEachWay) {
  const struct {
    unsigned columns, rows, most, width, height;
  } cases[] = {{100, 50, 10, 10, 5}, {50, 100, 10, 5, 10}, {1000, 1, 10, 10, 1},
               {3, 1000, 10, 1, 10}, {10, 10, 10, 10, 10}, {11, 4, 10, 10, 3},
               {7, 7, 1, 1, 1}};
  for (const auto& c : cases) {
    const auto header = test::UniformHeader(corvel::kUInt8, c.columns, c.rows);
    const CellGrid grid =
        Grid(header, c.most, std::vector<std::uint8_t>(std::size_t{c.columns} * c.rows, 9));
    EXPECT_EQ(grid.width, c.width) << c.columns << " x " << c.rows;
    EXPECT_EQ(grid.height, c.height) << c.columns << " x " << c.rows;
    EXPECT_THAT(grid.values, testing::Each(9.0));
    EXPECT_EQ(grid.values.size(), std::size_t{c.width} * c.height);
  }
}

TEST(CellMeans, LeaveOutInvalidAndVoidNodes) {
  LatticeHeader header = test::UniformHeader(corvel::kFloat, 4, 1);
  header.voidValue = -9999.0;
  const float inf = std::numeric_limits<float>::infinity();
  EXPECT_THAT(Grid<float>(header, 2, {-9999, 5, NAN, inf}).values, ElementsAre(5.0, IsNan()));
  header.voidValue = 1e20;  // no float is
  EXPECT_THAT(Grid<float>(header, 2, {1e20F, 5, 1, 3}).values, ElementsAre(5.0, 2.0));
}

TEST(CellMeans, TakeOneComponent) {
  const auto header = test::UniformHeader(corvel::kUInt16, 2, 1, 1, 3);
  const std::vector<std::uint16_t> nodes = {1, 2, 3, 40, 50, 60};
  EXPECT_THAT(Grid(header, 2, nodes, 0).values, ElementsAre(1, 40));
  EXPECT_THAT(Grid(header, 2, nodes, 2).values, ElementsAre(3, 60));
}

TEST(CellMeans, DoNotOverflow) {
  constexpr double kMost = std::numeric_limits<double>::max();
  const auto header = test::UniformHeader(corvel::kDouble, 3, 1);
  EXPECT_THAT(Grid<double>(header, 1, {kMost, kMost, kMost}).values, ElementsAre(kMost));
  EXPECT_THAT(Grid<double>(header, 1, {-kMost, -kMost, -kMost}).values, ElementsAre(-kMost));
  EXPECT_THAT(Grid<double>(header, 1, {kMost, -kMost, 0.0}).values, ElementsAre(0.0));
}

}  // namespace
}  // namespace trovan::filters
