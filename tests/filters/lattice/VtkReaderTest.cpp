#include "filters/lattice/VtkReader.h"

#include <cstdint>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <corvel/Exception.h>

#include "VtkFixture.h"

namespace trovan::filters {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

using VtkReaderTest = VtkFixture;

// --- The three kinds of lattices -----------------------------------------------------------------

TEST_F(VtkReaderTest, ReadsStructuredPoints) {
  const auto lattice = Read(kStart + kPoints + kScalars);
  const LatticeHeader& header = lattice.Header();
  EXPECT_EQ(header.type, LatticeResequencer::Uniform);
  EXPECT_EQ(header.columns, 2U);
  EXPECT_EQ(header.rows, 3U);
  EXPECT_EQ(header.planes, 1U);
  EXPECT_EQ(header.components, 1U);
  EXPECT_EQ(header.dataType, corvel::kFloat);
  EXPECT_EQ(header.origin.x, 10.0);
  EXPECT_EQ(header.origin.y, 20.0);
  EXPECT_EQ(header.origin.z, 30.0);
  EXPECT_EQ(header.spacing.x, 1.0);
  EXPECT_EQ(header.spacing.y, 2.0);
  EXPECT_EQ(header.spacing.z, 4.0);
  EXPECT_EQ(header.rowOrder, RowOrder::kBottomUp);
  EXPECT_FALSE(header.voidValue);
  EXPECT_EQ(header.title, "a title");
  EXPECT_THAT(header.componentNames, ElementsAre("height"));
  EXPECT_EQ(header.format, "VTK structured points, text, version 3.0");
  EXPECT_THAT(header.remarks, IsEmpty());
  EXPECT_THAT(Values<float>(lattice), ElementsAre(1, 2, 3, 4, 5, 6));
}

TEST_F(VtkReaderTest, CountsRowsFromTheBottomWhereYDescends) {
  const auto lattice = Read(kStart +
                            "DATASET STRUCTURED_POINTS\nDIMENSIONS 2 3 1\nORIGIN 10 20 30\n"
                            "SPACING -1 -2 -4\n" +
                            kScalars);
  const LatticeHeader& header = lattice.Header();
  EXPECT_EQ(header.rowOrder, RowOrder::kTopDown);
  EXPECT_EQ(header.origin.x, 10.0);
  EXPECT_EQ(header.origin.y, 16.0);
  EXPECT_EQ(header.origin.z, 30.0);
  EXPECT_EQ(header.spacing.x, -1.0);
  EXPECT_EQ(header.spacing.y, 2.0);
  EXPECT_EQ(header.spacing.z, -4.0);
  EXPECT_THAT(Values<float>(lattice), ElementsAre(5, 6, 3, 4, 1, 2));
}

TEST_F(VtkReaderTest, ReadsRectilinearGrids) {
  const auto lattice = Read(kStart +
                            "DATASET RECTILINEAR_GRID\nDIMENSIONS 2 3 1\nX_COORDINATES 2 short\n"
                            "9 7\nY_COORDINATES 3 short\n1 5 6\nZ_COORDINATES 1 short\n-4\n" +
                            kScalars);
  const LatticeHeader& header = lattice.Header();
  EXPECT_EQ(header.type, LatticeResequencer::Rectilinear);
  EXPECT_EQ(header.coordType, corvel::kInt16);
  EXPECT_EQ(header.rowOrder, RowOrder::kBottomUp);
  EXPECT_THAT(Elements<std::int16_t>(header.axes[0]), ElementsAre(9, 7));
  EXPECT_THAT(Elements<std::int16_t>(header.axes[1]), ElementsAre(1, 5, 6));
  EXPECT_THAT(Elements<std::int16_t>(header.axes[2]), ElementsAre(-4));
  EXPECT_THAT(Values<float>(lattice), ElementsAre(1, 2, 3, 4, 5, 6));
}

TEST_F(VtkReaderTest, TurnsADescendingYAxis) {
  const auto lattice = Read(kStart +
                            "DATASET RECTILINEAR_GRID\nDIMENSIONS 2 3 1\nX_COORDINATES 2 double\n"
                            "9 7\nY_COORDINATES 3 double\n6 5 1\nZ_COORDINATES 1 double\n-4\n" +
                            kScalars);
  const LatticeHeader& header = lattice.Header();
  EXPECT_EQ(header.rowOrder, RowOrder::kTopDown);
  EXPECT_THAT(Elements<double>(header.axes[0]), ElementsAre(9, 7));
  EXPECT_THAT(Elements<double>(header.axes[1]), ElementsAre(1, 5, 6));
  EXPECT_THAT(Values<float>(lattice), ElementsAre(5, 6, 3, 4, 1, 2));
}

TEST_F(VtkReaderTest, MakesAxesOfDifferentTypesDoubles) {
  const LatticeHeader header =
      Header(kStart +
             "DATASET RECTILINEAR_GRID\nDIMENSIONS 2 3 1\nX_COORDINATES 2 int\n9 7\n"
             "Y_COORDINATES 3 float\n1 2 0.5\nZ_COORDINATES 1 unsigned_char\n255\n" +
             kScalars);
  EXPECT_EQ(header.coordType, corvel::kDouble);
  EXPECT_THAT(Elements<double>(header.axes[0]), ElementsAre(9, 7));
  EXPECT_THAT(Elements<double>(header.axes[1]), ElementsAre(0.5, 2, 1));
  EXPECT_THAT(Elements<double>(header.axes[2]), ElementsAre(255));
}

TEST_F(VtkReaderTest, ReadsStructuredGrids) {
  const auto lattice = Read(kStart +
                            "DATASET STRUCTURED_GRID\nDIMENSIONS 1 2 2\nPOINTS 4 float\n"
                            "0 9 0 1 8 0\n2 7 0 3 6 0\nPOINT_DATA 4\n"
                            "SCALARS s int 1\nLOOKUP_TABLE default\n1 2 3 4\n");
  const LatticeHeader& header = lattice.Header();
  EXPECT_EQ(header.type, LatticeResequencer::Curvilinear);
  EXPECT_EQ(header.coordType, corvel::kFloat);
  EXPECT_EQ(header.rowOrder, RowOrder::kBottomUp);
  EXPECT_EQ(lattice.Coordinate<float>(0, 1, 0, 0), 1.0F);
  EXPECT_EQ(lattice.Coordinate<float>(0, 0, 1, 1), 7.0F);
  EXPECT_THAT(Values<std::int32_t>(lattice), ElementsAre(1, 2, 3, 4));
}

TEST_F(VtkReaderTest, ReadsBigEndianBytes) {
  const auto lattice =
      Read(kBinaryStart + "DATASET STRUCTURED_GRID\nDIMENSIONS 2 1 1\nPOINTS 2 short\n" +
           std::string("\0\1\0\2\0\3\0\4\0\5\xFF\xFE\n", 13) +
           "POINT_DATA 2\nSCALARS s int\nLOOKUP_TABLE default\n" +
           std::string("\0\0\1\2\xFF\xFF\xFF\xFF\n", 9));
  EXPECT_THAT(Elements<std::int16_t>(lattice.Coordinates()), ElementsAre(1, 2, 3, 4, 5, -2));
  EXPECT_THAT(Values<std::int32_t>(lattice), ElementsAre(258, -1));
  EXPECT_EQ(lattice.Header().format, "VTK structured grid, binary, version 3.0");
}

// --- The first lines -----------------------------------------------------------------------------

TEST_F(VtkReaderTest, TakesKeywordsInAnyCaseAndOrder) {
  const LatticeHeader header = Header(
      "# VTK datafile version 1.0\r\n\r\n\r\nascii\r\n\r\ndataset structured_points\r\n"
      "Origin 1 2 3\r\naspect_ratio 4 5 6\r\nDimensions 1 1 1\r\npoint_data 1\r\n"
      "Scalars S Float\r\nlookup_table x\r\n.5");
  EXPECT_EQ(header.origin.x, 1.0);
  EXPECT_EQ(header.spacing.z, 6.0);
  EXPECT_EQ(header.title, "");
  EXPECT_THAT(header.componentNames, ElementsAre("S"));
}

TEST_F(VtkReaderTest, SaysWhichPositionItTook) {
  const LatticeHeader header =
      Header(kStart + "DATASET STRUCTURED_POINTS\nDIMENSIONS 2 3 1\n" + kScalars);
  EXPECT_EQ(header.origin.x, 0.0);
  EXPECT_EQ(header.spacing.y, 1.0);
  EXPECT_THAT(header.remarks,
              ElementsAre("tells no ORIGIN; 0 0 0 is taken", "tells no SPACING; 1 1 1 is taken"));
}

TEST_F(VtkReaderTest, KnowsTheVersions) {
  for (const char* version : {"1.0", "2.0", "3.0", "4.2", "5.1"}) {
    const std::string start = std::string("# vtk DataFile Version ") + version + "\nt\nASCII\n";
    EXPECT_THAT(Header(start + kPoints + kScalars).format, EndsWith(version));
  }
  for (const char* version : {"0.9", "6.0", "x", "", "nan"}) {
    EXPECT_THAT(Error(std::string("# vtk DataFile Version ") + version + "\nt\nASCII\n"),
                EndsWith(std::string("line 1: expected a version from 1.0 to 5.1, found \"") +
                         version + '"'));
  }
}

TEST_F(VtkReaderTest, ShowsNoBrokenTextOfTitlesAndNames) {
  const LatticeHeader header =
      Header("# vtk DataFile Version 3.0\n\xC3\xA9\xFF\nASCII\n" + kPoints +
             "POINT_DATA 6\nSCALARS \xE9 float\nLOOKUP_TABLE default\n1 2 3 4 5 6");
  EXPECT_EQ(header.title, "\xC3\xA9\xEF\xBF\xBD");
  EXPECT_THAT(header.componentNames, ElementsAre("\xEF\xBF\xBD"));
}

TEST_F(VtkReaderTest, RaisesWhatTheSystemSaysOfAMissingFile) {
  EXPECT_THROW(VtkReader(folder_.File(L"missing.vtk"), ""), corvel::Exception);
}

}  // namespace
}  // namespace trovan::filters
