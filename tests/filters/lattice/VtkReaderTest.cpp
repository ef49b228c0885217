#include "filters/lattice/VtkReader.h"

#include <cstdint>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <corvel/Exception.h>

#include "LatticeErrors.h"
#include "MemoryLattice.h"
#include "support/TempFolder.h"

namespace trovan::filters {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string kStart = "# vtk DataFile Version 3.0\na title\nASCII\n";
const std::string kBinaryStart = "# vtk DataFile Version 3.0\na title\nBINARY\n";
const std::string kPoints =
    "DATASET STRUCTURED_POINTS\nDIMENSIONS 2 3 1\nORIGIN 10 20 30\nSPACING 1 2 4\n";
const std::string kScalars =
    "POINT_DATA 6\nSCALARS height float\nLOOKUP_TABLE default\n1 2\n3 4\n5 6\n";

class VtkReaderTest : public testing::Test {
 protected:
  std::wstring File(const std::string& text) const {
    test::WriteBytes(folder_.Path() / "in.vtk", text);
    return folder_.File(L"in.vtk");
  }
  LatticeHeader Header(const std::string& text, const std::string& array = {}) const {
    return VtkReader(File(text), array).Header();
  }
  test::MemoryLattice Read(const std::string& text, const std::string& array = {}) const {
    VtkReader reader(File(text), array);
    test::MemoryLattice lattice(reader.Header());
    reader.ReadRows(lattice);
    const LatticeHeader& header = reader.Header();
    const std::size_t rows = std::size_t{header.rows} * header.planes;
    EXPECT_EQ(lattice.RowsTaken(), rows);
    EXPECT_EQ(lattice.CoordinateRowsTaken(),
              header.type == LatticeResequencer::Curvilinear ? rows : 0);
    return lattice;
  }
  std::string Error(const std::string& text, const std::string& array = {}) const {
    return test::FilterErrorOf([&] { Read(text, array); });
  }

  // All elements, bottom row first.
  template <typename T>
  static std::vector<T> Elements(const std::vector<unsigned char>& bytes) {
    std::vector<T> elements(bytes.size() / sizeof(T));
    std::memcpy(elements.data(), bytes.data(), bytes.size());
    return elements;
  }
  template <typename T>
  static std::vector<T> Values(const test::MemoryLattice& lattice) {
    return Elements<T>(lattice.Nodes());
  }

  test::TempFolder folder_;
};

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

// --- Arrays --------------------------------------------------------------------------------------

const std::string kOneNode =
    "DATASET STRUCTURED_POINTS\nDIMENSIONS 1 1 1\nORIGIN 0 0 0\n"
    "SPACING 1 1 1\nPOINT_DATA 1\n";

TEST_F(VtkReaderTest, KnowsTheTypes) {
  const struct {
    const char* name;
    corvel::PrimType type;
    std::size_t size;
  } cases[] = {
      {"char", corvel::kInt8, 1},
      {"signed_char", corvel::kInt8, 1},
      {"unsigned_char", corvel::kUInt8, 1},
      {"short", corvel::kInt16, 2},
      {"unsigned_short", corvel::kUInt16, 2},
      {"int", corvel::kInt32, 4},
      {"vtkIdType", corvel::kInt32, 4},
      {"unsigned_int", corvel::kUInt32, 4},
      {"long", corvel::kInt64, 8},
      {"vtktypeint64", corvel::kInt64, 8},
      {"float", corvel::kFloat, 4},
      {"double", corvel::kDouble, 8},
      {"UNSIGNED_CHAR", corvel::kUInt8, 1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string array = "SCALARS s " + std::string(c.name) + "\nLOOKUP_TABLE default\n";
    const LatticeHeader text = Header(kStart + kOneNode + array + "1\n");
    EXPECT_EQ(text.dataType, c.type);
    const std::string bytes(c.size, '\1');
    const auto binary = Read(kBinaryStart + kOneNode + array + bytes + '\n');
    EXPECT_EQ(std::string(binary.Nodes().begin(), binary.Nodes().end()), bytes);
    EXPECT_THAT(Error(kBinaryStart + kOneNode + array + bytes.substr(1)), HasSubstr("found only"));
  }
}

TEST_F(VtkReaderTest, RefusesTypesThatNoLatticeHas) {
  for (const char* type : {"bit", "unsigned_long", "vtktypeuint64"}) {
    const std::string array = "SCALARS a " + std::string(type) + "\nLOOKUP_TABLE default\n1\n";
    EXPECT_THAT(Error(kStart + kOneNode + array),
                EndsWith("in.vtk: array \"a\" has elements of type " + std::string(type) +
                         ", which no lattice can have"));
    EXPECT_THAT(Error(kStart + kOneNode + array + "NORMALS n float\n1 2 3\n"),
                EndsWith("no lattice can have; --array chooses another: n"));
    EXPECT_EQ(Header(kStart + kOneNode + array + "NORMALS n float\n1 2 3\n", "n").components, 3U);
  }
  EXPECT_THAT(Error(kStart + kOneNode + "SCALARS a string\n"),
              EndsWith("line 9: expected a type of elements, such as float, found \"string\""));
}

// Every kind of array, each of which must be skipped by its exact size to find the next.
const std::string kKinds[] = {"scalars", "colors", "vectors", "normals", "texture",
                              "tensors", "ids",    "field1",  "field2"};

std::string EveryKind(bool isBinary) {
  const auto values = [isBinary](std::size_t count, std::size_t size, char start) {
    std::string bytes;
    for (std::size_t i = 0; i < count; ++i) {
      const char value = static_cast<char>(start + static_cast<int>(i));
      bytes += isBinary ? std::string(size - 1, '\0') + value : std::to_string(value) + ' ';
    }
    return bytes + '\n';
  };
  return "SCALARS scalars int 2\nLOOKUP_TABLE mine\n" + values(2, 4, 1) + "LOOKUP_TABLE mine 2\n" +
         values(8, 1, 0) + "COLOR_SCALARS colors 3\n" + values(3, 1, 10) +
         "VECTORS vectors short\n" + values(3, 2, 20) +
         "METADATA\nINFORMATION 1\nNAME a LOCATION b\nDATA 1\n\n" + "NORMALS normals short\n" +
         values(3, 2, 30) + "TEXTURE_COORDINATES texture 2 short\n" + values(2, 2, 40) +
         "TENSORS tensors short\n" + values(9, 2, 50) + "GLOBAL_IDS ids int\n" + values(1, 4, 60) +
         "FIELD more 2\nfield1 5 1 short\n" + values(5, 2, 70) +
         "METADATA\nCOMPONENT_NAMES\nx\n\nfield2 1 1 short\n" + values(1, 2, 80);
}

TEST_F(VtkReaderTest, FindsArraysOfEveryKind) {
  const unsigned components[] = {2, 3, 3, 3, 2, 9, 1, 5, 1};
  const double firsts[] = {1, 10, 20, 30, 40, 50, 60, 70, 80};
  for (const bool isBinary : {false, true}) {
    const std::string file = (isBinary ? kBinaryStart : kStart) + kOneNode + EveryKind(isBinary);
    for (std::size_t i = 0; i < std::size(kKinds); ++i) {
      SCOPED_TRACE(kKinds[i] + (isBinary ? ", binary" : ", text"));
      const auto lattice = Read(file, kKinds[i]);
      const LatticeHeader& header = lattice.Header();
      EXPECT_EQ(header.components, components[i]);
      EXPECT_EQ(header.componentNames.size(), components[i]);
      EXPECT_EQ(corvel::CPrimData::GetWideReal(header.dataType, lattice.Nodes().data()), firsts[i]);
    }
  }
}

TEST_F(VtkReaderTest, NamesTheArraysThatItLeavesOut) {
  const LatticeHeader header = Header(kStart + kOneNode + EveryKind(false));
  EXPECT_THAT(header.componentNames, ElementsAre("scalars[0]", "scalars[1]"));
  EXPECT_THAT(header.remarks, ElementsAre("holds 8 more arrays: colors, vectors, normals, texture, "
                                          "tensors, ids, field1, field2; --array chooses one"));
  EXPECT_THAT(
      Header(kStart + kOneNode + "SCALARS a int\nLOOKUP_TABLE x\n1\nVECTORS v int\n1 2 3").remarks,
      ElementsAre("holds 1 more array: v; --array chooses one"));
}

TEST_F(VtkReaderTest, NamesTheArraysOfTheFileAndOfItsCells) {
  const LatticeHeader header =
      Header(kStart + "DATASET STRUCTURED_POINTS\nFIELD FieldData 1\nTIME 1 2 double\n0.5 1\n" +
             "DIMENSIONS 2 3 1\nORIGIN 0 0 0\nSPACING 1 1 1\nCELL_DATA 2\n" +
             "SCALARS height float\nLOOKUP_TABLE default\n8 9\n" + kScalars);
  EXPECT_THAT(header.remarks, ElementsAre("the values of its cells are left out: height",
                                          "the fields of the file as a whole are left out: TIME"));
}

TEST_F(VtkReaderTest, TellsWhichArraysThereAre) {
  EXPECT_THAT(
      Error(kStart + kOneNode + EveryKind(false), "Scalars"),
      EndsWith("in.vtk has no array \"Scalars\" at its nodes; it has scalars, colors, vectors, "
               "normals, texture, tensors, ids, field1, field2"));
}

TEST_F(VtkReaderTest, RefusesFilesWithoutValuesAtTheNodes) {
  EXPECT_THAT(Error(kStart + kPoints), EndsWith("in.vtk holds no values at its nodes"));
  EXPECT_THAT(Error(kStart + kPoints + "CELL_DATA 2\nSCALARS c int\nLOOKUP_TABLE default\n1 2"),
              EndsWith("in.vtk holds no values at its nodes, only at its cells: c"));
}

// --- What is wrong -------------------------------------------------------------------------------

TEST_F(VtkReaderTest, TellsWhatIsWrongAndOnWhichLine) {
  const std::string grid = "DATASET RECTILINEAR_GRID\nDIMENSIONS 1 1 1\n";
  const struct {
    std::string text;
    const char* expected;
  } cases[] = {
      {"", "in.vtk, line 1: expected \"# vtk DataFile Version\", found \"\""},
      {"<?xml version=\"1.0\"?>", "line 1: expected \"# vtk DataFile Version\", found \"<?xml"},
      {"# vtk DataFile Version 3.0\nt\nTEXT\n", "line 3: expected ASCII or BINARY, found \"TEXT\""},
      {kStart + "STRUCTURED_POINTS", "line 4: expected DATASET, found"},
      {kStart + "DATASET POLYDATA", "line 4: expected STRUCTURED_POINTS, RECTILINEAR_GRID or"},
      {kStart + "DATASET STRUCTURED_POINTS\nSIZE 1",
       "line 5: expected a keyword that belongs here"},
      {kStart + "DATASET STRUCTURED_POINTS\nPOINTS 1 float", "line 5: expected a keyword that"},
      {kStart + "DATASET STRUCTURED_POINTS\nSCALARS s float", "line 5: expected a keyword that"},
      {kStart + kPoints + "DIMENSIONS 1 1 1", "line 8: a second DIMENSIONS"},
      {kStart + kPoints + "Origin 1 1 1", "line 8: a second Origin"},
      {kStart + kPoints + "ASPECT_RATIO 1 1 1", "line 8: a second ASPECT_RATIO"},
      {kStart + "DATASET STRUCTURED_POINTS\nDIMENSIONS 1 0 1",
       "line 5: expected a positive number"},
      {kStart + "DATASET STRUCTURED_POINTS\nDIMENSIONS 1 -2 1", "expected the number of nodes"},
      {kStart + "DATASET STRUCTURED_POINTS\nDIMENSIONS 4294967295 4294967295 4294967295",
       "line 5: there are more nodes than any file can hold"},
      {kStart + "DATASET STRUCTURED_POINTS\nORIGIN 1 nan 1", "line 5: expected a finite number"},
      {kStart + "DATASET STRUCTURED_POINTS\nSPACING 1 1",
       "expected a coordinate or step, found the"},
      {kStart + "DATASET STRUCTURED_POINTS\nPOINT_DATA 1", "line 5: expected DIMENSIONS"},
      {kStart + "DATASET STRUCTURED_POINTS\n", "line 5: expected DIMENSIONS, found the end"},
      {kStart + "DATASET STRUCTURED_GRID\nPOINTS 1 float", "line 5: expected DIMENSIONS"},
      {kStart + "DATASET STRUCTURED_GRID\nDIMENSIONS 1 1 1\n",
       "line 6: expected POINTS, found the"},
      {kStart + "DATASET STRUCTURED_GRID\nDIMENSIONS 1 2 1\nPOINTS 3 float",
       "line 6: expected 2, the number of coordinates, found \"3\""},
      {kStart + grid + "X_COORDINATES 2 int\n1 2", "line 6: expected 1, the number of coordinates"},
      {kStart + grid + "X_COORDINATES 1 bit\n1", "line 6: expected a type that a lattice can have"},
      {kStart + grid + "X_COORDINATES 1 int\n1\nX_COORDINATES", "line 8: a second X_COORDINATES"},
      {kStart + grid + "X_COORDINATES 1 int\n1\n", "expected X_COORDINATES, Y_COORDINATES and Z_"},
      {kStart + grid +
           "X_COORDINATES 1 int\n1.5\nY_COORDINATES 1 int\n1\nZ_COORDINATES 1 int\n1\n"
           "POINT_DATA 1\nVECTORS v int\n1 2 3",
       "line 7: expected a number of type int, found \"1.5\""},
      {kStart + kPoints + "POINT_DATA 5", "line 8: expected 6, the number of nodes, found \"5\""},
      {kStart + kPoints + "CELL_DATA 6", "line 8: expected 2, the number of cells, found \"6\""},
      {kStart + kOneNode + "SCALARS s float 5\n",
       "line 9: expected 1 to 4 components, found \"5\""},
      {kStart + kOneNode + "SCALARS s float 0\n",
       "line 9: expected 1 to 4 components, found \"0\""},
      {kStart + kOneNode + "SCALARS s float x\n",
       "line 9: expected 1 to 4 components, found \"x\""},
      {kStart + kOneNode + "SCALARS s float\n1\n", "line 10: expected LOOKUP_TABLE, found \"1\""},
      {kStart + kOneNode + "SCALARS s real\n1\n", "line 9: expected a type of elements, such as"},
      {kStart + kOneNode + "TEXTURE_COORDINATES s 4 int\n1\n",
       "line 9: expected 1 to 3 components"},
      {kStart + kOneNode + "VECTORS v int\n1 2\nNORMALS n int\n",
       "line 11: expected value 3 of 3 of \"v\", found \"NORMALS\""},
      {kStart + kOneNode + "VECTORS v int\n1 2\n",
       "line 11: expected value 3 of 3 of \"v\", found the end of the file"},
      {kStart + kOneNode + "VECTORS v int\n1\n2.5\n3\n",
       "line 11: expected a number of type int, found \"2.5\""},
      {kStart + kOneNode + "VECTORS v unsigned_char\n1 2 256\n",
       "line 10: expected a number of type unsigned_char, found \"256\", which is beyond the "
       "range"},
      {kStart + kOneNode + "FIELD f 1\na 2 3 int\n",
       "line 10: expected 1 tuples of \"a\", found \"3\""},
      {kStart + "DATASET STRUCTURED_POINTS\nFIELD f 1\na 9223372036854775807 2 int\n",
       "line 6: \"a\" has more elements than any file"},
      {kBinaryStart + kOneNode + "VECTORS v int x\n",
       "line 9: expected the end of the line before the bytes of \"v\", found \"x\""},
      {kBinaryStart + kOneNode + "VECTORS v int\n12345",
       "byte 139: expected 3 elements of \"v\", 32 bits each, found only 5 bytes"},
      {kBinaryStart + kOneNode + "VECTORS v char\n123\nWHAT",
       "byte 144: expected a keyword that belongs here, found \"WHAT\""},
  };
  for (const auto& c : cases) EXPECT_THAT(Error(c.text), HasSubstr(c.expected)) << c.text;
}

TEST_F(VtkReaderTest, TakesNoMemoryForWhatTheFileCannotHold) {
  const std::string hostile =
      "DATASET STRUCTURED_POINTS\nDIMENSIONS 2000000000 2000000000 2\nPOINT_DATA "
      "8000000000000000000\nSCALARS s double 4\nLOOKUP_TABLE default\n1 2 3";
  EXPECT_THAT(Error(kBinaryStart + hostile), HasSubstr("more elements than any file"));
  EXPECT_THAT(Error(kStart + "DATASET STRUCTURED_POINTS\nDIMENSIONS 2000000000 2000000000 2\n"
                             "POINT_DATA 8000000000000000000\nSCALARS s double\n"
                             "LOOKUP_TABLE default\n1 2 3"),
              HasSubstr("expected value 4 of 8000000000000000000 of \"s\", found the end"));
}

// Cut anywhere, a file is refused, but for its last line end.
TEST_F(VtkReaderTest, FailsWhereverTheFileIsCut) {
  const std::string text = kStart + kPoints + "POINT_DATA 6\nVECTORS v int\n" +
                           "10 10 10 10 10 10 10 10 10 10 10 10 10 10 10 10 10 10";
  for (std::size_t size = 0; size + 1 < text.size(); ++size) {
    EXPECT_THAT(Error(text.substr(0, size)), HasSubstr("in.vtk")) << size;
  }
  const std::string binary =
      kBinaryStart + "DATASET STRUCTURED_GRID\nDIMENSIONS 2 1 1\nPOINTS 2 short\n123456789abc\n" +
      "POINT_DATA 2\nSCALARS s int\nLOOKUP_TABLE default\n12345678";
  for (std::size_t size = 0; size < binary.size(); ++size) {
    EXPECT_THAT(Error(binary.substr(0, size)), HasSubstr("in.vtk")) << size;
  }
  EXPECT_EQ(Error(binary), "nothing was raised");
}

TEST_F(VtkReaderTest, RaisesWhatTheSystemSaysOfAMissingFile) {
  EXPECT_THROW(VtkReader(folder_.File(L"missing.vtk"), ""), corvel::Exception);
}

}  // namespace
}  // namespace trovan::filters
